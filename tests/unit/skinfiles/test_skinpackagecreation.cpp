// Package creation through the scripted platform, with real files under a per-test folder.

#include <sys/wait.h>

#include <cstdlib>

#include "bwzip.h"
#include "ini.h"
#include "skinfilestest.h"
#include "skinpackagecreation.h"

namespace skin::testing {
namespace {

using Log = std::vector<std::string>;

const std::string kSuccessText = "Brindleway Skin Package Created Successfully!\r\n\r\nCreate Another?";
const std::string kNoPicturesText = "You must create both the Send and Receive skin before creating the skin package.";
const std::string kFailureText = "An Error occured while creating the script file.\r\nVerify your settings and try again.";

class CreationTest : public SkinFilesTest {
protected:
    void Choose(const std::string& path) { platform.saveAnswers.push_back(FileChoice{path, fs::path(path).filename()}); }

    // Unpacks a package under its own root folder name into `into`; returns the root folder.
    std::string Unpack(const std::string& package, const std::string& into) {
        fs::create_directories(into);
        BwZip zip;
        std::string bsi = "keep the stored root name";
        EXPECT_TRUE(zip.UnZip(package, into, false, true, &bsi)) << zip.LastError();
        return zip.UnpackedFolder();
    }
};

TEST_F(CreationTest, ChecksRunInTheirOrderPictureNameAuthor) {
    CreateSkinPackage(editor, platform);  // everything missing: only the picture message
    ASSERT_EQ(platform.messages.size(), 1u);
    ExpectMessage(0, kNoPicturesText, "Package Creation Error", MessageIcon::Information, MessageButtons::Ok);

    editor.Document().SetPicture(SkinSide::Send, "s.bmp", "/x/s.bmp");  // one picture is not enough
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(platform.messages.back().text, kNoPicturesText);

    editor.Document().SetPicture(SkinSide::Receive, "r.bmp", "/x/r.bmp");
    CreateSkinPackage(editor, platform);
    ExpectMessage(2, "You must specify a skin name.", "Package Creation Error", MessageIcon::Information,
                  MessageButtons::Ok);
    EXPECT_EQ(platform.log.back(), "focus txtSkinName");

    editor.Document().SetSkinName(" ");  // blanks only is a name
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(platform.messages.back().text, "You must specify the skin author.");
    EXPECT_EQ(platform.log.back(), "focus txtSkinAuthor");

    EXPECT_EQ(platform.log, (Log{"message Package Creation Error", "message Package Creation Error",
                                 "message Package Creation Error", "focus txtSkinName",
                                 "message Package Creation Error", "focus txtSkinAuthor"}));
    EXPECT_TRUE(platform.saveDialogs.empty());
}

TEST_F(CreationTest, SuccessfulRunInOrderWithThePackageOnDisk) {
    MakeFullSkin();
    platform.log.clear();
    platform.messageAnswers.push_back(MessageAnswer::No);
    Choose(Path("out/MYSKIN01.bsz"));  // 12 characters: the longest title accepted
    CreateSkinPackage(editor, platform);

    ASSERT_EQ(platform.saveDialogs.size(), 1u);
    EXPECT_EQ(platform.saveDialogs[0].title, "Save Skin Package");
    EXPECT_EQ(platform.saveDialogs[0].filter, "Brindleway Skin ZIP Files (*.bsz)|*.bsz|All Files (*.*)|*.*|");
    EXPECT_EQ(platform.saveDialogs[0].flags, 4);
    EXPECT_EQ(platform.saveDialogs[0].filterIndex, 1);
    EXPECT_EQ(platform.log, (Log{"save dialog", "hourglass on", "input off", "picCreating shown", "hourglass off",
                                 "input on", "picCreating hidden", "message Ostervale Skin Fwt."}));
    ASSERT_EQ(platform.messages.size(), 1u);
    ExpectMessage(0, kSuccessText, "Ostervale Skin Fwt.", MessageIcon::Exclamation, MessageButtons::YesNo);
    ExpectIdle();
    EXPECT_GT(platform.pendingEventCalls, 0);

    EXPECT_TRUE(fs::is_empty(platform.tempFolder));
    // Root folder named by the skin name as typed, information file by the name without blanks.
    const std::string unpacked = Unpack(Path("out/MYSKIN01.bsz"), Path("check/"));
    EXPECT_EQ(fs::path(unpacked).parent_path().filename(), "My Skin");
    EXPECT_EQ(Bytes(unpacked + "send.bmp"), PictureBytes(1));
    EXPECT_EQ(Bytes(unpacked + "receive.bmp"), PictureBytes(2));
    EXPECT_EQ(ReadINI("Global", "Skin Name", unpacked + "MySkin.bsi"), "My Skin");
    EXPECT_EQ(ReadINI("Global", "Skin Author", unpacked + "MySkin.bsi"), "Ada Designer");
    EXPECT_EQ(ReadINI("Recieve OK", "Width", unpacked + "MySkin.bsi"), "435");

    // No to "Create Another?" kept the skin; Yes makes the editor anew.
    EXPECT_EQ(editor.Document().SkinName(), "My Skin");
    EXPECT_TRUE(editor.Document().KindUsed(SkinSide::Receive, 7));
    ASSERT_NE(editor.Surface().currentSelection.kind, Selection::Kind::None);
    Choose(Path("out/SKIN.bsz"));
    platform.messageAnswers.push_back(MessageAnswer::Yes);
    CreateSkinPackage(editor, platform);
    ASSERT_TRUE(fs::exists(Path("out/SKIN.bsz")));
    EXPECT_EQ(editor.Document().SkinName(), "");
    EXPECT_EQ(editor.Document().PictureFileName(SkinSide::Send), "");
    EXPECT_FALSE(editor.Document().KindUsed(SkinSide::Send, 0));
    EXPECT_EQ(editor.Surface().currentSelection.kind, Selection::Kind::None);
    EXPECT_EQ(editor.Surface().Boxes(SkinSide::Receive).size(), 1u);
    EXPECT_EQ(editor.Document().Colour(TextField::SendUsers, ColourRole::Back),
              SkinDocument::InitialColour(TextField::SendUsers, ColourRole::Back));
}

TEST_F(CreationTest, FileTitleRulesShowTheDialogAgain) {
    MakeFullSkin();
    platform.log.clear();
    Choose(Path("out/MYSKIN012.bsz"));      // 13 characters
    Choose(Path("out/my skin.bsz"));        // a blank
    Choose(Path("out/with blanks/myskin012"));  // 9 characters, no extension; blanks in the folder
    fs::create_directories(Path("out/with blanks"));
    platform.messageAnswers = {MessageAnswer::Ok, MessageAnswer::Ok, MessageAnswer::No};
    CreateSkinPackage(editor, platform);

    EXPECT_EQ(platform.saveDialogs.size(), 3u);
    ASSERT_EQ(platform.messages.size(), 3u);
    ExpectMessage(0, "The package file name must be a maximum of 8 characters.\r\nPlease specify a smaller name.",
                  "Package Name Alert", MessageIcon::Information, MessageButtons::Ok);
    ExpectMessage(1, "The package file name must not contain any spaces.\r\nPlease remove all spaces from the name.",
                  "Package Name Alert", MessageIcon::Information, MessageButtons::Ok);
    EXPECT_EQ(platform.messages[2].text, kSuccessText);
    // The refusals come before the busy state.
    EXPECT_EQ(Log(platform.log.begin(), platform.log.begin() + 5),
              (Log{"save dialog", "message Package Name Alert", "save dialog", "message Package Name Alert",
                   "save dialog"}));
    EXPECT_TRUE(fs::is_regular_file(Path("out/with blanks/myskin012")));
    EXPECT_FALSE(fs::exists(Path("out/MYSKIN012.bsz")));

    // Characters, not bytes: twelve letters with accents are accepted.
    Choose(Path("out/\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9.bsz"));
    platform.messageAnswers.push_back(MessageAnswer::No);
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(platform.messages.back().text, kSuccessText);

    // Refused, then the dialog is cancelled: nothing more is said or left.
    platform.messages.clear();
    Choose(Path("out/TOOLONGNAME.bsz"));
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(MessageTitles(), (std::vector<std::string>{"Package Name Alert"}));
    ExpectIdle();
    EXPECT_TRUE(fs::is_empty(platform.tempFolder));
}

TEST_F(CreationTest, OverwriteQuestion) {
    MakeFullSkin();
    PutBytes(Path("out/OLD.bsz"), "an older package");

    // No: nothing written, the window usable again; Yes replaces the old file.
    platform.log.clear();
    Choose(Path("out/OLD.bsz"));
    platform.messageAnswers.push_back(MessageAnswer::No);
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(platform.log, (Log{"save dialog", "hourglass on", "input off", "picCreating shown",
                                 "message Ostervale Skin Fwt.", "hourglass off", "input on", "picCreating hidden"}));
    ExpectMessage(platform.messages.size() - 1, "The file you have specified already exists.\r\nOverwrite?",
                  "Ostervale Skin Fwt.", MessageIcon::Question, MessageButtons::YesNo);
    EXPECT_EQ(Bytes(Path("out/OLD.bsz")), "an older package");
    EXPECT_TRUE(fs::is_empty(platform.tempFolder));
    ExpectIdle();

    Choose(Path("out/OLD.bsz"));
    platform.messageAnswers.push_back(MessageAnswer::Yes);
    platform.messageAnswers.push_back(MessageAnswer::No);
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(platform.messages.back().text, kSuccessText);
    EXPECT_EQ(Bytes(Path("out/OLD.bsz")).rfind("<SKINPACKAGE>Brindleway Skin Package ", 0), 0u);
}

TEST_F(CreationTest, FolderLeftByAFailedRunInTheSameSecondFails) {
    MakeFullSkin();
    PutBytes(StampFolder() + "/MySkin.bsi", "left behind");
    PutBytes(Path("out/OLD.bsz"), "an older package");
    Choose(Path("out/OLD.bsz"));
    platform.log.clear();
    CreateSkinPackage(editor, platform);  // Yes to the overwrite question by default

    ASSERT_EQ(MessageTitles(), (std::vector<std::string>{"Ostervale Skin Fwt.", "Script Creation Error"}));
    ExpectMessage(1, kFailureText, "Script Creation Error", MessageIcon::Information, MessageButtons::Ok);
    EXPECT_EQ(Log(platform.log.end() - 4, platform.log.end()),
              (Log{"hourglass off", "input on", "picCreating hidden", "message Script Creation Error"}));
    ExpectIdle();
    EXPECT_EQ(Bytes(StampFolder() + "/MySkin.bsi"), "left behind");
    EXPECT_FALSE(fs::exists(Path("out/OLD.bsz")));  // deleted before building, and stays so
}

TEST_F(CreationTest, PackingFailureIsNeverReportedAsSuccess) {
    MakeFullSkin();
    fs::remove(Path("pictures/receive.bmp"));  // the container cannot read it
    Choose(Path("out/SKIN.bsz"));
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(MessageTitles(), (std::vector<std::string>{"Script Creation Error"}));
    EXPECT_FALSE(fs::exists(Path("out/SKIN.bsz")));
    ExpectIdle();
    EXPECT_TRUE(fs::exists(StampFolder() + "/MySkin.bsi"));  // left for a look
    EXPECT_EQ(editor.Document().SkinName(), "My Skin");
}

TEST_F(CreationTest, SkinNameThatIsNoPlainFileNameFailsWithoutWritingAnywhere) {
    MakeFullSkin("../../Escape");
    Choose(Path("out/SKIN.bsz"));
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(MessageTitles(), (std::vector<std::string>{"Script Creation Error"}));
    EXPECT_FALSE(fs::exists(Path("Escape.bsi")));
    EXPECT_FALSE(fs::exists(Path("out/SKIN.bsz")));
}

#ifdef BSZTOOL_PATH
TEST_F(CreationTest, BsztoolVerifiesTheCreatedPackage) {
    MakeFullSkin();
    Choose(Path("out/SKIN.bsz"));
    platform.messageAnswers.push_back(MessageAnswer::No);
    CreateSkinPackage(editor, platform);
    ASSERT_EQ(platform.messages.back().text, kSuccessText);
    const std::string command = std::string("'") + BSZTOOL_PATH + "' verify '" + Path("out/SKIN.bsz") + "' >'" +
                                Path("verify.txt") + "' 2>&1";
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << Bytes(Path("verify.txt"));
}
#endif

}  // namespace
}  // namespace skin::testing
