#pragma once
// The editor surface model: every element the editing operations move, show, hide or retag,
// as plain data in single-precision twips. The editor core changes it; the shell's view
// mirrors it into widgets (twips / 15 = pixels) and never changes it itself.
//
// Colours of the text-field labels are not held here: a label shows the colours that the
// skin document keeps for its text field (SkinDocument::Colour), so the document stays the
// one place where colours live, whoever sets them (colour tools or skin loading).

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform.h"
#include "skindocument.h"

namespace skin {

// Fixed places and sizes of the surface, in twips.
inline constexpr float kSurfaceWidth = 11880;
inline constexpr float kSurfaceHeight = 6140;
inline constexpr float kParkingTop = 6330;        // the row below the surface where a reset parks labels
inline constexpr float kLabelStartLeft = 1860;    // start place of the five labels, below the surface
inline constexpr float kLabelStartWidth = 1200;
inline constexpr float kLabelStartHeight = 255;   // one line of Tahoma 8.25 point with a little air
inline constexpr int kArrows = 4;                 // imgArrMove 0..3: left, up, right, down
inline constexpr int kArrowLeft = 0;
inline constexpr int kArrowUp = 1;
inline constexpr int kArrowRight = 2;
inline constexpr int kArrowDown = 3;

inline constexpr std::string_view kCurrSelStart = "Current Selection:";
inline constexpr std::string_view kLockOff = "Lock_OFF";
inline constexpr std::string_view kLockOn = "Lock_ON";
inline constexpr OleColour kSwatchStart = 0x00FFFFFF;  // white
inline constexpr OleColour kDialogStart = 0;           // black

inline constexpr int SideIndex(SkinSide side) { return side == SkinSide::Send ? 0 : 1; }
inline constexpr int FieldIndex(TextField field) { return static_cast<int>(field); }

// A drawing box of imgObjectBox / imgRObjectBox: shows the hatch picture with a one-pixel
// border. Width and Height are never negative.
struct BoxElement {
    RectF rect;
    bool visible = false;
    std::string tag;  // its area name ("Send All"); empty until first named
    int z = 0;        // stacking order among boxes and labels: higher is in front
};

// One of the five text-field labels (lblSendUsers ... lblReceiveMess).
struct LabelElement {
    RectF rect;
    std::string caption;  // " [ ] User List", " Message Text", "Date/Time", "Sender"
    std::string tag;      // "Send" or "Receive"
    bool transparent = false;  // lblReceiveDate and lblReceiveSender draw no back colour
    bool visible = true;       // false only while the picker shows the mirrored box instead
    bool border = false;       // single-line border, shown only while an arrow is held on it
    int z = 0;
};

// The element the arrow pad and colour tools act on.
struct Selection {
    enum class Kind { None, Box, Label };
    Kind kind = Kind::None;
    SkinSide side = SkinSide::Send;         // Box: its list
    int index = 0;                          // Box: its index in that list
    TextField field = TextField::SendUsers; // Label: which one

    static Selection None() { return {}; }
    static Selection Box(SkinSide s, int i) { return {Kind::Box, s, i, TextField::SendUsers}; }
    static Selection Label(TextField f) { return {Kind::Label, SkinSide::Send, 0, f}; }
    bool operator==(const Selection&) const = default;
};

// The press point of a drag, relative to the picture, rounded halves to even.
struct DragAnchor {
    std::int16_t X = 0;
    std::int16_t Y = 0;
};

struct EditorSurface {
    // imgSend / imgRecieve: fixed frames, and the picture each shows (kNoPicture: empty).
    std::array<RectF, 2> pictureFrames{};
    std::array<PictureId, 2> framePictures{};
    // imgObjectBox / imgRObjectBox, by SideIndex. Lists only grow (box 0 exists from the
    // start), except through ResetEditor, which returns each list to a single hidden box 0.
    std::array<std::vector<BoxElement>, 2> boxes;
    // The five labels, by FieldIndex (TextField order).
    std::array<LabelElement, kTextFields> labels{};
    // TextFieldBox: per text field the index of its mirrored drawing box, -1 for none.
    std::array<std::int32_t, kTextFields> textFieldBox{};
    std::array<DragAnchor, 2> dragAnchor{};
    std::array<bool, 2> areaNamed{};
    // Enabled items of mnuSend / mnuRecieve (mnuSObjectArea / mnuRObjectArea 0..7).
    std::array<std::array<bool, kAreaKinds>, 2> menuEnabled{};
    Selection currentSelection;
    std::string currSelText;  // lblCurrSel

    // Image-button tags (state) and the faces they show now.
    std::string lockTag;                          // imgLock: "Lock_OFF" or "Lock_ON"; its face is the tag
    std::string mapTag;                           // imgMap: "Map_ON" while the colour target is back
    std::string textTag;                          // imgText: "Text_ON" while it is text
    std::array<std::string, kArrows> arrowFaces;  // imgArrMove faces shown: "Left_OFF", "Left_ON"...
    std::string pickerFace;                       // imgPicker face shown: "Eye_OFF" / "Eye_ON"

    OleColour swatch = kSwatchStart;        // picPreView's background
    bool swatchUnread = false;              // the picker's last sample found no readable pixel
    OleColour dialogColour = kDialogStart;  // the colour dialog's remembered colour
    int nextZ = 0;                          // the last stacking number handed out

    std::vector<BoxElement>& Boxes(SkinSide side) { return boxes[SideIndex(side)]; }
    const std::vector<BoxElement>& Boxes(SkinSide side) const { return boxes[SideIndex(side)]; }
    LabelElement& Label(TextField f) { return labels[FieldIndex(f)]; }
    const LabelElement& Label(TextField f) const { return labels[FieldIndex(f)]; }
    std::int32_t& TextFieldBox(TextField f) { return textFieldBox[FieldIndex(f)]; }
    std::int32_t TextFieldBox(TextField f) const { return textFieldBox[FieldIndex(f)]; }
};

// The surface as the main window starts: labels at their start places below the surface,
// box 0 of each side hidden, every TextFieldBox -1, menus enabled, nothing selected.
EditorSurface StartSurface();

// Fixed per-label facts.
std::string_view LabelName(TextField field);        // "lblSendUsers" ...
std::string_view BoxListName(SkinSide side);        // "imgObjectBox" / "imgRObjectBox"
std::string_view PictureFrameName(SkinSide side);   // "imgSend" / "imgRecieve"
std::string_view SelectionStatusText(TextField field);  // "Current Selection: Send User List" ...
float LabelStartTop(TextField field);               // 6930, 6390, 7830, 8145, 7365
std::string_view ArrowTag(int index);               // imgArrMove tags: "Left_OFF", "Up_OFF"...
inline constexpr std::string_view kPickerTag = "Eye_OFF";

// Image-button face rule: the tag with every "OFF" replaced by "ON" (pressed) or the reverse.
std::string PressedFace(std::string_view tag);
std::string NormalFace(std::string_view tag);

}  // namespace skin
