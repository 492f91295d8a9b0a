// The skin document: the area-kind table, slots and flags, picture-relative rectangles,
// clearing and resetting, colours, and the rounding of control values into the slots.

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "skindocument.h"

namespace skin {
namespace {

constexpr SkinSide kSend = SkinSide::Send;
constexpr SkinSide kReceive = SkinSide::Receive;

TEST(AreaKindTable, NamesSpellingsTextFieldsAndExactLookupOfEveryKind) {
    struct Row {
        SkinSide side;
        AreaKind kind;
        const char *caption, *section;
        std::optional<TextField> field;
    };
    const Row rows[] = {
        {kSend, 0, "User List", "Send User List", TextField::SendUsers},
        {kSend, 1, "Message", "Send Message", TextField::SendMessage},
        {kSend, 2, "All", "Send All", std::nullopt},       {kSend, 3, "None", "Send None", std::nullopt},
        {kSend, 4, "Cut", "Send Cut", std::nullopt},       {kSend, 5, "Send", "Send Send", std::nullopt},
        {kSend, 6, "Close", "Send Close", std::nullopt},   {kSend, 7, "Options", "Send Options", std::nullopt},
        {kReceive, 0, "Date", "Recieve Date", TextField::ReceiveDate},
        {kReceive, 1, "Sender", "Recieve Sender", TextField::ReceiveSender},
        {kReceive, 2, "Message", "Recieve Message", TextField::ReceiveMessage},
        {kReceive, 3, "Okay", "Recieve OK", std::nullopt}, {kReceive, 4, "Yes", "Recieve Yes", std::nullopt},
        {kReceive, 5, "No", "Recieve No", std::nullopt},   {kReceive, 6, "Reply", "Recieve Reply", std::nullopt},
        {kReceive, 7, "Close", "Recieve Close", std::nullopt},
    };
    for (const Row& row : rows) {
        const std::string areaName = (row.side == kSend ? "Send " : "Receive ") + std::string(row.caption);
        SCOPED_TRACE(areaName);
        const AreaKindInfo& info = KindInfo(row.side, row.kind);
        EXPECT_EQ(info.caption, row.caption);
        EXPECT_EQ(info.areaName, areaName);
        EXPECT_EQ(info.section, row.section);
        EXPECT_EQ(info.textField, row.field);
        if (row.field) {
            EXPECT_EQ(SideOf(*row.field), row.side);
            EXPECT_EQ(KindOf(*row.field), row.kind);
        }
        EXPECT_EQ(SkinDocument::FindKind(row.side, areaName), row.kind);
        EXPECT_EQ(SkinDocument::FindKind(row.side == kSend ? kReceive : kSend, areaName), std::nullopt);
    }
    // Exact match only, and never the file's spelling.
    for (const char* near : {"Recieve OK", "Recieve Date", "Receive OK", "send all", "Send All ", "All", ""}) {
        EXPECT_EQ(SkinDocument::FindKind(kReceive, near), std::nullopt) << near;
        EXPECT_EQ(SkinDocument::FindKind(kSend, near), std::nullopt) << near;
    }
}

// What a start-up document holds: no names, pictures or areas, the colour table's colours.
void ExpectStartUpDocument(const SkinDocument& doc) {
    EXPECT_EQ(doc.SkinName(), "");
    EXPECT_EQ(doc.SkinAuthor(), "");
    for (SkinSide side : {kSend, kReceive}) {
        EXPECT_EQ(doc.PictureFileName(side), "");
        EXPECT_EQ(doc.PicturePath(side), "");
        EXPECT_EQ(doc.BoxCount(side), 0);
        for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
            EXPECT_FALSE(doc.KindUsed(side, kind));
            EXPECT_EQ(doc.Area(side, kind), AreaRect{});
        }
    }
    const std::uint32_t grey = 0x00E0E0E0u, window = 0x80000005u, text = 0x80000008u;
    const std::uint32_t backs[kTextFields] = {grey, grey, window, window, grey};
    for (int f = 0; f < kTextFields; ++f) {
        EXPECT_EQ(static_cast<std::uint32_t>(doc.Colour(TextField(f), ColourRole::Back)), backs[f]) << f;
        EXPECT_EQ(static_cast<std::uint32_t>(doc.Colour(TextField(f), ColourRole::Text)), text) << f;
        for (ColourRole role : {ColourRole::Back, ColourRole::Text})
            EXPECT_EQ(doc.Colour(TextField(f), role), SkinDocument::InitialColour(TextField(f), role));
    }
}

TEST(SkinDocument, StartsEmptyWithTheColourTableAndAreasAtMinusThePictureOrigin) {
    const SkinDocument doc;
    ExpectStartUpDocument(doc);
    EXPECT_EQ(doc.Colour(TextField::SendUsers, ColourRole::Text), -2147483640);  // system colours are negative
    for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
        for (SkinSide side : {kSend, kReceive}) {
            const RelativeRect r = doc.PictureRelative(side, kind);
            EXPECT_EQ(r.Left, side == kSend ? -285.0f : -6135.0f);
            EXPECT_EQ(r.Top, -765.0f);
            EXPECT_EQ(r.Width, 0);
            EXPECT_EQ(r.Height, 0);
        }
    }
}

TEST(SkinDocument, AssignMarksUsedUpdateKeepsTheFlagAndRelativeSubtractsTheOrigin) {
    SkinDocument doc;
    doc.AssignArea(kSend, 7, {1000, 900, 500, 300});
    doc.UpdateArea(kSend, 7, {1000, 900, 600, 300});
    EXPECT_TRUE(doc.KindUsed(kSend, 7));
    EXPECT_EQ(doc.Area(kSend, 7), (AreaRect{1000, 900, 600, 300}));
    // The arrow pad can still write into a free kind's slot; it stays free; sides are independent.
    doc.UpdateArea(kReceive, 3, {6000, 4000, 75, -15});
    EXPECT_FALSE(doc.KindUsed(kReceive, 3));
    EXPECT_FALSE(doc.KindUsed(kReceive, 7));
    EXPECT_EQ(doc.Area(kReceive, 7), AreaRect{});

    const RelativeRect send = doc.PictureRelative(kSend, 7);
    const RelativeRect receive = doc.PictureRelative(kReceive, 3);
    EXPECT_EQ((RectF{send.Left, send.Top, float(send.Width), float(send.Height)}), (RectF{715, 135, 600, 300}));
    EXPECT_EQ((RectF{receive.Left, receive.Top, float(receive.Width), float(receive.Height)}),
              (RectF{-135, 3235, 75, -15}));
    EXPECT_EQ(PictureFrame(kSend), (RectF{285, 765, 5430, 3870}));
    EXPECT_EQ(PictureFrame(kReceive), (RectF{6135, 765, 5430, 3285}));
}

SkinDocument FilledDocument() {
    SkinDocument doc;
    doc.SetSkinName("Blue Sky");
    doc.SetSkinAuthor("Ada");
    for (SkinSide side : {kSend, kReceive}) {
        doc.SetPicture(side, "pic.bmp", "/home/ada/pic.bmp");
        for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
            doc.AssignArea(side, kind, {static_cast<std::int16_t>(400 + kind), 900, 150, 150});
            doc.IncrementBoxCount(side);
        }
    }
    doc.SetColour(TextField::SendMessage, ColourRole::Back, 0x123456);
    doc.SetColour(TextField::ReceiveDate, ColourRole::Back, 0x654321);
    return doc;
}

TEST(SkinDocument, ClearSideFreesOneSideAndKeepsTheRest) {
    SkinDocument doc = FilledDocument();
    doc.ClearSide(kSend);
    EXPECT_EQ(doc.BoxCount(kSend), 0);
    EXPECT_EQ(doc.BoxCount(kReceive), kAreaKinds);
    for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
        EXPECT_FALSE(doc.KindUsed(kSend, kind));
        EXPECT_EQ(doc.Area(kSend, kind), AreaRect{});
        EXPECT_TRUE(doc.KindUsed(kReceive, kind));
    }
    EXPECT_EQ(doc.SkinName(), "Blue Sky");
    EXPECT_EQ(doc.SkinAuthor(), "Ada");
    EXPECT_EQ(doc.PictureFileName(kSend), "pic.bmp");
    EXPECT_EQ(doc.PicturePath(kSend), "/home/ada/pic.bmp");
    EXPECT_EQ(doc.Colour(TextField::SendMessage, ColourRole::Back), 0x123456);
}

TEST(SkinDocument, ResetReturnsToTheStartUpDocument) {
    SkinDocument doc = FilledDocument();
    doc.ResetDocument();
    ExpectStartUpDocument(doc);
}

TEST(RoundToInt16, RoundsHalvesToEvenAndSaturatesAtThe16BitRange) {
    const std::pair<double, int> rows[] = {
        {1522.5, 1522},   {1523.5, 1524},   {-0.5, 0},         {0.5, 0},         {-1.5, -2},
        {-2.5, -2},       {1522.4999, 1522}, {1522.5001, 1523}, {-285.0, -285},   {32767.4, 32767},
        {-32768.4, -32768}, {40000.0, 32767}, {-40000.0, -32768},
    };
    for (auto [value, rounded] : rows) EXPECT_EQ(RoundToInt16(value), rounded) << value;
}

}  // namespace
}  // namespace skin
