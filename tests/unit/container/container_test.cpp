// The package container through BwZip's public methods, packages from strangers, and the built
// bsztool run as a designer or a hosting site would run it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>
#include <filesystem>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "bwzip.h"
#include "huffmancoding.h"
#include "scratchfolder.h"

namespace skin::testing {
namespace {

namespace fs = std::filesystem;

// Every file below `root` with its content; folders as "name/".
std::map<std::string, std::string> Tree(const fs::path& root) {
    std::map<std::string, std::string> tree;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        tree[fs::relative(entry.path(), root).string() + (entry.is_directory() ? "/" : "")] = entry.is_directory() ? "" : FileBytes(entry.path());
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

class Container : public ScratchFolderTest {
protected:
    void SetUp() override {
        ScratchFolderTest::SetUp();
        fs::create_directories(dir_ + "dest");
    }
    BwZip Pack(const std::string& root, const std::string& out, const std::vector<std::string>& paths) const {
        BwZip zip = FixedZip();
        for (const auto& rel : paths) zip.AddFileFolder(dir_ + rel);
        EXPECT_EQ(zip.Zip(root, dir_ + out), dir_ + out) << zip.LastError();
        return zip;
    }

    // The test's own folder, ending in "/", with an empty "dest/" in it.
    const std::string dir_ = folder_.string() + "/";
};

TEST_F(Container, OneFilePackageUniqueRootsAndHeaderForms) {
    BwZip zip = FixedZip();
    zip.AddFileFolder("");
    EXPECT_EQ(zip.Zip("Root", dir_ + "none.bsz"), "");  // the list is empty
    EXPECT_FALSE(fs::exists(dir_ + "none.bsz"));

    PutFileBytes(dir_ + "a.bsi", "abcd");
    PutFileBytes(dir_ + "dest/out.bsz", "earlier");
    zip = Pack("MySkin", "dest/out.bsz", {"a.bsi"});
    EXPECT_EQ(FileBytes(dir_ + "dest/out.bsz"),
              "earlier<SKINPACKAGE>Brindleway Skin Package 18/11/2026 14:26:33</SKINPACKAGE>\r\n"
              "<ROOTFOLDER>MySkin</ROOTFOLDER>\r\n<FILE>a.bsi</FILE>\r\n<FILELENGTH>8</FILELENGTH>\r\n"
              "HE0\rabcd\r\n<ENDFILE>a.bsi</ENDFILE>\r\n<ENDSKINPACKAGE></ENDSKINPACKAGE>");
    // The header may stand anywhere in the first line; each unpack into one place gets a new folder.
    const std::string base = dir_ + "dest/";
    for (const char* folder : {"MySkin/", "MySkin0/", "MySkin01/", "MySkin012/"}) {
        std::string bsi = "keep the root name";
        ASSERT_TRUE(zip.UnZip(base + "out.bsz", base, false, true, &bsi)) << zip.LastError();
        EXPECT_EQ(FileBytes(base + folder + "a.bsi"), "abcd");
        EXPECT_EQ(bsi, base + folder + "a.bsi");
    }

    // Each header form is refused where the other is asked for.
    EXPECT_FALSE(zip.UnZip("out.bsz", base, false, false, nullptr));
    EXPECT_EQ(zip.LastError(), "Invalid file format.");
    EXPECT_EQ(zip.LastErrorNumber(), -2147220504);
    PutFileBytes(base + "in.btf", HandPackage("Drop", FileRecord("note.txt", "HE0\rhi\r\n"),
                                            "<filetransfer>BRINDLEWAY FILE TRANSFER today</filetransfer>"));
    EXPECT_FALSE(zip.UnZip(base + "in.btf", base, false, true, nullptr));
    EXPECT_EQ(zip.LastFailure(), PackageFailure::BadInput);
    ASSERT_TRUE(zip.UnZip("in.btf", base, true, false, nullptr)) << zip.LastError();
    EXPECT_EQ(FileBytes(base + "Drop/note.txt"), "hi\r\n");
    EXPECT_FALSE(fs::exists(base + "in.btf"));  // deleted on request
    // Without a root folder line the root is named by the last line, or by the time stamp.
    PutFileBytes(base + "bare.bsz", "<SKINPACKAGE>Brindleway Skin Package x</SKINPACKAGE>\r\nLoose");
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
    PutFileBytes(dir_ + "skin/b.txt", std::string("\0\r\n\xFF\x1A\r", 6));
    PutFileBytes(dir_ + "skin/B.txt", "line\r\n\r\n<FILE>x</FILE>\r\nend\r");
    PutFileBytes(dir_ + "skin/Z/caf\xC3\xA9.txt", "");
    PutFileBytes(dir_ + "skin/a/inner.txt", std::string(5000, 'q') + "tail");
    PutFileBytes(dir_ + "b.txt", "outside");
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
    const std::string package = FileBytes(dir_ + "out.bsz");
    EXPECT_NE(package.find("<ROOTFOLDER>D\xE9j\xE0</ROOTFOLDER>"), std::string::npos);
    EXPECT_NE(package.find("<FILE>caf\xE9.txt</FILE>"), std::string::npos);
    events = 0;
    std::string bsi = "no information file inside";
    ASSERT_TRUE(zip.UnZip(dir_ + "out.bsz", dir_ + "dest/", false, true, &bsi)) << zip.LastError();
    EXPECT_EQ(events, 5);
    EXPECT_EQ(Tree(dir_ + "dest/D\xC3\xA9j\xC3\xA0/skin"), Tree(dir_ + "skin"));
    EXPECT_EQ(FileBytes(dir_ + "dest/D\xC3\xA9j\xC3\xA0/b.txt"), "outside");
}

TEST_F(Container, ClashingNamesAreRenamedAndRestoredUnderAStampedRoot) {
    for (const char* folder : {"a", "b", "c"}) PutFileBytes(dir_ + folder + "/Blue.bsi", folder);
    BwZip zip = Pack("Blue Sky", "out.bsz", {"a/Blue.bsi", "b/Blue.bsi", "c/Blue.bsi"});
    const std::string package = FileBytes(dir_ + "out.bsz");
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
    for (const char* rel : {"x/README", "y/README", "ok.txt"}) PutFileBytes(dir_ + rel, rel);
    PutFileBytes(dir_ + "old.bsz", "previous content");
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
        EXPECT_EQ(FileBytes(dir_ + "old.bsz"), "previous content");
        EXPECT_EQ(zip.Zip("R", dir_ + "new.bsz"), "");
        EXPECT_FALSE(fs::exists(dir_ + "new.bsz"));
    }
}

// Unpacks `package` into a fresh "work/base/" and checks that nothing appeared in "work/" outside
// the one folder UnZip made.
bool UnpackIsolated(const std::string& work, const std::string& package, BwZip& zip, bool useRootName = true) {
    fs::remove_all(work);
    PutFileBytes(work + "base/pkg.bsz", package);
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
    EXPECT_EQ(FileBytes(zip.UnpackedFolder() + "ok.txt"), "x");
}

TEST_F(Container, EveryTruncationOfAPackageIsReadOrRefused) {
    // Two files named p.gif from two folders; unpacked, the tree is the source tree again.
    PutFileBytes(dir_ + "src/skin/a.bsi", "[Global]\r\nSkin Name=Blue\r\n");
    PutFileBytes(dir_ + "src/skin/pics/p.gif", std::string(300, 'p') + "GIF89a" + std::string(40, '\r'));
    PutFileBytes(dir_ + "src/p.gif", "other");
    Pack("Root", "full.bsz", {"src/skin", "src/p.gif"});
    const std::string full = FileBytes(dir_ + "full.bsz");
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

TEST_F(Container, AFileThatFailsToDecodeLeavesNothingAndKeepsAnEarlierOneOfItsName) {
    // a.txt, then a second a.txt whose coded bytes are cut or damaged everywhere in turn.
    std::string text;
    for (int i = 0; i < 300; ++i) text += "line " + std::to_string(i * i % 97) + "\r\n";
    const std::string coded = HuffmanEncode(text, true);
    const std::string first = FileRecord("a.txt", "HE0\rfirst");
    std::vector<std::string> damaged;
    for (std::size_t length = 0; length < coded.size(); length += 1 + length / 16) damaged.push_back(coded.substr(0, length));
    for (std::size_t at = 0; at < coded.size(); at += 1 + at / 32) {
        for (int flip : {0x01, 0x80}) {
            damaged.push_back(coded);
            damaged.back()[at] = static_cast<char>(damaged.back()[at] ^ flip);
        }
    }
    BwZip zip;
    int refused = 0;
    for (const std::string& bad : damaged) {
        const bool ok = UnpackIsolated(dir_ + "work/", HandPackage("R", first + FileRecord("a.txt", bad)), zip);
        const auto decoded = HuffmanDecode(bad);
        ASSERT_EQ(ok, std::holds_alternative<std::string>(decoded)) << zip.LastError();
        if (ok) continue;
        ++refused;
        // Only the first file, whole: no half-written second one and no temporary file beside it.
        EXPECT_EQ(Tree(zip.UnpackedFolder()), (std::map<std::string, std::string>{{"a.txt", "first"}}));
        EXPECT_EQ(zip.LastFailure(), PackageFailure::BadInput);
        EXPECT_TRUE(zip.LastError().ends_with(std::get<CodecError>(decoded).description + " (1 file unpacked before it)")) << zip.LastError();
    }
    EXPECT_GT(refused, static_cast<int>(damaged.size()) / 2);
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

// A lookup table of `entries` long codes that part early: each is a chain of its own in a code
// tree. The payload is too short for anything to decode.
std::string LongCodeStream(int entries) {
    std::string table;
    for (int e = 0; e < entries; ++e) {
        std::string code(2 + (254 + 7) / 8, '\0');
        code[0] = 'A';
        code[1] = static_cast<char>(254);
        for (int bit = 0; bit < 20; ++bit) code[2 + bit / 8] = static_cast<char>(code[2 + bit / 8] | ((e >> bit) & 1) << (bit % 8));
        table += code;
    }
    return "HE2\r" + std::to_string(table.size()) + "\r" + table + '\0' + "4\r" + std::string(64, '\0');
}

// The largest resident set of any program this test process has waited for, in bytes.
long MostResidentOfChildren() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss * 1024L;
}

class Bsztool : public Container {
protected:
    // Starts bsztool in the test's folder without waiting for it; its output is dropped.
    pid_t Start(const std::vector<std::string>& args) const {
        const pid_t pid = ::fork();
        if (pid == 0) {
            if (::chdir(dir_.c_str()) != 0) ::_exit(127);
            std::vector<char*> argv{const_cast<char*>(BSZTOOL_PATH)};
            for (const auto& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
            argv.push_back(nullptr);
            std::freopen("/dev/null", "w", stdout);
            std::freopen("/dev/null", "w", stderr);
            ::execv(BSZTOOL_PATH, argv.data());
            ::_exit(127);
        }
        return pid;
    }
    static int Wait(pid_t pid) {
        int status = 0;
        ::waitpid(pid, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    ToolRun Run(const std::vector<std::string>& args) const {
        std::string command = "cd" + Quoted(dir_) + " &&" + Quoted(BSZTOOL_PATH);
        for (const auto& arg : args) command += Quoted(arg);
        const int raw = std::system((command + " >" + Quoted(dir_ + "out.txt") + " 2>" + Quoted(dir_ + "err.txt")).c_str());
        return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, FileBytes(dir_ + "out.txt"), FileBytes(dir_ + "err.txt")};
    }
};

TEST_F(Bsztool, PackListVerifyUnpackAndNoOverwriteUnlessForced) {
    PutFileBytes(dir_ + "Blue/BlueSky.bsi", SkinInformation());
    std::string picture = "BM";
    for (int i = 0; i < 20000; ++i) picture.push_back(static_cast<char>(i % 7 == 0 ? i % 251 : 0x40));
    PutFileBytes(dir_ + "Blue/send.bmp", picture);
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

    const std::string package = FileBytes(dir_ + "blue.bsz");
    EXPECT_NE(Run({"pack", "blue.bsz", "Blue"}).err.find("--force"), std::string::npos);
    EXPECT_EQ(Run({"pack", "--force", "blue.bsz", "Blue", "nowhere.gif"}).status, 2);
    EXPECT_EQ(FileBytes(dir_ + "blue.bsz"), package);
    EXPECT_EQ(Run({"pack", "x.bsz", "Blue/"}).status, 2);

    // Forced, the package is replaced; verify names its first problem.
    PutFileBytes(dir_ + "Blue/BlueSky.bsi", SkinInformation("Recieve Reply/Width"));
    ASSERT_EQ(Run({"pack", "--force", "blue.bsz", "Blue"}).status, 0);
    const ToolRun keys = Run({"verify", "blue.bsz"});
    EXPECT_EQ(keys.status, 1);
    EXPECT_NE(keys.err.find("[Recieve Reply] has no key \"Width\""), std::string::npos) << keys.err;
    PutFileBytes(dir_ + "cut.bsz", package.substr(0, package.size() / 2));
    const ToolRun cut = Run({"verify", "cut.bsz"});
    EXPECT_EQ(cut.status, 1);
    EXPECT_NE(cut.err.find("ends inside"), std::string::npos) << cut.err;
}

TEST_F(Bsztool, He2EncodeAndDecode) {
    // Short input is stored unless forced; a damaged stream is refused and nothing is written.
    PutFileBytes(dir_ + "abc.txt", "abc");
    ASSERT_EQ(Run({"he2", "encode", "abc.txt", "plain.he"}).status, 0);
    EXPECT_EQ(FileBytes(dir_ + "plain.he"), "HE0\rabc");
    ASSERT_EQ(Run({"he2", "encode", "--force", "abc.txt", "forced.he"}).status, 0);
    ASSERT_EQ(Run({"he2", "decode", "forced.he", "back.txt"}).status, 0);
    EXPECT_EQ(FileBytes(dir_ + "back.txt"), "abc");
    const std::string coded = FileBytes(dir_ + "forced.he");
    PutFileBytes(dir_ + "short.he", coded.substr(0, coded.size() - 1));
    const ToolRun shorter = Run({"he2", "decode", "short.he", "never.txt"});
    EXPECT_EQ(shorter.status, 1);
    EXPECT_EQ(shorter.err, "Expecting more bytes in data stream\n");
    EXPECT_FALSE(fs::exists(dir_ + "never.txt"));
}

TEST_F(Bsztool, UsageHelpAndRefusals) {
    PutFileBytes(dir_ + "junk.bsz", "not a package at all");
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
TEST_F(Bsztool, HostilePackagesStayWithinMemoryAndTime) {
    // Memory stays under 64 MB plus twice the package, for lookup tables of long codes that fit
    // the decoder's room and for ones that do not, and for 60,000 nested folders.
    PutFileBytes(dir_ + "fits.bsz", HandPackage("R", FileRecord("a.bmp", LongCodeStream(3000))));
    PutFileBytes(dir_ + "huge.bsz", HandPackage("R", FileRecord("a.bmp", LongCodeStream(150000))));
    std::string nested;
    for (int depth = 0; depth < 60000; ++depth) nested += "<FOLDER>f</FOLDER>\r\n";
    for (int depth = 0; depth < 60000; ++depth) nested += "<ENDFOLDER>f</ENDFOLDER>\r\n";
    PutFileBytes(dir_ + "deep.bsz", HandPackage("R", nested));
    std::size_t largest = 0;
    for (const char* package : {"fits.bsz", "huge.bsz", "deep.bsz"}) largest = std::max<std::size_t>(largest, fs::file_size(dir_ + package));
    ASSERT_GT(largest, 4u << 20);

    for (const char* package : {"fits.bsz", "huge.bsz"}) {
        const ToolRun verify = Run({"verify", package});
        EXPECT_EQ(verify.status, 1) << package;
        const ToolRun unpack = Run({"unpack", package, "dest"});
        EXPECT_EQ(unpack.status, 1) << package;
        EXPECT_FALSE(fs::exists(dir_ + "dest/R/a.bmp"));
        EXPECT_EQ(Run({"list", package}).status, 0);
        fs::remove_all(dir_ + "dest/R");
    }
    const ToolRun huge = Run({"verify", "huge.bsz"});
    EXPECT_NE(huge.err.find("\"a.bmp\": Out of memory"), std::string::npos) << huge.err;
    const ToolRun fits = Run({"verify", "fits.bsz"});
    EXPECT_NE(fits.err.find("\"a.bmp\": Expecting more bytes in data stream"), std::string::npos) << fits.err;
    EXPECT_EQ(Run({"verify", "deep.bsz"}).status, 0);
    EXPECT_EQ(Run({"list", "deep.bsz"}).status, 0);
    // Unpacked, the nesting ends where the file system's paths end: bad input, with the reason.
    const ToolRun deep = Run({"unpack", "deep.bsz", "dest"});
    EXPECT_EQ(deep.status, 1);
    EXPECT_NE(deep.err.find("File name too long"), std::string::npos) << deep.err;
    EXPECT_LT(MostResidentOfChildren(), (64L << 20) + 2 * static_cast<long>(largest));
}

TEST_F(Bsztool, AKilledPackingLeavesTheDestinationAbsentOrAsItWas) {
    std::mt19937 rng(77);
    std::string picture;
    for (int i = 0; i < (24 << 20); ++i) picture.push_back(static_cast<char>((i % 3000) / 12 + (rng() % 5 == 0)));
    PutFileBytes(dir_ + "in/send.bmp", picture);
    PutFileBytes(dir_ + "old.bsz", "the previous package");
    int killedEarly = 0, finished = 0;
    for (int round = 0; round < 12; ++round) {
        fs::remove(dir_ + "new.bsz");
        const bool replace = round % 2 == 1;
        const pid_t pid = Start({"pack", "--force", replace ? "old.bsz" : "new.bsz", "in"});
        std::this_thread::sleep_for(std::chrono::milliseconds(rng() % 120));
        ::kill(pid, SIGKILL);
        const bool done = Wait(pid) == 0;
        finished += done;
        const std::string target = dir_ + (replace ? "old.bsz" : "new.bsz");
        if (fs::exists(target) && FileBytes(target) != "the previous package") {
            // Only a whole package ever takes the destination's place.
            EXPECT_EQ(Run({"verify", replace ? "old.bsz" : "new.bsz"}).status, 0) << "round " << round;
            if (replace) PutFileBytes(dir_ + "old.bsz", "the previous package");
        } else {
            killedEarly += !done;
            EXPECT_EQ(fs::exists(target), replace) << "round " << round;
        }
    }
    EXPECT_GT(killedEarly, 2);
    // A package being written has no name of its own until it is whole.
    for (const auto& [rel, content] : Tree(dir_)) EXPECT_FALSE(rel.starts_with(".new.bsz")) << rel;
}

TEST_F(Bsztool, ParallelUnpacksEachTakeAFolderOfTheirOwn) {
    PutFileBytes(dir_ + "Blue/BlueSky.bsi", SkinInformation());
    ASSERT_EQ(Run({"pack", "--root", "Blue", "blue.bsz", "Blue/BlueSky.bsi"}).status, 0);
    for (int round = 0; round < 20; ++round) {
        const pid_t a = Start({"unpack", "blue.bsz", "dest"}), b = Start({"unpack", "blue.bsz", "dest"});
        EXPECT_EQ(Wait(a), 0) << "round " << round;
        EXPECT_EQ(Wait(b), 0) << "round " << round;
    }
    int folders = 0;
    for (const auto& entry : fs::directory_iterator(dir_ + "dest")) folders += FileBytes(entry.path() / "BlueSky.bsi") == SkinInformation();
    EXPECT_EQ(folders, 40);
}

TEST_F(Bsztool, NamesAreEscapedAndAPackageThatStopsEarlyIsUnpackedWithAWarning) {
    const std::string name = "x\x1B[2J\ty\nz\x81.txt";
    const std::string body = "<FOLDER>f\x07</FOLDER>\r\n" + FileRecord(name, "HE0\rabc") + "<ENDFOLDER>f\x07</ENDFOLDER>\r\n" +
                             FileRecord(std::string(300, 'n') + ".txt", "HE0\rlong");
    PutFileBytes(dir_ + "odd.bsz", HandPackage("R\x1B]0;", body));
    const ToolRun list = Run({"list", "odd.bsz"});
    EXPECT_EQ(list.status, 0);
    EXPECT_NE(list.out.find("R\\x1B]0;/f\\x07\tx\\x1B[2J\\x09y\\x0Az\\u0081.txt\t7\tHE0\t3\n"), std::string::npos) << list.out;
    EXPECT_EQ(std::count(list.out.begin(), list.out.end(), '\n'), 3);
    // A name longer than a file system allows is the package's fault, and verify names it.
    const ToolRun unpack = Run({"unpack", "odd.bsz", "dest"});
    EXPECT_EQ(unpack.status, 1);
    EXPECT_NE(unpack.err.find("partly unpacked into dest/R\\x1B]0;/"), std::string::npos) << unpack.err;
    EXPECT_NE(unpack.err.find("File name too long (1 file unpacked before it)"), std::string::npos) << unpack.err;
    EXPECT_EQ(FileBytes(dir_ + "dest/R\x1B]0;/f\x07/x\x1B[2J\ty\nz\xC2\x81.txt"), "abc");
    const ToolRun verify = Run({"verify", "odd.bsz"});
    EXPECT_EQ(verify.status, 1);
    EXPECT_NE(verify.err.find("is longer than a file system allows"), std::string::npos) << verify.err;

    // Stopping after a whole line is allowed: unpacked with a warning, refused by verify.
    const std::string whole = HandPackage("S", "<FOLDER>f</FOLDER>\r\n" + FileRecord("a.txt", "HE0\rabc"));
    PutFileBytes(dir_ + "cut.bsz", whole.substr(0, whole.find("<ENDSKINPACKAGE>")));
    const ToolRun cut = Run({"unpack", "cut.bsz", "dest"});
    EXPECT_EQ(cut.status, 0);
    EXPECT_NE(cut.err.find("may be incomplete (1 file(s) unpacked)"), std::string::npos) << cut.err;
    EXPECT_EQ(FileBytes(dir_ + "dest/S/f/a.txt"), "abc");
    EXPECT_EQ(Run({"verify", "cut.bsz"}).status, 1);
    EXPECT_EQ(Run({"unpack", "odd.bsz", "dest2"}).err.find("may be incomplete"), std::string::npos);
}
#endif  // BSZTOOL_PATH

}  // namespace
}  // namespace skin::testing
