// The INI helpers: the Windows profile behaviour on writing and reading, the text form on
// disk, the 254-character read limit, and bounded reading of hostile files.

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "ini.h"
#include "scratchfolder.h"

namespace skin {
namespace {

using IniTest = testing::ScratchFolder;

TEST_F(IniTest, WritesInPlaceAppendsKeysToTheirSectionAndSectionsToTheFile) {
    const std::string file = Path("order.ini");
    EXPECT_TRUE(WriteINI("A", "one", "a rather long value", file));
    EXPECT_EQ(Bytes(file), "[A]\r\none=a rather long value\r\n");
    WriteINI("B", "two", "2", file);
    WriteINI("A", "three", "3", file);  // after A's last key, before B
    WriteINI("A", "one", "uno", file);  // in place, no tail of the longer value left
    WriteINI("C", "four", "4", file);
    WriteINI("B", "two", "", file);
    EXPECT_EQ(Bytes(file),
              "[A]\r\none=uno\r\nthree=3\r\n"
              "\r\n[B]\r\ntwo=\r\n"
              "\r\n[C]\r\nfour=4\r\n");
}

TEST_F(IniTest, NewKeyGoesAfterTheLastEntryBeforeBlankLinesAndComments) {
    const std::string file = Path("hand.ini");
    PutBytes(file, "; made by hand\n[A]\nx = 1\n; about x\n\n; about B\n[B]\ny=2\n");
    WriteINI("A", "z", "3", file);
    EXPECT_EQ(Bytes(file), "; made by hand\r\n[A]\r\nx = 1\r\nz=3\r\n; about x\r\n\r\n; about B\r\n[B]\r\ny=2\r\n");
    // A section with no entries takes the key right under its header.
    PutBytes(file, "[Empty]\r\n\r\n[Next]\r\nk=v\r\n");
    WriteINI("Empty", "k", "w", file);
    EXPECT_EQ(Bytes(file), "[Empty]\r\nk=w\r\n\r\n[Next]\r\nk=v\r\n");
}

TEST_F(IniTest, NamesMatchWithoutRegardToCaseAndMissingEntriesReadEmpty) {
    const std::string file = Path("case.ini");
    WriteINI("Send Colours", "Message Back Colour", "1", file);
    WriteINI("SEND COLOURS", "message back colour", "2", file);
    // The file keeps the spelling it was made with.
    EXPECT_EQ(Bytes(file), "[Send Colours]\r\nMessage Back Colour=2\r\n");
    EXPECT_EQ(ReadINI("send colours", "MESSAGE BACK COLOUR", file), "2");
    EXPECT_EQ(ReadINI("Send Colour", "Message Back Colour", file), "");
    EXPECT_EQ(ReadINI("Send Colours", "Message Text Colour", file), "");
    EXPECT_EQ(ReadINI("Global", "Skin Name", Path("missing.ini")), "");
    EXPECT_EQ(ReadINI("Global", "Skin Name", folder_.string()), "");  // a folder reads as nothing
    EXPECT_EQ(ReadINI("Global", "Skin Name", "/dev/zero"), "");         // nor does a device
}

TEST_F(IniTest, ReadsTheProfileDialect) {
    const std::string file = Path("dialect.ini");
    PutBytes(file,
             "top=outside any section\n"
             "  [ Global ]  \n"
             "\n"
             "; Skin Name=commented out\n"
             "Skin Name = Blue Sky  \n"
             "Quoted=\"  padded  \"\n"
             "Single='x'\n"
             "Half=\"open\n"
             "Empty=\n"
             "NoEquals\n"
             "\n\n"
             "[Send Colours]\r\n"
             "Message Back Colour=14737632\r\n"
             "[Global]\n"
             "Skin Author=second section of the same name is never read\n");
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"Global", "Skin Name", "Blue Sky"}, {"Global", "Quoted", "  padded  "}, {"Global", "Single", "x"},
        {"Global", "Half", "\"open"},        {"Global", "Empty", ""},             {"Global", "NoEquals", ""},
        {"Global", "top", ""},               {"Send Colours", "Message Back Colour", "14737632"},
        {"Global", "Skin Author", ""},
    };
    for (auto [section, key, value] : rows) EXPECT_EQ(ReadINI(section, key, file), value) << key;
    // Names asked for are trimmed like names in the file.
    EXPECT_EQ(ReadINI(" Global ", " Skin Name ", file), "Blue Sky");
}

TEST_F(IniTest, WritesWindows1252AndReadsBackUtf8) {
    const std::string file = Path("text.ini");
    WriteINI("Global", "Skin Name", "Zo\u00eb \u20acuro \u4e2d", file);
    EXPECT_EQ(Bytes(file), "[Global]\r\nSkin Name=Zo\xeb \x80uro ?\r\n");
    EXPECT_EQ(ReadINI("Global", "Skin Name", file), "Zo\u00eb \u20acuro ?");
    // A hand-written file in Windows-1252 reads the same way.
    PutBytes(file, "[Global]\nSkin Author=Fran\xe7ois \x93" "Fix\x94\n");
    EXPECT_EQ(ReadINI("Global", "Skin Author", file), "Fran\u00e7ois \u201cFix\u201d");
}

TEST_F(IniTest, LongValuesAreWrittenWholeAndReadCutTo254Characters) {
    const std::string file = Path("long.ini");
    const std::string ascii(300, 'n');
    std::string accented;
    for (int i = 0; i < 300; ++i) accented += "\u00e9";
    WriteINI("Global", "Skin Name", ascii, file);
    WriteINI("Global", "Skin Author", accented, file);
    EXPECT_EQ(Bytes(file), "[Global]\r\nSkin Name=" + ascii + "\r\nSkin Author=" + std::string(300, '\xe9') + "\r\n");
    EXPECT_EQ(ReadINI("Global", "Skin Name", file), ascii.substr(0, kIniValueLimit));
    std::string cut;
    for (std::size_t i = 0; i < kIniValueLimit; ++i) cut += "\u00e9";
    EXPECT_EQ(ReadINI("Global", "Skin Author", file), cut);
    WriteINI("Global", "Exact", std::string(kIniValueLimit, 'x'), file);
    EXPECT_EQ(ReadINI("Global", "Exact", file), std::string(kIniValueLimit, 'x'));
}

TEST_F(IniTest, LineBreaksInsideAValueCannotMakeNewEntries) {
    const std::string file = Path("breaks.ini");
    WriteINI("Global", "Skin Name", "a\r\n[Evil]\nk=v", file);
    EXPECT_EQ(Bytes(file), "[Global]\r\nSkin Name=a  [Evil] k=v\r\n");
    EXPECT_EQ(ReadINI("Evil", "k", file), "");
}

TEST_F(IniTest, WriteFailuresAreQuietAndLeaveNothingBehind) {
    EXPECT_FALSE(WriteINI("Global", "Skin Name", "x", Path("no/such/folder/a.ini")));
    EXPECT_FALSE(std::filesystem::exists(Path("no")));
    EXPECT_FALSE(WriteINI("Global", "Skin Name", "x", folder_.string()));
    EXPECT_FALSE(WriteINI("", "Skin Name", "x", Path("a.ini")));
    EXPECT_FALSE(WriteINI("Global", " ", "x", Path("a.ini")));
    EXPECT_FALSE(std::filesystem::exists(Path("a.ini")));
}

TEST_F(IniTest, HugeFilesAreReadOnlyUpToTheLimitAndNeverRewritten) {
    const std::string file = Path("huge.ini");
    // A very long line is skipped over; what follows it still reads.
    PutBytes(file, std::string(3 * kIniMaxLineBytes, 'x') + "\n[Global]\nSkin Name=after\n");
    EXPECT_EQ(ReadINI("Global", "Skin Name", file), "after");
    // Beyond the file limit nothing is read, and writing refuses to load the file.
    const std::string padding(kIniMaxFileBytes, ';');
    const std::string content = "[Global]\nA=1\n" + padding + "\n[Late]\nB=2\n";
    PutBytes(file, content);
    EXPECT_EQ(ReadINI("Global", "A", file), "1");
    EXPECT_EQ(ReadINI("Late", "B", file), "");
    EXPECT_FALSE(WriteINI("Global", "A", "3", file));
    EXPECT_EQ(Bytes(file), content);
}

}  // namespace
}  // namespace skin
