// Packing and unpacking through BwZip's public methods: the list, the package layout,
// renaming of clashing names, round trips and the unpack folder naming.

#include "containertest.h"

namespace skin::testing {
namespace {

using PackTest = ContainerTest;

TEST_F(PackTest, EmptyListGivesEmptyResultAndWritesNothing) {
    BwZip zip = FixedZip();
    EXPECT_EQ(zip.Zip("Root", Str("out.bsz")), "");
    EXPECT_FALSE(fs::exists(Path("out.bsz")));
    zip.AddFileFolder("");
    EXPECT_EQ(zip.FileFolderCount(), 0);
}

TEST_F(PackTest, OneFilePackageIsLaidOutLineByLine) {
    WriteBytes(Path("a.bsi"), "abcd");
    BwZip zip = FixedZip();
    zip.AddFileFolder(Str("a.bsi"));
    ASSERT_EQ(zip.Zip("MySkin", Str("out.bsz")), Str("out.bsz")) << zip.LastError();
    EXPECT_EQ(ReadBytes(Path("out.bsz")),
              "<SKINPACKAGE>Brindleway Skin Package 18/11/2026 14:26:33</SKINPACKAGE>\r\n"
              "<ROOTFOLDER>MySkin</ROOTFOLDER>\r\n"
              "<FILE>a.bsi</FILE>\r\n"
              "<FILELENGTH>8</FILELENGTH>\r\n"
              "HE0\rabcd\r\n"
              "<ENDFILE>a.bsi</ENDFILE>\r\n"
              "<ENDSKINPACKAGE></ENDSKINPACKAGE>");
}

TEST_F(PackTest, ZipAppendsToAnExistingFile) {
    WriteBytes(Path("a.txt"), "x");
    WriteBytes(Path("out.bsz"), "earlier");
    BwZip zip = FixedZip();
    zip.AddFileFolder(Str("a.txt"));
    ASSERT_NE(zip.Zip("R", Str("out.bsz")), "");
    EXPECT_EQ(ReadBytes(Path("out.bsz")).rfind("earlier<SKINPACKAGE>", 0), 0u);
}

TEST_F(PackTest, FolderListsFilesInByteOrderThenSubfolders) {
    WriteBytes(Path("skin/b.txt"), "b");
    WriteBytes(Path("skin/B.txt"), "B");
    WriteBytes(Path("skin/a/inner.txt"), "i");
    WriteBytes(Path("skin/Z/z.txt"), "z");
    BwZip zip;
    const std::string skin = Str("skin");
    zip.AddFileFolder(skin);
    const std::vector<std::string> expected{
        "<FOLDER>" + skin + "</FOLDER>",
        "<FILE>" + skin + "/B.txt</FILE>",
        "<FILE>" + skin + "/b.txt</FILE>",
        "<FOLDER>" + skin + "/Z</FOLDER>",
        "<FILE>" + skin + "/Z/z.txt</FILE>",
        "<ENDFOLDER>" + skin + "/Z</ENDFOLDER>",
        "<FOLDER>" + skin + "/a</FOLDER>",
        "<FILE>" + skin + "/a/inner.txt</FILE>",
        "<ENDFOLDER>" + skin + "/a</ENDFOLDER>",
        "<ENDFOLDER>" + skin + "</ENDFOLDER>",
    };
    EXPECT_EQ(zip.FileFolderList(), expected);
    EXPECT_EQ(zip.FileFolderCount(), 10);
}

TEST_F(PackTest, SamePathOrFolderAddedTwiceIsListedOnce) {
    WriteBytes(Path("skin/a.txt"), "a");
    WriteBytes(Path("b.txt"), "b");
    BwZip zip;
    zip.AddFileFolder(Str("skin"));
    zip.AddFileFolder(Str("b.txt"));
    zip.AddFileFolder(Str("skin"));
    zip.AddFileFolder(Str("b.txt"));
    zip.AddFileFolder(Str("skin/a.txt"));  // already inside the folder block
    EXPECT_EQ(zip.FileFolderCount(), 4);
    zip.ClearFileFolderList();
    EXPECT_EQ(zip.FileFolderCount(), 0);
}

TEST_F(PackTest, TreeReadsBackEqualToWhatWasPacked) {
    std::string binary;
    for (int i = 0; i < 3000; ++i) binary.push_back(static_cast<char>((i * 7919) % 256));
    WriteBytes(Path("skin/pic.bmp"), binary);
    WriteBytes(Path("skin/crlf.txt"), "line\r\n\r\n<FILE>x</FILE>\r\nend\r");
    WriteBytes(Path("skin/empty.dat"), "");
    WriteBytes(Path("skin/deep/er/text.txt"), std::string(5000, 'q') + "tail");
    BwZip zip = FixedZip();
    zip.AddFileFolder(Str("skin"));
    ASSERT_NE(zip.Zip("Packed", Str("out.bsz")), "") << zip.LastError();

    std::string bsi = "not empty";
    ASSERT_TRUE(zip.UnZip(Str("out.bsz"), Base("dest"), false, true, &bsi)) << zip.LastError();
    EXPECT_EQ(zip.UnpackedFolder(), Str("dest/Packed/"));
    EXPECT_EQ(Tree(Path("dest/Packed/skin")), Tree(Path("skin")));
    EXPECT_EQ(bsi, "not empty");  // no skin information file inside
}

TEST_F(PackTest, SameNameFromTwoFoldersIsRenamedAndRestored) {
    WriteBytes(Path("a/skin.gif"), "first");
    WriteBytes(Path("b/skin.gif"), "second");
    WriteBytes(Path("c/skin.gif"), "third");
    BwZip zip = FixedZip();
    zip.AddFileFolder(Str("a/skin.gif"));
    zip.AddFileFolder(Str("b/skin.gif"));
    zip.AddFileFolder(Str("c/skin.gif"));
    ASSERT_NE(zip.Zip("R", Str("out.bsz")), "") << zip.LastError();

    const std::string package = ReadBytes(Path("out.bsz"));
    EXPECT_NE(package.find("<FILE>skin.gif</FILE>"), std::string::npos);
    EXPECT_NE(package.find("<FILE>skin@$@1.gif</FILE>\r\n<FILELENGTH>10</FILELENGTH>\r\nHE0\rsecond"), std::string::npos);
    EXPECT_NE(package.find("<ENDFILE>skin@$@1@$@2.gif</ENDFILE>"), std::string::npos);
    // The list keeps the rewritten entries.
    EXPECT_EQ(zip.FileFolderList()[0], "<FILE>" + Str("a/skin.gif") + "</FILE>");
    EXPECT_EQ(zip.FileFolderList()[1], "<FILE>" + Str("b/skin@$@1.gif") + "</FILE>");
    EXPECT_EQ(zip.FileFolderList()[2], "<FILE>" + Str("c/skin@$@1@$@2.gif") + "</FILE>");

    ASSERT_TRUE(zip.UnZip(Str("out.bsz"), Base("dest"), false, true, nullptr)) << zip.LastError();
    // All three go back under one name in one folder; the last one wins.
    EXPECT_EQ(Tree(Path("dest/18112026142633")), (std::map<std::string, std::string>{{"skin.gif", "third"}}));
}

TEST_F(PackTest, FailedZipLeavesTheDestinationAsItWas) {
    WriteBytes(Path("x/README"), "one");
    WriteBytes(Path("y/README"), "two");
    WriteBytes(Path("ok.txt"), "fine");
    WriteBytes(Path("old.bsz"), "previous content");

    BwZip clash;
    clash.AddFileFolder(Str("ok.txt"));
    clash.AddFileFolder(Str("x/README"));
    clash.AddFileFolder(Str("y/README"));
    EXPECT_EQ(clash.Zip("R", Str("old.bsz")), "");
    EXPECT_EQ(clash.LastFailure(), PackageFailure::BadInput);
    EXPECT_NE(clash.LastError().find("README"), std::string::npos);
    EXPECT_EQ(ReadBytes(Path("old.bsz")), "previous content");
    EXPECT_EQ(clash.Zip("R", Str("new.bsz")), "");
    EXPECT_FALSE(fs::exists(Path("new.bsz")));

    BwZip missing;
    missing.AddFileFolder(Str("ok.txt"));
    missing.AddFileFolder(Str("nowhere.txt"));
    EXPECT_EQ(missing.Zip("R", Str("old.bsz")), "");
    EXPECT_EQ(missing.LastFailure(), PackageFailure::FileAccess);
    EXPECT_NE(missing.LastError().find("nowhere.txt"), std::string::npos);
    EXPECT_EQ(ReadBytes(Path("old.bsz")), "previous content");
    EXPECT_FALSE(fs::exists(Path("nowhere.txt")));
}

TEST_F(PackTest, PendingEventsRunBetweenFiles) {
    WriteBytes(Path("skin/a.txt"), "a");
    WriteBytes(Path("skin/b.txt"), "b");
    BwZip zip = FixedZip();
    int calls = 0;
    zip.SetPendingEvents([&] { ++calls; });
    zip.AddFileFolder(Str("skin"));
    ASSERT_NE(zip.Zip("R", Str("out.bsz")), "");
    EXPECT_GE(calls, 2);
    calls = 0;
    ASSERT_TRUE(zip.UnZip(Str("out.bsz"), Base("dest"), false, true, nullptr));
    EXPECT_EQ(calls, 2);
}

TEST_F(PackTest, NamesTravelAsWindows1252) {
    WriteBytes(Path("caf\xC3\xA9.txt"), "coffee");
    BwZip zip = FixedZip();
    zip.AddFileFolder(Str("caf\xC3\xA9.txt"));
    ASSERT_NE(zip.Zip("D\xC3\xA9j\xC3\xA0", Str("out.bsz")), "");
    const std::string package = ReadBytes(Path("out.bsz"));
    EXPECT_NE(package.find("<ROOTFOLDER>D\xE9j\xE0</ROOTFOLDER>"), std::string::npos);
    EXPECT_NE(package.find("<FILE>caf\xE9.txt</FILE>"), std::string::npos);
    std::string bsi = "x";
    ASSERT_TRUE(zip.UnZip(Str("out.bsz"), Base("dest"), false, true, &bsi)) << zip.LastError();
    EXPECT_EQ(ReadBytes(Path("dest/D\xC3\xA9j\xC3\xA0/caf\xC3\xA9.txt")), "coffee");
}

using UnpackTest = ContainerTest;

TEST_F(UnpackTest, UnpackingTwiceIntoOnePlaceAccumulatesDigits) {
    WriteBytes(Path("a.txt"), "a");
    BwZip zip = FixedZip();
    zip.AddFileFolder(Str("a.txt"));
    ASSERT_NE(zip.Zip("Skin", Str("out.bsz")), "");
    const std::string base = Base("dest");
    for (const char* expected : {"Skin/", "Skin0/", "Skin01/", "Skin012/"}) {
        std::string bsi = "keep root";
        ASSERT_TRUE(zip.UnZip(Str("out.bsz"), base, false, true, &bsi));
        EXPECT_EQ(zip.UnpackedFolder(), base + expected);
    }
}

TEST_F(UnpackTest, SkinFileWithoutNameIsStampedAndReportsTheWrittenInformationFile) {
    WriteBytes(Path("one/Blue.bsi"), "first");
    WriteBytes(Path("two/Blue.bsi"), "second");
    BwZip zip = FixedZip();
    zip.AddFileFolder(Str("one/Blue.bsi"));
    zip.AddFileFolder(Str("two/Blue.bsi"));
    ASSERT_NE(zip.Zip("Blue Sky", Str("out.bsz")), "");
    std::string bsi;
    ASSERT_TRUE(zip.UnZip(Str("out.bsz"), Base("dest"), false, true, &bsi)) << zip.LastError();
    EXPECT_EQ(zip.UnpackedFolder(), Str("dest/18112026142633/"));
    // The last information file, under the name it was written with (no marker).
    EXPECT_EQ(bsi, Str("dest/18112026142633/Blue.bsi"));
    EXPECT_EQ(ReadBytes(bsi), "second");
}

TEST_F(UnpackTest, SkinHeaderIsRequiredForSkinFilesAndRefusedForTransfers) {
    WriteBytes(Path("plain.txt"), "hello\r\nworld");
    BwZip zip = FixedZip();
    const std::string base = Base("dest");
    EXPECT_FALSE(zip.UnZip(Str("plain.txt"), base, false, true, nullptr));
    EXPECT_EQ(zip.LastFailure(), PackageFailure::BadInput);
    EXPECT_TRUE(fs::is_empty(Path("dest")));

    WriteBytes(Path("a.txt"), "a");
    zip.AddFileFolder(Str("a.txt"));
    ASSERT_NE(zip.Zip("R", base + "skin.bsz"), "");
    EXPECT_FALSE(zip.UnZip("skin.bsz", base, false, false, nullptr));
    EXPECT_EQ(zip.LastError(), "Invalid file format.");
    EXPECT_EQ(zip.LastErrorNumber(), -2147220504);
    EXPECT_EQ(Tree(Path("dest")).size(), 1u);  // the package alone
}

TEST_F(UnpackTest, TransferPackageIsFoundBesideTheBaseAndDeletedOnRequest) {
    const std::string base = Base("dest");
    WriteBytes(base + "in.btf", HandPackage("Drop", StoredFileRecord("note.txt", "hi\r\n"),
                                            "<filetransfer>BRINDLEWAY FILE TRANSFER today</filetransfer>"));
    BwZip zip = FixedZip();
    ASSERT_TRUE(zip.UnZip("in.btf", base, true, false, nullptr)) << zip.LastError();
    EXPECT_EQ(ReadBytes(base + "Drop/note.txt"), "hi\r\n");
    EXPECT_FALSE(fs::exists(base + "in.btf"));
}

TEST_F(UnpackTest, DamagedCodedBytesFailWithTheDecodersDescription) {
    const std::string base = Base("dest");
    // An HE2 stream of four "A" with its checksum byte changed.
    const std::string coded = std::string("HE2\r3\r") + "A\x01\x01" + "\x07" + "4\r\x0F";
    const std::string record = "<FILE>a.txt</FILE>\r\n<FILELENGTH>" + std::to_string(coded.size()) +
                               "</FILELENGTH>\r\n" + coded + "\r\n<ENDFILE>a.txt</ENDFILE>\r\n";
    WriteBytes(Path("bad.bsz"), HandPackage("R", record));
    BwZip zip = FixedZip();
    std::string bsi = "x";
    EXPECT_FALSE(zip.UnZip(Str("bad.bsz"), base, false, true, &bsi));
    EXPECT_EQ(zip.LastFailure(), PackageFailure::BadInput);
    EXPECT_NE(zip.LastError().find("Data corrupt because check sums do not match"), std::string::npos);
    EXPECT_EQ(zip.LastErrorNumber(), -2147221504);
    EXPECT_FALSE(fs::exists(base + "R/a.txt"));
}

TEST_F(UnpackTest, MissingBaseFolderFailsAtOnce) {
    BwZip zip;
    EXPECT_FALSE(zip.UnZip(Str("x.bsz"), Str("absent/"), false, true, nullptr));
    EXPECT_EQ(zip.LastFailure(), PackageFailure::FileAccess);
    EXPECT_EQ(zip.UnpackedFolder(), "");
}

}  // namespace
}  // namespace skin::testing
