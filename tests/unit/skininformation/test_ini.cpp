// Windows-1252 on disk and UTF-8 in memory, and the INI helpers with the Windows profile
// behaviour: where entries are written, how hand-made files read, the 254-character read
// limit, quiet failures and bounded reading of hostile files.

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>

#include "ini.h"
#include "scratchfolder.h"
#include "windows1252.h"

namespace skin {
namespace {

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

using IniTest = testing::ScratchFolder;

TEST_F(IniTest, WritesEntriesWhereTheProfileHelperWould) {
    const std::string file = Path("a.ini");
    EXPECT_TRUE(WriteINI("A", "one", "a rather long value", file));
    EXPECT_EQ(Bytes(file), "[A]\r\none=a rather long value\r\n");
    WriteINI("B", "two", "2", file);
    WriteINI("a", "Three", "3", file);  // after A's last key, before B
    WriteINI("A", "ONE", "uno", file);  // in place, the file keeps its spelling
    WriteINI("C", "four", "a\r\n[Evil]\nk=v", file);
    EXPECT_EQ(Bytes(file), "[A]\r\none=uno\r\nThree=3\r\n\r\n[B]\r\ntwo=2\r\n\r\n[C]\r\nfour=a  [Evil] k=v\r\n");
    EXPECT_EQ(ReadINI("Evil", "k", file), "");

    // In a hand-made file a new key goes after its section's last entry, before blank lines and comments.
    PutBytes(file, "; by hand\n[A]\nx = 1\n; about x\n\n[Empty]\n\n[B]\ny=2\n");
    WriteINI("A", "z", "3", file);
    WriteINI("Empty", "k", "w", file);
    EXPECT_EQ(Bytes(file), "; by hand\r\n[A]\r\nx = 1\r\nz=3\r\n; about x\r\n\r\n[Empty]\r\nk=w\r\n\r\n[B]\r\ny=2\r\n");
}

TEST_F(IniTest, ReadsHandMadeFilesAndNothingFromMissingOnes) {
    const std::string file = Path("dialect.ini");
    PutBytes(file,
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

TEST_F(IniTest, TextIsWindows1252OnDiskAndReadsBackAsUtf8CutAt254Characters) {
    const std::string file = Path("text.ini");
    std::string accented, cut;
    for (int i = 0; i < 300; ++i) accented += "\u00e9";
    for (int i = 0; i < 254; ++i) cut += "\u00e9";
    WriteINI("Global", "Skin Name", "Zo\u00eb \u20acuro \u4e2d", file);
    WriteINI("Global", "Skin Author", accented, file);
    WriteINI("Global", "Exact", std::string(254, 'x'), file);
    EXPECT_EQ(Bytes(file), "[Global]\r\nSkin Name=Zo\xeb \x80uro ?\r\nSkin Author=" + std::string(300, '\xe9') +
                               "\r\nExact=" + std::string(254, 'x') + "\r\n");
    EXPECT_EQ(ReadINI("Global", "Skin Name", file), "Zo\u00eb \u20acuro ?");
    EXPECT_EQ(ReadINI("Global", "Skin Author", file), cut);
    EXPECT_EQ(ReadINI("Global", "Exact", file), std::string(254, 'x'));
}

TEST_F(IniTest, FailuresAreQuietAndHugeFilesAreReadOnlyUpToTheLimitAndNeverRewritten) {
    EXPECT_FALSE(WriteINI("Global", "Skin Name", "x", Path("no/such/a.ini")));
    EXPECT_FALSE(WriteINI("Global", "Skin Name", "x", folder_.string()));
    EXPECT_FALSE(WriteINI("", "Skin Name", "x", Path("a.ini")));
    EXPECT_FALSE(WriteINI("Global", " ", "x", Path("a.ini")));
    EXPECT_FALSE(std::filesystem::exists(Path("no")));
    EXPECT_FALSE(std::filesystem::exists(Path("a.ini")));

    const std::string file = Path("huge.ini");
    const std::string content = std::string(3 * kIniMaxLineBytes, 'x') + "\n[Global]\nA=1\n" +
                                std::string(kIniMaxFileBytes, ';') + "\n[Late]\nB=2\n";
    PutBytes(file, content);
    EXPECT_EQ(ReadINI("Global", "A", file), "1");  // after a very long line
    EXPECT_EQ(ReadINI("Late", "B", file), "");
    EXPECT_FALSE(WriteINI("Global", "A", "3", file));
    EXPECT_EQ(Bytes(file), content);
}

}  // namespace
}  // namespace skin
