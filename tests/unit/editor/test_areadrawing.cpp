// Drawing object areas with the mouse, the name menu, naming and selection.
#include "editortestsupport.h"

namespace skin::testing {
namespace {

TEST_F(EditorTest, ReleaseMustLie45TwipsRightOfAndBelowTheRoundedPress) {
    struct Row { float x0, y0, x1, y1; bool opens; };
    const Row rows[] = {
        {100, 200, 145, 245, true},  {100, 200, 144, 245, false}, {100, 200, 145, 244, false},
        {300, 300, 300, 300, false}, {500, 500, 400, 450, false},  // a click, a drag up and left
        {1237.5f, 200, 1282.5f, 245, false},  // the press rounds to 1238, halves to even
        {1236.5f, 200, 1281.5f, 245, true},   // and to 1236
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(::testing::Message() << r.x0 << ',' << r.y0 << " to " << r.x1 << ',' << r.y1);
        const std::size_t menus = platform.menusShown.size();
        const int n = doc().BoxCount(Send);
        drag(Send, r.x0, r.y0, r.x1, r.y1, std::nullopt);
        EXPECT_EQ(platform.menusShown.size() - menus, r.opens ? 1u : 0u);
        EXPECT_EQ(doc().BoxCount(Send), n + (r.opens ? 1 : 0));  // a small drag reuses its box
        EXPECT_FALSE(box(Send, n).visible);
    }
}

TEST_F(EditorTest, GrowingBoxIsPinnedAtTheFarEdgesOneMovementLateAndNeverTurnsOver) {
    editor.BeginArea(Send, 5300, 3700);   // box at 5585, 4465; the picture ends at 5715, 4635
    editor.ExtendArea(Send, 5500, 3900);  // the edges were inside before this movement: overshoot
    EXPECT_EQ(box(Send, 0).rect, (RectF{5585, 4465, 200, 200}));
    editor.ExtendArea(Send, 5600, 4000);
    EXPECT_EQ(box(Send, 0).rect, (RectF{5585, 4465, 130, 170}));
    editor.ExtendArea(Send, 5320, 3650);  // above the press: the height stays
    EXPECT_EQ(box(Send, 0).rect, (RectF{5585, 4465, 20, 170}));
    // The size test looks at the release point, not at the narrow box.
    platform.menuAnswers.push_back(3);
    editor.EndArea(Send, 5600, 4000);
    EXPECT_EQ(doc().Area(Send, 3), (AreaRect{5585, 4465, 20, 170}));
}

TEST_F(EditorTest, NameMenuOffersTheSidesFreeKindsAndACancelUsesUpTheBox) {
    drawArea(Receive, 3, 100, 100, 200, 200);
    view.shown.clear();
    drag(Receive, 100, 400, 300, 600, std::nullopt);
    ASSERT_EQ(platform.menusShown.size(), 2u);
    EXPECT_EQ(platform.log.back(), "name menu Receive");
    for (bool enabled : platform.menusShown[0]) EXPECT_TRUE(enabled);
    EXPECT_EQ(platform.menusShown[1], (std::array<bool, kAreaKinds>{true, true, true, false, true, true, true, true}));
    // The grown box is on screen while the menu is open, then discarded.
    ASSERT_GE(view.shown.size(), 2u);
    EXPECT_TRUE(view.shown[view.shown.size() - 2].Boxes(Receive)[1].visible);
    EXPECT_FALSE(box(Receive, 1).visible);
    EXPECT_EQ(doc().BoxCount(Receive), 2);
    EXPECT_EQ(surface().currentSelection, Selection::Box(Receive, 0));
    drag(Send, 100, 100, 300, 300, std::nullopt);  // the other side's menu is its own
    EXPECT_EQ(platform.menusShown[2], platform.menusShown[0]);
}

TEST_F(EditorTest, NamingPlacesATextFieldsLabelOrKeepsAButtonBoxAndSelectsIt) {
    drag(Send, 100.25f, 200, 1100.25f, 500, 0);
    EXPECT_EQ(doc().Area(Send, 0), (AreaRect{385, 965, 1000, 300}));
    EXPECT_FALSE(box(Send, 0).visible);
    EXPECT_EQ(box(Send, 0).tag, "Send User List");
    EXPECT_EQ(surface().TextFieldBox(TextField::SendUsers), 0);
    EXPECT_EQ(label(TextField::SendUsers).rect, (RectF{385, 965, 1000, 300}));
    EXPECT_EQ(surface().currentSelection, Selection::Label(TextField::SendUsers));
    EXPECT_EQ(surface().currSelText, "Current Selection: Send User List");

    drawArea(Send, 2, 100, 100, 300, 300);
    EXPECT_TRUE(box(Send, 1).visible);
    EXPECT_EQ(box(Send, 1).tag, "Send All");
    EXPECT_EQ(surface().currentSelection, Selection::Box(Send, 1));
    EXPECT_EQ(surface().currSelText, "Current Selection: Send All");

    // A press on a shown box or label selects it without a drag.
    editor.SelectTextField(TextField::SendUsers);
    EXPECT_EQ(surface().currSelText, "Current Selection: Send User List");
    editor.SelectBox(Send, 1);
    EXPECT_EQ(surface().currentSelection, Selection::Box(Send, 1));
    EXPECT_EQ(surface().currSelText, "Current Selection: Send All");

    editor.BeginArea(Send, 100, 100);
    EXPECT_FALSE(editor.NameArea(Send, 8));
    EXPECT_FALSE(editor.NameArea(Send, -1));
    EXPECT_TRUE(box(Send, 2).tag.empty());
    EXPECT_EQ(surface().currentSelection, Selection::Box(Send, 1));
}

}  // namespace
}  // namespace skin::testing
