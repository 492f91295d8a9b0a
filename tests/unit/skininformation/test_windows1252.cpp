// Windows-1252 on disk, UTF-8 in memory: the table, unmappable characters, broken UTF-8.

#include <gtest/gtest.h>

#include <string>

#include "windows1252.h"

namespace skin {
namespace {

TEST(Windows1252, EveryByteSurvivesTheRoundTrip) {
    std::string all;
    for (int b = 0; b < 256; ++b) all.push_back(static_cast<char>(b));
    const std::string text = FromWindows1252(all);
    EXPECT_EQ(ToWindows1252(text), all);
    EXPECT_EQ(text.find('?'), 0x3Fu);  // "?" appears only where byte 3F was
    EXPECT_EQ(text.rfind('?'), 0x3Fu);
    EXPECT_EQ(FromWindows1252("?"), "?");
}

TEST(Windows1252, MapsTheTableBothWays) {
    struct Row {
        const char* byte;
        const char* utf8;
    };
    const Row rows[] = {
        {"A", "A"},
        {"\x80", "\u20ac"},       // euro sign
        {"\x8a", "\u0160"},       // S with caron
        {"\x93", "\u201c"},       // left double quotation mark
        {"\x99", "\u2122"},       // trade mark
        {"\x9f", "\u0178"},       // Y with diaeresis
        {"\xa0", "\u00a0"},       // no-break space
        {"\xe9", "\u00e9"},       // e acute
        {"\xff", "\u00ff"},       // y with diaeresis
        {"\x81", "\u0081"},       // the undefined bytes keep their number
        {"\x8d", "\u008d"},
        {"\x8f", "\u008f"},
        {"\x90", "\u0090"},
        {"\x9d", "\u009d"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.utf8);
        EXPECT_EQ(FromWindows1252(row.byte), row.utf8);
        EXPECT_EQ(ToWindows1252(row.utf8), row.byte);
    }
}

TEST(Windows1252, CharactersOutsideTheCodePageBecomeOneQuestionMarkEach) {
    EXPECT_EQ(ToWindows1252("\u4e2d\u6587 skin"), "?? skin");       // CJK
    EXPECT_EQ(ToWindows1252("a\U0001F600b"), "a?b");                // a four-byte character
    EXPECT_EQ(ToWindows1252("\u0080\u009f\u0100"), "???");          // C1 controls of defined bytes, Latin Extended-A
    EXPECT_EQ(ToWindows1252(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(Windows1252, InvalidUtf8BytesBecomeQuestionMarks) {
    EXPECT_EQ(ToWindows1252("a\xffz"), "a?z");                      // never a UTF-8 byte
    EXPECT_EQ(ToWindows1252("a\x80z"), "a?z");                      // lone continuation byte
    EXPECT_EQ(ToWindows1252("a\xc3"), "a?");                        // cut at the end
    EXPECT_EQ(ToWindows1252("\xe2\x82z"), "??z");                   // cut before a plain character
    EXPECT_EQ(ToWindows1252("\xc0\xaf"), "??");                     // overlong form of "/"
    EXPECT_EQ(ToWindows1252("\xed\xa0\x80"), "???");                // a surrogate
    EXPECT_EQ(ToWindows1252("\xf4\x90\x80\x80"), "????");           // beyond U+10FFFF
    EXPECT_EQ(ToWindows1252("\xc3\xa9\xc3"), "\xe9?");
}

}  // namespace
}  // namespace skin
