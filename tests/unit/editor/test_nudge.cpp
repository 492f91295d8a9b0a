// The arrow pad: moving and stretching the selection, the edge refusals, the lock, the repeat.
#include "editortestsupport.h"

namespace skin::testing {
namespace {

TEST_F(EditorTest, StepsMoveOrStretchOntoThePictureEdgeAndAreRefusedThere) {
    // Send picture: 285, 765 to 5715, 4635. Receive picture: 6135, 765 to 11565, 4050.
    struct Row { SkinSide side; AreaKind kind; int arrow; bool lock; float x, y, w, h; int steps; RectF expected; };
    const Row rows[] = {
        {Send, 2, kArrowLeft, false, 10, 100, 200, 200, 2, {285, 865, 200, 200}},
        {Send, 2, kArrowLeft, true, 5, 100, 200, 200, 2, {290, 865, 200, 200}},  // a stretch keeps the move's edge test
        {Send, 2, kArrowUp, false, 100, 10, 200, 200, 2, {385, 765, 200, 200}},
        {Send, 2, kArrowRight, false, 5220, 100, 200, 200, 2, {5515, 865, 200, 200}},
        {Send, 2, kArrowRight, true, 5220, 100, 200, 200, 2, {5505, 865, 210, 200}},
        {Send, 2, kArrowDown, false, 100, 3660, 200, 200, 2, {385, 4435, 200, 200}},
        {Send, 2, kArrowDown, true, 100, 3660, 200, 200, 2, {385, 4425, 200, 210}},
        {Send, 2, kArrowLeft, true, 100, 100, 50, 50, 7, {385, 865, 0, 50}},  // never below zero
        {Send, 2, kArrowUp, true, 100, 100, 50, 50, 7, {385, 865, 50, 0}},
        {Receive, 7, kArrowDown, false, 100, 3075, 200, 200, 2, {6235, 3850, 200, 200}},
        // The Receive Sender label is tagged "Receive": the Receive picture bounds it.
        {Receive, 1, kArrowLeft, false, 10, 100, 300, 200, 2, {6135, 865, 300, 200}},
        {Receive, 1, kArrowRight, false, 10, 100, 300, 200, 1, {6155, 865, 300, 200}},
        {Send, 0, kArrowDown, true, 100.5f, 100, 500, 200, 1, {386, 865, 500, 210}},  // a label mirrors its box
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(::testing::Message() << "arrow " << r.arrow << (r.lock ? " locked" : "") << " at " << r.x);
        editor.ResetSide(r.side);
        if ((surface().lockTag == "Lock_ON") != r.lock) editor.ToggleLock();
        EXPECT_EQ(surface().lockTag, r.lock ? "Lock_ON" : "Lock_OFF");
        drawArea(r.side, r.kind, r.x, r.y, r.w, r.h);
        for (int i = 0; i < r.steps; ++i) editor.NudgeSelection(r.arrow);
        const Selection sel = surface().currentSelection;
        const RectF& moved = sel.kind == Selection::Kind::Label ? label(sel.field).rect : box(r.side, 0).rect;
        EXPECT_EQ(moved, r.expected);
        EXPECT_EQ(box(r.side, 0).rect, moved);
        const AreaRect stored{RoundToInt16(moved.Left), RoundToInt16(moved.Top), RoundToInt16(moved.Width),
                              RoundToInt16(moved.Height)};
        EXPECT_EQ(doc().Area(r.side, r.kind), stored);
    }
}

TEST_F(EditorTest, HeldArrowRepeatsAndBordersASelectedLabelOnly) {
    drawArea(Receive, 2, 100, 100, 500, 500);
    editor.ArrowPressed(kArrowRight);
    EXPECT_EQ(surface().arrowFaces[kArrowRight], "Right_ON");
    EXPECT_TRUE(label(TextField::ReceiveMessage).border);
    EXPECT_TRUE(platform.moveTimer);
    for (int i = 0; i < 3; ++i) editor.MoveTimerTick();
    editor.ArrowReleased(kArrowRight);
    editor.ArrowClicked(kArrowRight);
    editor.MoveTimerTick();  // a tick queued before the release does nothing
    EXPECT_FALSE(platform.moveTimer);
    EXPECT_FALSE(label(TextField::ReceiveMessage).border);
    EXPECT_EQ(surface().arrowFaces[kArrowRight], "Right_OFF");
    EXPECT_EQ(doc().Area(Receive, 2).Left, 6235 + 40);

    drawArea(Send, 2, 100, 100, 200, 200);
    editor.ArrowPressed(kArrowUp);
    for (const LabelElement& l : surface().labels) EXPECT_FALSE(l.border);
}

TEST_F(EditorTest, NothingSelectedGivesOneMessagePerPress) {
    editor.ArrowPressed(kArrowLeft);
    for (int i = 0; i < 5; ++i) editor.MoveTimerTick();
    // The message box takes the release, so the arrow was let go before it opened.
    EXPECT_FALSE(platform.moveTimer);
    EXPECT_EQ(editor.Surface().arrowFaces[kArrowLeft], "Left_OFF");
    ASSERT_EQ(platform.messages.size(), 1u);
    const FakePlatform::Message& m = platform.messages[0];
    EXPECT_EQ(m.text, "Please select an object to modify first");
    EXPECT_EQ(m.title, "Brindleway Skin Fwt.");
    EXPECT_TRUE(m.icon == MessageIcon::Information && m.buttons == MessageButtons::Ok);
    // Should the release still reach the arrow, its click brings no second message.
    editor.ArrowReleased(kArrowLeft);
    editor.ArrowClicked(kArrowLeft);
    EXPECT_EQ(platform.messages.size(), 1u);
    // A short press: no tick, the click brings the press's one message.
    editor.ArrowPressed(kArrowLeft);
    editor.ArrowReleased(kArrowLeft);
    editor.ArrowClicked(kArrowLeft);
    EXPECT_EQ(platform.messages.size(), 2u);
    // The arrow keys likewise: a message per press, none for its repeats, and no history step.
    editor.ArrowKey(kArrowLeft, false);
    editor.ArrowKey(kArrowLeft, true);
    editor.ArrowKey(kArrowRight, false);
    ASSERT_EQ(platform.messages.size(), 4u);
    EXPECT_EQ(platform.messages[3].text, "Please select an object to modify first");
    EXPECT_FALSE(editor.CanUndo());
}

}  // namespace
}  // namespace skin::testing
