// The package container through BwZip's public methods, packages from strangers, and the built
// bsztool run as a designer or a hosting site would run it.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "bwzip.h"

namespace skin::testing {
namespace {

namespace fs = std::filesystem;

void WriteBytes(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string ReadBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Every file below `root` with its content; folders as "name/".
std::map<std::string, std::string> Tree(const fs::path& root) {
    std::map<std::string, std::string> tree;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        tree[fs::relative(entry.path(), root).string() + (entry.is_directory() ? "/" : "")] = entry.is_directory() ? "" : ReadBytes(entry.path());
    return tree;
}

std::string HandPackage(const std::string& root, const std::string& body,
                        const std::string& header = "<SKINPACKAGE>Brindleway Skin Package x</SKINPACKAGE>") {
    return header + "\r\n<ROOTFOLDER>" + root + "</ROOTFOLDER>\r\n" + body + "<ENDSKINPACKAGE></ENDSKINPACKAGE>";
}

// A file record holding `coded` as it is, under its own length unless another is given.
std::string FileRecord(const std::string& name, const std::string& coded, const std::string& length = "") {
    return "<FILE>" + name + "</FILE>\r\n<FILELENGTH>" + (length.empty() ? std::to_string(coded.size()) : length) +
           "</FILELENGTH>\r\n" + coded + "\r\n<ENDFILE>" + name + "</ENDFILE>\r\n";
}

BwZip FixedZip() {
    BwZip zip;
    zip.SetClock([] { return PackageClockTime{2026, 11, 18, 14, 26, 33}; });
    return zip;
}

class Container : public ::testing::Test {
protected:
    void SetUp() override { fs::create_directories(dir_ + "dest"); }
    void TearDown() override { fs::remove_all(dir_); }
    BwZip Pack(const std::string& root, const std::string& out, const std::vector<std::string>& paths) const {
        BwZip zip = FixedZip();
        for (const auto& rel : paths) zip.AddFileFolder(dir_ + rel);
        EXPECT_EQ(zip.Zip(root, dir_ + out), dir_ + out) << zip.LastError();
        return zip;
    }

    // The test's own folder, ending in "/", with an empty "dest/" in it.
    const std::string dir_ = (fs::temp_directory_path() / ("container-" + std::to_string(::getpid()) + "-" +
                                                           ::testing::UnitTest::GetInstance()->current_test_info()->name())).string() + "/";
};

TEST_F(Container, OneFilePackageUniqueRootsAndHeaderForms) {
    BwZip zip = FixedZip();
    zip.AddFileFolder("");
    EXPECT_EQ(zip.Zip("Root", dir_ + "none.bsz"), "");  // the list is empty
    EXPECT_FALSE(fs::exists(dir_ + "none.bsz"));

    WriteBytes(dir_ + "a.bsi", "abcd");
    WriteBytes(dir_ + "dest/out.bsz", "earlier");
    zip = Pack("MySkin", "dest/out.bsz", {"a.bsi"});
    EXPECT_EQ(ReadBytes(dir_ + "dest/out.bsz"),
              "earlier<SKINPACKAGE>Brindleway Skin Package 18/11/2026 14:26:33</SKINPACKAGE>\r\n"
              "<ROOTFOLDER>MySkin</ROOTFOLDER>\r\n<FILE>a.bsi</FILE>\r\n<FILELENGTH>8</FILELENGTH>\r\n"
              "HE0\rabcd\r\n<ENDFILE>a.bsi</ENDFILE>\r\n<ENDSKINPACKAGE></ENDSKINPACKAGE>");
    // The header may stand anywhere in the first line; each unpack into one place gets a new folder.
    const std::string base = dir_ + "dest/";
    for (const char* folder : {"MySkin/", "MySkin0/", "MySkin01/", "MySkin012/"}) {
        std::string bsi = "keep the root name";
        ASSERT_TRUE(zip.UnZip(base + "out.bsz", base, false, true, &bsi)) << zip.LastError();
        EXPECT_EQ(ReadBytes(base + folder + "a.bsi"), "abcd");
        EXPECT_EQ(bsi, base + folder + "a.bsi");
    }

    // Each header form is refused where the other is asked for.
    EXPECT_FALSE(zip.UnZip("out.bsz", base, false, false, nullptr));
    EXPECT_EQ(zip.LastError(), "Invalid file format.");
    EXPECT_EQ(zip.LastErrorNumber(), -2147220504);
    WriteBytes(base + "in.btf", HandPackage("Drop", FileRecord("note.txt", "HE0\rhi\r\n"),
                                            "<filetransfer>BRINDLEWAY FILE TRANSFER today</filetransfer>"));
    EXPECT_FALSE(zip.UnZip(base + "in.btf", base, false, true, nullptr));
    EXPECT_EQ(zip.LastFailure(), PackageFailure::BadInput);
    ASSERT_TRUE(zip.UnZip("in.btf", base, true, false, nullptr)) << zip.LastError();
    EXPECT_EQ(ReadBytes(base + "Drop/note.txt"), "hi\r\n");
    EXPECT_FALSE(fs::exists(base + "in.btf"));  // deleted on request
    // Without a root folder line the root is named by the last line, or by the time stamp.
    WriteBytes(base + "bare.bsz", "<SKINPACKAGE>Brindleway Skin Package x</SKINPACKAGE>\r\nLoose");
    std::string bsi = "keep the root name";
    ASSERT_TRUE(zip.UnZip(base + "bare.bsz", base, false, true, &bsi)) << zip.LastError();
    EXPECT_TRUE(fs::is_directory(base + "Loose"));
    bsi.clear();
    ASSERT_TRUE(zip.UnZip(base + "bare.bsz", base, false, true, &bsi)) << zip.LastError();
    EXPECT_TRUE(fs::is_directory(base + "18112026142633"));
    EXPECT_EQ(bsi, "");
    EXPECT_FALSE(zip.UnZip(base + "out.bsz", dir_ + "absent/", false, true, nullptr));
    EXPECT_EQ(zip.LastFailure(), PackageFailure::FileAccess);
}

TEST_F(Container, FolderListOrderAndRoundTrip) {
    WriteBytes(dir_ + "skin/b.txt", std::string("\0\r\n\xFF\x1A\r", 6));
    WriteBytes(dir_ + "skin/B.txt", "line\r\n\r\n<FILE>x</FILE>\r\nend\r");
    WriteBytes(dir_ + "skin/Z/caf\xC3\xA9.txt", "");
    WriteBytes(dir_ + "skin/a/inner.txt", std::string(5000, 'q') + "tail");
    WriteBytes(dir_ + "b.txt", "outside");
    BwZip zip = FixedZip();
    // A folder or file given twice, and a file already inside a listed folder, are listed once.
    for (const char* rel : {"skin", "b.txt", "skin", "b.txt", "skin/a/inner.txt"}) zip.AddFileFolder(dir_ + rel);
    auto entry = [&](const std::string& tag, const std::string& rel) { return "<" + tag + ">" + dir_ + rel + "</" + tag + ">"; };
    EXPECT_EQ(zip.FileFolderList(),
              (std::vector<std::string>{entry("FOLDER", "skin"), entry("FILE", "skin/B.txt"), entry("FILE", "skin/b.txt"),
                                        entry("FOLDER", "skin/Z"), entry("FILE", "skin/Z/caf\xC3\xA9.txt"), entry("ENDFOLDER", "skin/Z"),
                                        entry("FOLDER", "skin/a"), entry("FILE", "skin/a/inner.txt"), entry("ENDFOLDER", "skin/a"),
                                        entry("ENDFOLDER", "skin"), entry("FILE", "b.txt")}));
    EXPECT_EQ(zip.FileFolderCount(), 11);

    int events = 0;
    zip.SetPendingEvents([&] { ++events; });
    ASSERT_EQ(zip.Zip("D\xC3\xA9j\xC3\xA0", dir_ + "out.bsz"), dir_ + "out.bsz") << zip.LastError();
    EXPECT_GE(events, 5);
    // Names travel as Windows-1252.
    const std::string package = ReadBytes(dir_ + "out.bsz");
    EXPECT_NE(package.find("<ROOTFOLDER>D\xE9j\xE0</ROOTFOLDER>"), std::string::npos);
    EXPECT_NE(package.find("<FILE>caf\xE9.txt</FILE>"), std::string::npos);
    events = 0;
    std::string bsi = "no information file inside";
    ASSERT_TRUE(zip.UnZip(dir_ + "out.bsz", dir_ + "dest/", false, true, &bsi)) << zip.LastError();
    EXPECT_EQ(events, 5);
    EXPECT_EQ(Tree(dir_ + "dest/D\xC3\xA9j\xC3\xA0/skin"), Tree(dir_ + "skin"));
    EXPECT_EQ(ReadBytes(dir_ + "dest/D\xC3\xA9j\xC3\xA0/b.txt"), "outside");
}

TEST_F(Container, ClashingNamesAreRenamedAndRestoredUnderAStampedRoot) {
    for (const char* folder : {"a", "b", "c"}) WriteBytes(dir_ + folder + "/Blue.bsi", folder);
    BwZip zip = Pack("Blue Sky", "out.bsz", {"a/Blue.bsi", "b/Blue.bsi", "c/Blue.bsi"});
    const std::string package = ReadBytes(dir_ + "out.bsz");
    EXPECT_NE(package.find("<FILE>Blue.bsi</FILE>"), std::string::npos);
    EXPECT_NE(package.find("<FILE>Blue@$@1.bsi</FILE>\r\n<FILELENGTH>5</FILELENGTH>\r\nHE0\rb"), std::string::npos);
    EXPECT_NE(package.find("<ENDFILE>Blue@$@1@$@2.bsi</ENDFILE>"), std::string::npos);
    EXPECT_EQ(zip.FileFolderList()[2], "<FILE>" + dir_ + "c/Blue@$@1@$@2.bsi</FILE>");
    // No skin information path asked for: the root is the time stamp. The last of the three wins.
    std::string bsi;
    ASSERT_TRUE(zip.UnZip(dir_ + "out.bsz", dir_ + "dest/", false, true, &bsi)) << zip.LastError();
    EXPECT_EQ(Tree(dir_ + "dest"), (std::map<std::string, std::string>{{"18112026142633/", ""}, {"18112026142633/Blue.bsi", "c"}}));
    EXPECT_EQ(bsi, dir_ + "dest/18112026142633/Blue.bsi");
}

TEST_F(Container, FailedZipLeavesTheDestinationAsItWas) {
    for (const char* rel : {"x/README", "y/README", "ok.txt"}) WriteBytes(dir_ + rel, rel);
    WriteBytes(dir_ + "old.bsz", "previous content");
    const std::tuple<std::vector<std::string>, PackageFailure, std::string> cases[] = {
        {{"ok.txt", "x/README", "y/README"}, PackageFailure::BadInput, "README"},
        {{"ok.txt", "nowhere.txt"}, PackageFailure::FileAccess, "nowhere.txt"},
    };
    for (const auto& [paths, failure, named] : cases) {
        BwZip zip;
        for (const auto& rel : paths) zip.AddFileFolder(dir_ + rel);
        EXPECT_EQ(zip.Zip("R", dir_ + "old.bsz"), "");
        EXPECT_EQ(zip.LastFailure(), failure);
        EXPECT_NE(zip.LastError().find(named), std::string::npos) << zip.LastError();
        EXPECT_EQ(ReadBytes(dir_ + "old.bsz"), "previous content");
        EXPECT_EQ(zip.Zip("R", dir_ + "new.bsz"), "");
        EXPECT_FALSE(fs::exists(dir_ + "new.bsz"));
    }
}

// Unpacks `package` into a fresh "work/base/" and checks that nothing appeared in "work/" outside
// the one folder UnZip made.
bool UnpackIsolated(const std::string& work, const std::string& package, BwZip& zip, bool useRootName = true) {
    fs::remove_all(work);
    WriteBytes(work + "base/pkg.bsz", package);
    zip = FixedZip();
    std::string bsi = useRootName ? "use the root name" : "";
    const bool ok = zip.UnZip(work + "base/pkg.bsz", work + "base/", false, true, &bsi);
    for (const auto& [rel, content] : Tree(work)) {
        const bool inside = !zip.UnpackedFolder().empty() && (work + rel).starts_with(zip.UnpackedFolder());
        EXPECT_TRUE(inside || rel == "base/pkg.bsz" || rel == "base/") << "written outside the unpack folder: " << rel;
    }
    return ok;
}

TEST_F(Container, HostileNamesStructureAndLengthsAreRefused) {
    const std::string file = FileRecord("f.txt", "HE0\rx"), folderA = "<FOLDER>a</FOLDER>\r\n<ENDFOLDER>a</ENDFOLDER>\r\n";
    const std::vector<std::string> names{"", ".", "..", "a/b", "../x", "a\\b", "..\\x", std::string("a\0b", 3)};
    std::vector<std::pair<std::string, std::string>> cases = {
        // Renaming markers that would restore to an unsafe name.
        {HandPackage("R", FileRecord("@$@1..", "HE0\rx")), ""},
        // Folder ends that climb out of the root or name another folder; a folder made twice.
        {HandPackage("R", folderA + "<ENDFOLDER>a</ENDFOLDER>\r\n" + file), ""},
        {HandPackage("R", "<FOLDER>a</FOLDER>\r\n<ENDFOLDER>base/R/a</ENDFOLDER>\r\n" + file), ""},
        {HandPackage("R", folderA + "<FOLDER>a</FOLDER>\r\n"), "twice"},
        // Lengths beyond the file fail before anything is allocated or written; others do not convert.
        {HandPackage("R", FileRecord("a.txt", "HE0\rabc", "2147483647")), "ends inside"},
        {HandPackage("R", FileRecord("a.txt", "HE0\rabc", "99")), "ends inside"},
        {HandPackage("R", FileRecord("a.txt", "HE0\rabc", "12abc")), ""},
        {HandPackage("R", FileRecord("a.txt", "HE2\r3\rA\x01\x01\x07" "4\r\x0F")), "Data corrupt because check sums do not match"},
        {HandPackage(std::string(kMaxPackageLineLength * 2, 'r'), ""), "longer than"},
    };
    for (const std::string& name : names) {
        cases.push_back({HandPackage("R", "<FOLDER>" + name + "</FOLDER>\r\n" + file + "<ENDFOLDER>" + name + "</ENDFOLDER>\r\n"), ""});
        cases.push_back({HandPackage("R", FileRecord(name, "HE0\rx")), ""});
        cases.push_back({HandPackage(name, file), ""});
    }
    BwZip zip;
    for (const auto& [package, error] : cases) {
        SCOPED_TRACE(package.substr(0, 120));
        EXPECT_FALSE(UnpackIsolated(dir_ + "work/", package, zip));
        EXPECT_EQ(zip.LastFailure(), PackageFailure::BadInput);
        EXPECT_NE(zip.LastError().find(error), std::string::npos) << zip.LastError();
        EXPECT_FALSE(fs::exists(dir_ + "work/base/R/a.txt"));
    }
    // A time-stamped root does not depend on the stored root name.
    for (const std::string& name : names) EXPECT_TRUE(UnpackIsolated(dir_ + "work/", HandPackage(name, file), zip, false)) << name;
    EXPECT_TRUE(UnpackIsolated(dir_ + "work/", HandPackage("R", FileRecord("ok@$@7.txt", "HE0\rx")), zip));
    EXPECT_EQ(ReadBytes(zip.UnpackedFolder() + "ok.txt"), "x");
}

TEST_F(Container, EveryTruncationOfAPackageIsReadOrRefused) {
    // Two files named p.gif from two folders; unpacked, the tree is the source tree again.
    WriteBytes(dir_ + "src/skin/a.bsi", "[Global]\r\nSkin Name=Blue\r\n");
    WriteBytes(dir_ + "src/skin/pics/p.gif", std::string(300, 'p') + "GIF89a" + std::string(40, '\r'));
    WriteBytes(dir_ + "src/p.gif", "other");
    Pack("Root", "full.bsz", {"src/skin", "src/p.gif"});
    const std::string full = ReadBytes(dir_ + "full.bsz");
    const auto original = Tree(dir_ + "src");
    BwZip zip;
    int read = 0;
    for (std::size_t length = 0; length <= full.size(); ++length) {
        SCOPED_TRACE("prefix of " + std::to_string(length) + " bytes");
        const bool ok = UnpackIsolated(dir_ + "work/", full.substr(0, length), zip);
        read += ok;
        if (zip.UnpackedFolder().empty()) continue;
        // A cut inside a folder line names the folder by the part that is left; it stays empty.
        for (const auto& [rel, content] : Tree(zip.UnpackedFolder()))
            EXPECT_TRUE(original.count(rel) ? original.at(rel) == content : rel.ends_with('/') && fs::is_empty(zip.UnpackedFolder() + rel)) << rel;
        EXPECT_TRUE(length < full.size() || (ok && Tree(zip.UnpackedFolder()) == original));
    }
    EXPECT_GT(read, 10);  // a cut at a line end reads what came before it
}

#ifdef BSZTOOL_PATH
struct ToolRun {
    int status;
    std::string out, err;
};

// For the shell; no argument here holds a quote.
std::string Quoted(const std::string& arg) { return " '" + arg + "'"; }

// A skin information file with every section and key, optionally leaving one key out.
std::string SkinInformation(const std::string& leaveOut = "") {
    std::string text;
    auto section = [&](const std::string& name, std::vector<std::string> keys) {
        text += "[" + name + "]\r\n";
        for (const auto& key : keys)
            if (name + "/" + key != leaveOut) text += key + "=1\r\n";
    };
    section("Global", {"Skin Name", "Skin Author", "Skin Send Image", "Skin Recieve Image", "Skin Creation Time", "Skin Creation Date"});
    section("Send Colours", {"Message Back Colour", "Message Text Colour", "User List Back Colour", "User List Text Colour"});
    section("Recieve Colours", {"Message Back Colour", "Message Text Colour", "Date Text Colour", "Sender Text Colour"});
    for (const char* area : {"Send User List", "Send Message", "Send All", "Send None", "Send Cut", "Send Send", "Send Close",
                             "Send Options", "Recieve Date", "Recieve Sender", "Recieve Message", "Recieve OK", "Recieve Yes",
                             "Recieve No", "Recieve Reply", "Recieve Close"})
        section(area, {"Left", "Top", "Width", "Height"});
    return text;
}

class Bsztool : public Container {
protected:
    ToolRun Run(const std::vector<std::string>& args) const {
        std::string command = "cd" + Quoted(dir_) + " &&" + Quoted(BSZTOOL_PATH);
        for (const auto& arg : args) command += Quoted(arg);
        const int raw = std::system((command + " >" + Quoted(dir_ + "out.txt") + " 2>" + Quoted(dir_ + "err.txt")).c_str());
        return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, ReadBytes(dir_ + "out.txt"), ReadBytes(dir_ + "err.txt")};
    }
};

TEST_F(Bsztool, PackListVerifyUnpackAndNoOverwriteUnlessForced) {
    WriteBytes(dir_ + "Blue/BlueSky.bsi", SkinInformation());
    std::string picture = "BM";
    for (int i = 0; i < 20000; ++i) picture.push_back(static_cast<char>(i % 7 == 0 ? i % 251 : 0x40));
    WriteBytes(dir_ + "Blue/send.bmp", picture);
    ASSERT_EQ(Run({"pack", "--root", "Blue Sky", "blue.bsz", "Blue/send.bmp", "Blue/BlueSky.bsi"}).status, 0);
    const ToolRun list = Run({"list", "blue.bsz"});
    EXPECT_NE(list.out.find("Blue Sky\tsend.bmp\t"), std::string::npos) << list.out;
    EXPECT_NE(list.out.find("\tHE2\t20002\n"), std::string::npos) << list.out;
    EXPECT_FALSE(fs::exists(dir_ + "Blue Sky"));
    const ToolRun verify = Run({"verify", "blue.bsz"});
    EXPECT_TRUE(verify.status == 0 && verify.out.starts_with("OK")) << verify.err;
    const ToolRun unpack = Run({"unpack", "blue.bsz", "dest"});
    EXPECT_NE(unpack.out.find("dest/Blue Sky/BlueSky.bsi"), std::string::npos) << unpack.err;
    EXPECT_EQ(Tree(dir_ + "dest/Blue Sky"), Tree(dir_ + "Blue"));

    const std::string package = ReadBytes(dir_ + "blue.bsz");
    EXPECT_NE(Run({"pack", "blue.bsz", "Blue"}).err.find("--force"), std::string::npos);
    EXPECT_EQ(Run({"pack", "--force", "blue.bsz", "Blue", "nowhere.gif"}).status, 2);
    EXPECT_EQ(ReadBytes(dir_ + "blue.bsz"), package);
    EXPECT_EQ(Run({"pack", "x.bsz", "Blue/"}).status, 2);

    // Forced, the package is replaced; verify names its first problem.
    WriteBytes(dir_ + "Blue/BlueSky.bsi", SkinInformation("Recieve Reply/Width"));
    ASSERT_EQ(Run({"pack", "--force", "blue.bsz", "Blue"}).status, 0);
    const ToolRun keys = Run({"verify", "blue.bsz"});
    EXPECT_EQ(keys.status, 1);
    EXPECT_NE(keys.err.find("[Recieve Reply] has no key \"Width\""), std::string::npos) << keys.err;
    WriteBytes(dir_ + "cut.bsz", package.substr(0, package.size() / 2));
    const ToolRun cut = Run({"verify", "cut.bsz"});
    EXPECT_EQ(cut.status, 1);
    EXPECT_NE(cut.err.find("ends inside"), std::string::npos) << cut.err;
}

TEST_F(Bsztool, He2EncodeAndDecode) {
    // Short input is stored unless forced; a damaged stream is refused and nothing is written.
    WriteBytes(dir_ + "abc.txt", "abc");
    ASSERT_EQ(Run({"he2", "encode", "abc.txt", "plain.he"}).status, 0);
    EXPECT_EQ(ReadBytes(dir_ + "plain.he"), "HE0\rabc");
    ASSERT_EQ(Run({"he2", "encode", "--force", "abc.txt", "forced.he"}).status, 0);
    ASSERT_EQ(Run({"he2", "decode", "forced.he", "back.txt"}).status, 0);
    EXPECT_EQ(ReadBytes(dir_ + "back.txt"), "abc");
    const std::string coded = ReadBytes(dir_ + "forced.he");
    WriteBytes(dir_ + "short.he", coded.substr(0, coded.size() - 1));
    const ToolRun shorter = Run({"he2", "decode", "short.he", "never.txt"});
    EXPECT_EQ(shorter.status, 1);
    EXPECT_EQ(shorter.err, "Expecting more bytes in data stream\n");
    EXPECT_FALSE(fs::exists(dir_ + "never.txt"));
}

TEST_F(Bsztool, UsageHelpAndRefusals) {
    WriteBytes(dir_ + "junk.bsz", "not a package at all");
    // Status 0 is a help run, which prints the usage.
    const std::pair<std::vector<std::string>, int> runs[] = {
        {{"--help"}, 0}, {{"pack", "--help"}, 0}, {{"unpack", "--help"}, 0}, {{"list", "--help"}, 0}, {{"verify", "--help"}, 0},
        {{"he2", "--help"}, 0}, {{"he2", "decode", "--help"}, 0}, {{}, 2}, {{"frobnicate"}, 2}, {{"pack", "only.bsz"}, 2},
        {{"list", "--bogus", "x.bsz"}, 2}, {{"list", "absent.bsz"}, 2}, {{"he2", "decode", "absent", "out"}, 2},
        {{"list", "junk.bsz"}, 1}, {{"unpack", "junk.bsz"}, 1}};
    for (const auto& [args, status] : runs) {
        const ToolRun run = Run(args);
        EXPECT_EQ(run.status, status) << ::testing::PrintToString(args);
        EXPECT_TRUE(status != 0 || run.out.find("usage: bsztool") != std::string::npos) << ::testing::PrintToString(args);
    }
}
#endif  // BSZTOOL_PATH

}  // namespace
}  // namespace skin::testing
