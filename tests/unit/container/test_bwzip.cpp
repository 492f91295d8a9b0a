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

TEST_F(PackTest, OneFilePackageIsLaidOutLineByLineAndUnpacksTwiceIntoOnePlace) {
    WriteBytes(Path("a.bsi"), "abcd");
    WriteBytes(Path("out.bsz"), "earlier");
    BwZip zip = Pack("MySkin", "out.bsz", {"a.bsi"});
    EXPECT_EQ(ReadBytes(Path("out.bsz")),
              "earlier<SKINPACKAGE>Brindleway Skin Package 18/11/2026 14:26:33</SKINPACKAGE>\r\n"
              "<ROOTFOLDER>MySkin</ROOTFOLDER>\r\n"
              "<FILE>a.bsi</FILE>\r\n"
              "<FILELENGTH>8</FILELENGTH>\r\n"
              "HE0\rabcd\r\n"
              "<ENDFILE>a.bsi</ENDFILE>\r\n"
              "<ENDSKINPACKAGE></ENDSKINPACKAGE>");

    // The header may stand anywhere in the first line; each unpack into one place gets a new folder.
    const std::string base = Base("dest");
    for (const char* expected : {"MySkin/", "MySkin0/", "MySkin01/", "MySkin012/"}) {
        std::string bsi = "keep root";
        ASSERT_TRUE(zip.UnZip(Str("out.bsz"), base, false, true, &bsi)) << zip.LastError();
        EXPECT_EQ(zip.UnpackedFolder(), base + expected);
        EXPECT_EQ(ReadBytes(base + expected + "a.bsi"), "abcd");
    }
}

TEST_F(PackTest, FolderListsFilesInByteOrderThenSubfoldersAndOnlyOnce) {
    for (const char* rel : {"skin/b.txt", "skin/B.txt", "skin/a/inner.txt", "skin/Z/z.txt", "b.txt"}) WriteBytes(Path(rel), rel);
    BwZip zip;
    const std::string skin = Str("skin");
    // The same folder or path twice, and a file already inside the folder block, are listed once.
    for (const char* rel : {"skin", "b.txt", "skin", "b.txt", "skin/a/inner.txt"}) zip.AddFileFolder(Str(rel));
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
        "<FILE>" + Str("b.txt") + "</FILE>",
    };
    EXPECT_EQ(zip.FileFolderList(), expected);
    EXPECT_EQ(zip.FileFolderCount(), 11);
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
    WriteBytes(Path("skin/caf\xC3\xA9.txt"), "coffee");
    BwZip zip = FixedZip();
    int calls = 0;
    zip.SetPendingEvents([&] { ++calls; });
    zip.AddFileFolder(Str("skin"));
    ASSERT_NE(zip.Zip("D\xC3\xA9j\xC3\xA0", Str("out.bsz")), "") << zip.LastError();
    EXPECT_GE(calls, 5);  // pending events run between files
    // Names travel as Windows-1252.
    const std::string package = ReadBytes(Path("out.bsz"));
    EXPECT_NE(package.find("<ROOTFOLDER>D\xE9j\xE0</ROOTFOLDER>"), std::string::npos);
    EXPECT_NE(package.find("<FILE>caf\xE9.txt</FILE>"), std::string::npos);

    calls = 0;
    std::string bsi = "not empty";
    ASSERT_TRUE(zip.UnZip(Str("out.bsz"), Base("dest"), false, true, &bsi)) << zip.LastError();
    EXPECT_EQ(calls, 5);
    EXPECT_EQ(zip.UnpackedFolder(), Str("dest/D\xC3\xA9j\xC3\xA0/"));
    EXPECT_EQ(Tree(Path("dest/D\xC3\xA9j\xC3\xA0/skin")), Tree(Path("skin")));
    EXPECT_EQ(bsi, "not empty");  // no skin information file inside
}

TEST_F(PackTest, SameNameFromTwoFoldersIsRenamedAndRestoredUnderAStampedRoot) {
    WriteBytes(Path("a/Blue.bsi"), "first");
    WriteBytes(Path("b/Blue.bsi"), "second");
    WriteBytes(Path("c/Blue.bsi"), "third");
    BwZip zip = Pack("Blue Sky", "out.bsz", {"a/Blue.bsi", "b/Blue.bsi", "c/Blue.bsi"});
    const std::string package = ReadBytes(Path("out.bsz"));
    EXPECT_NE(package.find("<FILE>Blue.bsi</FILE>"), std::string::npos);
    EXPECT_NE(package.find("<FILE>Blue@$@1.bsi</FILE>\r\n<FILELENGTH>10</FILELENGTH>\r\nHE0\rsecond"), std::string::npos);
    EXPECT_NE(package.find("<ENDFILE>Blue@$@1@$@2.bsi</ENDFILE>"), std::string::npos);
    // The list keeps the rewritten entries.
    EXPECT_EQ(zip.FileFolderList(), (std::vector<std::string>{"<FILE>" + Str("a/Blue.bsi") + "</FILE>",
                                                              "<FILE>" + Str("b/Blue@$@1.bsi") + "</FILE>",
                                                              "<FILE>" + Str("c/Blue@$@1@$@2.bsi") + "</FILE>"}));

    // With no skin name asked for, the root is the time stamp; all three go back under one
    // name, the last one wins, and the information file is reported as written.
    std::string bsi;
    ASSERT_TRUE(zip.UnZip(Str("out.bsz"), Base("dest"), false, true, &bsi)) << zip.LastError();
    EXPECT_EQ(zip.UnpackedFolder(), Str("dest/18112026142633/"));
    EXPECT_EQ(Tree(Path("dest/18112026142633")), (std::map<std::string, std::string>{{"Blue.bsi", "third"}}));
    EXPECT_EQ(bsi, Str("dest/18112026142633/Blue.bsi"));
}

TEST_F(PackTest, FailedZipLeavesTheDestinationAsItWas) {
    WriteBytes(Path("x/README"), "one");
    WriteBytes(Path("y/README"), "two");
    WriteBytes(Path("ok.txt"), "fine");
    WriteBytes(Path("old.bsz"), "previous content");
    const struct {
        std::vector<std::string> paths;
        PackageFailure failure;
        std::string named;
    } cases[] = {
        {{"ok.txt", "x/README", "y/README"}, PackageFailure::BadInput, "README"},
        {{"ok.txt", "nowhere.txt"}, PackageFailure::FileAccess, "nowhere.txt"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.named);
        BwZip zip;
        for (const auto& rel : c.paths) zip.AddFileFolder(Str(rel));
        EXPECT_EQ(zip.Zip("R", Str("old.bsz")), "");
        EXPECT_EQ(zip.LastFailure(), c.failure);
        EXPECT_NE(zip.LastError().find(c.named), std::string::npos);
        EXPECT_EQ(ReadBytes(Path("old.bsz")), "previous content");
        EXPECT_EQ(zip.Zip("R", Str("new.bsz")), "");
        EXPECT_FALSE(fs::exists(Path("new.bsz")));
    }
    EXPECT_FALSE(fs::exists(Path("nowhere.txt")));
}

using UnpackTest = ContainerTest;

TEST_F(UnpackTest, HeadersMustMatchTheKindAndTransfersAreFoundBesideTheBase) {
    WriteBytes(Path("plain.txt"), "hello\r\nworld");
    WriteBytes(Path("a.txt"), "a");
    const std::string base = Base("dest");
    BwZip zip = Pack("R", "dest/skin.bsz", {"a.txt"});
    EXPECT_FALSE(zip.UnZip(Str("plain.txt"), base, false, true, nullptr));
    EXPECT_EQ(zip.LastFailure(), PackageFailure::BadInput);
    // A skin package given as a transfer.
    EXPECT_FALSE(zip.UnZip("skin.bsz", base, false, false, nullptr));
    EXPECT_EQ(zip.LastError(), "Invalid file format.");
    EXPECT_EQ(zip.LastErrorNumber(), -2147220504);
    EXPECT_EQ(Tree(Path("dest")).size(), 1u);  // the package alone

    WriteBytes(base + "in.btf", HandPackage("Drop", StoredFileRecord("note.txt", "hi\r\n"),
                                            "<filetransfer>BRINDLEWAY FILE TRANSFER today</filetransfer>"));
    ASSERT_TRUE(zip.UnZip("in.btf", base, true, false, nullptr)) << zip.LastError();
    EXPECT_EQ(ReadBytes(base + "Drop/note.txt"), "hi\r\n");
    EXPECT_FALSE(fs::exists(base + "in.btf"));  // deleted on request
}

TEST_F(UnpackTest, DamagedCodedBytesAndAMissingBaseFail) {
    const std::string base = Base("dest");
    // An HE2 stream of four "A" with its checksum byte changed.
    WriteBytes(Path("bad.bsz"), HandPackage("R", FileRecord("a.txt", std::string("HE2\r3\rA\x01\x01\x07") + "4\r\x0F")));
    BwZip zip = FixedZip();
    std::string bsi = "x";
    EXPECT_FALSE(zip.UnZip(Str("bad.bsz"), base, false, true, &bsi));
    EXPECT_EQ(zip.LastFailure(), PackageFailure::BadInput);
    EXPECT_NE(zip.LastError().find("Data corrupt because check sums do not match"), std::string::npos);
    EXPECT_EQ(zip.LastErrorNumber(), -2147221504);
    EXPECT_FALSE(fs::exists(base + "R/a.txt"));

    EXPECT_FALSE(zip.UnZip(Str("bad.bsz"), Str("absent/"), false, true, nullptr));
    EXPECT_EQ(zip.LastFailure(), PackageFailure::FileAccess);
    EXPECT_EQ(zip.UnpackedFolder(), "");
}

}  // namespace
}  // namespace skin::testing
