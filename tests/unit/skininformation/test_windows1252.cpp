// Windows-1252 on disk, UTF-8 in memory: the table, unmappable characters, broken UTF-8.

#include <gtest/gtest.h>

#include <string>
#include <utility>

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
    // Euro, S caron, left double quote, trade mark, Y diaeresis, no-break space, e acute, y diaeresis,
    // and the undefined bytes, which keep their number.
    const std::pair<const char*, const char*> rows[] = {
        {"A", "A"},           {"\x80", "\u20ac"}, {"\x8a", "\u0160"}, {"\x93", "\u201c"}, {"\x99", "\u2122"},
        {"\x9f", "\u0178"}, {"\xa0", "\u00a0"}, {"\xe9", "\u00e9"}, {"\xff", "\u00ff"}, {"\x81", "\u0081"},
        {"\x8d", "\u008d"}, {"\x8f", "\u008f"}, {"\x90", "\u0090"}, {"\x9d", "\u009d"},
    };
    for (auto [byte, utf8] : rows) {
        EXPECT_EQ(FromWindows1252(byte), utf8);
        EXPECT_EQ(ToWindows1252(utf8), byte) << utf8;
    }
}

TEST(Windows1252, UnmappableCharactersAndInvalidUtf8BecomeOneQuestionMarkEach) {
    const std::pair<std::string, std::string> rows[] = {
        {"\u4e2d\u6587 skin", "?? skin"},          // CJK
        {"a\U0001F600b", "a?b"},                   // a four-byte character
        {"\u0080\u009f\u0100", "???"},             // C1 controls of defined bytes, Latin Extended-A
        {std::string("a\0b", 3), std::string("a\0b", 3)},
        {"a\xffz", "a?z"},                          // never a UTF-8 byte
        {"a\x80z", "a?z"},                          // lone continuation byte
        {"a\xc3", "a?"},                            // cut at the end
        {"\xe2\x82z", "??z"},                       // cut before a plain character
        {"\xc0\xaf", "??"},                         // overlong form of "/"
        {"\xed\xa0\x80", "???"},                    // a surrogate
        {"\xf4\x90\x80\x80", "????"},               // beyond U+10FFFF
        {"\xc3\xa9\xc3", "\xe9?"},
    };
    for (const auto& [utf8, bytes] : rows) EXPECT_EQ(ToWindows1252(utf8), bytes) << utf8;
}

}  // namespace
}  // namespace skin
