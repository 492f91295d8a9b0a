// Writing the skin information file: the sections, keys and values of the format in order,
// the clock stamps, non-ASCII names, long names, and reading it back key by key.

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

#include "fakeplatform.h"
#include "ini.h"
#include "scratchfolder.h"
#include "skininformation.h"

namespace skin {
namespace {

using SkinInformationTest = testing::ScratchFolder;

constexpr SkinSide kSend = SkinSide::Send;
constexpr SkinSide kReceive = SkinSide::Receive;

std::string Section(const std::string& name, const std::vector<std::string>& entries) {
    std::string text = "[" + name + "]\r\n";
    for (const std::string& entry : entries) text += entry + "\r\n";
    return text;
}

TEST_F(SkinInformationTest, EmptyDocumentGivesAll19SectionsAnd78KeysInOrder) {
    testing::FakePlatform platform;
    platform.clock = {2026, 11, 18, 14, 6, 33};
    const std::string file = Path(SkinInformationFileName(""));
    WriteSkinInformation(SkinDocument{}, file, platform);

    const std::string light = "14737632", system = "-2147483640";
    std::vector<std::string> sections = {
        Section("Global", {"Skin Name=", "Skin Author=", "Skin Send Image=", "Skin Recieve Image=",
                           "Skin Creation Time=02:06 PM", "Skin Creation Date=Nov-18-2026"}),
        Section("Send Colours", {"Message Back Colour=" + light, "Message Text Colour=" + system,
                                 "User List Back Colour=" + light, "User List Text Colour=" + system})};
    for (const char* name : {"Send User List", "Send Message", "Send All", "Send None", "Send Cut", "Send Send",
                             "Send Close", "Send Options"}) {
        sections.push_back(Section(name, {"Left=-285", "Top=-765", "Width=0", "Height=0"}));
    }
    sections.push_back(Section("Recieve Colours", {"Message Back Colour=" + light, "Message Text Colour=" + system,
                                                   "Date Text Colour=" + system, "Sender Text Colour=" + system}));
    for (const char* name : {"Recieve Date", "Recieve Sender", "Recieve Message", "Recieve OK", "Recieve Yes",
                             "Recieve No", "Recieve Reply", "Recieve Close"}) {
        sections.push_back(Section(name, {"Left=-6135", "Top=-765", "Width=0", "Height=0"}));
    }
    std::string expected;
    for (const std::string& s : sections) expected += (expected.empty() ? "" : "\r\n") + s;
    ASSERT_EQ(sections.size(), 19u);
    ASSERT_EQ(std::count(expected.begin(), expected.end(), '='), 78);
    EXPECT_EQ(Bytes(file), expected);
}

TEST_F(SkinInformationTest, TimeAndDateAreEachTakenWhenTheirKeyIsWritten) {
    struct TickingPlatform : testing::FakePlatform {
        int reads = 0;
        LocalDateTime Now() override {
            return ++reads == 1 ? LocalDateTime{2026, 12, 31, 23, 59, 59} : LocalDateTime{2027, 1, 1, 0, 0, 0};
        }
    } platform;
    const std::string file = Path("Clock.bsi");
    WriteSkinInformation(SkinDocument{}, file, platform);
    EXPECT_EQ(platform.reads, 2);
    EXPECT_EQ(ReadINI("Global", "Skin Creation Time", file), "11:59 PM");
    EXPECT_EQ(ReadINI("Global", "Skin Creation Date", file), "Jan-01-2027");
}

// A distinct value in every field that is written.
SkinDocument FullDocument() {
    SkinDocument doc;
    doc.SetSkinName("Blue Sky");
    doc.SetSkinAuthor("Ada Lovelace");
    doc.SetPicture(kSend, "send.bmp", "/home/ada/pictures/send.bmp");
    doc.SetPicture(kReceive, "recv.jpg", "/home/ada/pictures/recv.jpg");
    for (std::int16_t k = 0; k < kAreaKinds; ++k) {
        doc.AssignArea(kSend, k, {std::int16_t(300 + 100 * k), std::int16_t(780 + k), std::int16_t(450 + k),
                                  std::int16_t(240 + k)});
        doc.AssignArea(kReceive, k, {std::int16_t(6000 + 15 * k), std::int16_t(700 - k), std::int16_t(-15 * k),
                                     std::int16_t(1000 + k)});
    }
    for (int f = 0, n = 1; f < kTextFields; ++f) {
        doc.SetColour(TextField(f), ColourRole::Back, n++ * 1111111);
        doc.SetColour(TextField(f), ColourRole::Text, n++ * -1111111);
    }
    return doc;
}

TEST_F(SkinInformationTest, FullDocumentReadsBackKeyByKeyWithSharedColourKeysPerSection) {
    const SkinDocument doc = FullDocument();
    testing::FakePlatform platform;
    const std::string file = Path(SkinInformationFileName(doc.SkinName()));
    EXPECT_EQ(file, Path("BlueSky.bsi"));
    WriteSkinInformation(doc, file, platform);

    const std::pair<const char*, const char*> global[] = {
        {"Skin Name", "Blue Sky"},           {"Skin Author", "Ada Lovelace"},       {"Skin Send Image", "send.bmp"},
        {"Skin Recieve Image", "recv.jpg"}, {"Skin Creation Time", "02:26 PM"}, {"Skin Creation Date", "Nov-18-2026"}};
    for (auto [key, value] : global) EXPECT_EQ(ReadINI("Global", key, file), value) << key;
    // The two colour sections share key names; each is read from its own section.
    const struct {
        const char *section, *key;
        TextField field;
        ColourRole role;
    } colours[] = {
        {"Send Colours", "Message Back Colour", TextField::SendMessage, ColourRole::Back},
        {"Send Colours", "Message Text Colour", TextField::SendMessage, ColourRole::Text},
        {"Send Colours", "User List Back Colour", TextField::SendUsers, ColourRole::Back},
        {"Send Colours", "User List Text Colour", TextField::SendUsers, ColourRole::Text},
        {"Recieve Colours", "Message Back Colour", TextField::ReceiveMessage, ColourRole::Back},
        {"Recieve Colours", "Message Text Colour", TextField::ReceiveMessage, ColourRole::Text},
        {"Recieve Colours", "Date Text Colour", TextField::ReceiveDate, ColourRole::Text},
        {"Recieve Colours", "Sender Text Colour", TextField::ReceiveSender, ColourRole::Text},
    };
    for (const auto& c : colours) {
        EXPECT_EQ(ReadINI(c.section, c.key, file), std::to_string(doc.Colour(c.field, c.role))) << c.section << c.key;
    }
    EXPECT_EQ(ReadINI("Send Colours", "Message Back Colour", file), "3333333");
    EXPECT_EQ(ReadINI("Recieve Colours", "Message Back Colour", file), "9999999");
    for (SkinSide side : {kSend, kReceive}) {
        const RectF frame = PictureFrame(side);
        for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
            const std::string section(KindInfo(side, kind).section);
            const AreaRect area = doc.Area(side, kind);
            EXPECT_EQ(ReadINI(section, "Left", file), std::to_string(int(area.Left - frame.Left))) << section;
            EXPECT_EQ(ReadINI(section, "Top", file), std::to_string(int(area.Top - frame.Top))) << section;
            EXPECT_EQ(ReadINI(section, "Width", file), std::to_string(area.Width)) << section;
            EXPECT_EQ(ReadINI(section, "Height", file), std::to_string(area.Height)) << section;
        }
    }
    EXPECT_EQ(ReadINI("Send User List", "Left", file), "15");
    EXPECT_EQ(ReadINI("Recieve Date", "Left", file), "-135");
    EXPECT_EQ(ReadINI("Recieve Close", "Width", file), "-105");
}

TEST_F(SkinInformationTest, NonAsciiNamesAreWindows1252OnDiskAndLongNamesReadCutAt254) {
    SkinDocument doc;
    doc.SetSkinName("Caf\u00e9 Cr\u00e8me");
    std::string author = "\u674e Lee \u2122";
    for (int i = 0; i < 255; ++i) author += "\u00c5";
    doc.SetSkinAuthor(author);
    const std::string picture(260, 'N');
    doc.SetPicture(kSend, picture, "/tmp/" + picture);
    doc.SetPicture(kReceive, "f\u00fcr.bmp", "/tmp/f\u00fcr.bmp");
    testing::FakePlatform platform;
    const std::string file = Path(SkinInformationFileName(doc.SkinName()));
    EXPECT_EQ(file, Path("Caf\u00e9Cr\u00e8me.bsi"));
    WriteSkinInformation(doc, file, platform);

    const std::string bytes = Bytes(file);
    EXPECT_NE(bytes.find("\r\nSkin Name=Caf\xe9 Cr\xe8me\r\n"), std::string::npos);
    EXPECT_NE(bytes.find("\r\nSkin Author=? Lee \x99" + std::string(255, '\xc5') + "\r\n"), std::string::npos);
    EXPECT_NE(bytes.find("\r\nSkin Send Image=" + picture + "\r\n"), std::string::npos);
    EXPECT_NE(bytes.find("\r\nSkin Recieve Image=f\xfcr.bmp\r\n"), std::string::npos);
    EXPECT_EQ(ReadINI("Global", "Skin Name", file), "Caf\u00e9 Cr\u00e8me");
    std::string authorRead = "? Lee \u2122";  // 7 characters, then 247 of the 255
    for (int i = 0; i < 247; ++i) authorRead += "\u00c5";
    EXPECT_EQ(ReadINI("Global", "Skin Author", file), authorRead);
    EXPECT_EQ(ReadINI("Global", "Skin Send Image", file), picture.substr(0, 254));
    EXPECT_EQ(ReadINI("Global", "Skin Recieve Image", file), "f\u00fcr.bmp");
}

TEST_F(SkinInformationTest, RewritingAFileReplacesValuesAndKeepsItsOrder) {
    testing::FakePlatform platform;
    const std::string file = Path("Again.bsi");
    WriteSkinInformation(SkinDocument{}, file, platform);
    const std::string first = Bytes(file);
    platform.clock = {2027, 3, 4, 9, 5, 0};
    WriteSkinInformation(FullDocument(), file, platform);
    const std::string second = Bytes(file);

    const std::regex value("=[^\r]*");
    EXPECT_EQ(std::regex_replace(second, value, "="), std::regex_replace(first, value, "="));
    EXPECT_EQ(ReadINI("Global", "Skin Name", file), "Blue Sky");
    EXPECT_EQ(ReadINI("Global", "Skin Creation Time", file), "09:05 AM");
    EXPECT_EQ(ReadINI("Global", "Skin Creation Date", file), "Mar-04-2027");
    EXPECT_EQ(ReadINI("Recieve Close", "Height", file), "1007");
}

}  // namespace
}  // namespace skin
