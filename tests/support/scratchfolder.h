#pragma once
// A fresh folder per test, removed afterwards, and files' exact bytes.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace skin::testing {

inline std::string FileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The whole file becomes `bytes`; missing folders on the way are made.
inline void PutFileBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

class ScratchFolderTest : public ::testing::Test {
protected:
    // Named by the test and the process, so that test programs running side by side never meet.
    const std::filesystem::path folder_ = [] {
        const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
        return std::filesystem::temp_directory_path() /
               (std::string("skintest-") + test->test_suite_name() + "." + test->name() + "-" + std::to_string(::getpid()));
    }();
    void SetUp() override { std::filesystem::create_directories(folder_); }
    void TearDown() override { std::filesystem::remove_all(folder_); }
    std::string Path(const std::string& relative) const { return (folder_ / relative).string(); }
};

}  // namespace skin::testing
