#pragma once
// The editing history behind undo and redo. A step keeps the editable state as it was before
// the change (a snapshot of the document and the surface); undo puts that state back and keeps
// the state it replaced for redo. Snapshots are whole copies, so a restore is exact to the twip
// and cannot drift from the operations that made the change.

#include <cstddef>
#include <deque>
#include <vector>

#include "editorsurface.h"
#include "skindocument.h"

namespace skin {

// What undo restores: the document and the surface, selection included. The skin name and
// author are the text boxes' own (their undo is the boxes'), and the tools (lock, colour
// target, swatch, faces) are settings rather than edits: restoring keeps the current ones.
struct EditState {
    SkinDocument document;
    EditorSurface surface;
};

// Whether two states differ in what the designer made: areas, boxes on screen, labels, the
// name menus, pictures and colours. The selection, the tools and hidden boxes' leftover
// geometry are not edits.
bool SameContent(const EditState& a, const EditState& b);

// `state` with the content of `snapshot` and the name, author and tools of `state`.
EditState Restored(const EditState& state, const EditState& snapshot);

class History {
public:
    static constexpr std::size_t kDepth = 256;  // steps kept; the oldest go first

    // Called when an operation ends with the state it started from (`before`) and the state
    // it left (`now`). Operations of one gesture share a nonzero key (a held arrow, a drag and
    // its naming); their changes merge into one step, and a gesture that ends where it began
    // leaves no step. Key 0 is an operation on its own. A new step clears what could be redone.
    void Settle(EditState before, const EditState& now, int gestureKey);

    bool CanUndo() const { return !undo_.empty(); }
    bool CanRedo() const { return !redo_.empty(); }
    // The state to show after undo (or redo) of `now`; nothing to do without a step.
    EditState Undo(const EditState& now);
    EditState Redo(const EditState& now);
    void Clear();

    std::size_t UndoSteps() const { return undo_.size(); }
    std::size_t RedoSteps() const { return redo_.size(); }

private:
    void closeGesture();

    std::deque<EditState> undo_;   // the state before each step, oldest first
    std::vector<EditState> redo_;  // the state each undo replaced, latest last
    int gestureKey_ = 0;           // the gesture under way; 0: none
    EditState gestureStart_;       // the state it began from
    bool gestureStepPushed_ = false;  // whether the newest step is its own
};

}  // namespace skin
