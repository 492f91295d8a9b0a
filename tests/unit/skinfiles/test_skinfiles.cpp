// Package creation and skin loading through the scripted platform, with real files under a
// fresh folder per test that also holds the platform's temporary folder.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "bwzip.h"
#include "editor.h"
#include "fakeplatform.h"
#include "ini.h"
#include "packagenames.h"
#include "packagesupport.h"
#include "scratchfolder.h"
#include "skininformation.h"
#include "skinloading.h"
#include "skinpackagecreation.h"

namespace skin::testing {
namespace {

namespace fs = std::filesystem;
using Log = std::vector<std::string>;
using Said = std::tuple<std::string, std::string, MessageIcon, MessageButtons>;

const std::string kSuccessText = "Brindleway Skin Package Created Successfully!\r\n\r\nCreate Another?";
const std::string kNoPicturesText = "You must create both the Send and Receive skin before creating the skin package.";
const std::string kFailureText = "An Error occured while creating the script file.\r\nVerify your settings and try again.";
const std::string kLoadTitle = "Brindleway - Skin Framewright";
const std::string kLoadedText = "Skin loaded successfully!";

// For every refresh, the skin name and how many messages had been shown by then.
struct NotingView : SurfaceView {
    explicit NotingView(const FakePlatform& p) : platform(p) {}
    const FakePlatform& platform;
    std::vector<std::pair<std::string, std::size_t>> seen;
    void SurfaceChanged(const EditorSurface&, const SkinDocument& d) override { seen.emplace_back(d.SkinName(), platform.messages.size()); }
};

class SkinFilesTest : public ScratchFolderTest {
protected:
    FakePlatform platform;
    NotingView view{platform};
    Editor editor{platform, &view};

    void SetUp() override {
        ScratchFolderTest::SetUp();
        fs::create_directories(folder_ / "tmp");
        fs::create_directories(folder_ / "out");
        platform.tempFolder = Path("tmp/");
    }
    // The folder a run at the fake's clock makes under the temporary folder.
    std::string StampFolder() const { return platform.tempFolder + "18112026142633"; }
    void ChooseSave(const std::string& path) { platform.saveAnswers.push_back(FileChoice{path, fs::path(path).filename()}); }
    void ChooseOpen(const std::string& path) { platform.openAnswers.push_back(FileChoice{path, fs::path(path).filename()}); }
    // Every byte value, CR and LF included, in a side-specific order.
    static std::string PictureBytes(int seed) {
        std::string bytes = "BM";
        for (int i = 0; i < 3000; ++i) bytes.push_back(static_cast<char>((i * (2 * seed + 1) + seed) & 0xFF));
        return bytes;
    }
    static OleColour TestColour(TextField field, ColourRole role) {
        return 0x00102030 + 0x111 * static_cast<int>(field) + (role == ColourRole::Text ? 0x50000 : 0);
    }

    // Pictures, name, author, ten colours and sixteen different areas, each dragged and named
    // through the name menu.
    void MakeFullSkin() {
        PutFileBytes(Path("pictures/send.bmp"), PictureBytes(1));
        PutFileBytes(Path("pictures/receive.bmp"), PictureBytes(2));
        editor.SetSidePicture(SkinSide::Send, Path("pictures/send.bmp"), "send.bmp");
        editor.SetSidePicture(SkinSide::Receive, Path("pictures/receive.bmp"), "receive.bmp");
        editor.SetSkinName("My Skin");
        editor.SetSkinAuthor("Ada Designer");
        for (int f = 0; f < kTextFields; ++f) {
            for (ColourRole r : {ColourRole::Back, ColourRole::Text}) editor.SetColour(TextField(f), r, TestColour(TextField(f), r));
        }
        for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
            for (AreaKind k = 0; k < kAreaKinds; ++k) {  // all inside their pictures, all different
                const float left = 90.0f + 300 * k, top = (side == SkinSide::Send ? 120.0f : 150.0f) + 210 * k;
                const float right = left + 255 + 15 * k, bottom = top + 165 + 15 * k;
                platform.menuAnswers.push_back(k);
                editor.BeginArea(side, left, top);
                editor.ExtendArea(side, right, bottom);
                editor.EndArea(side, right, bottom);
            }
        }
        platform.log.clear();
    }
    // A loose information file with Send All at 100, 100 and Receive Close at 100, 300, and its pictures.
    std::string WriteLooseSkin(const std::string& fileName = "Loose.bsi") {
        SkinDocument doc;
        doc.SetSkinName("Loose");
        doc.SetPicture(SkinSide::Send, "s.bmp", "");
        doc.SetPicture(SkinSide::Receive, "r.bmp", "");
        doc.AssignArea(SkinSide::Send, 2, {385, 865, 300, 200});
        doc.AssignArea(SkinSide::Receive, 7, {6235, 1065, 400, 150});
        PutFileBytes(Path("loose/s.bmp"), PictureBytes(3));
        PutFileBytes(Path("loose/r.bmp"), PictureBytes(4));
        WriteSkinInformation(doc, Path("loose/" + fileName), platform);
        return Path("loose/" + fileName);
    }

    Said Message(std::size_t i) const {
        const FakePlatform::Message& m = platform.messages.at(i);
        return {m.text, m.title, m.icon, m.buttons};
    }
    std::vector<std::string> MessageTitles() const {
        std::vector<std::string> titles;
        for (const auto& m : platform.messages) titles.push_back(m.title);
        return titles;
    }
};

using CreationTest = SkinFilesTest;
using LoadingTest = SkinFilesTest;

TEST_F(CreationTest, ChecksRunInTheirOrderPictureNameAuthor) {
    CreateSkinPackage(editor, platform);  // everything missing: only the picture message
    editor.SetSidePicture(SkinSide::Send, "/x/s.bmp", "s.bmp");  // one picture is not enough
    CreateSkinPackage(editor, platform);
    editor.SetSidePicture(SkinSide::Receive, "/x/r.bmp", "r.bmp");
    CreateSkinPackage(editor, platform);
    editor.SetSkinName(" ");  // blanks only is a name
    CreateSkinPackage(editor, platform);

    const std::string title = "Package Creation Error";
    EXPECT_EQ(Message(0), (Said{kNoPicturesText, title, MessageIcon::Information, MessageButtons::Ok}));
    EXPECT_EQ(Message(2), (Said{"You must specify a skin name.", title, MessageIcon::Information, MessageButtons::Ok}));
    EXPECT_EQ(Message(3), (Said{"You must specify the skin author.", title, MessageIcon::Information, MessageButtons::Ok}));
    EXPECT_EQ(platform.log, (Log{"message " + title, "load picture /x/s.bmp", "message " + title, "load picture /x/r.bmp",
                                 "message " + title, "focus txtSkinName", "message " + title, "focus txtSkinAuthor"}));
}

TEST_F(CreationTest, FileTitlesAreAskedForAgainUntilValidThenThePackageIsWritten) {
    MakeFullSkin();
    // Titles count characters, not bytes, whatever the extension; a blank in the folder is fine.
    const std::string accepted = Path("out/with blanks/\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9\u00e9abc");
    fs::create_directories(Path("out/with blanks"));
    ChooseSave(Path("out/MYSKIN012.bsz"));  // 13 characters
    ChooseSave(Path("out/my skin.bsz"));
    ChooseSave(accepted);                   // 12 characters, the longest accepted
    platform.messageAnswers = {MessageAnswer::Ok, MessageAnswer::Ok, MessageAnswer::No};
    CreateSkinPackage(editor, platform);

    const std::string alert = "Package Name Alert";
    EXPECT_EQ(Message(0), (Said{"The package file name must be a maximum of 8 characters.\r\nPlease specify a smaller name.",
                                alert, MessageIcon::Information, MessageButtons::Ok}));
    EXPECT_EQ(Message(1), (Said{"The package file name must not contain any spaces.\r\nPlease remove all spaces from the name.",
                                alert, MessageIcon::Information, MessageButtons::Ok}));
    EXPECT_EQ(Message(2), (Said{kSuccessText, "Ostervale Skin Fwt.", MessageIcon::Exclamation, MessageButtons::YesNo}));
    EXPECT_EQ(platform.log, (Log{"save dialog", "message " + alert, "save dialog", "message " + alert, "save dialog",
                                 "hourglass on", "input off", "picCreating shown", "hourglass off", "input on",
                                 "picCreating hidden", "message Ostervale Skin Fwt."}));
    EXPECT_GT(platform.pendingEventCalls, 0);
    EXPECT_TRUE(fs::is_empty(platform.tempFolder));
    EXPECT_EQ(editor.Document().SkinName(), "My Skin");  // No to "Create Another?" keeps the skin
    // The root folder is named by the skin name as typed, the information file by the name without blanks.
    fs::create_directories(Path("check"));
    BwZip zip;
    std::string bsi = "keep the stored root name";
    ASSERT_TRUE(zip.UnZip(accepted, Path("check/"), false, true, &bsi)) << zip.LastError();
    EXPECT_EQ(fs::path(zip.UnpackedFolder()).parent_path().filename(), "My Skin");
    EXPECT_EQ(ReadINI("Global", "Skin Author", zip.UnpackedFolder() + "MySkin.bsi"), "Ada Designer");
}

// Overwrite answered No and a cancelled dialog write nothing and end quietly; every failure
// ends the busy state with the failure message, and what the run made stays for a look.
TEST_F(CreationTest, OverwriteNoCancelAndTheFailurePath) {
    MakeFullSkin();
    PutFileBytes(Path("out/OLD.bsz"), "an older package");
    ChooseSave(Path("out/OLD.bsz"));
    platform.messageAnswers.push_back(MessageAnswer::No);
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(Message(0), (Said{"The file you have specified already exists.\r\nOverwrite?", "Ostervale Skin Fwt.",
                                MessageIcon::Question, MessageButtons::YesNo}));
    EXPECT_EQ(platform.log, (Log{"save dialog", "hourglass on", "input off", "picCreating shown",
                                 "message Ostervale Skin Fwt.", "hourglass off", "input on", "picCreating hidden"}));
    EXPECT_EQ(FileBytes(Path("out/OLD.bsz")), "an older package");
    ChooseSave(Path("out/TOOLONGNAME.bsz"));  // then the dialog is cancelled
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(MessageTitles(), (std::vector<std::string>{"Ostervale Skin Fwt.", "Package Name Alert"}));
    EXPECT_TRUE(fs::is_empty(platform.tempFolder));
    platform.messages.clear();

    auto expectFailure = [&](const std::vector<std::string>& titles) {
        EXPECT_EQ(MessageTitles(), titles);
        EXPECT_EQ(Message(titles.size() - 1), (Said{kFailureText, "Script Creation Error", MessageIcon::Information,
                                                     MessageButtons::Ok}));
        EXPECT_EQ(Log(platform.log.end() - 4, platform.log.end()),
                  (Log{"hourglass off", "input on", "picCreating hidden", "message Script Creation Error"}));
        platform.messages.clear();
    };
    // A folder left by a failed run in the same second; the old package, deleted after Yes, stays gone.
    PutFileBytes(StampFolder() + "/MySkin.bsi", "left behind");
    ChooseSave(Path("out/OLD.bsz"));
    CreateSkinPackage(editor, platform);
    expectFailure({"Ostervale Skin Fwt.", "Script Creation Error"});
    EXPECT_EQ(FileBytes(StampFolder() + "/MySkin.bsi"), "left behind");
    EXPECT_FALSE(fs::exists(Path("out/OLD.bsz")));

    // The container cannot read a picture: never reported as success.
    fs::remove_all(StampFolder());
    fs::remove(Path("pictures/receive.bmp"));
    ChooseSave(Path("out/SKIN.bsz"));
    CreateSkinPackage(editor, platform);
    expectFailure({"Script Creation Error"});
    EXPECT_FALSE(fs::exists(Path("out/SKIN.bsz")));
    EXPECT_TRUE(fs::exists(StampFolder() + "/MySkin.bsi"));
    EXPECT_EQ(editor.Document().SkinName(), "My Skin");

}

// A platform that fails where nothing is expected to: its clock, its picture loading.
struct FailingPlatform : FakePlatform {
    bool clockFails = false, picturesFail = false;
    LocalDateTime Now() override {
        if (clockFails) throw std::runtime_error("no clock");
        return FakePlatform::Now();
    }
    PictureId LoadPicture(SkinSide side, const std::string& path) override {
        if (picturesFail) throw std::bad_alloc();
        return FakePlatform::LoadPicture(side, path);
    }
};

// An unexpected failure takes the operation's own failure path: the busy state ends, its
// message shows, and no package is left behind.
using UnexpectedFailures = ScratchFolderTest;
TEST_F(UnexpectedFailures, EndCreationAndLoadingOnTheirFailurePaths) {
    FailingPlatform platform;
    Editor editor{platform, nullptr};
    const fs::path root = folder_;
    fs::create_directories(root / "tmp");
    platform.tempFolder = Path("tmp/");
    PutFileBytes(root / "s.bmp", "BM");
    editor.SetSidePicture(SkinSide::Send, (root / "s.bmp").string(), "s.bmp");
    editor.SetSidePicture(SkinSide::Receive, (root / "s.bmp").string(), "s.bmp");
    editor.SetSkinName("Blue");
    editor.SetSkinAuthor("Ada");
    platform.clockFails = true;
    platform.saveAnswers.push_back(FileChoice{(root / "BLUE.bsz").string(), "BLUE.bsz"});
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(Log(platform.log.end() - 4, platform.log.end()),
              (Log{"hourglass off", "input on", "picCreating hidden", "message Script Creation Error"}));
    EXPECT_FALSE(fs::exists(root / "BLUE.bsz"));

    platform.clockFails = false;
    platform.saveAnswers.push_back(FileChoice{(root / "BLUE.bsz").string(), "BLUE.bsz"});
    CreateSkinPackage(editor, platform);
    ASSERT_EQ(platform.messages.back().text, kSuccessText);
    platform.picturesFail = true;
    platform.openAnswers.push_back(FileChoice{(root / "BLUE.bsz").string(), "BLUE.bsz"});
    LoadSkin(editor, platform);
    EXPECT_EQ(Log(platform.log.end() - 4, platform.log.end()),
              (Log{"hourglass off", "picLoading hidden", "input on", "message Skin Load Error"}));
}

// Names the client on Windows could not use, or that Windows-1252 cannot hold, are refused
// before the save dialog, with the name and what to change; nothing is written.
TEST_F(CreationTest, NamesAPackageCannotCarryAreRefusedBeforeAnythingIsWritten) {
    MakeFullSkin();
    const std::string title = "Package Creation Error";
    editor.SetSkinName("AC\\DC");
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(Message(0), (Said{"The skin name \"AC\\DC\" contains the character \"\\\", which Windows does not allow "
                                "in file names.\r\nPlease change the skin name.",
                                title, MessageIcon::Information, MessageButtons::Ok}));
    EXPECT_EQ(platform.log, (Log{"message " + title, "focus txtSkinName"}));

    editor.SetSkinName("C O N");  // its information file would be CON.bsi
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(platform.messages.back().text,
              "The skin name \"C O N\" gives the information file name \"CON.bsi\", which is a name Windows reserves "
              "for a device.\r\nPlease change the skin name.");

    editor.SetSkinName("My Skin");
    editor.SetSkinAuthor("\u0410\u043d\u0430");  // would be written as "???"
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(platform.messages.back().text, "The author \"\u0410\u043d\u0430\" contains the character \"\u0410\", which the "
                                             "package's text (Windows-1252) cannot hold.\r\nPlease change the author.");
    EXPECT_EQ(platform.log.back(), "focus txtSkinAuthor");
    editor.SetSkinAuthor("Ana");
    for (const auto& [side, name] : {std::pair{SkinSide::Send, "logo\\v2.bmp"}, {SkinSide::Receive, "\u0416\u0430\u0440.bmp"}}) {
        editor.SetSidePicture(side, Path("pictures/send.bmp"), name);
        CreateSkinPackage(editor, platform);
        editor.SetSidePicture(side, Path("pictures/send.bmp"), "fine.bmp");
    }
    EXPECT_EQ(std::get<0>(Message(3)), "The file name of the Send picture, \"logo\\v2.bmp\", contains the character "
                                       "\"\\\", which Windows does not allow in file names.\r\nPlease rename the "
                                       "picture file and load it again.");
    EXPECT_EQ(std::get<0>(Message(4)), "The file name of the Receive picture, \"\u0416\u0430\u0440.bmp\", contains the "
                                       "character \"\u0416\", which the package's text (Windows-1252) cannot hold."
                                       "\r\nPlease rename the picture file and load it again.");
    EXPECT_EQ(platform.messages.size(), 5u);
    EXPECT_TRUE(platform.saveDialogs.empty());
    EXPECT_FALSE(platform.hourglass);
    EXPECT_TRUE(fs::is_empty(platform.tempFolder));
}

// The rules for names and texts in a package: what Windows cannot use as a file name, or what
// would not read back unchanged from the information file, is refused with the reason;
// everything else passes.
TEST(PackageNameFault, RefusesWhatTheClientCouldNotWriteAndNothingElse) {
    for (const char* safe : {"My Skin", "send skin.bmp", "recv-01.bmp", " leading blank", ".hidden", "caf\u00e9 \u20ac.bmp",
                             "CONSOLE.bmp", "COM10", "LPT0.bmp", "NULL", "a.b.c", "AC-DC", "\u0152uvre"}) {
        EXPECT_EQ(PackageNameFault(safe), std::nullopt) << safe;
    }
    const std::pair<const char*, const char*> refused[] = {
        {"AC\\DC", "contains the character \"\\\", which Windows does not allow in file names"},
        {"a/b", "contains the character \"/\", which Windows does not allow in file names"},
        {"what?", "contains the character \"?\", which Windows does not allow in file names"},
        {"tab\there", "contains a control character"},
        {"c1\u0081", "contains a control character"},
        {"del\x7f", "contains a control character"},
        {"\u65e5\u672c.bmp", "contains the character \"\u65e5\", which the package's text (Windows-1252) cannot hold"},
        {"bad\xff", "contains the character \"\xff\", which the package's text (Windows-1252) cannot hold"},
        {"name.", "ends in a dot, which Windows drops from file names"},
        {"..", "ends in a dot, which Windows drops from file names"},
        {"name ", "ends in a blank, which Windows drops from file names"},
        {"con", "is a name Windows reserves for a device"},
        {"Nul .bmp", "is a name Windows reserves for a device"},
        {"com1.tar.gz", "is a name Windows reserves for a device"},
        {"LPT\u00b9", "is a name Windows reserves for a device"},
        {"", "is empty"},
    };
    for (const auto& [name, fault] : refused) EXPECT_EQ(PackageNameFault(name), std::optional<std::string>(fault)) << name;
    for (const char* forbidden : {":", "*", "\"", "<", ">", "|"}) {
        EXPECT_NE(PackageNameFault(std::string("a") + forbidden + "b"), std::nullopt) << forbidden;
        EXPECT_EQ(SkinTextFault(std::string("a") + forbidden + "b"), std::nullopt) << forbidden;
    }

    for (const std::string& text : {std::string(), std::string("Ostervale \"Studio\""), std::string("caf\u00e9"),
                                    std::string(254, 'x')}) {
        EXPECT_EQ(SkinTextFault(text), std::nullopt) << text;
    }
    const std::pair<std::string, const char*> unreadable[] = {
        {" Ana", "begins with a blank, which the skin information file drops"},
        {"Ana ", "ends in a blank, which the skin information file drops"},
        {"'Ana'", "is set in quotation marks, which the skin information file drops"},
        {"line\nbreak", "contains a control character"},
        {"\u0410", "contains the character \"\u0410\", which the package's text (Windows-1252) cannot hold"},
        {std::string(254, 'x') + "\u00e9", "is longer than the 254 characters the skin information file keeps"},
    };
    for (const auto& [text, fault] : unreadable) EXPECT_EQ(SkinTextFault(text), std::optional<std::string>(fault)) << text;
}

// TMPDIR when it names an existing folder, otherwise /tmp/; a platform that fails falls back to it.
using TempFolder = ScratchFolderTest;
TEST_F(TempFolder, IsTmpdirWhenItIsAFolderElseTheSystemDefaultAndNeverThrows) {
    const fs::path folder = folder_;
    PutFileBytes(folder / "file", "x");
    const char* before = std::getenv("TMPDIR");
    const std::string kept = before != nullptr ? before : "";
    const std::pair<std::string, std::string> cases[] = {
        {folder.string(), folder.string() + "/"}, {folder.string() + "/", folder.string() + "/"},
        {(folder / "missing").string(), "/tmp/"}, {(folder / "file").string(), "/tmp/"}, {"", "/tmp/"}};
    for (const auto& [tmpdir, expected] : cases) {
        ::setenv("TMPDIR", tmpdir.c_str(), 1);
        EXPECT_EQ(SystemTempFolder(), expected) << tmpdir;
    }
    ::unsetenv("TMPDIR");
    EXPECT_EQ(SystemTempFolder(), "/tmp/");

    struct NoFolderPlatform : FakePlatform {
        std::string TempFolder() override { throw std::runtime_error("no folder"); }
    } failing;
    ::setenv("TMPDIR", folder.string().c_str(), 1);
    EXPECT_EQ(GetTempFolder(failing), folder.string() + "/");
    FakePlatform plain;
    plain.tempFolder = "/somewhere";  // the separator is added
    EXPECT_EQ(GetTempFolder(plain), "/somewhere/");
    if (before != nullptr) {
        ::setenv("TMPDIR", kept.c_str(), 1);
    } else {
        ::unsetenv("TMPDIR");
    }
}

TEST_F(LoadingTest, PackageMadeByCreationComesBackWhole) {
    MakeFullSkin();
    const SkinDocument made = editor.Document();
    ChooseSave(Path("out/MYSKIN.bsz"));
    CreateSkinPackage(editor, platform);  // Yes to "Create Another?": the editor starts anew
    ASSERT_EQ(editor.Document().SkinName(), "");
    EXPECT_EQ(platform.log.back(), "main window anew");
    EXPECT_FALSE(editor.Document().KindUsed(SkinSide::Send, 0));
    EXPECT_EQ(editor.Document().Colour(TextField::SendUsers, ColourRole::Back), kLightGrey);
    EXPECT_EQ(editor.Surface().currentSelection.kind, Selection::Kind::None);
    platform.log.clear();
    platform.messages.clear();
    ChooseOpen(Path("out/MYSKIN.bsz"));
    LoadSkin(editor, platform);

    EXPECT_EQ(Message(0), (Said{kLoadedText, kLoadTitle, MessageIcon::Information, MessageButtons::Ok}));
    // Unpacked into the time-stamped folder; pictures shown from there, Send first.
    const std::string folder = StampFolder() + "/";
    EXPECT_EQ(platform.log, (Log{"open dialog", "hourglass on", "input off", "picLoading shown",
                                 "load picture " + folder + "send.bmp", "load picture " + folder + "receive.bmp",
                                 "hourglass off", "picLoading hidden", "input on", "message " + kLoadTitle}));
    EXPECT_EQ(FileBytes(folder + "send.bmp"), PictureBytes(1));
    EXPECT_EQ(FileBytes(folder + "receive.bmp"), PictureBytes(2));

    const SkinDocument& doc = editor.Document();
    EXPECT_EQ(doc.SkinName(), "My Skin");
    EXPECT_EQ(doc.SkinAuthor(), "Ada Designer");
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
    // The screen showed the loaded skin before the message came up.
    EXPECT_EQ(view.seen.back(), (std::pair<std::string, std::size_t>{"My Skin", 0}));

    // Loaded again, in the same second: the same skin, not a second layer of boxes.
    const SkinDocument first = doc;
    ChooseOpen(Path("out/MYSKIN.bsz"));
    LoadSkin(editor, platform);
    EXPECT_EQ(platform.messages.back().text, kLoadedText);
    for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
        EXPECT_EQ(doc.BoxCount(side), kAreaKinds);
        for (AreaKind k = 0; k < kAreaKinds; ++k) EXPECT_EQ(doc.Area(side, k), first.Area(side, k));
    }
}

TEST_F(LoadingTest, AreaValuesAreLenientAndNothingOfTheEarlierSkinStays) {
    MakeFullSkin();
    const std::string bsi = WriteLooseSkin();
    WriteINI("Send All", "Left", "12abc", bsi);
    WriteINI("Send All", "Top", "", bsi);  // empty counts as 0
    WriteINI("Send None", "Width", "1e3", bsi);
    for (const char* key : {"Left", "Top", "Width", "Height"}) WriteINI("Send Cut", key, "", bsi);
    ChooseOpen(bsi);
    LoadSkin(editor, platform);
    ASSERT_EQ(platform.messages.back().text, kLoadedText);

    const SkinDocument& doc = editor.Document();
    EXPECT_EQ(doc.SkinAuthor(), "");
    EXPECT_EQ(doc.Colour(TextField::SendUsers, ColourRole::Back), kLightGrey);
    EXPECT_EQ(doc.Area(SkinSide::Send, 2), (AreaRect{285 + 12, 765 + 0, 300, 200}));
    EXPECT_EQ(doc.Area(SkinSide::Send, 3).Width, 1000);
    EXPECT_FALSE(doc.KindUsed(SkinSide::Send, 4));  // the empty section restores nothing
    EXPECT_EQ(doc.BoxCount(SkinSide::Send), kAreaKinds - 1);
    // Every other kind is in the file and comes back, empty at the surface origin when never drawn.
    EXPECT_TRUE(doc.KindUsed(SkinSide::Receive, 0));
    EXPECT_EQ(doc.Area(SkinSide::Receive, 0), AreaRect{});
    EXPECT_EQ(doc.Area(SkinSide::Receive, 7), (AreaRect{6235, 1065, 400, 150}));
}

TEST_F(LoadingTest, ColoursAreStrictAndAFailureKeepsWhatWasRestored) {
    const std::string bsi = WriteLooseSkin();
    for (const char* bad : {"12abc", ""}) {
        platform.messages.clear();
        WriteINI("Recieve Colours", "Sender Text Colour", bad, bsi);
        ChooseOpen(bsi);
        LoadSkin(editor, platform);
        EXPECT_EQ(platform.messages.size(), 1u);
        EXPECT_EQ(Message(0), (Said{"An Error has occured while loading the Skin file.\r\n\r\nSkin was not loaded.",
                                    "Skin Load Error", MessageIcon::Exclamation, MessageButtons::Ok}));
        EXPECT_EQ(Log(platform.log.end() - 4, platform.log.end()),
                  (Log{"hourglass off", "picLoading hidden", "input on", "message Skin Load Error"}));
        // Name, the Send side and the Receive picture stay; no Receive area.
        EXPECT_EQ(view.seen.back().first, "Loose");
        EXPECT_TRUE(editor.Document().KindUsed(SkinSide::Send, 2));
        EXPECT_EQ(editor.Document().PictureFileName(SkinSide::Receive), "r.bmp");
        EXPECT_EQ(editor.Document().BoxCount(SkinSide::Receive), 0);
    }
    // A picture that does not load fails as soon as the Send side was cleared.
    platform.picturesLoad = false;
    ChooseOpen(bsi);
    LoadSkin(editor, platform);
    EXPECT_EQ(platform.messages.back().title, "Skin Load Error");
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Send), 0);

    // An area beyond the 16-bit range cannot be restored, and is not stored clipped.
    platform.picturesLoad = true;
    for (const auto& [key, value] : {std::pair{"Width", "40000"}, {"Left", "1e400"}, {"Top", "-33000"}}) {
        const std::string wide = WriteLooseSkin("Wide.bsi");
        WriteINI("Send All", key, value, wide);
        ChooseOpen(wide);
        LoadSkin(editor, platform);
        EXPECT_EQ(platform.messages.back().title, "Skin Load Error") << key;
        EXPECT_FALSE(editor.Document().KindUsed(SkinSide::Send, 2)) << key;
    }
}

TEST_F(LoadingTest, InvalidPackageChangesNothingCancelIsSilentAndOnlyLowerCaseBszUnpacks) {
    MakeFullSkin();
    PutFileBytes(Path("out/broken.bsz"), "<FILETRANSFER>Brindleway File Transfer x</FILETRANSFER>\r\n");
    ChooseOpen(Path("out/broken.bsz"));
    LoadSkin(editor, platform);
    LoadSkin(editor, platform);  // cancelled

    EXPECT_EQ(Message(0), (Said{"Invalid Skin Package File.\r\nCannot load Skin Information.", kLoadTitle,
                                MessageIcon::Exclamation, MessageButtons::Ok}));
    EXPECT_EQ(platform.log, (Log{"open dialog", "hourglass on", "input off", "picLoading shown", "message " + kLoadTitle,
                                 "hourglass off", "picLoading hidden", "input on", "open dialog", "hourglass off",
                                 "picLoading hidden", "input on"}));
    EXPECT_EQ(editor.Document().SkinName(), "My Skin");
    EXPECT_EQ(editor.Document().PicturePath(SkinSide::Send), Path("pictures/send.bmp"));
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Receive), kAreaKinds);
    EXPECT_TRUE(editor.CanUndo());  // a load that did not happen leaves the history alone

    ChooseOpen(WriteLooseSkin("SKIN.BSZ"));
    LoadSkin(editor, platform);
    EXPECT_EQ(platform.messages.back().text, kLoadedText);
    EXPECT_EQ(editor.Document().PicturePath(SkinSide::Send), Path("loose/s.bmp"));
    EXPECT_TRUE(fs::is_empty(platform.tempFolder));
    EXPECT_FALSE(editor.CanUndo());  // a loaded skin starts the history anew
}

TEST_F(LoadingTest, RestoreObjectAreaReplaysOneArea) {
    // Send is 1, anything else Receive; the kind is text, rounded halves to even; any size comes back.
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "2", "100", "200", "1", "1"));
    EXPECT_EQ(editor.Document().Area(SkinSide::Send, 2), (AreaRect{385, 965, 1, 1}));
    EXPECT_TRUE(RestoreObjectArea(editor, 7, "2.5", "10", "10", "50", "50"));
    EXPECT_TRUE(editor.Document().KindUsed(SkinSide::Receive, 2));
    // A kind outside 0..7 changes nothing.
    for (const char* kind : {"8", "7.5", "-1"}) EXPECT_FALSE(RestoreObjectArea(editor, 1, kind, "0", "0", "60", "60"));
    EXPECT_EQ(editor.Document().BoxCount(SkinSide::Send), 1);
    // One that is no number at all is kind 0; values beyond 16 bits cannot be restored.
    EXPECT_FALSE(RestoreObjectArea(editor, 1, "abc", "1e300", "-1e300", "1e300", "5"));
    EXPECT_FALSE(editor.Document().KindUsed(SkinSide::Send, 0));
    EXPECT_TRUE(RestoreObjectArea(editor, 1, "abc", "32000", "0", "0", "5"));
    EXPECT_TRUE(editor.Document().KindUsed(SkinSide::Send, 0));
}

}  // namespace
}  // namespace skin::testing
