// Packages from strangers: unsafe names, lying lengths, folder ends that climb out, endless
// lines and every truncation of a valid package. Nothing may land outside the folder made.

#include <chrono>

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

TEST_F(UnzipSafetyTest, RenamingMarkerCannotRestoreToAnUnsafeName) {
    EXPECT_FALSE(UnpackIsolated(HandPackage("R", StoredFileRecord("@$@1.", "x"))));    // restores to "."
    EXPECT_FALSE(UnpackIsolated(HandPackage("R", StoredFileRecord("@$@1..", "x"))));   // restores to "."
    EXPECT_FALSE(UnpackIsolated(HandPackage("R", StoredFileRecord("noDot@$@1", "x"))));
    EXPECT_TRUE(UnpackIsolated(HandPackage("R", StoredFileRecord("ok@$@7.txt", "x"))));
    EXPECT_EQ(ReadBytes(zip_.UnpackedFolder() + "ok.txt"), "x");
}

TEST_F(UnzipSafetyTest, FolderEndsCannotClimbOutOfTheRoot) {
    const std::string climb = "<FOLDER>a</FOLDER>\r\n<ENDFOLDER>a</ENDFOLDER>\r\n<ENDFOLDER>a</ENDFOLDER>\r\n" +
                              StoredFileRecord("escape.txt", "x");
    EXPECT_FALSE(UnpackIsolated(HandPackage("R", climb)));
    const std::string mismatch = "<FOLDER>a</FOLDER>\r\n<ENDFOLDER>base/R/a</ENDFOLDER>\r\n" + StoredFileRecord("e.txt", "x");
    EXPECT_FALSE(UnpackIsolated(HandPackage("R", mismatch)));
    EXPECT_FALSE(fs::exists(Path("work/base/e.txt")));
}

TEST_F(UnzipSafetyTest, FolderMadeTwiceFails) {
    const std::string twice = "<FOLDER>a</FOLDER>\r\n<ENDFOLDER>a</ENDFOLDER>\r\n<FOLDER>a</FOLDER>\r\n";
    EXPECT_FALSE(UnpackIsolated(HandPackage("R", twice)));
    EXPECT_NE(zip_.LastError().find("twice"), std::string::npos);
}

TEST_F(UnzipSafetyTest, LengthsBeyondTheFileFailBeforeAllocating) {
    const auto start = std::chrono::steady_clock::now();
    for (const std::string length : {"2147483647", "99", "   500 "}) {
        SCOPED_TRACE(length);
        EXPECT_FALSE(UnpackIsolated(HandPackage("R", "<FILE>a.txt</FILE>\r\n<FILELENGTH>" + length +
                                                         "</FILELENGTH>\r\nHE0\rabc\r\n<ENDFILE>a.txt</ENDFILE>\r\n")));
        EXPECT_NE(zip_.LastError().find("ends inside"), std::string::npos) << zip_.LastError();
        EXPECT_FALSE(fs::exists(Path("work/base/R/a.txt")));
    }
    for (const std::string length : {"-1", "2147483648", "12abc", "0x10", ""}) {
        SCOPED_TRACE(length);
        EXPECT_FALSE(UnpackIsolated(HandPackage("R", "<FILE>a.txt</FILE>\r\n<FILELENGTH>" + length +
                                                         "</FILELENGTH>\r\nHE0\rabc\r\n")));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST_F(UnzipSafetyTest, EndlessLineIsRefused) {
    EXPECT_FALSE(UnpackIsolated(HandPackage("R", std::string(kMaxPackageLineLength * 4, 'x'))));
    EXPECT_NE(zip_.LastError().find("longer than"), std::string::npos);
    EXPECT_FALSE(UnpackIsolated(HandPackage(std::string(kMaxPackageLineLength * 2, 'r'), "")));
}

TEST_F(UnzipSafetyTest, EveryTruncationIsReadOrRefused) {
    WriteBytes(Path("src/skin/a.bsi"), "[Global]\r\nSkin Name=Blue\r\n");
    WriteBytes(Path("src/skin/pics/p.gif"), std::string(300, 'p') + "GIF89a" + std::string(40, '\r'));
    WriteBytes(Path("src/other/p.gif"), "other");
    BwZip packer = FixedZip();
    packer.AddFileFolder(Str("src/skin"));
    packer.AddFileFolder(Str("src/other/p.gif"));
    ASSERT_NE(packer.Zip("Root", Str("full.bsz")), "") << packer.LastError();
    const std::string full = ReadBytes(Path("full.bsz"));

    // What each unpacked file must hold, by its path below the root.
    const std::map<std::string, std::string> original{
        {"skin/", ""},
        {"skin/a.bsi", ReadBytes(Path("src/skin/a.bsi"))},
        {"skin/pics/", ""},
        {"skin/pics/p.gif", ReadBytes(Path("src/skin/pics/p.gif"))},
        {"p.gif", "other"},
    };
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
