#pragma once
// Shared helpers for the container tests: a private folder per test under the system
// temporary folder, whole-file reading and writing, folder trees, and packages built by hand.

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "bwzip.h"

namespace skin::testing {

namespace fs = std::filesystem;

inline const PackageClockTime kFixedClock{2026, 11, 18, 14, 26, 33};

inline void WriteBytes(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

inline std::string ReadBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Every file below `root`, by path relative to it, with its content; folders as "name/".
inline std::map<std::string, std::string> Tree(const fs::path& root) {
    std::map<std::string, std::string> tree;
    if (!fs::exists(root)) return tree;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const std::string rel = fs::relative(entry.path(), root).string();
        if (entry.is_directory()) {
            tree[rel + "/"] = "";
        } else {
            tree[rel] = ReadBytes(entry.path());
        }
    }
    return tree;
}

// A package written by hand: the header, the root line, then the given lines as they are.
inline std::string HandPackage(const std::string& root, const std::string& body,
                               const std::string& header = "<SKINPACKAGE>Brindleway Skin Package x</SKINPACKAGE>") {
    return header + "\r\n<ROOTFOLDER>" + root + "</ROOTFOLDER>\r\n" + body + "<ENDSKINPACKAGE></ENDSKINPACKAGE>";
}

// One file record holding `coded` as it is; StoredFileRecord holds `content` in the HE0 form.
inline std::string FileRecord(const std::string& name, const std::string& coded, const std::string& length = "") {
    return "<FILE>" + name + "</FILE>\r\n<FILELENGTH>" + (length.empty() ? std::to_string(coded.size()) : length) +
           "</FILELENGTH>\r\n" + coded + "\r\n<ENDFILE>" + name + "</ENDFILE>\r\n";
}
inline std::string StoredFileRecord(const std::string& name, const std::string& content) {
    return FileRecord(name, "HE0\r" + content);
}

// Each test works in its own folder under the system temporary folder.
class ContainerTest : public ::testing::Test {
protected:
    void SetUp() override {
        static std::atomic<int> counter{0};
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        dir_ = fs::temp_directory_path() / ("container-" + std::to_string(::getpid()) + "-" +
                                            std::to_string(counter++) + "-" + info->name());
        fs::remove_all(dir_);
        fs::create_directories(dir_);
    }
    void TearDown() override {
        std::error_code ec;
        fs::remove_all(dir_, ec);
    }
    fs::path Path(const std::string& rel) const { return dir_ / rel; }
    std::string Str(const std::string& rel) const { return (dir_ / rel).string(); }
    // A base folder for unpacking, ending in "/".
    std::string Base(const std::string& rel) const {
        fs::create_directories(dir_ / rel);
        return (dir_ / rel).string() + "/";
    }
    BwZip FixedZip() const {
        BwZip zip;
        zip.SetClock([] { return kFixedClock; });
        return zip;
    }
    // A package at `out` of the given paths (relative to the test folder), on the fixed clock.
    BwZip Pack(const std::string& root, const std::string& out, const std::vector<std::string>& paths) {
        BwZip zip = FixedZip();
        for (const auto& rel : paths) zip.AddFileFolder(Str(rel));
        EXPECT_EQ(zip.Zip(root, Str(out)), Str(out)) << zip.LastError();
        return zip;
    }

    fs::path dir_;
};

}  // namespace skin::testing
