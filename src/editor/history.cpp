#include "history.h"

#include <algorithm>
#include <utility>

namespace skin {
namespace {

// Name and author belong to the text boxes, not to the edits.
SkinDocument withoutTexts(SkinDocument document) {
    document.SetSkinName({});
    document.SetSkinAuthor({});
    return document;
}

// A hidden box is no edit, whatever geometry an earlier drag left in it.
bool sameBoxes(const std::vector<BoxElement>& a, const std::vector<BoxElement>& b) {
    static const BoxElement kHidden{};
    for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
        const BoxElement& x = i < a.size() ? a[i] : kHidden;
        const BoxElement& y = i < b.size() ? b[i] : kHidden;
        if (x.visible != y.visible) return false;
        if (x.visible && (x.rect != y.rect || x.tag != y.tag || x.z != y.z)) return false;
    }
    return true;
}

bool sameLabels(const EditorSurface& a, const EditorSurface& b) {
    for (int f = 0; f < kTextFields; ++f) {
        const LabelElement& x = a.labels[f];
        const LabelElement& y = b.labels[f];
        if (x.rect != y.rect || x.visible != y.visible || x.caption != y.caption) return false;
    }
    return true;
}

}  // namespace

bool SameContent(const EditState& a, const EditState& b) {
    const EditorSurface& s = a.surface;
    const EditorSurface& t = b.surface;
    return s.framePictures == t.framePictures && s.menuEnabled == t.menuEnabled && s.textFieldBox == t.textFieldBox &&
           sameLabels(s, t) && sameBoxes(s.boxes[0], t.boxes[0]) && sameBoxes(s.boxes[1], t.boxes[1]) &&
           withoutTexts(a.document) == withoutTexts(b.document);
}

EditState Restored(const EditState& state, const EditState& snapshot) {
    EditState out = snapshot;
    out.document.SetSkinName(state.document.SkinName());
    out.document.SetSkinAuthor(state.document.SkinAuthor());
    const EditorSurface& now = state.surface;
    EditorSurface& s = out.surface;
    s.lockTag = now.lockTag;
    s.mapTag = now.mapTag;
    s.textTag = now.textTag;
    s.arrowFaces = now.arrowFaces;
    s.pickerFace = now.pickerFace;
    s.swatch = now.swatch;
    s.swatchUnread = now.swatchUnread;
    s.dialogColour = now.dialogColour;
    for (int f = 0; f < kTextFields; ++f) s.labels[f].border = now.labels[f].border;
    s.nextZ = std::max(s.nextZ, now.nextZ);  // stacking numbers handed out stay handed out
    return out;
}

void History::Settle(EditState before, const EditState& now, int gestureKey) {
    if (gestureKey == 0 || gestureKey != gestureKey_) {
        gestureKey_ = gestureKey;
        gestureStart_ = std::move(before);
        gestureStepPushed_ = false;
    }
    const bool changed = !SameContent(gestureStart_, now);
    if (changed && !gestureStepPushed_) {
        undo_.push_back(gestureStart_);
        if (undo_.size() > kDepth) undo_.pop_front();
        redo_.clear();
        gestureStepPushed_ = true;
    } else if (!changed && gestureStepPushed_) {
        undo_.pop_back();  // the gesture came back to where it began
        gestureStepPushed_ = false;
    }
}

EditState History::Undo(const EditState& now) {
    closeGesture();
    if (undo_.empty()) return now;
    EditState before = std::move(undo_.back());
    undo_.pop_back();
    redo_.push_back(now);
    return Restored(now, before);
}

EditState History::Redo(const EditState& now) {
    closeGesture();
    if (redo_.empty()) return now;
    EditState after = std::move(redo_.back());
    redo_.pop_back();
    undo_.push_back(now);
    return Restored(now, after);
}

void History::Clear() {
    closeGesture();
    undo_.clear();
    redo_.clear();
}

void History::closeGesture() {
    gestureKey_ = 0;
    gestureStepPushed_ = false;
}

}  // namespace skin
