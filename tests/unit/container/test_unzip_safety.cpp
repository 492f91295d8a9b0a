// Packages from strangers: unsafe names, lying lengths, folder ends that climb out, endless
// lines and every truncation of a valid package. Nothing may land outside the folder made.

#include "containertest.h"

namespace skin::testing {
namespace {

class UnzipSafetyTest : public ContainerTest {
protected:
    // Unpacks `package` into a fresh base under "work/" and checks that nothing appeared
    // anywhere in "work/" but inside the one folder UnZip made.
    bool UnpackIsolated(const std::string& package, bool useRootName = true) {
        fs::remove_all(Path("work"));
        const std::string base = Base("work/base");
        WriteBytes(Path("work/pkg.bsz"), package);
        zip_ = FixedZip();
        std::string bsi = useRootName ? "use the root name" : "";
        const bool ok = zip_.UnZip(Str("work/pkg.bsz"), base, false, true, &bsi);
        for (const auto& [rel, content] : Tree(Path("work"))) {
            const bool inside = !zip_.UnpackedFolder().empty() &&
                                (Path("work") / rel).string().rfind(zip_.UnpackedFolder(), 0) == 0;
            const bool known = rel == "pkg.bsz" || rel == "base/";
            EXPECT_TRUE(inside || known) << "written outside the unpack folder: " << rel;
        }
        return ok;
    }

    BwZip zip_;
};

TEST_F(UnzipSafetyTest, UnsafeFolderAndFileNamesAreRefused) {
    const std::vector<std::string> unsafe{"", ".", "..", "a/b", "../x", "a\\b", "..\\x", std::string("a\0b", 3)};
    for (const auto& name : unsafe) {
        SCOPED_TRACE("name: " + name);
        EXPECT_FALSE(UnpackIsolated(HandPackage("R", "<FOLDER>" + name + "</FOLDER>\r\n" +
                                                         StoredFileRecord("f.txt", "x") + "<ENDFOLDER>" + name +
                                                         "</ENDFOLDER>\r\n")));
        EXPECT_EQ(zip_.LastFailure(), PackageFailure::BadInput);
        EXPECT_FALSE(UnpackIsolated(HandPackage("R", StoredFileRecord(name, "x"))));
        EXPECT_FALSE(UnpackIsolated(HandPackage(name, StoredFileRecord("f.txt", "x"))));
        // A time-stamped root does not depend on the stored root name.
        EXPECT_TRUE(UnpackIsolated(HandPackage(name, StoredFileRecord("f.txt", "x")), false)) << zip_.LastError();
    }
}

TEST_F(UnzipSafetyTest, HostileStructureAndLengthsAreRefused) {
    const std::string folderA = "<FOLDER>a</FOLDER>\r\n<ENDFOLDER>a</ENDFOLDER>\r\n";
    const std::string endless(kMaxPackageLineLength * 4, 'x');
    const struct {
        std::string root, body, error;
    } cases[] = {
        // A renaming marker that would restore to an unsafe name.
        {"R", StoredFileRecord("@$@1.", "x"), ""},
        {"R", StoredFileRecord("@$@1..", "x"), ""},
        {"R", StoredFileRecord("noDot@$@1", "x"), ""},
        // Folder ends that climb out of the root or name another folder.
        {"R", folderA + "<ENDFOLDER>a</ENDFOLDER>\r\n" + StoredFileRecord("escape.txt", "x"), ""},
        {"R", "<FOLDER>a</FOLDER>\r\n<ENDFOLDER>base/R/a</ENDFOLDER>\r\n" + StoredFileRecord("e.txt", "x"), ""},
        {"R", folderA + "<FOLDER>a</FOLDER>\r\n", "twice"},
        // Lengths beyond the file fail before anything is allocated or written.
        {"R", FileRecord("a.txt", "HE0\rabc", "2147483647"), "ends inside"},
        {"R", FileRecord("a.txt", "HE0\rabc", "99"), "ends inside"},
        {"R", FileRecord("a.txt", "HE0\rabc", "   500 "), "ends inside"},
        {"R", "<FILE>a.txt</FILE>\r\n<FILELENGTH>-1</FILELENGTH>\r\nHE0\rabc\r\n", ""},
        {"R", "<FILE>a.txt</FILE>\r\n<FILELENGTH>2147483648</FILELENGTH>\r\nHE0\rabc\r\n", ""},
        {"R", "<FILE>a.txt</FILE>\r\n<FILELENGTH>12abc</FILELENGTH>\r\nHE0\rabc\r\n", ""},
        {"R", "<FILE>a.txt</FILE>\r\n<FILELENGTH>0x10</FILELENGTH>\r\nHE0\rabc\r\n", ""},
        {"R", "<FILE>a.txt</FILE>\r\n<FILELENGTH></FILELENGTH>\r\nHE0\rabc\r\n", ""},
        // Endless lines.
        {"R", endless, "longer than"},
        {std::string(kMaxPackageLineLength * 2, 'r'), "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.body.substr(0, 80));
        EXPECT_FALSE(UnpackIsolated(HandPackage(c.root, c.body)));
        EXPECT_NE(zip_.LastError().find(c.error), std::string::npos) << zip_.LastError();
        EXPECT_FALSE(fs::exists(Path("work/base/R/a.txt")));
    }
    EXPECT_TRUE(UnpackIsolated(HandPackage("R", StoredFileRecord("ok@$@7.txt", "x"))));
    EXPECT_EQ(ReadBytes(zip_.UnpackedFolder() + "ok.txt"), "x");
}

TEST_F(UnzipSafetyTest, EveryTruncationIsReadOrRefused) {
    // Two files named p.gif from two folders; unpacked, the tree is the source tree again.
    WriteBytes(Path("src/skin/a.bsi"), "[Global]\r\nSkin Name=Blue\r\n");
    WriteBytes(Path("src/skin/pics/p.gif"), std::string(300, 'p') + "GIF89a" + std::string(40, '\r'));
    WriteBytes(Path("src/p.gif"), "other");
    Pack("Root", "full.bsz", {"src/skin", "src/p.gif"});
    const std::string full = ReadBytes(Path("full.bsz"));
    const auto original = Tree(Path("src"));
    int read = 0;
    for (std::size_t length = 0; length <= full.size(); ++length) {
        SCOPED_TRACE("prefix of " + std::to_string(length) + " bytes");
        const bool ok = UnpackIsolated(full.substr(0, length));
        read += ok ? 1 : 0;
        if (zip_.UnpackedFolder().empty()) continue;
        for (const auto& [rel, content] : Tree(zip_.UnpackedFolder())) {
            // A cut inside a folder line names the folder by the part that is left; it stays empty.
            if (rel.back() == '/' && original.count(rel) == 0) {
                EXPECT_TRUE(fs::is_empty(zip_.UnpackedFolder() + rel)) << rel;
                continue;
            }
            ASSERT_EQ(original.count(rel), 1u) << rel;
            EXPECT_EQ(content, original.at(rel)) << rel;
        }
        if (length == full.size()) {
            EXPECT_TRUE(ok);
            EXPECT_EQ(Tree(zip_.UnpackedFolder()), original);
        }
    }
    EXPECT_GT(read, 10);
}

}  // namespace
}  // namespace skin::testing
