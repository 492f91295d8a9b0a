// The colour target switch, the colour dialog and the screen colour picker.
#include <string>

#include "editor.h"

namespace skin {
namespace {

bool hasMirroredBox(const EditorSurface& s, TextField f) {
    const int box = s.TextFieldBox(f);
    return box >= 0 && box < static_cast<int>(s.Boxes(SideOf(f)).size());
}

}  // namespace

void Editor::SetColourTarget(ColourRole target) {
    Operation op(*this);
    if (target == ColourRole::Back) {
        surface_.textTag = "Text_OFF";
        surface_.mapTag = "Map_ON";
    } else {
        surface_.mapTag = "Map_OFF";
        surface_.textTag = "Text_ON";
    }
}

ColourRole Editor::ColourTarget() const {
    // The back switch's tag is the state; the text switch's tag is only shown.
    return surface_.mapTag.find("ON") != std::string::npos ? ColourRole::Back : ColourRole::Text;
}

void Editor::ApplyColour(OleColour colour) {
    const Selection& sel = surface_.currentSelection;
    if (sel.kind != Selection::Kind::Label) return;  // boxes have no colours
    Operation op(*this);
    document_.SetColour(sel.field, ColourTarget(), colour);
}

void Editor::ChooseColour() {
    Operation op(*this);
    showNow();
    const std::optional<OleColour> chosen = platform_.ChooseColour(surface_.dialogColour);
    if (!chosen) return;
    surface_.dialogColour = *chosen;
    surface_.swatch = *chosen;
    surface_.swatchUnread = false;
    ApplyColour(surface_.swatch);
}

void Editor::PickerPressed() {
    Operation op(*this);
    surface_.pickerFace = PressedFace(kPickerTag);
    platform_.SetPickerPointer(true);
    surface_.swatchUnread = false;
    // The skin picture beneath each text field shows through its box's hatch while held.
    for (TextField f : kPickerOrder) {
        if (!hasMirroredBox(surface_, f)) continue;
        surface_.Label(f).visible = false;
        surface_.Boxes(SideOf(f))[surface_.TextFieldBox(f)].visible = true;
    }
    platform_.StartTimer(EditorTimer::ScreenColour);
}

void Editor::SampleScreenColour() {
    Operation op(*this, Step::Gesture);
    const std::optional<OleColour> pixel = platform_.ScreenPixelAtPointer();
    if (pixel) surface_.swatch = *pixel;
    surface_.swatchUnread = !pixel;
}

void Editor::PickerReleased() {
    Operation op(*this, Step::Gesture);
    surface_.pickerFace = NormalFace(kPickerTag);
    platform_.SetPickerPointer(false);
    platform_.StopTimer(EditorTimer::ScreenColour);
    for (TextField f : kPickerOrder) {
        if (!hasMirroredBox(surface_, f)) continue;
        surface_.Label(f).visible = true;
        surface_.Boxes(SideOf(f))[surface_.TextFieldBox(f)].visible = false;
    }
    // Released where nothing could be read, the swatch was not read there, so it is not
    // applied; the desktop's pick may answer instead, as it does for a click on the picker.
    if (surface_.swatchUnread || platform_.PickerHandsOverToDesktop()) {
        showNow();
        const std::optional<OleColour> picked = platform_.PickColourWithDesktop();
        if (!picked) return;
        surface_.swatch = *picked;
        surface_.swatchUnread = false;
    }
    ApplyColour(surface_.swatch);
}

}  // namespace skin
