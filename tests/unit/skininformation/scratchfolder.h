#pragma once
// A fresh folder per test under the temporary folder, and a file's exact bytes.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace skin::testing {

class ScratchFolder : public ::testing::Test {
protected:
    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() /
        ("skininformation-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + "-" +
         std::to_string(::getpid()));

    void SetUp() override {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }
    std::string Path(const std::string& name) const { return (folder_ / name).string(); }
    static std::string Bytes(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    static void PutBytes(const std::string& path, const std::string& bytes) {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    }
};

}  // namespace skin::testing
