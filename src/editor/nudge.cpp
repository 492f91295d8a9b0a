// Nudging and stretching the current selection with the arrow pad.
#include <cmath>
#include <cstdint>
#include <string>

#include "editor.h"

namespace skin {
namespace {

constexpr float kStep = 10;  // twips per arrow step

// Picture bounds for the edge tests: whole twips, halves to even.
struct Bounds {
    std::int32_t left, top, width, height;
};

Bounds wholeBounds(const RectF& r) {
    auto whole = [](float v) { return static_cast<std::int32_t>(std::nearbyint(v)); };
    return {whole(r.Left), whole(r.Top), whole(r.Width), whole(r.Height)};
}

// The edge test of an arrow, the same with the lock on and off.
bool refusedAtEdge(int index, const RectF& r, const Bounds& b) {
    switch (index) {
        case kArrowLeft: return r.Left - kStep < b.left;
        case kArrowUp: return r.Top - kStep < b.top;
        case kArrowRight: return double(r.Left) + r.Width + kStep > double(b.left) + b.width;
        case kArrowDown: return double(r.Top) + r.Height + kStep > double(b.top) + b.height;
    }
    return true;
}

void step(int index, bool move, RectF& r) {
    if (move) {
        if (index == kArrowLeft) r.Left -= kStep;
        if (index == kArrowUp) r.Top -= kStep;
        if (index == kArrowRight) r.Left += kStep;
        if (index == kArrowDown) r.Top += kStep;
    } else {
        if (index == kArrowLeft) r.Width -= kStep;
        if (index == kArrowUp) r.Height -= kStep;
        if (index == kArrowRight) r.Width += kStep;
        if (index == kArrowDown) r.Height += kStep;
    }
}

bool validArrow(int index) { return index >= 0 && index < kArrows; }

}  // namespace

void Editor::NudgeSelection(int index) {
    if (!validArrow(index)) return;
    Operation op(*this);
    const Selection sel = surface_.currentSelection;
    if (sel.kind == Selection::Kind::None) {
        showNow();
        platform_.ShowMessage(std::string(kNoSelectionText), std::string(kArrowPadTitle), MessageIcon::Information,
                              MessageButtons::Ok);
        return;
    }
    RectF* rect = nullptr;
    std::string tag;
    if (sel.kind == Selection::Kind::Box) {
        auto& list = surface_.Boxes(sel.side);
        if (sel.index < 0 || sel.index >= static_cast<int>(list.size())) return;
        rect = &list[sel.index].rect;
        tag = list[sel.index].tag;
    } else {
        rect = &surface_.Label(sel.field).rect;
        tag = surface_.Label(sel.field).tag;
    }

    // The bounding picture goes by the tag, so the label tagged "Receive" of the Receive
    // Sender field stays on the Receive picture although its area name contains "Send".
    const SkinSide pictureSide = tag.find("Send") != std::string::npos ? SkinSide::Send : SkinSide::Receive;
    const Bounds bounds = wholeBounds(surface_.pictureFrames[SideIndex(pictureSide)]);
    if (refusedAtEdge(index, *rect, bounds)) return;
    const bool move = surface_.lockTag == kLockOff;
    // A stretch below zero width or height is refused like an edge step.
    if (!move && index == kArrowLeft && rect->Width - kStep < 0) return;
    if (!move && index == kArrowUp && rect->Height - kStep < 0) return;
    step(index, move, *rect);

    SkinSide side = sel.side;
    int boxIndex = sel.index;
    std::optional<AreaKind> kind;
    if (sel.kind == Selection::Kind::Label) {
        side = SideOf(sel.field);
        kind = KindOf(sel.field);
        boxIndex = surface_.TextFieldBox(sel.field);
    } else {
        kind = SkinDocument::FindKind(side, tag);
    }
    auto& boxes = surface_.Boxes(side);
    if (!kind || boxIndex < 0 || boxIndex >= static_cast<int>(boxes.size())) {
        return;  // the element moved; no stored rectangle changes
    }
    RectF& mirror = boxes[boxIndex].rect;
    mirror = *rect;
    document_.UpdateArea(side, *kind,
                         {RoundToInt16(mirror.Left), RoundToInt16(mirror.Top), RoundToInt16(mirror.Width),
                          RoundToInt16(mirror.Height)});
}

void Editor::ArrowPressed(int index) {
    if (!validArrow(index)) return;
    Operation op(*this);
    surface_.arrowFaces[index] = PressedFace(ArrowTag(index));
    heldArrow_ = index;
    pressMessageShown_ = false;
    if (surface_.currentSelection.kind == Selection::Kind::Label)
        surface_.Label(surface_.currentSelection.field).border = true;
    platform_.StartTimer(EditorTimer::MoveObject);
}

void Editor::ArrowReleased(int index) {
    if (!validArrow(index)) return;
    Operation op(*this, Step::Gesture);
    platform_.StopTimer(EditorTimer::MoveObject);
    heldArrow_ = -1;
    if (surface_.currentSelection.kind == Selection::Kind::Label)
        surface_.Label(surface_.currentSelection.field).border = false;
    surface_.arrowFaces[index] = NormalFace(ArrowTag(index));
}

void Editor::ArrowClicked(int index) {
    Operation op(*this, Step::Gesture);
    const bool nothingSelected = surface_.currentSelection.kind == Selection::Kind::None;
    if (nothingSelected && pressMessageShown_) {
        pressMessageShown_ = false;  // this press has had its message
        return;
    }
    NudgeSelection(index);
}

void Editor::MoveTimerTick() {
    if (!arrowHeld()) return;
    Operation op(*this, Step::Gesture);
    if (surface_.currentSelection.kind == Selection::Kind::None) {
        // The message box takes the rest of the press, release included, so the arrow is let go
        // before it opens: the repeat stops and the normal face shows. One message per press.
        const int arrow = heldArrow_;
        ArrowReleased(arrow);
        pressMessageShown_ = true;
        NudgeSelection(arrow);
        return;
    }
    NudgeSelection(heldArrow_);
}

void Editor::ToggleLock() {
    Operation op(*this);
    const std::string& tag = surface_.lockTag;
    surface_.lockTag = tag.find("ON") != std::string::npos ? NormalFace(tag) : PressedFace(tag);
}

void Editor::ArrowKey(int index, bool autoRepeat) {
    if (!validArrow(index)) return;
    // A held key's repeats join its first press, as the arrow pad's timer joins its press.
    Operation op(*this, autoRepeat ? Step::Gesture : Step::Own);
    if (autoRepeat && surface_.currentSelection.kind == Selection::Kind::None) return;  // one message per press
    NudgeSelection(index);
}

}  // namespace skin
