// Drawing object areas with the mouse, the name menu, naming and selection.
#include "editortestsupport.h"

namespace skin::testing {
namespace {

constexpr SkinSide Send = SkinSide::Send;
constexpr SkinSide Receive = SkinSide::Receive;


TEST_F(EditorTest, SizeFortyFiveTwipsEachWayOpensTheMenuFortyFourEitherWayOrAClickDiscards) {
    drag(Send, 100, 200, 144, 245, 2);
    drag(Send, 100, 200, 145, 244, 2);
    editor.BeginArea(Send, 300, 300);
    EXPECT_TRUE(box(Send, 0).visible);  // the growing box is what the designer sees
    editor.EndArea(Send, 300, 300);
    EXPECT_TRUE(platform.menusShown.empty());
    EXPECT_EQ(doc().BoxCount(Send), 0);
    EXPECT_FALSE(box(Send, 0).visible);
    EXPECT_FALSE(doc().KindUsed(Send, 2));
    drag(Send, 100, 200, 145, 245, std::nullopt);
    EXPECT_EQ(platform.menusShown.size(), 1u);
    EXPECT_EQ(doc().BoxCount(Send), 1);
}

TEST_F(EditorTest, SizeTestUsesTheReleasePointNotTheClippedBox) {
    // Start 20 twips inside the right edge: the box is pinned narrow, yet the release passes.
    const float right = PictureFrame(Send).Width;
    editor.BeginArea(Send, right - 20, 100);
    editor.ExtendArea(Send, right + 100, 200);
    editor.ExtendArea(Send, right + 200, 200);
    platform.menuAnswers.push_back(3);
    editor.EndArea(Send, right + 200, 200);
    ASSERT_EQ(platform.menusShown.size(), 1u);
    EXPECT_EQ(doc().Area(Send, 3).Width, 20);
}


TEST_F(EditorTest, ExtendRightAndBottomEdgesArePinnedOneMovementLate) {
    const RectF pic = PictureFrame(Send);  // right edge at 5715
    editor.BeginArea(Send, 5300, 100);     // box Left 5585
    editor.ExtendArea(Send, 5420, 150);
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Width, 120);
    editor.ExtendArea(Send, 5500, 150);  // the edge before this step was inside: overshoot
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Width, 200);
    editor.ExtendArea(Send, 5600, 150);  // now pinned onto the edge
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Left + box(Send, 0).rect.Width, pic.Left + pic.Width);
    editor.ExtendArea(Send, 5350, 150);  // back inside follows the pointer
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Width, 50);

    const RectF rpic = PictureFrame(Receive);  // bottom at 765 + 3285
    editor.BeginArea(Receive, 100, 3200);
    editor.ExtendArea(Receive, 200, 3400);
    EXPECT_FLOAT_EQ(box(Receive, 0).rect.Height, 200);
    editor.ExtendArea(Receive, 200, 3500);
    EXPECT_FLOAT_EQ(box(Receive, 0).rect.Top + box(Receive, 0).rect.Height, rpic.Top + rpic.Height);
}

TEST_F(EditorTest, ExtendNeverTurnsOverAndEndsHiddenWhenDraggedBack) {
    editor.BeginArea(Send, 500, 500);
    editor.ExtendArea(Send, 600, 650);
    editor.ExtendArea(Send, 400, 450);  // left of and above the anchor
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Width, 100);
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Height, 150);
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Left, 785);
    editor.EndArea(Send, 400, 450);
    EXPECT_FALSE(box(Send, 0).visible);
    EXPECT_EQ(doc().BoxCount(Send), 0);
}

TEST_F(EditorTest, ExtendGrowingBoxIsOnScreenWhenTheMenuOpens) {
    editor.BeginArea(Send, 100, 100);
    editor.ExtendArea(Send, 300, 400);
    view.shown.clear();
    editor.EndArea(Send, 300, 400);  // dismissed
    ASSERT_FALSE(view.shown.empty());
    const BoxElement& shownAtMenu = view.shown.front().Boxes(Send)[0];
    EXPECT_TRUE(shownAtMenu.visible);
    EXPECT_FLOAT_EQ(shownAtMenu.rect.Width, 200);
    EXPECT_FALSE(box(Send, 0).visible);
}


TEST_F(EditorTest, MenuCancelledMenuUsesUpTheBoxIndex) {
    drag(Send, 100, 100, 300, 300, std::nullopt);
    EXPECT_FALSE(box(Send, 0).visible);
    EXPECT_EQ(doc().BoxCount(Send), 1);
    drag(Send, 400, 400, 600, 600, 4);
    ASSERT_EQ(surface().Boxes(Send).size(), 2u);
    EXPECT_TRUE(box(Send, 1).visible);
    EXPECT_EQ(box(Send, 1).tag, "Send Cut");
    EXPECT_TRUE(box(Send, 0).tag.empty());
    EXPECT_EQ(doc().BoxCount(Send), 2);
}

TEST_F(EditorTest, MenuMenuOffersOnlyTheFreeKindsOfItsSide) {
    drawArea(Receive, 3, 100, 100, 200, 200);
    drawArea(Receive, 0, 100, 400, 200, 200);
    drag(Send, 100, 100, 300, 300, std::nullopt);
    ASSERT_EQ(platform.menusShown.size(), 3u);
    EXPECT_EQ(platform.log[1], "name menu Receive");
    const auto& receiveMenu = platform.menusShown[1];
    EXPECT_FALSE(receiveMenu[3]);
    for (int k : {0, 1, 2, 4, 5, 6, 7}) EXPECT_TRUE(receiveMenu[k]) << k;
    EXPECT_FALSE(surface().menuEnabled[1][0]);
    for (bool enabled : platform.menusShown[2]) EXPECT_TRUE(enabled);
}

TEST_F(EditorTest, MenuStoredRectangleRoundsHalvesToEven) {
    // Left 285 + 1237.5 = 1522.5, Top 765 + 758.5 = 1523.5.
    drag(Send, 1237.5f, 758.5f, 1337.5f, 858.5f, 2);
    EXPECT_EQ(surface().dragAnchor[0].X, 1238);
    EXPECT_EQ(surface().dragAnchor[0].Y, 758);
    // Width 1337.5 - 1238 = 99.5 and Height 858.5 - 758 = 100.5 both round to 100.
    EXPECT_EQ(doc().Area(Send, 2), (AreaRect{1522, 1524, 100, 100}));
}


TEST_F(EditorTest, NamingTextFieldHidesTheBoxAndPlacesItsLabel) {
    drag(Send, 100.25f, 200, 1100.25f, 500, 0);
    const AreaRect r = doc().Area(Send, 0);
    EXPECT_EQ(r, (AreaRect{385, 965, 1000, 300}));
    EXPECT_TRUE(doc().KindUsed(Send, 0));
    EXPECT_FALSE(box(Send, 0).visible);
    EXPECT_EQ(box(Send, 0).tag, "Send User List");
    EXPECT_EQ(surface().TextFieldBox(TextField::SendUsers), 0);
    EXPECT_EQ(label(TextField::SendUsers).rect, (RectF{385, 965, 1000, 300}));
    EXPECT_EQ(surface().currentSelection, Selection::Label(TextField::SendUsers));
    EXPECT_EQ(surface().currSelText, "Current Selection: Send User List");
    EXPECT_FALSE(surface().menuEnabled[0][0]);
    EXPECT_TRUE(surface().areaNamed[0]);
}

TEST_F(EditorTest, NamingButtonAreaStaysVisibleSelectedAndInFront) {
    drawArea(Send, 1, 100, 100, 500, 300);
    drawArea(Send, 2, 100, 100, 300, 300);
    EXPECT_TRUE(box(Send, 1).visible);
    EXPECT_EQ(box(Send, 1).tag, "Send All");
    EXPECT_EQ(surface().currSelText, "Current Selection: Send All");
    EXPECT_EQ(surface().currentSelection, Selection::Box(Send, 1));
    EXPECT_GT(box(Send, 1).z, label(TextField::SendMessage).z);
    EXPECT_GT(box(Send, 1).z, box(Send, 0).z);
    EXPECT_EQ(surface().TextFieldBox(TextField::SendMessage), 0);
    EXPECT_EQ(label(TextField::SendMessage).rect, (RectF{385, 865, 500, 300}));
    // A message area goes to the label of its own side.
    EXPECT_FLOAT_EQ(label(TextField::ReceiveMessage).rect.Top, LabelStartTop(TextField::ReceiveMessage));
    drawArea(Receive, 2, 100, 100, 500, 300);
    EXPECT_EQ(label(TextField::ReceiveMessage).rect, (RectF{6235, 865, 500, 300}));
    EXPECT_EQ(label(TextField::SendMessage).rect, (RectF{385, 865, 500, 300}));
}

TEST_F(EditorTest, NamingClickOnBoxOrLabelSelectsItAndDiscardedDragsKeepIt) {
    drawArea(Receive, 7, 100, 100, 300, 300);
    drawArea(Receive, 1, 100, 600, 300, 300);
    EXPECT_EQ(surface().currSelText, "Current Selection: Receive Sender");
    editor.SelectBox(Receive, 0);
    EXPECT_EQ(surface().currentSelection, Selection::Box(Receive, 0));
    EXPECT_EQ(surface().currSelText, "Current Selection: Receive Close");
    editor.SelectTextField(TextField::ReceiveDate);
    EXPECT_EQ(surface().currSelText, "Current Selection: Receive Date");
    // Discarded and cancelled drags keep the selection.
    drag(Receive, 500, 500, 510, 510, std::nullopt);
    drag(Receive, 500, 500, 700, 700, std::nullopt);
    EXPECT_EQ(surface().currentSelection, Selection::Label(TextField::ReceiveDate));
}

TEST_F(EditorTest, NamingKindOutsideTheMenuIsRefused) {
    editor.BeginArea(Send, 100, 100);
    EXPECT_FALSE(editor.NameArea(Send, 8));
    EXPECT_FALSE(editor.NameArea(Send, -1));
    EXPECT_FALSE(surface().areaNamed[0]);
    for (int k = 0; k < kAreaKinds; ++k) EXPECT_FALSE(doc().KindUsed(Send, k));
}


TEST_F(EditorTest, ReplayLandsTheExactRectangleWithoutMenuOrSizeTest) {
    replayArea(Send, 5, 715, 435, 300, 20);  // thinner than the size test allows
    EXPECT_TRUE(platform.menusShown.empty());
    EXPECT_EQ(doc().Area(Send, 5), (AreaRect{1000, 1200, 300, 20}));
    EXPECT_TRUE(box(Send, 0).visible);
    EXPECT_EQ(doc().BoxCount(Send), 1);
    EXPECT_FALSE(surface().menuEnabled[0][5]);
    EXPECT_EQ(surface().currSelText, "Current Selection: Send Send");
    replayArea(Receive, 6, 5300, 100, 400, 100);  // 300 twips past the picture: restored whole
    EXPECT_EQ(doc().Area(Receive, 6), (AreaRect{11435, 865, 400, 100}));
}

TEST_F(EditorTest, ReplayNeverDrawnTextFieldSitsAtTheSurfaceOrigin) {
    replayArea(Receive, 0, -6135, -765, 0, 0);
    EXPECT_EQ(doc().Area(Receive, 0), (AreaRect{0, 0, 0, 0}));
    EXPECT_TRUE(doc().KindUsed(Receive, 0));
    EXPECT_EQ(label(TextField::ReceiveDate).rect, (RectF{0, 0, 0, 0}));
    EXPECT_FALSE(surface().menuEnabled[1][0]);
}

}  // namespace
}  // namespace skin::testing
