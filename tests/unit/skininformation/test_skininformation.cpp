// Writing the skin information file: the sections, keys and values of the format in order,
// the clock stamps, non-ASCII names, long names, and reading it back key by key.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "fakeplatform.h"
#include "ini.h"
#include "scratchfolder.h"
#include "skininformation.h"

namespace skin {
namespace {

using SkinInformationTest = testing::ScratchFolder;
using Entry = std::pair<std::string, std::string>;  // section, key

constexpr SkinSide kSend = SkinSide::Send;
constexpr SkinSide kReceive = SkinSide::Receive;

// The 19 sections and 78 keys of the format, in their order.
std::vector<Entry> FormatOrder() {
    std::vector<Entry> order;
    for (const char* key : {"Skin Name", "Skin Author", "Skin Send Image", "Skin Recieve Image", "Skin Creation Time",
                            "Skin Creation Date"}) {
        order.emplace_back("Global", key);
    }
    const auto area = [&order](const char* section) {
        for (const char* key : {"Left", "Top", "Width", "Height"}) order.emplace_back(section, key);
    };
    for (const char* key :
         {"Message Back Colour", "Message Text Colour", "User List Back Colour", "User List Text Colour"}) {
        order.emplace_back("Send Colours", key);
    }
    for (const char* section : {"Send User List", "Send Message", "Send All", "Send None", "Send Cut", "Send Send",
                                "Send Close", "Send Options"}) {
        area(section);
    }
    for (const char* key : {"Message Back Colour", "Message Text Colour", "Date Text Colour", "Sender Text Colour"}) {
        order.emplace_back("Recieve Colours", key);
    }
    for (const char* section : {"Recieve Date", "Recieve Sender", "Recieve Message", "Recieve OK", "Recieve Yes",
                                "Recieve No", "Recieve Reply", "Recieve Close"}) {
        area(section);
    }
    return order;
}

// Every (section, key) of a written file in file order, taken from its raw lines.
std::vector<Entry> FileOrder(const std::string& bytes, int* sections) {
    std::vector<Entry> entries;
    std::string section;
    *sections = 0;
    std::size_t start = 0;
    while (start < bytes.size()) {
        const std::size_t end = bytes.find("\r\n", start);
        const std::string line = bytes.substr(start, end - start);
        start = end == std::string::npos ? bytes.size() : end + 2;
        if (line.empty()) continue;
        if (line.front() == '[') {
            section = line.substr(1, line.size() - 2);
            ++*sections;
        } else {
            entries.emplace_back(section, line.substr(0, line.find('=')));
        }
    }
    return entries;
}

TEST_F(SkinInformationTest, EmptyDocumentGivesAll19SectionsAnd78KeysInOrder) {
    const SkinDocument doc;
    testing::FakePlatform platform;
    platform.clock = {2026, 11, 18, 14, 6, 33};
    const std::string file = Path(SkinInformationFileName(""));
    WriteSkinInformation(doc, file, platform);

    const std::string bytes = Bytes(file);
    const std::string head =
        "[Global]\r\n"
        "Skin Name=\r\n"
        "Skin Author=\r\n"
        "Skin Send Image=\r\n"
        "Skin Recieve Image=\r\n"
        "Skin Creation Time=02:06 PM\r\n"
        "Skin Creation Date=Nov-18-2026\r\n"
        "\r\n"
        "[Send Colours]\r\n"
        "Message Back Colour=14737632\r\n"
        "Message Text Colour=-2147483640\r\n"
        "User List Back Colour=14737632\r\n"
        "User List Text Colour=-2147483640\r\n"
        "\r\n"
        "[Send User List]\r\n"
        "Left=-285\r\n"
        "Top=-765\r\n"
        "Width=0\r\n"
        "Height=0\r\n"
        "\r\n";
    const std::string receiveColours =
        "[Recieve Colours]\r\n"
        "Message Back Colour=14737632\r\n"
        "Message Text Colour=-2147483640\r\n"
        "Date Text Colour=-2147483640\r\n"
        "Sender Text Colour=-2147483640\r\n"
        "\r\n"
        "[Recieve Date]\r\n"
        "Left=-6135\r\n"
        "Top=-765\r\n"
        "Width=0\r\n"
        "Height=0\r\n";
    EXPECT_EQ(bytes.substr(0, head.size()), head);
    EXPECT_NE(bytes.find(receiveColours), std::string::npos);
    EXPECT_EQ(bytes.substr(bytes.size() - 2), "\r\n");

    int sections = 0;
    EXPECT_EQ(FileOrder(bytes, &sections), FormatOrder());
    EXPECT_EQ(sections, 19);
    EXPECT_EQ(FormatOrder().size(), 78u);

    for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
        for (SkinSide side : {kSend, kReceive}) {
            const std::string section(KindInfo(side, kind).section);
            EXPECT_EQ(ReadINI(section, "Left", file), side == kSend ? "-285" : "-6135") << section;
            EXPECT_EQ(ReadINI(section, "Top", file), "-765") << section;
            EXPECT_EQ(ReadINI(section, "Width", file), "0") << section;
            EXPECT_EQ(ReadINI(section, "Height", file), "0") << section;
        }
    }
}

// A clock that moves on by one minute each time it is read.
class TickingPlatform : public testing::FakePlatform {
public:
    LocalDateTime Now() override {
        ++reads;
        return reads == 1 ? LocalDateTime{2026, 12, 31, 23, 59, 59} : LocalDateTime{2027, 1, 1, 0, 0, 0};
    }
    int reads = 0;
};

TEST_F(SkinInformationTest, TimeAndDateAreEachTakenWhenTheirKeyIsWritten) {
    TickingPlatform platform;
    const std::string file = Path("Clock.bsi");
    WriteSkinInformation(SkinDocument{}, file, platform);
    EXPECT_EQ(platform.reads, 2);
    EXPECT_EQ(ReadINI("Global", "Skin Creation Time", file), "11:59 PM");
    EXPECT_EQ(ReadINI("Global", "Skin Creation Date", file), "Jan-01-2027");
}

// A document with a distinct value in every field that is written.
SkinDocument FullDocument() {
    SkinDocument doc;
    doc.SetSkinName("Blue Sky");
    doc.SetSkinAuthor("Ada Lovelace");
    doc.SetPicture(kSend, "send.bmp", "/home/ada/pictures/send.bmp");
    doc.SetPicture(kReceive, "recv.jpg", "/home/ada/pictures/recv.jpg");
    for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
        const auto k = static_cast<std::int16_t>(kind);
        doc.AssignArea(kSend, kind, {static_cast<std::int16_t>(300 + 100 * k), static_cast<std::int16_t>(780 + k), 
                                     static_cast<std::int16_t>(450 + k), static_cast<std::int16_t>(240 + k)});
        doc.AssignArea(kReceive, kind, {static_cast<std::int16_t>(6000 + 15 * k), static_cast<std::int16_t>(700 - k),
                                        static_cast<std::int16_t>(-15 * k), static_cast<std::int16_t>(1000 + k)});
    }
    int n = 1;
    for (int f = 0; f < kTextFields; ++f) {
        for (ColourRole role : {ColourRole::Back, ColourRole::Text}) {
            doc.SetColour(static_cast<TextField>(f), role, n++ * 1111111 * (role == ColourRole::Text ? -1 : 1));
        }
    }
    return doc;
}

TEST_F(SkinInformationTest, FullDocumentReadsBackKeyByKey) {
    const SkinDocument doc = FullDocument();
    testing::FakePlatform platform;
    const std::string file = Path(SkinInformationFileName(doc.SkinName()));
    EXPECT_EQ(file, Path("BlueSky.bsi"));
    WriteSkinInformation(doc, file, platform);

    EXPECT_EQ(ReadINI("Global", "Skin Name", file), "Blue Sky");
    EXPECT_EQ(ReadINI("Global", "Skin Author", file), "Ada Lovelace");
    EXPECT_EQ(ReadINI("Global", "Skin Send Image", file), "send.bmp");
    EXPECT_EQ(ReadINI("Global", "Skin Recieve Image", file), "recv.jpg");
    EXPECT_EQ(ReadINI("Global", "Skin Creation Time", file), "02:26 PM");
    EXPECT_EQ(ReadINI("Global", "Skin Creation Date", file), "Nov-18-2026");

    for (SkinSide side : {kSend, kReceive}) {
        for (const ColourEntry& entry : ColourEntries(side)) {
            EXPECT_EQ(ColourFromText(ReadINI(ColourSection(side), entry.key, file)),
                      doc.Colour(entry.field, entry.role))
                << entry.key;
        }
        const RectF frame = PictureFrame(side);
        for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
            const std::string section(KindInfo(side, kind).section);
            const AreaRect area = doc.Area(side, kind);
            EXPECT_EQ(RectangleValueFromText(ReadINI(section, "Left", file)), area.Left - frame.Left) << section;
            EXPECT_EQ(RectangleValueFromText(ReadINI(section, "Top", file)), area.Top - frame.Top) << section;
            EXPECT_EQ(ReadINI(section, "Width", file), std::to_string(area.Width)) << section;
            EXPECT_EQ(ReadINI(section, "Height", file), std::to_string(area.Height)) << section;
        }
    }
    // Spot checks of the texts themselves: plain integers, negative where left of the frame.
    EXPECT_EQ(ReadINI("Send User List", "Left", file), "15");
    EXPECT_EQ(ReadINI("Recieve Date", "Left", file), "-135");
    EXPECT_EQ(ReadINI("Recieve Date", "Top", file), "-65");
    EXPECT_EQ(ReadINI("Recieve Close", "Width", file), "-105");
}

TEST_F(SkinInformationTest, ColourSectionsShareKeyNamesAndAreReadPerSection) {
    SkinDocument doc;
    doc.SetColour(TextField::SendMessage, ColourRole::Back, 255);
    doc.SetColour(TextField::SendMessage, ColourRole::Text, 65280);
    doc.SetColour(TextField::ReceiveMessage, ColourRole::Back, 16711680);
    doc.SetColour(TextField::ReceiveMessage, ColourRole::Text, -2147483643);
    testing::FakePlatform platform;
    const std::string file = Path("Shared.bsi");
    WriteSkinInformation(doc, file, platform);
    EXPECT_EQ(ReadINI("Send Colours", "Message Back Colour", file), "255");
    EXPECT_EQ(ReadINI("Send Colours", "Message Text Colour", file), "65280");
    EXPECT_EQ(ReadINI("Recieve Colours", "Message Back Colour", file), "16711680");
    EXPECT_EQ(ReadINI("Recieve Colours", "Message Text Colour", file), "-2147483643");
}

TEST_F(SkinInformationTest, NonAsciiNamesAreWindows1252OnDiskAndUtf8InMemory) {
    SkinDocument doc;
    doc.SetSkinName("Caf\u00e9 Cr\u00e8me");
    doc.SetSkinAuthor("\u674e Lee \u2122");
    doc.SetPicture(kSend, "f\u00fcr.bmp", "/tmp/f\u00fcr.bmp");
    testing::FakePlatform platform;
    const std::string file = Path(SkinInformationFileName(doc.SkinName()));
    EXPECT_EQ(file, Path("Caf\u00e9Cr\u00e8me.bsi"));
    WriteSkinInformation(doc, file, platform);

    const std::string bytes = Bytes(file);
    EXPECT_NE(bytes.find("\r\nSkin Name=Caf\xe9 Cr\xe8me\r\n"), std::string::npos);
    EXPECT_NE(bytes.find("\r\nSkin Author=? Lee \x99\r\n"), std::string::npos);
    EXPECT_NE(bytes.find("\r\nSkin Send Image=f\xfcr.bmp\r\n"), std::string::npos);
    EXPECT_EQ(ReadINI("Global", "Skin Name", file), "Caf\u00e9 Cr\u00e8me");
    EXPECT_EQ(ReadINI("Global", "Skin Author", file), "? Lee \u2122");
    EXPECT_EQ(ReadINI("Global", "Skin Send Image", file), "f\u00fcr.bmp");
}

TEST_F(SkinInformationTest, NamesLongerThan254CharactersAreWrittenWholeAndReadCut) {
    SkinDocument doc;
    const std::string name(260, 'N');
    std::string author;
    for (int i = 0; i < 255; ++i) author += "\u00c5";
    doc.SetSkinName(name);
    doc.SetSkinAuthor(author);
    testing::FakePlatform platform;
    const std::string file = Path("Long.bsi");
    WriteSkinInformation(doc, file, platform);
    EXPECT_NE(Bytes(file).find("Skin Name=" + name + "\r\n"), std::string::npos);
    EXPECT_EQ(ReadINI("Global", "Skin Name", file), name.substr(0, 254));
    EXPECT_EQ(ReadINI("Global", "Skin Author", file), author.substr(0, 2 * 254));
}

TEST_F(SkinInformationTest, RewritingAFileReplacesValuesAndKeepsItsOrder) {
    testing::FakePlatform platform;
    const std::string file = Path("Again.bsi");
    WriteSkinInformation(SkinDocument{}, file, platform);
    const std::string first = Bytes(file);

    const SkinDocument doc = FullDocument();
    platform.clock = {2027, 3, 4, 9, 5, 0};
    WriteSkinInformation(doc, file, platform);
    const std::string second = Bytes(file);

    int sections = 0;
    EXPECT_EQ(FileOrder(second, &sections), FormatOrder());
    EXPECT_EQ(sections, 19);
    EXPECT_EQ(std::count(second.begin(), second.end(), '\n'), std::count(first.begin(), first.end(), '\n'));
    EXPECT_EQ(ReadINI("Global", "Skin Name", file), "Blue Sky");
    EXPECT_EQ(ReadINI("Global", "Skin Creation Time", file), "09:05 AM");
    EXPECT_EQ(ReadINI("Global", "Skin Creation Date", file), "Mar-04-2027");
    EXPECT_EQ(ReadINI("Recieve Close", "Height", file), "1007");
}

}  // namespace
}  // namespace skin
