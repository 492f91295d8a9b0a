#include "editor.h"

namespace skin {

Editor::Editor(Platform& platform, SurfaceView* view)
    : platform_(platform), view_(view), surface_(StartSurface()) {}

void Editor::Refresh() {
    if (view_ != nullptr) view_->SurfaceChanged(surface_, document_);
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
    // A new main window: stop what a held button had started, then start everything afresh.
    platform_.StopTimer(EditorTimer::MoveObject);
    platform_.StopTimer(EditorTimer::ScreenColour);
    platform_.SetPickerPointer(false);
    heldArrow_ = -1;
    pressMessageShown_ = false;
    document_.ResetDocument();
    surface_ = StartSurface();
    Refresh();
}

}  // namespace skin
