// The skin information file: every section and key in order, the clock stamps, a full
// document read back key by key, and the conversions used when it is read and named.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "fakeplatform.h"
#include "ini.h"
#include "scratchfolder.h"
#include "skininformation.h"

namespace skin {
namespace {

using SkinInformationTest = testing::ScratchFolder;

constexpr SkinSide kSend = SkinSide::Send;
constexpr SkinSide kReceive = SkinSide::Receive;

TEST_F(SkinInformationTest, EmptyDocumentGivesAll19SectionsAnd78KeysInOrder) {
    testing::FakePlatform platform;
    platform.clock = {2026, 11, 18, 14, 6, 33};
    const std::string file = Path(SkinInformationFileName(""));
    WriteSkinInformation(SkinDocument{}, file, platform);

    const std::string light = "14737632", system = "-2147483640";
    auto areas = [](const char* side, const char* left, std::initializer_list<const char*> names) {
        std::string text;
        for (const char* name : names) {
            text += std::string("\r\n[") + side + name + "]\r\nLeft=" + left + "\r\nTop=-765\r\nWidth=0\r\nHeight=0\r\n";
        }
        return text;
    };
    const std::string expected =
        "[Global]\r\nSkin Name=\r\nSkin Author=\r\nSkin Send Image=\r\nSkin Recieve Image=\r\n"
        "Skin Creation Time=02:06 PM\r\nSkin Creation Date=Nov-18-2026\r\n"
        "\r\n[Send Colours]\r\nMessage Back Colour=" + light + "\r\nMessage Text Colour=" + system +
        "\r\nUser List Back Colour=" + light + "\r\nUser List Text Colour=" + system + "\r\n" +
        areas("Send ", "-285", {"User List", "Message", "All", "None", "Cut", "Send", "Close", "Options"}) +
        "\r\n[Recieve Colours]\r\nMessage Back Colour=" + light + "\r\nMessage Text Colour=" + system +
        "\r\nDate Text Colour=" + system + "\r\nSender Text Colour=" + system + "\r\n" +
        areas("Recieve ", "-6135", {"Date", "Sender", "Message", "OK", "Yes", "No", "Reply", "Close"});
    EXPECT_EQ(std::count(expected.begin(), expected.end(), '['), 19);
    EXPECT_EQ(std::count(expected.begin(), expected.end(), '='), 78);
    EXPECT_EQ(Bytes(file), expected);
}

TEST_F(SkinInformationTest, TimeAndDateAreEachTakenWhenTheirKeyIsWritten) {
    struct TickingPlatform : testing::FakePlatform {
        int reads = 0;
        LocalDateTime Now() override { return ++reads == 1 ? LocalDateTime{2026, 12, 31, 23, 59, 59} : clock; }
    } platform;
    platform.clock = {2027, 1, 1, 0, 0, 0};
    WriteSkinInformation(SkinDocument{}, Path("Clock.bsi"), platform);
    EXPECT_EQ(ReadINI("Global", "Skin Creation Time", Path("Clock.bsi")), "11:59 PM");
    EXPECT_EQ(ReadINI("Global", "Skin Creation Date", Path("Clock.bsi")), "Jan-01-2027");
}

TEST_F(SkinInformationTest, FullDocumentReadsBackKeyByKeyWithSharedColourKeysPerSection) {
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
    testing::FakePlatform platform;
    const std::string file = Path(SkinInformationFileName(doc.SkinName()));
    WriteSkinInformation(doc, file, platform);

    const std::pair<const char*, const char*> global[] = {
        {"Skin Name", "Blue Sky"},          {"Skin Author", "Ada Lovelace"},     {"Skin Send Image", "send.bmp"},
        {"Skin Recieve Image", "recv.jpg"}, {"Skin Creation Time", "02:26 PM"}, {"Skin Creation Date", "Nov-18-2026"}};
    for (auto [key, value] : global) EXPECT_EQ(ReadINI("Global", key, file), value) << key;
    const std::tuple<const char*, const char*, TextField, ColourRole> colours[] = {
        {"Send Colours", "Message Back Colour", TextField::SendMessage, ColourRole::Back},
        {"Send Colours", "Message Text Colour", TextField::SendMessage, ColourRole::Text},
        {"Send Colours", "User List Back Colour", TextField::SendUsers, ColourRole::Back},
        {"Send Colours", "User List Text Colour", TextField::SendUsers, ColourRole::Text},
        {"Recieve Colours", "Message Back Colour", TextField::ReceiveMessage, ColourRole::Back},
        {"Recieve Colours", "Message Text Colour", TextField::ReceiveMessage, ColourRole::Text},
        {"Recieve Colours", "Date Text Colour", TextField::ReceiveDate, ColourRole::Text},
        {"Recieve Colours", "Sender Text Colour", TextField::ReceiveSender, ColourRole::Text},
    };
    for (auto [section, key, field, role] : colours) {
        EXPECT_EQ(ReadINI(section, key, file), std::to_string(doc.Colour(field, role))) << section << key;
    }
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
}

TEST(ColourFromText, AcceptsOnlyASignedDecimal32BitInteger) {
    const std::pair<const char*, std::int32_t> valid[] = {
        {"14737632", 14737632}, {"-2147483648", std::numeric_limits<std::int32_t>::min()},
        {"2147483647", 2147483647}, {"+5", 5}, {"-0", 0}, {"007", 7}, {" 42\t", 42},
    };
    for (auto [text, value] : valid) EXPECT_EQ(ColourFromText(text), value) << '"' << text << '"';
    for (const char* text : {"", "   ", "-", "abc", "12abc", "1 2", "- 5", "+-5", "1.5", "1e3", "0x10", "&H10",
                             "2147483648", "-2147483649", "99999999999999999999"}) {
        EXPECT_EQ(ColourFromText(text), std::nullopt) << '"' << text << '"';
    }
}

TEST(RectangleValueFromText, TakesTheLeadingDecimalNumberLikeValAndStaysFinite) {
    const double largest = std::numeric_limits<double>::max();
    const std::pair<std::string, double> rows[] = {
        {"-285", -285}, {"12abc", 12},  {"", 0},           {"abc", 0},       {"\t\n7", 7},     {"+5", 5},
        {"1 2", 12},    {"- 5", -5},    {".5", 0.5},       {"-.25", -0.25},  {".", 0},         {"-", 0},
        {"1e3", 1000},  {"1d2", 100},   {"2.5e-1", 0.25},  {"1e+", 1},       {"1ex", 1},       {"0x10", 0},
        {"&H10", 0},    {"1,5", 1},     {"3.7.1", 3.7},    {"--5", 0},       {"1e-400", 0},    {"1000e-330", 0},
        {"1e400", largest}, {"-1e400", -largest}, {"0.001e312", largest}, {std::string(400, '9'), largest},
    };
    for (const auto& [text, value] : rows) {
        const double read = RectangleValueFromText(text);
        EXPECT_DOUBLE_EQ(read, value) << '"' << text << '"';
        EXPECT_TRUE(std::isfinite(read)) << '"' << text << '"';
    }
}

TEST(CreationStampsAndFileName, TwelveHourClockEnglishMonthDateAndNameWithoutBlanks) {
    const std::tuple<int, int, const char*> times[] = {
        {0, 0, "12:00 AM"}, {1, 5, "01:05 AM"}, {11, 59, "11:59 AM"}, {12, 0, "12:00 PM"}, {23, 59, "11:59 PM"},
    };
    for (auto [hour, minute, text] : times) EXPECT_EQ(FormatCreationTime({2026, 1, 1, hour, minute, 0}), text);
    const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    for (int m = 1; m <= 12; ++m) {
        EXPECT_EQ(FormatCreationDate({2026, m, 8, 0, 0, 0}), std::string(months[m - 1]) + "-08-2026");
    }
    EXPECT_EQ(FormatCreationDate({999, 2, 28, 0, 0, 0}), "Feb-28-0999");
    EXPECT_EQ(SkinInformationFileName(" Blue  Sky "), "BlueSky.bsi");
    EXPECT_EQ(SkinInformationFileName("Caf\u00e9\tNoir\u00a0x"), "Caf\u00e9\tNoir\u00a0x.bsi");  // only U+0020 goes
}

}  // namespace
}  // namespace skin
