// Skin loading through the scripted platform: a package made by creation, hand-edited
// information files with lenient area values and strict colours, broken input, and the
// replay of single areas.

#include "ini.h"
#include "skinfilestest.h"
#include "skininformation.h"
#include "skinloading.h"
#include "skinpackagecreation.h"

namespace skin::testing {
namespace {

const std::string kLoadedText = "Skin loaded successfully!";

class LoadingTest : public SkinFilesTest {
protected:
    void Choose(const std::string& path) { platform.openAnswers.push_back(FileChoice{path, fs::path(path).filename()}); }

    // Packs the full test skin, answering Yes to "Create Another?" so the editor starts anew;
    // returns the document that was packed.
    SkinDocument CreatePackage(const std::string& package) {
        MakeFullSkin();
        const SkinDocument made = editor.Document();
        platform.saveAnswers.push_back(FileChoice{package, fs::path(package).filename()});
        platform.messageAnswers.push_back(MessageAnswer::Yes);
        CreateSkinPackage(editor, platform);
        EXPECT_EQ(editor.Document().SkinName(), "");
        platform.log.clear();
        platform.messages.clear();
        view.seen.clear();
        return made;
    }
    // A loose information file with Send All at 100, 100 and Receive Close at 100, 300, and its pictures.
    std::string WriteLooseSkin(const std::string& fileName = "Loose.bsi") {
        SkinDocument doc;
        doc.SetSkinName("Loose");
        doc.SetPicture(SkinSide::Send, "s.bmp", "");
        doc.SetPicture(SkinSide::Receive, "r.bmp", "");
        doc.AssignArea(SkinSide::Send, 2, {385, 865, 300, 200});
        doc.AssignArea(SkinSide::Receive, 7, {6235, 1065, 400, 150});
        PutBytes(Path("loose/s.bmp"), PictureBytes(3));
        PutBytes(Path("loose/r.bmp"), PictureBytes(4));
        WriteSkinInformation(doc, Path("loose/" + fileName), platform);
        return Path("loose/" + fileName);
    }
    int VisibleBoxes(SkinSide side) const {
        int n = 0;
        for (const BoxElement& b : editor.Surface().Boxes(side)) n += b.visible ? 1 : 0;
        return n;
    }
};

TEST_F(LoadingTest, PackageMadeByCreationComesBackWhole) {
    const SkinDocument made = CreatePackage(Path("out/MYSKIN.bsz"));
    Choose(Path("out/MYSKIN.bsz"));
    LoadSkin(editor, platform);

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
    EXPECT_EQ(doc.PicturePath(SkinSide::Receive), folder + "receive.bmp");
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        for (const ColourEntry& e : ColourEntries(side)) {
            EXPECT_EQ(doc.Colour(e.field, e.role), TestColour(e.field, e.role)) << e.key;
        }
        for (AreaKind k = 0; k < kAreaKinds; ++k) {
            EXPECT_TRUE(doc.KindUsed(side, k));
            EXPECT_EQ(doc.Area(side, k), made.Area(side, k)) << KindInfo(side, k).areaName;
            EXPECT_FALSE(editor.Surface().menuEnabled[SideIndex(side)][k]);
        }
        EXPECT_EQ(doc.BoxCount(side), kAreaKinds);
    }
    // Not in the file: the start colour stays.
    EXPECT_EQ(doc.Colour(TextField::ReceiveDate, ColourRole::Back),
              SkinDocument::InitialColour(TextField::ReceiveDate, ColourRole::Back));
    // Text fields show their labels on their areas; buttons show their boxes.
    const AreaRect users = doc.Area(SkinSide::Send, 0);
    EXPECT_EQ(editor.Surface().Label(TextField::SendUsers).rect,
              (RectF{float(users.Left), float(users.Top), float(users.Width), float(users.Height)}));
    EXPECT_EQ(VisibleBoxes(SkinSide::Send), 6);
    EXPECT_EQ(VisibleBoxes(SkinSide::Receive), 5);
    EXPECT_EQ(editor.Surface().currSelText, "Current Selection: Receive Close");
    // The screen showed the loaded skin before the message came up.
    ASSERT_FALSE(view.seen.empty());
    EXPECT_EQ(view.seen.back(), (std::pair<std::string, std::size_t>{"My Skin", 0}));
}

TEST_F(LoadingTest, AreaValuesAreLenientAndNothingOfAnEarlierSkinStays) {
    CreatePackage(Path("out/MYSKIN.bsz"));
    Choose(Path("out/MYSKIN.bsz"));
    LoadSkin(editor, platform);
    ASSERT_EQ(platform.messages.back().text, kLoadedText);

    const std::string bsi = WriteLooseSkin();
    WriteINI("Send All", "Left", "12abc", bsi);
    WriteINI("Send All", "Top", "", bsi);  // empty counts as 0
    WriteINI("Send None", "Width", "1e3", bsi);
    for (const char* key : {"Left", "Top", "Width", "Height"}) WriteINI("Send Cut", key, "", bsi);
    Choose(bsi);
    LoadSkin(editor, platform);
    ASSERT_EQ(platform.messages.back().text, kLoadedText);

    const SkinDocument& doc = editor.Document();
    EXPECT_EQ(doc.SkinName(), "Loose");
    EXPECT_EQ(doc.SkinAuthor(), "");
    EXPECT_EQ(doc.PicturePath(SkinSide::Send), Path("loose/s.bmp"));
    EXPECT_EQ(doc.Colour(TextField::SendUsers, ColourRole::Back), kLightGrey);
    EXPECT_EQ(doc.Area(SkinSide::Send, 2), (AreaRect{285 + 12, 765 + 0, 300, 200}));
    EXPECT_EQ(doc.Area(SkinSide::Send, 3).Width, 1000);
    EXPECT_FALSE(doc.KindUsed(SkinSide::Send, 4));  // the empty section restores nothing
    EXPECT_TRUE(editor.Surface().menuEnabled[0][4]);
    EXPECT_EQ(doc.BoxCount(SkinSide::Send), kAreaKinds - 1);
    // Every other kind is in the file and comes back, empty at the surface origin when never drawn.
    EXPECT_TRUE(doc.KindUsed(SkinSide::Receive, 0));
    EXPECT_EQ(doc.Area(SkinSide::Receive, 0), AreaRect{});
    EXPECT_EQ(doc.Area(SkinSide::Receive, 7), (AreaRect{6235, 1065, 400, 150}));
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        for (const BoxElement& b : editor.Surface().Boxes(side)) {
            EXPECT_TRUE(!b.visible || b.rect.Width == 0 || b.rect.Width == 300 || b.rect.Width == 400 ||
                        b.rect.Width == 1000);
        }
    }
}

TEST_F(LoadingTest, ColoursAreStrictAndAFailureKeepsWhatWasRestored) {
    const std::string bsi = WriteLooseSkin();
    for (const char* bad : {"12abc", ""}) {
        platform.messages.clear();
        WriteINI("Recieve Colours", "Sender Text Colour", bad, bsi);
        Choose(bsi);
        LoadSkin(editor, platform);
        ASSERT_EQ(platform.messages.size(), 1u);
        ExpectMessage(0, "An Error has occured while loading the Skin file.\r\n\r\nSkin was not loaded.",
                      "Skin Load Error", MessageIcon::Exclamation, MessageButtons::Ok);
        EXPECT_EQ(Log(platform.log.end() - 4, platform.log.end()),
                  (Log{"hourglass off", "picLoading hidden", "input on", "message Skin Load Error"}));
        ExpectIdle();
        // Name, the Send side and the Receive picture stay; no Receive area.
        EXPECT_EQ(editor.Document().SkinName(), "Loose");
        EXPECT_TRUE(editor.Document().KindUsed(SkinSide::Send, 2));
        EXPECT_EQ(editor.Document().PictureFileName(SkinSide::Receive), "r.bmp");
        EXPECT_EQ(editor.Document().BoxCount(SkinSide::Receive), 0);
        EXPECT_EQ(view.seen.back().first, "Loose");
    }
    // A picture that does not load fails as soon as the Send side was cleared.
    platform.picturesLoad = false;
    Choose(bsi);
    LoadSkin(editor, platform);
    EXPECT_EQ(platform.messages.back().title, "Skin Load Error");
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Send), 0);
}

TEST_F(LoadingTest, InvalidPackageChangesNothingAndCancelIsSilent) {
    MakeFullSkin();
    PutBytes(Path("out/broken.bsz"), "<FILETRANSFER>Brindleway File Transfer x</FILETRANSFER>\r\n");
    Choose(Path("out/broken.bsz"));
    platform.log.clear();
    LoadSkin(editor, platform);
    LoadSkin(editor, platform);  // cancelled

    ASSERT_EQ(platform.messages.size(), 1u);
    ExpectMessage(0, "Invalid Skin Package File.\r\nCannot load Skin Information.", "Brindleway - Skin Framewright",
                  MessageIcon::Exclamation, MessageButtons::Ok);
    EXPECT_EQ(platform.log, (Log{"open dialog", "hourglass on", "input off", "picLoading shown",
                                 "message Brindleway - Skin Framewright", "hourglass off", "picLoading hidden",
                                 "input on", "open dialog", "hourglass off", "picLoading hidden", "input on"}));
    ExpectIdle();
    EXPECT_EQ(editor.Document().SkinName(), "My Skin");
    EXPECT_EQ(editor.Document().PicturePath(SkinSide::Send), Path("pictures/send.bmp"));
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Receive), kAreaKinds);

    // Only a lower-case "bsz" ending is unpacked.
    Choose(WriteLooseSkin("SKIN.BSZ"));
    LoadSkin(editor, platform);
    EXPECT_EQ(platform.messages.back().text, kLoadedText);
    EXPECT_EQ(editor.Document().PicturePath(SkinSide::Send), Path("loose/s.bmp"));
    EXPECT_TRUE(fs::is_empty(platform.tempFolder));
}

TEST_F(LoadingTest, RestoreObjectAreaReplaysOneArea) {
    // Send is 1, anything else Receive; the kind is text, rounded halves to even; any size comes back.
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "2", "100", "200", "300", "150"));
    EXPECT_EQ(editor.Document().Area(SkinSide::Send, 2), (AreaRect{385, 965, 300, 150}));
    EXPECT_TRUE(RestoreObjectArea(editor, 7, "2.5", "10", "10", "50", "50"));
    EXPECT_TRUE(editor.Document().KindUsed(SkinSide::Receive, 2));
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "5", "0", "0", "1", "1"));
    EXPECT_EQ(editor.Document().Area(SkinSide::Send, 5), (AreaRect{285, 765, 1, 1}));
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "2", "0", "0", "60", "60"));  // a used kind is named again
    EXPECT_EQ(editor.Document().Area(SkinSide::Send, 2), (AreaRect{285, 765, 60, 60}));
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Send), 3);
    // A kind outside 0..7 changes nothing; one that is no number at all is kind 0.
    for (const char* kind : {"8", "7.5", "-1"}) EXPECT_FALSE(RestoreObjectArea(editor, 1, kind, "0", "0", "60", "60"));
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Send), 3);
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "abc", "0", "0", "60", "60"));
    EXPECT_TRUE(editor.Document().KindUsed(SkinSide::Send, 0));
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "6", "1e300", "-1e300", "1e300", "5"));
    EXPECT_TRUE(editor.Document().KindUsed(SkinSide::Send, 6));
}

}  // namespace
}  // namespace skin::testing
