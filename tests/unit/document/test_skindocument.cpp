// The skin document: area names, slots and their used flags, clearing a side, and the
// rounding of control values into the 16-bit slots.

#include <gtest/gtest.h>

#include <utility>

#include "skindocument.h"

namespace skin {
namespace {

constexpr SkinSide kSend = SkinSide::Send;
constexpr SkinSide kReceive = SkinSide::Receive;

TEST(SkinDocument, FindKindMatchesAnAreaNameExactlyOnItsOwnSide) {
    EXPECT_EQ(SkinDocument::FindKind(kReceive, "Receive Okay"), 3);
    EXPECT_EQ(SkinDocument::FindKind(kSend, "Send Options"), 7);
    for (const char* near : {"Recieve OK", "Send Okay", "receive okay", "Receive Okay ", "Okay", ""}) {
        EXPECT_EQ(SkinDocument::FindKind(kReceive, near), std::nullopt) << near;
    }
}

TEST(SkinDocument, AssignMarksUsedUpdateLeavesAFreeKindFreeAndClearSideEmptiesOneSide) {
    SkinDocument doc;
    // Back colours of text fields the information file does not carry.
    EXPECT_EQ(doc.Colour(TextField::ReceiveDate, ColourRole::Back), kSystemWindowBackground);
    EXPECT_EQ(doc.Colour(TextField::ReceiveSender, ColourRole::Back), kSystemWindowBackground);
    doc.SetSkinName("Blue Sky");
    doc.SetPicture(kSend, "pic.bmp", "/p/pic.bmp");
    doc.SetColour(TextField::SendMessage, ColourRole::Back, 0x123456);
    doc.AssignArea(kSend, 7, {1000, 900, 600, 300});
    doc.UpdateArea(kReceive, 3, {6000, 4000, 75, -15});  // the arrow pad can write a free slot; it stays free
    doc.AssignArea(kReceive, 0, {6200, 800, 10, 10});
    doc.IncrementBoxCount(kSend);
    doc.IncrementBoxCount(kReceive);
    EXPECT_TRUE(doc.KindUsed(kSend, 7));
    EXPECT_FALSE(doc.KindUsed(kReceive, 3));
    EXPECT_EQ(doc.Area(kReceive, 3), (AreaRect{6000, 4000, 75, -15}));

    doc.ClearSide(kSend);
    EXPECT_FALSE(doc.KindUsed(kSend, 7));
    EXPECT_EQ(doc.Area(kSend, 7), AreaRect{});
    EXPECT_EQ(doc.BoxCount(kSend), 0);
    EXPECT_TRUE(doc.KindUsed(kReceive, 0));
    EXPECT_EQ(doc.BoxCount(kReceive), 1);
    EXPECT_EQ(doc.SkinName(), "Blue Sky");
    EXPECT_EQ(doc.PicturePath(kSend), "/p/pic.bmp");
    EXPECT_EQ(doc.Colour(TextField::SendMessage, ColourRole::Back), 0x123456);

}

TEST(RoundToInt16, RoundsHalvesToEvenAndSaturatesAtThe16BitRange) {
    const std::pair<double, int> rows[] = {
        {1522.5, 1522},     {1523.5, 1524},    {-0.5, 0},       {0.5, 0},          {-1.5, -2},
        {-2.5, -2},         {1522.4999, 1522}, {1522.5001, 1523}, {32767.4, 32767}, {-32768.4, -32768},
        {40000.0, 32767},   {-40000.0, -32768},
    };
    for (auto [value, rounded] : rows) EXPECT_EQ(RoundToInt16(value), rounded) << value;
}

}  // namespace
}  // namespace skin
