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

struct KindRow {
    SkinSide side;
    AreaKind kind;
    const char* caption;
    const char* areaName;
    const char* section;
    std::optional<TextField> field;
};

// The editor's names and the skin information file's names of every kind.
const KindRow kKindTable[] = {
    {kSend, 0, "User List", "Send User List", "Send User List", TextField::SendUsers},
    {kSend, 1, "Message", "Send Message", "Send Message", TextField::SendMessage},
    {kSend, 2, "All", "Send All", "Send All", std::nullopt},
    {kSend, 3, "None", "Send None", "Send None", std::nullopt},
    {kSend, 4, "Cut", "Send Cut", "Send Cut", std::nullopt},
    {kSend, 5, "Send", "Send Send", "Send Send", std::nullopt},
    {kSend, 6, "Close", "Send Close", "Send Close", std::nullopt},
    {kSend, 7, "Options", "Send Options", "Send Options", std::nullopt},
    {kReceive, 0, "Date", "Receive Date", "Recieve Date", TextField::ReceiveDate},
    {kReceive, 1, "Sender", "Receive Sender", "Recieve Sender", TextField::ReceiveSender},
    {kReceive, 2, "Message", "Receive Message", "Recieve Message", TextField::ReceiveMessage},
    {kReceive, 3, "Okay", "Receive Okay", "Recieve OK", std::nullopt},
    {kReceive, 4, "Yes", "Receive Yes", "Recieve Yes", std::nullopt},
    {kReceive, 5, "No", "Receive No", "Recieve No", std::nullopt},
    {kReceive, 6, "Reply", "Receive Reply", "Recieve Reply", std::nullopt},
    {kReceive, 7, "Close", "Receive Close", "Recieve Close", std::nullopt},
};

TEST(AreaKindTable, NamesBothSpellingsAndTextFieldsOfEveryKind) {
    for (const KindRow& row : kKindTable) {
        SCOPED_TRACE(row.areaName);
        const AreaKindInfo& info = KindInfo(row.side, row.kind);
        EXPECT_EQ(info.caption, row.caption);
        EXPECT_EQ(info.areaName, row.areaName);
        EXPECT_EQ(info.section, row.section);
        EXPECT_EQ(info.textField, row.field);
        // The area name is always the side word, a blank and the caption.
        EXPECT_EQ(std::string(info.areaName), std::string(SideWord(row.side)) + " " + row.caption);
        if (row.field) {
            EXPECT_EQ(SideOf(*row.field), row.side);
            EXPECT_EQ(KindOf(*row.field), row.kind);
        }
    }
}

TEST(FindKind, FindsEveryAreaNameOfItsOwnSideOnly) {
    for (const KindRow& row : kKindTable) {
        SCOPED_TRACE(row.areaName);
        EXPECT_EQ(SkinDocument::FindKind(row.side, row.areaName), row.kind);
        const SkinSide other = row.side == kSend ? kReceive : kSend;
        EXPECT_EQ(SkinDocument::FindKind(other, row.areaName), std::nullopt);
    }
}

TEST(FindKind, MatchesExactlyAndNeverTheFileSpelling) {
    EXPECT_EQ(SkinDocument::FindKind(kReceive, "Recieve OK"), std::nullopt);
    EXPECT_EQ(SkinDocument::FindKind(kReceive, "Recieve Date"), std::nullopt);
    EXPECT_EQ(SkinDocument::FindKind(kReceive, "Receive OK"), std::nullopt);
    EXPECT_EQ(SkinDocument::FindKind(kSend, "send all"), std::nullopt);
    EXPECT_EQ(SkinDocument::FindKind(kSend, "Send All "), std::nullopt);
    EXPECT_EQ(SkinDocument::FindKind(kSend, "All"), std::nullopt);
    EXPECT_EQ(SkinDocument::FindKind(kSend, ""), std::nullopt);
}

TEST(SkinDocument, StartsEmptyWithFreeKindsAndZeroSlots) {
    const SkinDocument doc;
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
}

TEST(SkinDocument, InitialColoursFollowTheColourTable) {
    struct Row {
        TextField field;
        std::uint32_t back, text;
    };
    const Row rows[] = {
        {TextField::SendUsers, 0x00E0E0E0u, 0x80000008u},     {TextField::SendMessage, 0x00E0E0E0u, 0x80000008u},
        {TextField::ReceiveDate, 0x80000005u, 0x80000008u},   {TextField::ReceiveSender, 0x80000005u, 0x80000008u},
        {TextField::ReceiveMessage, 0x00E0E0E0u, 0x80000008u},
    };
    const SkinDocument doc;
    for (const Row& row : rows) {
        EXPECT_EQ(static_cast<std::uint32_t>(doc.Colour(row.field, ColourRole::Back)), row.back);
        EXPECT_EQ(static_cast<std::uint32_t>(doc.Colour(row.field, ColourRole::Text)), row.text);
    }
    // System colours are negative as signed values; the file writes them so.
    EXPECT_EQ(doc.Colour(TextField::SendUsers, ColourRole::Text), -2147483640);
    EXPECT_EQ(doc.Colour(TextField::SendUsers, ColourRole::Back), 14737632);
}

TEST(SkinDocument, AssignMarksUsedAndUpdateKeepsTheFlag) {
    SkinDocument doc;
    const AreaRect first{300, 800, 1200, 450};
    const AreaRect moved{310, 800, 1200, 450};
    doc.AssignArea(kSend, 2, first);
    EXPECT_TRUE(doc.KindUsed(kSend, 2));
    EXPECT_EQ(doc.Area(kSend, 2), first);
    doc.UpdateArea(kSend, 2, moved);
    EXPECT_TRUE(doc.KindUsed(kSend, 2));
    EXPECT_EQ(doc.Area(kSend, 2), moved);

    // The arrow pad can still write into a free kind's slot; it stays free.
    doc.UpdateArea(kReceive, 4, moved);
    EXPECT_FALSE(doc.KindUsed(kReceive, 4));
    EXPECT_EQ(doc.Area(kReceive, 4), moved);
    // Sides are independent.
    EXPECT_FALSE(doc.KindUsed(kReceive, 2));
    EXPECT_EQ(doc.Area(kReceive, 2), AreaRect{});
}

TEST(PictureRelative, UnassignedKindsLieAtMinusThePictureOrigin) {
    const SkinDocument doc;
    for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
        const RelativeRect send = doc.PictureRelative(kSend, kind);
        EXPECT_EQ(send.Left, -285.0f);
        EXPECT_EQ(send.Top, -765.0f);
        EXPECT_EQ(send.Width, 0);
        EXPECT_EQ(send.Height, 0);
        const RelativeRect receive = doc.PictureRelative(kReceive, kind);
        EXPECT_EQ(receive.Left, -6135.0f);
        EXPECT_EQ(receive.Top, -765.0f);
        EXPECT_EQ(receive.Width, 0);
        EXPECT_EQ(receive.Height, 0);
    }
}

TEST(PictureRelative, SubtractsTheOriginFromLeftAndTopOnly) {
    SkinDocument doc;
    doc.AssignArea(kSend, 7, {1000, 900, 600, 300});
    doc.AssignArea(kReceive, 3, {6000, 4000, 75, -15});
    const RelativeRect send = doc.PictureRelative(kSend, 7);
    EXPECT_EQ(send.Left, 715.0f);
    EXPECT_EQ(send.Top, 135.0f);
    EXPECT_EQ(send.Width, 600);
    EXPECT_EQ(send.Height, 300);
    const RelativeRect receive = doc.PictureRelative(kReceive, 3);
    EXPECT_EQ(receive.Left, -135.0f);
    EXPECT_EQ(receive.Top, 3235.0f);
    EXPECT_EQ(receive.Width, 75);
    EXPECT_EQ(receive.Height, -15);
    EXPECT_EQ(PictureFrame(kSend), (RectF{285, 765, 5430, 3870}));
    EXPECT_EQ(PictureFrame(kReceive), (RectF{6135, 765, 5430, 3285}));
}

// A document with something in every field, to see what clearing keeps.
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

TEST(ClearSide, FreesEverySlotOfOneSideAndKeepsTheRest) {
    SkinDocument doc = FilledDocument();
    doc.ClearSide(kSend);
    EXPECT_EQ(doc.BoxCount(kSend), 0);
    for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
        EXPECT_FALSE(doc.KindUsed(kSend, kind));
        EXPECT_EQ(doc.Area(kSend, kind), AreaRect{});
        EXPECT_TRUE(doc.KindUsed(kReceive, kind));
    }
    EXPECT_EQ(doc.BoxCount(kReceive), kAreaKinds);
    EXPECT_EQ(doc.SkinName(), "Blue Sky");
    EXPECT_EQ(doc.SkinAuthor(), "Ada");
    EXPECT_EQ(doc.PictureFileName(kSend), "pic.bmp");
    EXPECT_EQ(doc.PicturePath(kSend), "/home/ada/pic.bmp");
    EXPECT_EQ(doc.Colour(TextField::SendMessage, ColourRole::Back), 0x123456);

    // Every kind can be named again, and the next box is box 0.
    doc.AssignArea(kSend, 0, {500, 1000, 90, 90});
    EXPECT_TRUE(doc.KindUsed(kSend, 0));
    EXPECT_EQ(doc.BoxCount(kSend), 0);
}

TEST(ResetDocument, ReturnsToTheStartUpDocument) {
    SkinDocument doc = FilledDocument();
    doc.ResetDocument();
    const SkinDocument fresh;
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
    for (int f = 0; f < kTextFields; ++f) {
        for (ColourRole role : {ColourRole::Back, ColourRole::Text}) {
            const auto field = static_cast<TextField>(f);
            EXPECT_EQ(doc.Colour(field, role), fresh.Colour(field, role));
            EXPECT_EQ(doc.Colour(field, role), SkinDocument::InitialColour(field, role));
        }
    }
}

TEST(RoundToInt16, RoundsHalvesToTheEvenNeighbour) {
    EXPECT_EQ(RoundToInt16(1522.5), 1522);
    EXPECT_EQ(RoundToInt16(1523.5), 1524);
    EXPECT_EQ(RoundToInt16(-0.5), 0);
    EXPECT_EQ(RoundToInt16(0.5), 0);
    EXPECT_EQ(RoundToInt16(-1.5), -2);
    EXPECT_EQ(RoundToInt16(-2.5), -2);
    EXPECT_EQ(RoundToInt16(1522.4999), 1522);
    EXPECT_EQ(RoundToInt16(1522.5001), 1523);
    EXPECT_EQ(RoundToInt16(-285.0f), -285);
}

TEST(RoundToInt16, KeepsTheSigned16BitRange) {
    EXPECT_EQ(RoundToInt16(32767.4), 32767);
    EXPECT_EQ(RoundToInt16(-32768.4), -32768);
    EXPECT_EQ(RoundToInt16(40000.0), 32767);
    EXPECT_EQ(RoundToInt16(-40000.0), -32768);
}

}  // namespace
}  // namespace skin
