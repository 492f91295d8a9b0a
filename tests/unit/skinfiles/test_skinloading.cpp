// Skin loading through the scripted platform: packages made by creation, hand-edited
// information files, broken input, and the replay of single areas.

#include "ini.h"
#include "skinfilestest.h"
#include "skininformation.h"
#include "skinloading.h"
#include "skinpackagecreation.h"

namespace skin::testing {
namespace {

using Log = std::vector<std::string>;

const std::string kLoadedText = "Skin loaded successfully!";
const std::string kLoadErrorText = "An Error has occured while loading the Skin file.\r\n\r\nSkin was not loaded.";

class LoadingTest : public SkinFilesTest {
protected:
    void Choose(const std::string& path) { platform.openAnswers.push_back(FileChoice{path, fs::path(path).filename().string()}); }

    // Creates the full test skin's package and answers Yes to "Create Another?", so the editor
    // starts again empty, as after a restart.
    std::string CreatePackage() {
        MakeFullSkin();
        const std::string package = Path("out/MYSKIN.bsz");
        platform.saveAnswers.push_back(FileChoice{package, "MYSKIN.bsz"});
        platform.messageAnswers.push_back(MessageAnswer::Yes);
        CreateSkinPackage(editor, platform);
        EXPECT_TRUE(fs::exists(package));
        EXPECT_EQ(editor.Document().SkinName(), "");
        platform.log.clear();
        platform.messages.clear();
        platform.picturesShown.clear();
        view.seen.clear();
        return package;
    }
    // A loose information file of the test skin with its pictures beside it, in `folder`.
    std::string WriteLooseSkin(const std::string& folder, const std::string& fileName = "Loose.bsi") {
        SkinDocument doc;
        doc.SetSkinName("Loose");
        doc.SetSkinAuthor("Someone");
        doc.SetPicture(SkinSide::Send, "s.bmp", "");
        doc.SetPicture(SkinSide::Receive, "r.bmp", "");
        doc.AssignArea(SkinSide::Send, 2, {385, 865, 300, 200});       // Send All at 100, 100
        doc.AssignArea(SkinSide::Receive, 7, {6235, 1065, 400, 150});  // Receive Close at 100, 300
        const std::string path = folder + "/" + fileName;
        fs::create_directories(folder);
        WriteSkinInformation(doc, path, platform);
        PutBytes(folder + "/s.bmp", PictureBytes(3));
        PutBytes(folder + "/r.bmp", PictureBytes(4));
        return path;
    }
    int VisibleBoxes(SkinSide side) const {
        int n = 0;
        for (const BoxElement& b : editor.Surface().Boxes(side)) n += b.visible ? 1 : 0;
        return n;
    }
};

TEST_F(LoadingTest, PackageMadeByCreationComesBackWhole) {
    SkinDocument original;
    {
        MakeFullSkin();
        original = editor.Document();
        editor.ResetEditor();
    }
    const std::string package = CreatePackage();
    Choose(package);
    LoadSkin(editor, platform);

    ASSERT_EQ(platform.openDialogs.size(), 1u);
    EXPECT_EQ(platform.openDialogs[0].filter, "Brindleway Skin Files (*.bsz; *.bsi)|*.bsz; *.bsi|");
    EXPECT_EQ(platform.openDialogs[0].flags, 4);
    EXPECT_EQ(platform.openDialogs[0].filterIndex, 1);
    ASSERT_EQ(platform.messages.size(), 1u);
    ExpectMessage(0, kLoadedText, "Brindleway - Skin Framewright", MessageIcon::Information, MessageButtons::Ok);

    // Unpacked into the time-stamped folder; pictures shown from there, Send first.
    const std::string folder = StampFolder() + "/";
    EXPECT_EQ(platform.log, (Log{"open dialog", "hourglass on", "input off", "picLoading shown",
                                 "load picture " + folder + "send.bmp", "load picture " + folder + "receive.bmp",
                                 "hourglass off", "picLoading hidden", "input on",
                                 "message Brindleway - Skin Framewright"}));
    EXPECT_EQ(Bytes(folder + "send.bmp"), PictureBytes(1));
    EXPECT_EQ(Bytes(folder + "receive.bmp"), PictureBytes(2));
    ExpectIdle();

    const SkinDocument& doc = editor.Document();
    EXPECT_EQ(doc.SkinName(), "My Skin");
    EXPECT_EQ(doc.SkinAuthor(), "Ada Designer");
    EXPECT_EQ(doc.PictureFileName(SkinSide::Send), "send.bmp");
    EXPECT_EQ(doc.PicturePath(SkinSide::Send), folder + "send.bmp");
    EXPECT_EQ(doc.PictureFileName(SkinSide::Receive), "receive.bmp");
    EXPECT_EQ(doc.PicturePath(SkinSide::Receive), folder + "receive.bmp");
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        for (const ColourEntry& e : ColourEntries(side)) {
            EXPECT_EQ(doc.Colour(e.field, e.role), TestColour(e.field, e.role)) << e.key;
        }
        for (AreaKind k = 0; k < kAreaKinds; ++k) {
            EXPECT_TRUE(doc.KindUsed(side, k));
            EXPECT_EQ(doc.Area(side, k), original.Area(side, k)) << KindInfo(side, k).areaName;
            EXPECT_FALSE(editor.Surface().menuEnabled[SideIndex(side)][k]);
        }
        EXPECT_EQ(doc.BoxCount(side), kAreaKinds);
    }
    // Back colours of the Receive date and sender are not in the file: they keep their start.
    EXPECT_EQ(doc.Colour(TextField::ReceiveDate, ColourRole::Back),
              SkinDocument::InitialColour(TextField::ReceiveDate, ColourRole::Back));
    // Text fields show their labels on their areas; buttons show their boxes.
    const AreaRect users = doc.Area(SkinSide::Send, 0);
    EXPECT_EQ(editor.Surface().Label(TextField::SendUsers).rect,
              (RectF{float(users.Left), float(users.Top), float(users.Width), float(users.Height)}));
    EXPECT_EQ(VisibleBoxes(SkinSide::Send), 6);
    EXPECT_EQ(VisibleBoxes(SkinSide::Receive), 5);
    EXPECT_EQ(editor.Surface().currentSelection, Selection::Box(SkinSide::Receive, 7));
    EXPECT_EQ(editor.Surface().currSelText, "Current Selection: Receive Close");

    // The screen showed the loaded skin before the success message came up.
    ASSERT_FALSE(view.seen.empty());
    EXPECT_EQ(view.seen.back().skinName, "My Skin");
    EXPECT_EQ(view.seen.back().messagesBefore, 0u);
}

TEST_F(LoadingTest, LoadingTwiceLeavesNothingOfTheFirstSkin) {
    const std::string package = CreatePackage();
    Choose(package);
    LoadSkin(editor, platform);
    ASSERT_EQ(platform.messages.back().text, kLoadedText);

    Choose(WriteLooseSkin(Path("loose")));
    LoadSkin(editor, platform);
    ASSERT_EQ(platform.messages.back().text, kLoadedText);
    const SkinDocument& doc = editor.Document();
    EXPECT_EQ(doc.SkinName(), "Loose");
    EXPECT_EQ(doc.PicturePath(SkinSide::Send), Path("loose") + "/s.bmp");
    EXPECT_EQ(doc.Colour(TextField::SendUsers, ColourRole::Back),
              SkinDocument::InitialColour(TextField::SendUsers, ColourRole::Back));
    // Every kind of the loose file is written, so all come back; only two have a size, and
    // the never-drawn ones are used, empty and at the surface origin.
    EXPECT_EQ(doc.Area(SkinSide::Send, 2), (AreaRect{385, 865, 300, 200}));
    EXPECT_EQ(doc.Area(SkinSide::Send, 0), (AreaRect{0, 0, 0, 0}));
    EXPECT_EQ(doc.Area(SkinSide::Receive, 7), (AreaRect{6235, 1065, 400, 150}));
    EXPECT_EQ(doc.BoxCount(SkinSide::Send), kAreaKinds);
    EXPECT_TRUE(doc.KindUsed(SkinSide::Receive, 0));
    EXPECT_FALSE(editor.Surface().menuEnabled[1][0]);
    EXPECT_EQ(editor.Surface().Label(TextField::ReceiveDate).rect, (RectF{0, 0, 0, 0}));
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        for (const BoxElement& b : editor.Surface().Boxes(side)) {  // nothing of the first skin shows
            EXPECT_TRUE(!b.visible || b.rect.Width == 0 || b.rect.Width == 300 || b.rect.Width == 400);
        }
    }
    WriteSkinInformation(doc, Path("again.bsi"), platform);  // saving again writes the same values
    EXPECT_EQ(ReadINI("Recieve Date", "Left", Path("again.bsi")), "-6135");
    EXPECT_EQ(ReadINI("Recieve Date", "Top", Path("again.bsi")), "-765");
    EXPECT_EQ(ReadINI("Send All", "Left", Path("again.bsi")), "100");

    // The second package load goes into a folder of its own.
    Choose(package);
    LoadSkin(editor, platform);
    EXPECT_EQ(platform.messages.back().text, kLoadedText);
    EXPECT_EQ(editor.Document().PicturePath(SkinSide::Send), StampFolder() + "0/send.bmp");

    // An unreadable picture fails after the Send side was cleared; Receive is not reached.
    platform.picturesLoad = false;
    Choose(WriteLooseSkin(Path("loose")));
    LoadSkin(editor, platform);
    EXPECT_EQ(platform.messages.back().title, "Skin Load Error");
    EXPECT_EQ(editor.Document().SkinName(), "Loose");
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Send), 0);
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Receive), kAreaKinds);
    ExpectIdle();
}

TEST_F(LoadingTest, AreaValuesAreLenientAndEmptySectionsRestoreNothing) {
    const std::string bsi = WriteLooseSkin(Path("loose"));
    WriteINI("Send All", "Left", "12abc", bsi);
    WriteINI("Send All", "Top", "", bsi);            // empty counts as 0
    WriteINI("Send None", "Width", "1e3", bsi);
    for (const char* key : {"Left", "Top", "Width", "Height"}) WriteINI("Send Cut", key, "", bsi);
    WriteINI("Recieve Yes", "Left", "", bsi);        // some values present: restored
    WriteINI("Recieve Yes", "Top", "", bsi);
    Choose(bsi);
    LoadSkin(editor, platform);
    ASSERT_EQ(platform.messages.back().text, kLoadedText);

    const SkinDocument& doc = editor.Document();
    EXPECT_EQ(doc.Area(SkinSide::Send, 2), (AreaRect{285 + 12, 765 + 0, 300, 200}));
    EXPECT_EQ(doc.Area(SkinSide::Send, 3).Width, 1000);
    EXPECT_FALSE(doc.KindUsed(SkinSide::Send, 4));  // the empty section
    EXPECT_TRUE(editor.Surface().menuEnabled[0][4]);
    EXPECT_EQ(doc.BoxCount(SkinSide::Send), kAreaKinds - 1);
    EXPECT_TRUE(doc.KindUsed(SkinSide::Receive, 4));
    EXPECT_EQ(doc.Area(SkinSide::Receive, 4), (AreaRect{6135, 765, 0, 0}));
}

TEST_F(LoadingTest, ColourValuesAreStrictAndTheFailureKeepsWhatWasRestored) {
    const std::string bsi = WriteLooseSkin(Path("loose"));
    WriteINI("Recieve Colours", "Sender Text Colour", "12abc", bsi);
    Choose(bsi);
    LoadSkin(editor, platform);

    ASSERT_EQ(platform.messages.size(), 1u);
    ExpectMessage(0, kLoadErrorText, "Skin Load Error", MessageIcon::Exclamation, MessageButtons::Ok);
    EXPECT_EQ(Log(platform.log.end() - 4, platform.log.end()),
              (Log{"hourglass off", "picLoading hidden", "input on", "message Skin Load Error"}));
    ExpectIdle();
    // Name, the Send side, the Receive picture and three of its colours stay; no Receive area.
    const SkinDocument& doc = editor.Document();
    EXPECT_EQ(doc.SkinName(), "Loose");
    EXPECT_TRUE(doc.KindUsed(SkinSide::Send, 2));
    EXPECT_EQ(doc.PictureFileName(SkinSide::Receive), "r.bmp");
    EXPECT_EQ(doc.BoxCount(SkinSide::Receive), 0);
    EXPECT_EQ(view.seen.back().skinName, "Loose");

    // An empty colour fails just the same.
    platform.messages.clear();
    WriteINI("Recieve Colours", "Sender Text Colour", "", bsi);
    Choose(bsi);
    LoadSkin(editor, platform);
    EXPECT_EQ(MessageTitles(), (std::vector<std::string>{"Skin Load Error"}));
}

TEST_F(LoadingTest, InvalidPackageChangesNothing) {
    MakeFullSkin();
    const SkinDocument before = editor.Document();
    PutBytes(Path("out/broken.bsz"), "<FILETRANSFER>Brindleway File Transfer x</FILETRANSFER>\r\n");
    Choose(Path("out/broken.bsz"));
    platform.log.clear();
    LoadSkin(editor, platform);

    ASSERT_EQ(platform.messages.size(), 1u);
    ExpectMessage(0, "Invalid Skin Package File.\r\nCannot load Skin Information.", "Brindleway - Skin Framewright",
                  MessageIcon::Exclamation, MessageButtons::Ok);
    EXPECT_EQ(platform.log, (Log{"open dialog", "hourglass on", "input off", "picLoading shown",
                                 "message Brindleway - Skin Framewright", "hourglass off", "picLoading hidden",
                                 "input on"}));
    ExpectIdle();
    const SkinDocument& doc = editor.Document();
    EXPECT_EQ(doc.SkinName(), before.SkinName());
    EXPECT_EQ(doc.PicturePath(SkinSide::Send), before.PicturePath(SkinSide::Send));
    for (AreaKind k = 0; k < kAreaKinds; ++k) EXPECT_EQ(doc.Area(SkinSide::Receive, k), before.Area(SkinSide::Receive, k));
    EXPECT_EQ(doc.BoxCount(SkinSide::Send), kAreaKinds);
}

TEST_F(LoadingTest, CancelledDialogIsSilentAndCapitalBszIsAnInformationFile) {
    MakeFullSkin();
    LoadSkin(editor, platform);
    EXPECT_TRUE(platform.messages.empty());
    ExpectIdle();
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Receive), kAreaKinds);

    Choose(WriteLooseSkin(Path("loose"), "SKIN.BSZ"));
    LoadSkin(editor, platform);
    EXPECT_EQ(platform.messages.back().text, kLoadedText);
    EXPECT_EQ(editor.Document().SkinName(), "Loose");
    EXPECT_EQ(platform.picturesShown.front().second, Path("loose") + "/s.bmp");
    EXPECT_TRUE(fs::is_empty(platform.tempFolder));  // nothing was unpacked
}

TEST_F(LoadingTest, RestoreObjectAreaReplaysOneArea) {
    // Send is 1, anything else Receive; the kind is text, rounded halves to even.
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "2", "100", "200", "300", "150"));
    EXPECT_EQ(editor.Document().Area(SkinSide::Send, 2), (AreaRect{385, 965, 300, 150}));
    EXPECT_TRUE(RestoreObjectArea(editor, 7, "2.5", "10", "10", "50", "50"));
    EXPECT_TRUE(editor.Document().KindUsed(SkinSide::Receive, 2));
    // An area of any size comes back, even beyond the 45-twip drag threshold.
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "5", "0", "0", "1", "1"));
    EXPECT_EQ(editor.Document().Area(SkinSide::Send, 5), (AreaRect{285, 765, 1, 1}));
    // A used kind is named again, as when the designer picks a disabled item.
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "2", "0", "0", "60", "60"));
    EXPECT_EQ(editor.Document().Area(SkinSide::Send, 2), (AreaRect{285, 765, 60, 60}));
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Send), 3);

    // All four empty: nothing at all, not even a box.
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "3", "", "", "", ""));
    EXPECT_FALSE(editor.Document().KindUsed(SkinSide::Send, 3));
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Send), 3);
    // A kind outside 0..7 changes nothing; a kind that is no number at all is kind 0.
    EXPECT_FALSE(RestoreObjectArea(editor, 1, "8", "0", "0", "60", "60"));
    EXPECT_FALSE(RestoreObjectArea(editor, 1, "7.5", "0", "0", "60", "60"));
    EXPECT_FALSE(RestoreObjectArea(editor, 1, "-1", "0", "0", "60", "60"));
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Send), 3);
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "abc", "0", "0", "60", "60"));
    EXPECT_TRUE(editor.Document().KindUsed(SkinSide::Send, 0));
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Send), 4);
    // Values far beyond the surface do not break the replay.
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "6", "1e300", "-1e300", "1e300", "5"));
    EXPECT_TRUE(editor.Document().KindUsed(SkinSide::Send, 6));
}

}  // namespace
}  // namespace skin::testing
