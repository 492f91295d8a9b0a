// Package creation through the scripted platform, with real files under a per-test folder.

#include "bwzip.h"
#include "ini.h"
#include "skinfilestest.h"
#include "skinpackagecreation.h"

namespace skin::testing {
namespace {

const std::string kSuccessText = "Brindleway Skin Package Created Successfully!\r\n\r\nCreate Another?";
const std::string kNoPicturesText = "You must create both the Send and Receive skin before creating the skin package.";

class CreationTest : public SkinFilesTest {
protected:
    void Choose(const std::string& path) { platform.saveAnswers.push_back(FileChoice{path, fs::path(path).filename()}); }
};

TEST_F(CreationTest, ChecksRunInTheirOrderPictureNameAuthor) {
    CreateSkinPackage(editor, platform);  // everything missing: only the picture message
    ExpectMessage(0, kNoPicturesText, "Package Creation Error", MessageIcon::Information, MessageButtons::Ok);
    editor.Document().SetPicture(SkinSide::Send, "s.bmp", "/x/s.bmp");  // one picture is not enough
    CreateSkinPackage(editor, platform);
    editor.Document().SetPicture(SkinSide::Receive, "r.bmp", "/x/r.bmp");
    CreateSkinPackage(editor, platform);
    editor.Document().SetSkinName(" ");  // blanks only is a name
    CreateSkinPackage(editor, platform);

    ASSERT_EQ(platform.messages.size(), 4u);
    EXPECT_EQ(platform.messages[1].text, kNoPicturesText);
    ExpectMessage(2, "You must specify a skin name.", "Package Creation Error", MessageIcon::Information,
                  MessageButtons::Ok);
    ExpectMessage(3, "You must specify the skin author.", "Package Creation Error", MessageIcon::Information,
                  MessageButtons::Ok);
    EXPECT_EQ(platform.log, (Log{"message Package Creation Error", "message Package Creation Error",
                                 "message Package Creation Error", "focus txtSkinName",
                                 "message Package Creation Error", "focus txtSkinAuthor"}));
    EXPECT_TRUE(platform.saveDialogs.empty());
}

TEST_F(CreationTest, FileTitlesAreAskedForAgainUntilValidThenThePackageIsWritten) {
    MakeFullSkin();
    platform.log.clear();
    Choose(Path("out/MYSKIN012.bsz"));  // 13 characters
    Choose(Path("out/my skin.bsz"));
    Choose(Path("out/MYSKIN01.bsz"));   // 12 characters, the longest accepted
    platform.messageAnswers = {MessageAnswer::Ok, MessageAnswer::Ok, MessageAnswer::No};
    CreateSkinPackage(editor, platform);

    ASSERT_EQ(platform.messages.size(), 3u);
    ExpectMessage(0, "The package file name must be a maximum of 8 characters.\r\nPlease specify a smaller name.",
                  "Package Name Alert", MessageIcon::Information, MessageButtons::Ok);
    ExpectMessage(1, "The package file name must not contain any spaces.\r\nPlease remove all spaces from the name.",
                  "Package Name Alert", MessageIcon::Information, MessageButtons::Ok);
    ExpectMessage(2, kSuccessText, "Ostervale Skin Fwt.", MessageIcon::Exclamation, MessageButtons::YesNo);
    EXPECT_EQ(platform.log, (Log{"save dialog", "message Package Name Alert", "save dialog",
                                 "message Package Name Alert", "save dialog", "hourglass on", "input off",
                                 "picCreating shown", "hourglass off", "input on", "picCreating hidden",
                                 "message Ostervale Skin Fwt."}));
    ExpectIdle();
    EXPECT_GT(platform.pendingEventCalls, 0);
    EXPECT_TRUE(fs::is_empty(platform.tempFolder));
    EXPECT_FALSE(fs::exists(Path("out/MYSKIN012.bsz")));

    // The root folder is named by the skin name as typed, the information file by the name without blanks.
    fs::create_directories(Path("check"));
    BwZip zip;
    std::string bsi = "keep the stored root name";
    ASSERT_TRUE(zip.UnZip(Path("out/MYSKIN01.bsz"), Path("check/"), false, true, &bsi)) << zip.LastError();
    const std::string unpacked = zip.UnpackedFolder();
    EXPECT_EQ(fs::path(unpacked).parent_path().filename(), "My Skin");
    EXPECT_EQ(Bytes(unpacked + "send.bmp"), PictureBytes(1));
    EXPECT_EQ(Bytes(unpacked + "receive.bmp"), PictureBytes(2));
    EXPECT_EQ(ReadINI("Global", "Skin Author", unpacked + "MySkin.bsi"), "Ada Designer");
    EXPECT_EQ(ReadINI("Recieve OK", "Width", unpacked + "MySkin.bsi"), "300");

    // No to "Create Another?" kept the skin; Yes makes the editor anew. Titles count characters,
    // not bytes; a blank in the folder and no extension are fine.
    EXPECT_EQ(editor.Document().SkinName(), "My Skin");
    Choose(Path("out/with blanks/\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"));
    fs::create_directories(Path("out/with blanks"));
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(platform.messages.back().text, kSuccessText);
    EXPECT_TRUE(fs::is_regular_file(Path("out/with blanks/\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9")));
    EXPECT_EQ(editor.Document().SkinName(), "");
    EXPECT_FALSE(editor.Document().KindUsed(SkinSide::Send, 0));
    EXPECT_EQ(editor.Surface().currentSelection.kind, Selection::Kind::None);

    // Refused, then the dialog is cancelled: nothing more is said or left.
    MakeFullSkin();
    platform.messages.clear();
    Choose(Path("out/TOOLONGNAME.bsz"));
    CreateSkinPackage(editor, platform);
    EXPECT_EQ(MessageTitles(), (std::vector<std::string>{"Package Name Alert"}));
    ExpectIdle();
    EXPECT_TRUE(fs::is_empty(platform.tempFolder));
}

TEST_F(CreationTest, OverwriteQuestionAnsweredNoWritesNothing) {
    MakeFullSkin();
    PutBytes(Path("out/OLD.bsz"), "an older package");
    platform.log.clear();
    Choose(Path("out/OLD.bsz"));
    platform.messageAnswers.push_back(MessageAnswer::No);
    CreateSkinPackage(editor, platform);

    ExpectMessage(0, "The file you have specified already exists.\r\nOverwrite?", "Ostervale Skin Fwt.",
                  MessageIcon::Question, MessageButtons::YesNo);
    EXPECT_EQ(platform.log, (Log{"save dialog", "hourglass on", "input off", "picCreating shown",
                                 "message Ostervale Skin Fwt.", "hourglass off", "input on", "picCreating hidden"}));
    EXPECT_EQ(Bytes(Path("out/OLD.bsz")), "an older package");
    EXPECT_TRUE(fs::is_empty(platform.tempFolder));
    ExpectIdle();
}

// Each failure ends busy and with the failure message; what the run made is left for a look.
TEST_F(CreationTest, FailuresTakeTheFailurePath) {
    MakeFullSkin();
    auto expectFailure = [&](const std::vector<std::string>& titles) {
        EXPECT_EQ(MessageTitles(), titles);
        ExpectMessage(titles.size() - 1,
                      "An Error occured while creating the script file.\r\nVerify your settings and try again.",
                      "Script Creation Error", MessageIcon::Information, MessageButtons::Ok);
        EXPECT_EQ(Log(platform.log.end() - 4, platform.log.end()),
                  (Log{"hourglass off", "input on", "picCreating hidden", "message Script Creation Error"}));
        ExpectIdle();
        platform.messages.clear();
    };
    // A folder left by a failed run in the same second; the old package, deleted after Yes, stays gone.
    PutBytes(StampFolder() + "/MySkin.bsi", "left behind");
    PutBytes(Path("out/OLD.bsz"), "an older package");
    Choose(Path("out/OLD.bsz"));
    CreateSkinPackage(editor, platform);
    expectFailure({"Ostervale Skin Fwt.", "Script Creation Error"});
    EXPECT_EQ(Bytes(StampFolder() + "/MySkin.bsi"), "left behind");
    EXPECT_FALSE(fs::exists(Path("out/OLD.bsz")));

    // The container cannot read a picture: never reported as success.
    fs::remove_all(StampFolder());
    fs::remove(Path("pictures/receive.bmp"));
    Choose(Path("out/SKIN.bsz"));
    CreateSkinPackage(editor, platform);
    expectFailure({"Script Creation Error"});
    EXPECT_FALSE(fs::exists(Path("out/SKIN.bsz")));
    EXPECT_TRUE(fs::exists(StampFolder() + "/MySkin.bsi"));

    // A skin name that is no plain file name writes nowhere.
    editor.Document().SetSkinName("../../Escape");
    Choose(Path("out/SKIN.bsz"));
    CreateSkinPackage(editor, platform);
    expectFailure({"Script Creation Error"});
    EXPECT_FALSE(fs::exists(Path("Escape.bsi")));
    EXPECT_FALSE(fs::exists(Path("out/SKIN.bsz")));
}

}  // namespace
}  // namespace skin::testing
