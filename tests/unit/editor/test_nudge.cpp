// The arrow pad: moving and stretching the selection, the edge refusals, the lock, the repeat.
#include "editortestsupport.h"

namespace skin::testing {
namespace {

constexpr SkinSide Send = SkinSide::Send;
constexpr SkinSide Receive = SkinSide::Receive;


TEST_F(EditorTest, EdgeRightStepMovesOrGrowsOntoTheEdgeThenRefused) {
    for (bool lock : {false, true}) {
        SCOPED_TRACE(lock ? "lock on" : "lock off");
        editor.ResetEditor();
        if (lock) editor.ToggleLock();
        drawArea(Send, 3, 5220, 100, 200, 200);  // right edge 5705, the picture's 5715
        editor.NudgeSelection(kArrowRight);
        const RectF r = box(Send, 0).rect;
        EXPECT_FLOAT_EQ(r.Left + r.Width, 5715);
        EXPECT_FLOAT_EQ(r.Width, lock ? 210 : 200);
        EXPECT_EQ(doc().Area(Send, 3), (AreaRect{RoundToInt16(r.Left), 865, RoundToInt16(r.Width), 200}));
        editor.NudgeSelection(kArrowRight);
        EXPECT_EQ(box(Send, 0).rect, r);
    }
}

TEST_F(EditorTest, EdgeMovesOntoTheLeftBottomAndTopEdgesThenRefused) {
    drawArea(Send, 2, 10, 100, 200, 200);  // Left 295: 10 inside the picture
    editor.NudgeSelection(kArrowLeft);
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Left, 285);
    editor.NudgeSelection(kArrowLeft);
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Left, 285);
    EXPECT_EQ(doc().Area(Send, 2).Left, 285);
    EXPECT_TRUE(platform.messages.empty());
    drawArea(Receive, 4, 100, 10, 200, 3265);  // Top 775, bottom 4040: 10 inside 4050
    editor.NudgeSelection(kArrowDown);
    editor.NudgeSelection(kArrowDown);
    EXPECT_FLOAT_EQ(box(Receive, 0).rect.Top, 785);
    editor.NudgeSelection(kArrowUp);
    editor.NudgeSelection(kArrowUp);
    editor.NudgeSelection(kArrowUp);
    EXPECT_FLOAT_EQ(box(Receive, 0).rect.Top, 765);
    EXPECT_EQ(doc().Area(Receive, 4).Top, 765);
}

TEST_F(EditorTest, EdgeLockedStretchRefusedNearTheLeftEdgeAndBelowZero) {
    drawArea(Send, 4, 5, 100, 200, 200);
    editor.ToggleLock();
    editor.NudgeSelection(kArrowLeft);
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Width, 200);
    editor.NudgeSelection(kArrowRight);
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Width, 210);
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Left, 290);
    EXPECT_EQ(doc().Area(Send, 4).Width, 210);
    // Stretching below zero is refused.
    drawArea(Send, 5, 100, 100, 50, 50);
    for (int i = 0; i < 7; ++i) editor.NudgeSelection(kArrowLeft);
    editor.NudgeSelection(kArrowUp);
    EXPECT_FLOAT_EQ(box(Send, 1).rect.Width, 0);
    EXPECT_FLOAT_EQ(box(Send, 1).rect.Height, 40);
    EXPECT_EQ(doc().Area(Send, 5), (AreaRect{385, 865, 0, 40}));
}

TEST_F(EditorTest, EdgeReceiveSenderLabelTakesTheReceivePicture) {
    drawArea(Receive, 1, 10, 100, 300, 200);  // label Left 6145, tag "Receive"
    ASSERT_EQ(surface().currentSelection, Selection::Label(TextField::ReceiveSender));
    editor.NudgeSelection(kArrowRight);  // refused against the Send picture, fine on Receive
    EXPECT_FLOAT_EQ(label(TextField::ReceiveSender).rect.Left, 6155);
    editor.NudgeSelection(kArrowLeft);
    editor.NudgeSelection(kArrowLeft);
    editor.NudgeSelection(kArrowLeft);  // refused at the Receive picture's left edge
    EXPECT_FLOAT_EQ(label(TextField::ReceiveSender).rect.Left, 6135);
    EXPECT_EQ(doc().Area(Receive, 1).Left, 6135);
    EXPECT_FLOAT_EQ(box(Receive, 0).rect.Left, 6135);
}


TEST_F(EditorTest, NudgeNoSelectionShowsTheMessageOnce) {
    editor.NudgeSelection(kArrowUp);
    ASSERT_EQ(platform.messages.size(), 1u);
    EXPECT_EQ(platform.messages[0].text, "Please select an object to modify first");
    EXPECT_EQ(platform.messages[0].title, "Brindleway Skin Fwt.");
    EXPECT_EQ(platform.messages[0].icon, MessageIcon::Information);
    EXPECT_EQ(platform.messages[0].buttons, MessageButtons::Ok);
}

TEST_F(EditorTest, NudgeLabelAndItsMirroredBoxMoveTogether) {
    drag(Send, 100.5f, 200, 600.5f, 400, 0);  // box Left 385.5, label Left 386
    editor.NudgeSelection(kArrowDown);
    editor.NudgeSelection(kArrowRight);
    const RectF moved = label(TextField::SendUsers).rect;
    EXPECT_EQ(moved, (RectF{396, 975, 500, 200}));
    EXPECT_EQ(box(Send, 0).rect, moved);
    EXPECT_FALSE(box(Send, 0).visible);
    EXPECT_EQ(doc().Area(Send, 0), (AreaRect{396, 975, 500, 200}));
}

TEST_F(EditorTest, NudgeBoxReplacesTheRectangleOfItsNamedKind) {
    drawArea(Send, 7, 100, 100, 200, 200);
    drawArea(Receive, 3, 100, 100, 200, 200);
    editor.SelectBox(Send, 0);
    editor.NudgeSelection(kArrowRight);
    EXPECT_EQ(doc().Area(Send, 7).Left, 395);
    editor.SelectBox(Receive, 0);
    editor.NudgeSelection(kArrowDown);
    EXPECT_EQ(doc().Area(Receive, 3).Top, 875);
    EXPECT_EQ(doc().Area(Send, 7).Top, 865);
}

TEST_F(EditorTest, NudgeStaleSelectionAfterAResetWritesAFreedSlotWithoutMarkingItUsed) {
    drawArea(Send, 7, 100, 100, 200, 200);
    editor.ResetSide(Send);
    ASSERT_EQ(surface().currentSelection, Selection::Box(Send, 0));
    editor.NudgeSelection(kArrowRight);
    EXPECT_EQ(doc().Area(Send, 7), (AreaRect{395, 865, 200, 200}));
    EXPECT_FALSE(doc().KindUsed(Send, 7));
    EXPECT_TRUE(surface().menuEnabled[0][7]);
    EXPECT_FALSE(box(Send, 0).visible);
    // A stale label selection moves only the label.
    drawArea(Send, 1, 100, 100, 200, 200);
    editor.ResetSide(Send);
    editor.NudgeSelection(kArrowLeft);
    EXPECT_FLOAT_EQ(label(TextField::SendMessage).rect.Left, 375);
    EXPECT_FLOAT_EQ(box(Send, 0).rect.Left, 385);
    EXPECT_EQ(doc().Area(Send, 1), AreaRect{});
}




TEST_F(EditorTest, ArrowPadHeldArrowShowsFaceBorderAndRepeats) {
    drawArea(Receive, 2, 100, 100, 500, 500);
    editor.ArrowPressed(kArrowRight);
    EXPECT_EQ(surface().arrowFaces[kArrowRight], "Right_ON");
    EXPECT_TRUE(label(TextField::ReceiveMessage).border);
    EXPECT_TRUE(platform.moveTimer);
    for (int i = 0; i < 3; ++i) editor.MoveTimerTick();
    editor.ArrowReleased(kArrowRight);
    editor.ArrowClicked(kArrowRight);
    EXPECT_FALSE(platform.moveTimer);
    EXPECT_FALSE(label(TextField::ReceiveMessage).border);
    EXPECT_EQ(surface().arrowFaces[kArrowRight], "Right_OFF");
    EXPECT_EQ(doc().Area(Receive, 2).Left, 6235 + 40);
}

TEST_F(EditorTest, ArrowPadSelectedBoxGetsNoBorder) {
    drawArea(Send, 2, 100, 100, 200, 200);
    editor.ArrowPressed(kArrowUp);
    for (const LabelElement& l : surface().labels) EXPECT_FALSE(l.border);
    editor.ArrowReleased(kArrowUp);
}

TEST_F(EditorTest, ArrowPadOneMessagePerPressWithNothingSelected) {
    editor.ArrowPressed(kArrowLeft);
    for (int i = 0; i < 5; ++i) editor.MoveTimerTick();
    EXPECT_FALSE(platform.moveTimer);  // the repeat stopped for the message
    editor.ArrowReleased(kArrowLeft);
    editor.ArrowClicked(kArrowLeft);
    EXPECT_EQ(platform.messages.size(), 1u);
    // A short press: no tick, the click brings the press's one message.
    editor.ArrowPressed(kArrowLeft);
    editor.ArrowReleased(kArrowLeft);
    editor.ArrowClicked(kArrowLeft);
    EXPECT_EQ(platform.messages.size(), 2u);
}

TEST_F(EditorTest, ArrowPadLockTogglesBetweenItsTwoTagsAndSurvivesSideResets) {
    EXPECT_EQ(surface().lockTag, "Lock_OFF");
    editor.ToggleLock();
    EXPECT_EQ(surface().lockTag, "Lock_ON");
    editor.ToggleLock();
    EXPECT_EQ(surface().lockTag, "Lock_OFF");
    editor.ToggleLock();
    editor.ResetSide(Send);
    editor.ResetSide(Receive);
    EXPECT_EQ(surface().lockTag, "Lock_ON");  // the lock survives side resets
}



}  // namespace
}  // namespace skin::testing
