#pragma once
// An editor on the scripted platform, a fresh folder per test holding the platform's temporary
// folder, the pictures and the packages, and a complete skin drawn the way a designer draws it.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

#include "editor.h"
#include "fakeplatform.h"

namespace skin::testing {

namespace fs = std::filesystem;
using Log = std::vector<std::string>;

// For every refresh, the skin name and how many messages had been shown by then.
struct NotingView : SurfaceView {
    explicit NotingView(const FakePlatform& p) : platform(p) {}
    const FakePlatform& platform;
    std::vector<std::pair<std::string, std::size_t>> seen;
    void SurfaceChanged(const EditorSurface&, const SkinDocument& document) override {
        seen.emplace_back(document.SkinName(), platform.messages.size());
    }
};

class SkinFilesTest : public ::testing::Test {
protected:
    FakePlatform platform;
    NotingView view{platform};
    Editor editor{platform, &view};
    const fs::path root_ = fs::temp_directory_path() /
                           ("skinfiles-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) +
                            "-" + std::to_string(::getpid()));

    void SetUp() override {
        fs::remove_all(root_);
        fs::create_directories(root_ / "tmp");
        fs::create_directories(root_ / "out");
        platform.tempFolder = (root_ / "tmp").string() + "/";
    }
    void TearDown() override { fs::remove_all(root_); }

    std::string Path(const std::string& relative) const { return (root_ / relative).string(); }
    // The folder a run at the fake's clock makes under the temporary folder.
    std::string StampFolder() const { return platform.tempFolder + "18112026142633"; }
    static std::string Bytes(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    static void PutBytes(const std::string& path, const std::string& bytes) {
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    }
    // Every byte value, CR and LF included, in a side-specific order.
    static std::string PictureBytes(int seed) {
        std::string bytes = "BM";
        for (int i = 0; i < 3000; ++i) bytes.push_back(static_cast<char>((i * (2 * seed + 1) + seed) & 0xFF));
        return bytes;
    }
    static OleColour TestColour(TextField field, ColourRole role) {
        return 0x00102030 + 0x111 * static_cast<int>(field) + (role == ColourRole::Text ? 0x50000 : 0);
    }

    // Pictures, name, author, ten colours and sixteen different areas, each dragged and named
    // through the name menu.
    void MakeFullSkin(const std::string& name = "My Skin") {
        PutBytes(Path("pictures/send.bmp"), PictureBytes(1));
        PutBytes(Path("pictures/receive.bmp"), PictureBytes(2));
        SkinDocument& doc = editor.Document();
        doc.SetPicture(SkinSide::Send, "send.bmp", Path("pictures/send.bmp"));
        doc.SetPicture(SkinSide::Receive, "receive.bmp", Path("pictures/receive.bmp"));
        doc.SetSkinName(name);
        doc.SetSkinAuthor("Ada Designer");
        for (int f = 0; f < kTextFields; ++f) {
            for (ColourRole r : {ColourRole::Back, ColourRole::Text}) doc.SetColour(TextField(f), r, TestColour(TextField(f), r));
        }
        for (SkinSide side : {SkinSide::Send, SkinSide::Receive}) {
            for (AreaKind k = 0; k < kAreaKinds; ++k) {  // all inside their pictures, all different
                const float left = 90.0f + 300 * k, top = (side == SkinSide::Send ? 120.0f : 150.0f) + 210 * k;
                const float right = left + 255 + 15 * k, bottom = top + 165 + 15 * k;
                platform.menuAnswers.push_back(k);
                editor.BeginArea(side, left, top);
                editor.ExtendArea(side, right, bottom);
                editor.EndArea(side, right, bottom);
            }
        }
    }

    // The busy indications are all off: normal pointer, input on, no panel.
    void ExpectIdle() const {
        EXPECT_FALSE(platform.hourglass);
        EXPECT_TRUE(platform.inputEnabled);
        EXPECT_FALSE(platform.creatingPanel);
        EXPECT_FALSE(platform.loadingPanel);
    }
    void ExpectMessage(std::size_t i, const std::string& text, const std::string& title, MessageIcon icon,
                       MessageButtons buttons) const {
        ASSERT_LT(i, platform.messages.size()) << text;
        const FakePlatform::Message& m = platform.messages[i];
        EXPECT_EQ(m.text, text);
        EXPECT_EQ(m.title, title) << text;
        EXPECT_EQ(m.icon, icon) << text;
        EXPECT_EQ(m.buttons, buttons) << text;
    }
    std::vector<std::string> MessageTitles() const {
        std::vector<std::string> titles;
        for (const auto& m : platform.messages) titles.push_back(m.title);
        return titles;
    }
};

}  // namespace skin::testing
