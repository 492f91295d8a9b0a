#include "editor.h"

namespace skin {

Editor::Editor(Platform& platform, SurfaceView* view)
    : platform_(platform), view_(view), surface_(StartSurface()) {}

Editor::Batch::Batch(Editor& editor, Step step) : editor_(editor) { editor_.begin(step); }

Editor::Batch::~Batch() { editor_.end(); }

void Editor::begin(Step step) {
    if (depth_++ > 0) return;  // part of an operation under way
    outerStep_ = step;
    if (step == Step::Own) gestureKey_ = ++lastGestureKey_;
    if (step == Step::Own || step == Step::Gesture) before_ = state();
}

void Editor::end() {
    if (--depth_ > 0) return;
    if (outerStep_ == Step::Own || outerStep_ == Step::Gesture) {
        history_.Settle(std::move(before_), state(), gestureKey_);
    } else if (outerStep_ == Step::Anew) {
        history_.Clear();
    }
    notifyView();
}

void Editor::restore(EditState restored) {
    document_ = std::move(restored.document);
    surface_ = std::move(restored.surface);
}

void Editor::Undo() {
    Operation op(*this, Step::None);
    restore(history_.Undo(state()));
}

void Editor::Redo() {
    Operation op(*this, Step::None);
    restore(history_.Redo(state()));
}

void Editor::SetView(SurfaceView* view) {
    view_ = view;
    notifyView();
}

void Editor::notifyView() {
    if (view_ != nullptr) view_->SurfaceChanged(surface_, document_);
}

void Editor::SetSkinName(std::string name) {
    Operation op(*this);
    document_.SetSkinName(std::move(name));
}

void Editor::SetSkinAuthor(std::string author) {
    Operation op(*this);
    document_.SetSkinAuthor(std::move(author));
}

bool Editor::SetSidePicture(SkinSide side, const std::string& path, std::string fileName) {
    Operation op(*this);
    const PictureId picture = platform_.LoadPicture(side, path);
    if (picture == kNoPicture) return false;
    surface_.framePictures[SideIndex(side)] = picture;
    document_.SetPicture(side, std::move(fileName), path);
    return true;
}

void Editor::SetColour(TextField field, ColourRole role, OleColour colour) {
    Operation op(*this);
    document_.SetColour(field, role, colour);
}

BoxElement& Editor::ensureBox(SkinSide side, int index) {
    // Elements are created on first use and never destroyed; an existing one is reused as is.
    auto& list = surface_.Boxes(side);
    while (static_cast<int>(list.size()) <= index) list.push_back(BoxElement{{}, false, {}, ++surface_.nextZ});
    return list[index];
}

void Editor::setSelectionStatus(std::string text, Selection selection) {
    surface_.currSelText = std::move(text);
    surface_.currentSelection = selection;
}

void Editor::ResetEditor() {
    Operation op(*this, Step::Anew);
    // A new main window: stop what a held button had started, then start everything afresh.
    platform_.StopTimer(EditorTimer::MoveObject);
    platform_.StopTimer(EditorTimer::ScreenColour);
    platform_.SetPickerPointer(false);
    heldArrow_ = -1;
    pressMessageShown_ = false;
    document_.ResetDocument();
    surface_ = StartSurface();
}

}  // namespace skin
