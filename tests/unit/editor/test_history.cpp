// Undo and redo: every kind of step is taken back and done again exactly, gestures make one
// step each, what changes nothing leaves no step, and loading or a new start clears the history.
#include <functional>
#include <string>

#include "editortestsupport.h"

namespace skin::testing {
namespace {

constexpr OleColour kTeal = 0x00808000;

// What undo must restore, compared field by field (not through the history's own comparison).
struct Seen {
    SkinDocument document;
    EditorSurface surface;
};

void ExpectSameEdit(const Seen& want, const Editor& editor) {
    EXPECT_TRUE(editor.Document() == want.document) << "document";
    const EditorSurface& now = editor.Surface();
    const EditorSurface& was = want.surface;
    for (int side = 0; side < 2; ++side) {
        const auto& a = was.boxes[side];
        const auto& b = now.boxes[side];
        for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
            const bool shownBefore = i < a.size() && a[i].visible;
            const bool shownNow = i < b.size() && b[i].visible;
            ASSERT_EQ(shownBefore, shownNow) << "box " << side << ' ' << i;
            if (shownNow) {
                EXPECT_EQ(a[i].rect, b[i].rect) << "box " << side << ' ' << i;
                EXPECT_EQ(a[i].tag, b[i].tag);
            }
        }
    }
    for (int f = 0; f < kTextFields; ++f) {
        EXPECT_EQ(was.labels[f].rect, now.labels[f].rect) << "label " << f;
        EXPECT_EQ(was.labels[f].visible, now.labels[f].visible) << "label " << f;
        EXPECT_EQ(was.labels[f].caption, now.labels[f].caption) << "label " << f;
    }
    EXPECT_EQ(was.textFieldBox, now.textFieldBox);
    EXPECT_EQ(was.menuEnabled, now.menuEnabled);
    EXPECT_EQ(was.framePictures, now.framePictures);
    EXPECT_EQ(was.currentSelection, now.currentSelection);
    EXPECT_EQ(was.currSelText, now.currSelText);
}

class HistoryTest : public EditorTest {
protected:
    Seen seen() const { return {doc(), surface()}; }

    // Runs `edit`, which must make exactly one step; undo brings back the state before it and
    // redo the state after it, each exactly.
    void expectOneStep(const std::string& what, const std::function<void()>& edit) {
        SCOPED_TRACE(what);
        const Seen before = seen();
        const std::size_t steps = editor.UndoSteps();
        edit();
        const Seen after = seen();
        ASSERT_EQ(editor.UndoSteps(), steps + 1);
        editor.Undo();
        ExpectSameEdit(before, editor);
        EXPECT_TRUE(editor.CanRedo());
        editor.Redo();
        ExpectSameEdit(after, editor);
        EXPECT_FALSE(editor.CanRedo());
    }
    void expectNoStep(const std::string& what, const std::function<void()>& edit) {
        SCOPED_TRACE(what);
        const std::size_t steps = editor.UndoSteps();
        edit();
        EXPECT_EQ(editor.UndoSteps(), steps);
    }
};

TEST_F(HistoryTest, EveryKindOfEditIsOneStepUndoneAndRedoneExactly) {
    expectOneStep("picture loaded", [&] {
        platform.openAnswers.push_back(FileChoice{"/p/send.bmp", "send.bmp"});
        editor.LoadSkinPicture(Send);
    });
    expectOneStep("text field drawn and named", [&] { drawArea(Send, 0, 100.5f, 200, 1000, 300); });
    expectOneStep("button drawn and named", [&] { drawArea(Send, 2, 1500, 1500, 600, 450); });
    expectOneStep("naming cancelled", [&] { drag(Send, 3000, 100, 3500, 400, std::nullopt); });
    expectOneStep("receive text field", [&] { drawArea(Receive, 2, 100, 100, 2000, 900); });
    editor.SelectBox(Send, 1);  // selecting is no step; undo brings back the selection of its step
    expectOneStep("arrow held, repeating", [&] {
        editor.ArrowPressed(kArrowRight);
        for (int tick = 0; tick < 5; ++tick) editor.MoveTimerTick();
        editor.ArrowReleased(kArrowRight);
        editor.ArrowClicked(kArrowRight);
    });
    editor.SelectTextField(TextField::SendUsers);
    expectOneStep("arrow key with its repeats, lock on", [&] {
        editor.ToggleLock();
        editor.ArrowKey(kArrowDown, false);
        editor.ArrowKey(kArrowDown, true);
        editor.ArrowKey(kArrowDown, true);
        editor.ToggleLock();
    });
    expectOneStep("colour from the dialog", [&] {
        platform.colourAnswers.push_back(0x00123456);
        editor.ChooseColour();
    });
    expectOneStep("colour from the picker", [&] {
        platform.screenPixels = {kTeal};
        editor.SetColourTarget(ColourRole::Text);
        editor.PickerPressed();
        editor.SampleScreenColour();
        editor.PickerReleased();
    });
    expectOneStep("area deleted", [&] { editor.DeleteSelection(); });
    expectOneStep("side reset", [&] { editor.ResetSide(Send); });
    EXPECT_EQ(editor.UndoSteps(), 11u);

    // Back to the start step by step, and forward again to the same end.
    const Seen end = seen();
    while (editor.CanUndo()) editor.Undo();
    ExpectSameEdit({SkinDocument(), StartSurface()}, editor);
    while (editor.CanRedo()) editor.Redo();
    ExpectSameEdit(end, editor);
}

// Undo leaves the name, the author and the tools as they are; a new step after undo drops
// what could have been redone.
TEST_F(HistoryTest, UndoKeepsTextsAndToolsAndANewStepEndsRedo) {
    drawArea(Receive, 3, 100, 100, 600, 300);
    editor.SetSkinName("Harbour");
    editor.ToggleLock();
    editor.SetColourTarget(ColourRole::Text);
    editor.Undo();
    EXPECT_FALSE(doc().KindUsed(Receive, 3));
    EXPECT_EQ(doc().SkinName(), "Harbour");
    EXPECT_EQ(surface().lockTag, "Lock_ON");
    EXPECT_EQ(editor.Surface().currentSelection, Selection::None());
    EXPECT_TRUE(surface().menuEnabled[1][3]);
    drawArea(Receive, 4, 100, 100, 600, 300);  // reuses box 0, the box count having gone back
    EXPECT_EQ(doc().BoxCount(Receive), 1);
    EXPECT_FALSE(editor.CanRedo());
    editor.Undo();
    editor.Undo();  // nothing left: nothing happens
    EXPECT_FALSE(editor.CanUndo());
    EXPECT_EQ(doc().BoxCount(Receive), 0);
}

TEST_F(HistoryTest, WhatChangesNothingLeavesNoStep) {
    drawArea(Send, 0, 100, 1000, 600, 300);  // a text field, so the picker has a box to swap in
    drawArea(Send, 4, 100, 0, 600, 300);     // a button at the picture's top edge, selected
    const std::size_t steps = editor.UndoSteps();
    expectNoStep("selection", [&] { editor.SelectBox(Send, 1); });
    expectNoStep("drag too small", [&] {
        editor.BeginArea(Send, 2000, 2000);
        editor.ExtendArea(Send, 2030, 2030);
        editor.EndArea(Send, 2030, 2030);
    });
    expectNoStep("arrow refused at the edge", [&] {
        editor.ArrowKey(kArrowUp, false);
        editor.ArrowPressed(kArrowUp);
        editor.MoveTimerTick();
        editor.ArrowReleased(kArrowUp);
        editor.ArrowClicked(kArrowUp);
    });
    expectNoStep("name and author", [&] {
        editor.SetSkinName("Blue");
        editor.SetSkinAuthor("Ada");
    });
    expectNoStep("tools", [&] {
        editor.ToggleLock();
        editor.ToggleLock();
        editor.SetColourTarget(ColourRole::Text);
    });
    expectNoStep("dialog cancelled, a colour on a box", [&] {
        editor.ChooseColour();
        platform.colourAnswers.push_back(kTeal);
        editor.ChooseColour();
    });
    expectNoStep("picker held and released over a box", [&] {
        editor.PickerPressed();  // the label gives way to its box while held
        EXPECT_TRUE(box(Send, 0).visible);
        editor.SampleScreenColour();
        editor.PickerReleased();
    });
    expectNoStep("picture cancelled or unreadable", [&] {
        editor.LoadSkinPicture(Send);
        platform.picturesLoad = false;
        platform.openAnswers.push_back(FileChoice{"/p/notes.txt", "notes.txt"});
        editor.LoadSkinPicture(Send);
    });
    expectNoStep("delete with a reset box selected", [&] {
        editor.BeginArea(Send, 2000, 2000);  // a reset leaves the selection on a hidden box
        editor.EndArea(Send, 2000, 2000);
    });
    EXPECT_EQ(editor.UndoSteps(), steps);
    editor.ResetSide(Send);
    expectNoStep("delete after a reset", [&] { editor.DeleteSelection(); });
    EXPECT_EQ(surface().currentSelection, Selection::Box(Send, 1));
}

// Deleting frees the kind as if it had never been drawn; a text field's label goes back to
// where the window starts it.
TEST_F(HistoryTest, DeleteFreesTheKindAndParksATextFieldsLabelAtItsStart) {
    drawArea(Receive, 0, 100, 100, 900, 300);  // Date: a text field
    drawArea(Receive, 6, 100, 600, 900, 300);  // Reply: a button
    editor.DeleteSelection();
    EXPECT_FALSE(doc().KindUsed(Receive, 6));
    EXPECT_EQ(doc().Area(Receive, 6), AreaRect{});
    EXPECT_FALSE(box(Receive, 1).visible);
    EXPECT_TRUE(surface().menuEnabled[1][6]);
    EXPECT_EQ(surface().currentSelection, Selection::None());
    EXPECT_EQ(surface().currSelText, "Current Selection:");
    EXPECT_EQ(doc().BoxCount(Receive), 2);  // the index stays used, like a cancelled drag

    editor.SelectTextField(TextField::ReceiveDate);
    editor.DeleteSelection();
    EXPECT_FALSE(doc().KindUsed(Receive, 0));
    EXPECT_EQ(label(TextField::ReceiveDate).rect, StartSurface().Label(TextField::ReceiveDate).rect);
    EXPECT_EQ(label(TextField::ReceiveDate).caption, "Date/Time");
    EXPECT_EQ(surface().TextFieldBox(TextField::ReceiveDate), -1);
    editor.DeleteSelection();  // nothing selected now
    EXPECT_EQ(editor.UndoSteps(), 4u);
}

// At least 200 steps are kept; loading a skin and a new start clear the history.
TEST_F(HistoryTest, TwoHundredStepsAreKeptAndANewStartClearsThem) {
    drawArea(Send, 2, 300, 300, 600, 450);
    for (int i = 0; i < 260; ++i) editor.ArrowKey(i % 2 == 0 ? kArrowRight : kArrowLeft, false);
    int undone = 0;
    while (editor.CanUndo()) {
        editor.Undo();
        ++undone;
    }
    EXPECT_GE(undone, 200);
    EXPECT_LT(undone, 261);  // bounded: the oldest steps went
    while (editor.CanRedo()) editor.Redo();
    editor.ResetEditor();
    EXPECT_FALSE(editor.CanUndo() || editor.CanRedo());
}

}  // namespace
}  // namespace skin::testing
