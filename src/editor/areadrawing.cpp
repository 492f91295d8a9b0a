// Drawing object areas with the mouse and naming them from the side's name menu.
#include <cstdint>
#include <limits>
#include <string>

#include "editor.h"

namespace skin {
namespace {

// 45 twips are 3 pixels: a smaller drag is taken for a click and discarded.
constexpr int kMinimumDrag = 45;

// One axis of ExtendArea. The edge test looks at the box's edge before this movement, so a
// movement that crosses the picture's edge overshoots once and the next one pins the box.
void extendAxis(float& size, float start, float pointer, std::int16_t anchor, float pictureStart,
                float pictureSize) {
    const float d = pointer - static_cast<float>(anchor);
    const float pictureEnd = pictureStart + pictureSize;
    if (d < size) {
        if (d >= 0) size = d;  // a negative size is never applied: the box does not turn over
    } else if (pictureEnd > start + size) {
        size = d;
    } else {
        const float pinned = pictureEnd - start;
        if (pinned >= 0) size = pinned;
    }
}

// The release must lie at least 45 twips right of and below the anchor; the sums are 16-bit.
bool farEnough(float pointer, std::int16_t anchor) {
    const int sum = anchor + kMinimumDrag;
    if (sum > std::numeric_limits<std::int16_t>::max()) return false;  // not reachable on the surface
    return static_cast<double>(pointer) >= sum;
}

}  // namespace

void Editor::BeginArea(SkinSide side, float x, float y) {
    Operation op(*this);
    const RectF picture = surface_.pictureFrames[SideIndex(side)];
    BoxElement& box = ensureBox(side, document_.BoxCount(side));
    DragAnchor& anchor = surface_.dragAnchor[SideIndex(side)];
    box.rect.Width = 0;
    box.rect.Height = 0;
    box.rect.Top = picture.Top + y;
    anchor.Y = RoundToInt16(y);
    box.rect.Left = picture.Left + x;
    anchor.X = RoundToInt16(x);
    box.visible = true;
}

void Editor::ExtendArea(SkinSide side, float x, float y) {
    Operation op(*this, Step::Gesture);
    const RectF picture = surface_.pictureFrames[SideIndex(side)];
    const DragAnchor anchor = surface_.dragAnchor[SideIndex(side)];
    BoxElement& box = ensureBox(side, document_.BoxCount(side));
    extendAxis(box.rect.Width, box.rect.Left, x, anchor.X, picture.Left, picture.Width);
    extendAxis(box.rect.Height, box.rect.Top, y, anchor.Y, picture.Top, picture.Height);
}

void Editor::EndArea(SkinSide side, float x, float y) {
    Operation op(*this, Step::Gesture);
    const int n = document_.BoxCount(side);
    const DragAnchor anchor = surface_.dragAnchor[SideIndex(side)];
    if (!farEnough(x, anchor.X) || !farEnough(y, anchor.Y)) {
        ensureBox(side, n).visible = false;  // the box count stays: the next drag reuses it
        return;
    }
    BringBoxToFront(side, n);
    surface_.areaNamed[SideIndex(side)] = false;
    showNow();  // the grown box is on screen, in front, while the menu is open
    const std::optional<AreaKind> choice = platform_.ShowNameMenu(side, surface_.menuEnabled[SideIndex(side)]);
    if (choice) NameArea(side, *choice);
    CloseArea(side);
}

bool Editor::NameArea(SkinSide side, AreaKind kind) {
    if (kind < 0 || kind >= kAreaKinds) return false;
    Operation op(*this, Step::Gesture);
    const int n = document_.BoxCount(side);
    BoxElement& box = ensureBox(side, n);
    const AreaRect rect{RoundToInt16(box.rect.Left), RoundToInt16(box.rect.Top), RoundToInt16(box.rect.Width),
                        RoundToInt16(box.rect.Height)};
    document_.AssignArea(side, kind, rect);
    const AreaKindInfo& info = KindInfo(side, kind);
    box.tag = info.areaName;
    if (info.textField) {
        box.visible = false;
        surface_.TextFieldBox(*info.textField) = n;
        surface_.Label(*info.textField).rect = {static_cast<float>(rect.Left), static_cast<float>(rect.Top),
                                                static_cast<float>(rect.Width), static_cast<float>(rect.Height)};
        SelectTextField(*info.textField);
    } else {
        SelectBox(side, n);
    }
    surface_.menuEnabled[SideIndex(side)][kind] = false;
    surface_.areaNamed[SideIndex(side)] = true;
    return true;
}

void Editor::CloseArea(SkinSide side) {
    Operation op(*this, Step::Gesture);
    const int n = document_.BoxCount(side);
    // A dismissed menu or "Cancel" discards the box, and its index is used up all the same.
    if (!surface_.areaNamed[SideIndex(side)]) ensureBox(side, n).visible = false;
    document_.IncrementBoxCount(side);
}

void Editor::SelectBox(SkinSide side, int index) {
    Operation op(*this);
    const auto& list = surface_.Boxes(side);
    if (index < 0 || index >= static_cast<int>(list.size())) return;
    setSelectionStatus("Current Selection: " + list[index].tag, Selection::Box(side, index));
}

void Editor::SelectTextField(TextField field) {
    Operation op(*this);
    setSelectionStatus(std::string(SelectionStatusText(field)), Selection::Label(field));
}

void Editor::BringBoxToFront(SkinSide side, int index) {
    Operation op(*this, Step::Gesture);
    if (index < 0) return;
    ensureBox(side, index).z = ++surface_.nextZ;
}

void Editor::SetAreaNamed(SkinSide side, bool named) {
    Operation op(*this, Step::Gesture);
    surface_.areaNamed[SideIndex(side)] = named;
}

void Editor::DeleteSelection() {
    const Selection sel = surface_.currentSelection;
    SkinSide side = sel.side;
    std::optional<AreaKind> kind;
    if (sel.kind == Selection::Kind::Label) {
        side = SideOf(sel.field);
        kind = KindOf(sel.field);
    } else if (sel.kind == Selection::Kind::Box) {
        const auto& list = surface_.Boxes(side);
        if (sel.index < 0 || sel.index >= static_cast<int>(list.size()) || !list[sel.index].visible) return;
        kind = SkinDocument::FindKind(side, list[sel.index].tag);
    }
    if (!kind || !document_.KindUsed(side, *kind)) return;  // a box left over from a reset holds no area

    Operation op(*this);
    const AreaKindInfo& info = KindInfo(side, *kind);
    if (info.textField) {
        const TextField field = *info.textField;
        const int mirror = surface_.TextFieldBox(field);
        if (mirror >= 0 && mirror < static_cast<int>(surface_.Boxes(side).size())) {
            surface_.Boxes(side)[mirror].visible = false;
        }
        surface_.TextFieldBox(field) = -1;
        // The label as the window starts it: below the surface, at its start size.
        LabelElement& label = surface_.Label(field);
        const EditorSurface fresh = StartSurface();
        const LabelElement& start = fresh.Label(field);
        label.rect = start.rect;
        label.visible = start.visible;
        label.caption = start.caption;
        label.border = false;
    } else {
        surface_.Boxes(side)[sel.index].visible = false;
    }
    document_.ReleaseArea(side, *kind);
    surface_.menuEnabled[SideIndex(side)][*kind] = true;
    setSelectionStatus(std::string(kCurrSelStart), Selection::None());
}

}  // namespace skin
