#pragma once
// Shared set-up for the package creation and skin loading tests: an editor on the scripted
// platform, a fresh folder per test holding the platform's temporary folder, the pictures and
// the packages, and a complete skin drawn the way a designer draws it.

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

// Remembers, for every refresh, the skin name and how many messages had been shown, so a
// test can see what the screen held when a message box came up.
class NotingView : public SurfaceView {
public:
    explicit NotingView(const FakePlatform& platform) : platform_(platform) {}
    struct Seen {
        std::string skinName;
        std::size_t messagesBefore;
    };
    std::vector<Seen> seen;
    void SurfaceChanged(const EditorSurface&, const SkinDocument& document) override {
        seen.push_back({document.SkinName(), platform_.messages.size()});
    }

private:
    const FakePlatform& platform_;
};

// One area of the test skin, picture-relative.
struct DrawnArea {
    SkinSide side;
    AreaKind kind;
    float left, top, width, height;
};

class SkinFilesTest : public ::testing::Test {
protected:
    FakePlatform platform;
    NotingView view{platform};
    Editor editor{platform, &view};

    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        root_ = fs::temp_directory_path() / (std::string("skinfiles-") + info->test_suite_name() + "-" +
                                             info->name() + "-" + std::to_string(::getpid()));
        fs::remove_all(root_);
        fs::create_directories(root_ / "tmp");
        fs::create_directories(root_ / "pictures");
        fs::create_directories(root_ / "out");
        platform.tempFolder = (root_ / "tmp").string() + "/";
    }
    void TearDown() override { fs::remove_all(root_); }

    std::string Path(const std::string& relative) const { return (root_ / relative).string(); }
    std::string TempPath(const std::string& relative) const { return platform.tempFolder + relative; }
    // The folder a run at the fake's clock makes under the temporary folder.
    std::string StampFolder() const { return TempPath("18112026142633"); }

    static std::string Bytes(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    static void PutBytes(const std::string& path, const std::string& bytes) {
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out << bytes;
    }
    // Picture bytes: every byte value, CR and LF included, in a side-specific order.
    static std::string PictureBytes(int seed) {
        std::string bytes = "BM";
        for (int i = 0; i < 3000; ++i) bytes.push_back(static_cast<char>((i * (2 * seed + 1) + seed) & 0xFF));
        return bytes;
    }

    // The sixteen areas of the test skin, all inside their pictures and all different.
    static const std::vector<DrawnArea>& Areas() {
        static const std::vector<DrawnArea> areas = [] {
            std::vector<DrawnArea> list;
            for (AreaKind k = 0; k < kAreaKinds; ++k) {
                list.push_back({SkinSide::Send, k, 90.0f + 300 * k, 120.0f + 240 * k, 255.0f + 15 * k, 180.0f + 30 * k});
            }
            for (AreaKind k = 0; k < kAreaKinds; ++k) {
                list.push_back({SkinSide::Receive, k, 60.0f + 330 * k, 150.0f + 210 * k, 300.0f + 45 * k, 165.0f + 15 * k});
            }
            return list;
        }();
        return areas;
    }
    // The eight kept colours of the test skin, all away from the start colours.
    static OleColour TestColour(TextField field, ColourRole role) {
        return 0x00102030 + 0x111 * static_cast<int>(field) + (role == ColourRole::Text ? 0x50000 : 0);
    }

    // Pictures, name, author, eight colours and sixteen areas, each area dragged and named
    // through the name menu.
    void MakeFullSkin(const std::string& name = "My Skin") {
        PutBytes(Path("pictures/send.bmp"), PictureBytes(1));
        PutBytes(Path("pictures/receive.bmp"), PictureBytes(2));
        SkinDocument& doc = editor.Document();
        doc.SetPicture(SkinSide::Send, "send.bmp", Path("pictures/send.bmp"));
        doc.SetPicture(SkinSide::Receive, "receive.bmp", Path("pictures/receive.bmp"));
        doc.SetSkinName(name);
        doc.SetSkinAuthor("Ada Designer");
        for (TextField f : {TextField::SendUsers, TextField::SendMessage, TextField::ReceiveDate,
                            TextField::ReceiveSender, TextField::ReceiveMessage}) {
            for (ColourRole r : {ColourRole::Back, ColourRole::Text}) doc.SetColour(f, r, TestColour(f, r));
        }
        for (const DrawnArea& a : Areas()) {
            platform.menuAnswers.push_back(a.kind);
            editor.BeginArea(a.side, a.left, a.top);
            editor.ExtendArea(a.side, a.left + a.width, a.top + a.height);
            editor.EndArea(a.side, a.left + a.width, a.top + a.height);
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

    fs::path root_;
};

}  // namespace skin::testing
