// Windows-1252 on disk and UTF-8 in memory; the INI helpers with the Windows profile
// behaviour; the skin information file with all its sections and keys, its clock stamps, and
// the conversions used when it is read and named.

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "fakeplatform.h"
#include "scratchfolder.h"
#include "ini.h"
#include "skininformation.h"
#include "windows1252.h"

namespace skin {
namespace {

constexpr SkinSide kSend = SkinSide::Send;
constexpr SkinSide kReceive = SkinSide::Receive;

using IniTest = testing::ScratchFolderTest;
using SkinInformationTest = testing::ScratchFolderTest;
using testing::FileBytes;
using testing::PutFileBytes;

TEST(Windows1252, MapsTheTableBothWaysAndEverythingElseToOneQuestionMarkPerCharacterOrBadByte) {
    std::string all;
    for (int b = 0; b < 256; ++b) all.push_back(static_cast<char>(b));
    EXPECT_EQ(ToWindows1252(FromWindows1252(all)), all);
    // Euro, quote, trade mark, Y diaeresis, no-break space, e acute; undefined bytes keep their number.
    const std::pair<std::string, std::string> table[] = {
        {"\x80\x93\x99\x9f", "\u20ac\u201c\u2122\u0178"}, {"\xa0\xe9\xff", "\u00a0\u00e9\u00ff"},
        {"\x81\x8d\x8f\x90\x9d", "\u0081\u008d\u008f\u0090\u009d"}, {std::string("a\0?", 3), std::string("a\0?", 3)}};
    for (const auto& [bytes, utf8] : table) {
        EXPECT_EQ(FromWindows1252(bytes), utf8);
        EXPECT_EQ(ToWindows1252(utf8), bytes) << utf8;
    }
    const std::pair<std::string, std::string> unmappable[] = {
        {"\u4e2d\u6587 a\U0001F600b", "?? a?b"},     // CJK, a four-byte character
        {"\u0080\u009f\u0100", "???"},               // C1 controls of defined bytes, Latin Extended-A
        {"a\xff" "b\x80" "c\xc3", "a?b?c?"},         // never UTF-8, lone continuation, cut at the end
        {"\xe2\x82z\xc0\xaf", "??z??"},              // cut before a plain character, overlong "/"
        {"\xed\xa0\x80\xf4\x90\x80\x80\xc3\xa9", "???????\xe9"},  // surrogate, beyond U+10FFFF
    };
    for (const auto& [utf8, bytes] : unmappable) EXPECT_EQ(ToWindows1252(utf8), bytes) << utf8;
}

TEST_F(IniTest, WritesEntriesWhereTheProfileHelperWouldInWindows1252) {
    const std::string file = Path("a.ini");
    EXPECT_TRUE(WriteINI("A", "one", "Zo\u00eb \u20acuro \u4e2d", file));
    EXPECT_EQ(FileBytes(file), "[A]\r\none=Zo\xeb \x80uro ?\r\n");
    EXPECT_EQ(ReadINI("A", "one", file), "Zo\u00eb \u20acuro ?");
    WriteINI("B", "two", "2", file);
    WriteINI("a", "Three", "3", file);  // after A's last key, before B
    WriteINI("A", "ONE", "uno", file);  // in place, the file keeps its spelling
    WriteINI("C", "four", "a\r\n[Evil]\nk=v", file);
    EXPECT_EQ(FileBytes(file), "[A]\r\none=uno\r\nThree=3\r\n\r\n[B]\r\ntwo=2\r\n\r\n[C]\r\nfour=a  [Evil] k=v\r\n");
    EXPECT_EQ(ReadINI("Evil", "k", file), "");

    // In a hand-made file a new key goes after its section's last entry, before blank lines and comments.
    PutFileBytes(file, "; by hand\n[A]\nx = 1\n; about x\n\n[Empty]\n\n[B]\ny=2\n");
    WriteINI("A", "z", "3", file);
    WriteINI("Empty", "k", "w", file);
    EXPECT_EQ(FileBytes(file), "; by hand\r\n[A]\r\nx = 1\r\nz=3\r\n; about x\r\n\r\n[Empty]\r\nk=w\r\n\r\n[B]\r\ny=2\r\n");
}

TEST_F(IniTest, ReadsHandMadeFilesAndNothingFromMissingOnes) {
    const std::string file = Path("dialect.ini");
    PutFileBytes(file,
             "top=outside any section\n  [ Global ]  \n\n; Skin Name=commented out\nSkin Name = Blue Sky  \n"
             "Quoted=\"  padded  \"\nSingle='x'\nHalf=\"open\nEmpty=\nNoEquals\n\n\n"
             "[Send Colours]\r\nMessage Back Colour=14737632\r\nAuthor=Fran\xe7ois \x93" "Fix\x94\r\n"
             "[Global]\nSkin Author=second section of the same name is never read\n");
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"Global", "Skin Name", "Blue Sky"},   {" global ", " SKIN NAME ", "Blue Sky"},
        {"Global", "Quoted", "  padded  "},    {"Global", "Single", "x"},
        {"Global", "Half", "\"open"},          {"Global", "Empty", ""},
        {"Global", "NoEquals", ""},            {"Global", "top", ""},
        {"Global", "Skin Author", ""},         {"SEND COLOURS", "message back colour", "14737632"},
        {"Send Colours", "Author", "Fran\u00e7ois \u201cFix\u201d"}, {"Send Colour", "Message Back Colour", ""},
    };
    for (auto [section, key, value] : rows) EXPECT_EQ(ReadINI(section, key, file), value) << section << key;
    for (const std::string& path : {Path("missing.ini"), folder_.string(), std::string("/dev/zero")}) {
        EXPECT_EQ(ReadINI("Global", "Skin Name", path), "") << path;
    }
}

TEST_F(IniTest, LongValuesAreWrittenWholeAndReadCutAt254Characters) {
    const std::string file = Path("long.ini");
    std::string accented, cut;
    for (int i = 0; i < 300; ++i) accented += "\u00e9";
    for (int i = 0; i < 254; ++i) cut += "\u00e9";
    WriteINI("Global", "Skin Author", accented, file);
    WriteINI("Global", "Exact", std::string(254, 'x'), file);
    EXPECT_EQ(FileBytes(file), "[Global]\r\nSkin Author=" + std::string(300, '\xe9') + "\r\nExact=" + std::string(254, 'x') + "\r\n");
    EXPECT_EQ(ReadINI("Global", "Skin Author", file), cut);
    EXPECT_EQ(ReadINI("Global", "Exact", file), std::string(254, 'x'));
}

TEST_F(IniTest, FailuresAreQuietAndHugeFilesAreReadOnlyUpToTheLimitAndNeverRewritten) {
    EXPECT_FALSE(WriteINI("Global", "Skin Name", "x", Path("no/such/a.ini")));
    EXPECT_FALSE(WriteINI("", "Skin Name", "x", Path("a.ini")));
    EXPECT_FALSE(WriteINI("Global", " ", "x", Path("a.ini")));
    EXPECT_FALSE(std::filesystem::exists(Path("a.ini")));

    const std::string file = Path("huge.ini");
    const std::string content = std::string(3 * kIniMaxLineBytes, 'x') + "\n[Global]\nA=1\n" +
                                std::string(kIniMaxFileBytes, ';') + "\n[Late]\nB=2\n";
    PutFileBytes(file, content);
    EXPECT_EQ(ReadINI("Global", "A", file), "1");  // after a very long line
    EXPECT_EQ(ReadINI("Late", "B", file), "");
    EXPECT_FALSE(WriteINI("Global", "A", "3", file));
    EXPECT_EQ(FileBytes(file), content);
}

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
    EXPECT_EQ(FileBytes(file), expected);
}

TEST_F(SkinInformationTest, TimeAndDateAreEachTakenWhenTheirKeyIsWritten) {
    struct TickingPlatform : testing::FakePlatform {
        int reads = 0;
        LocalDateTime Now() override { return reads++ ? LocalDateTime{2027, 1, 1, 0, 0, 0} : LocalDateTime{2026, 12, 31, 23, 59, 59}; }
    } platform;
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
            const AreaRect a = doc.Area(side, kind);
            const int values[] = {int(a.Left - frame.Left), int(a.Top - frame.Top), a.Width, a.Height};
            for (int i = 0; i < 4; ++i) EXPECT_EQ(ReadINI(section, kAreaKeys[i], file), std::to_string(values[i])) << section;
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
    for (const auto& [text, value] : rows) EXPECT_DOUBLE_EQ(RectangleValueFromText(text), value) << '"' << text << '"';
}

TEST(CreationStampsAndFileName, TwelveHourClockEnglishMonthDateAndNameWithoutBlanks) {
    const std::tuple<int, int, const char*> times[] = {
        {0, 0, "12:00 AM"}, {1, 5, "01:05 AM"}, {11, 59, "11:59 AM"}, {12, 0, "12:00 PM"}, {23, 59, "11:59 PM"},
    };
    for (auto [hour, minute, text] : times) EXPECT_EQ(FormatCreationTime({2026, 1, 1, hour, minute, 0}), text);
    EXPECT_EQ(FormatCreationDate({999, 2, 8, 0, 0, 0}), "Feb-08-0999");
    EXPECT_EQ(FormatCreationDate({2026, 9, 30, 0, 0, 0}), "Sep-30-2026");
    EXPECT_EQ(SkinInformationFileName(" Blue  Sky "), "BlueSky.bsi");
    EXPECT_EQ(SkinInformationFileName("Caf\u00e9\tNoir\u00a0x"), "Caf\u00e9\tNoir\u00a0x.bsi");  // only U+0020 goes
}

}  // namespace
}  // namespace skin
