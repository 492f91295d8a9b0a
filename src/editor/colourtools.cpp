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
    if (target == ColourRole::Back) {
        surface_.textTag = "Text_OFF";
        surface_.mapTag = "Map_ON";
    } else {
        surface_.mapTag = "Map_OFF";
        surface_.textTag = "Text_ON";
    }
    Refresh();
}

ColourRole Editor::ColourTarget() const {
    // The back switch's tag is the state; the text switch's tag is only shown.
    return surface_.mapTag.find("ON") != std::string::npos ? ColourRole::Back : ColourRole::Text;
}

void Editor::ApplyColour(OleColour colour) {
    const Selection& sel = surface_.currentSelection;
    if (sel.kind != Selection::Kind::Label) return;  // boxes have no colours
    document_.SetColour(sel.field, ColourTarget(), colour);
    Refresh();
}

void Editor::ChooseColour() {
    Refresh();
    const std::optional<OleColour> chosen = platform_.ChooseColour(surface_.dialogColour);
    if (!chosen) return;
    surface_.dialogColour = *chosen;
    surface_.swatch = *chosen;
    surface_.swatchUnread = false;
    ApplyColour(surface_.swatch);
    Refresh();
}

void Editor::PickerPressed() {
    surface_.pickerFace = PressedFace(kPickerTag);
    platform_.SetPickerPointer(true);
    surface_.swatchUnread = false;
    // The skin picture beneath each text field shows through its box's hatch while held;
    // the view hears each swap on its own, in this order.
    for (TextField f : kPickerOrder) {
        if (!hasMirroredBox(surface_, f)) continue;
        surface_.Label(f).visible = false;
        surface_.Boxes(SideOf(f))[surface_.TextFieldBox(f)].visible = true;
        Refresh();
    }
    platform_.StartTimer(EditorTimer::ScreenColour);
    Refresh();
}

void Editor::SampleScreenColour() {
    const std::optional<OleColour> pixel = platform_.ScreenPixelAtPointer();
    if (pixel) surface_.swatch = *pixel;
    surface_.swatchUnread = !pixel;
    Refresh();
}

void Editor::PickerReleased() {
    surface_.pickerFace = NormalFace(kPickerTag);
    platform_.SetPickerPointer(false);
    platform_.StopTimer(EditorTimer::ScreenColour);
    for (TextField f : kPickerOrder) {
        if (!hasMirroredBox(surface_, f)) continue;
        surface_.Label(f).visible = true;
        surface_.Boxes(SideOf(f))[surface_.TextFieldBox(f)].visible = false;
        Refresh();
    }
    // Released where nothing could be read: the swatch was not read there, so it is not applied.
    if (surface_.swatchUnread) {
        Refresh();
        const std::optional<OleColour> picked = platform_.PickColourWithDesktop();
        if (!picked) return;
        surface_.swatch = *picked;
        surface_.swatchUnread = false;
    }
    ApplyColour(surface_.swatch);
    Refresh();
}

}  // namespace skin
