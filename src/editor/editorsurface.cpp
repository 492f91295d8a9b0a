#include "editorsurface.h"

namespace skin {
namespace {

struct LabelFacts {
    std::string_view name;
    std::string_view caption;
    std::string_view tag;
    std::string_view status;
    float startTop;
    bool transparent;
};

// By TextField order: SendUsers, SendMessage, ReceiveDate, ReceiveSender, ReceiveMessage.
constexpr std::array<LabelFacts, kTextFields> kLabels{{
    {"lblSendUsers", " [ ] User List", "Send", "Current Selection: Send User List", 6930, false},
    {"lblSendMessage", " Message Text", "Send", "Current Selection: Send Message", 6390, false},
    {"lblReceiveDate", "Date/Time", "Receive", "Current Selection: Receive Date", 7830, true},
    {"lblReceiveSender", "Sender", "Receive", "Current Selection: Receive Sender", 8145, true},
    {"lblReceiveMess", " Message Text", "Receive", "Current Selection: Receive Message", 7365, false},
}};

constexpr std::array<std::string_view, kArrows> kArrowTags{"Left_OFF", "Up_OFF", "Right_OFF", "Down_OFF"};

std::string replaceAll(std::string_view text, std::string_view from, std::string_view to) {
    std::string out;
    std::size_t pos = 0;
    for (std::size_t hit; (hit = text.find(from, pos)) != std::string_view::npos; pos = hit + from.size()) {
        out.append(text.substr(pos, hit - pos));
        out.append(to);
    }
    out.append(text.substr(pos));
    return out;
}

}  // namespace

std::string_view LabelName(TextField field) { return kLabels[FieldIndex(field)].name; }
std::string_view BoxListName(SkinSide side) { return side == SkinSide::Send ? "imgObjectBox" : "imgRObjectBox"; }
std::string_view PictureFrameName(SkinSide side) { return side == SkinSide::Send ? "imgSend" : "imgRecieve"; }
std::string_view SelectionStatusText(TextField field) { return kLabels[FieldIndex(field)].status; }
float LabelStartTop(TextField field) { return kLabels[FieldIndex(field)].startTop; }

std::string_view ArrowTag(int index) { return kArrowTags.at(index); }

std::string PressedFace(std::string_view tag) { return replaceAll(tag, "OFF", "ON"); }
std::string NormalFace(std::string_view tag) { return replaceAll(tag, "ON", "OFF"); }

EditorSurface StartSurface() {
    EditorSurface s;
    s.pictureFrames = {PictureFrame(SkinSide::Send), PictureFrame(SkinSide::Receive)};
    // Labels lie under the boxes in the stacking order; the boxes created later come above.
    for (int i = 0; i < kTextFields; ++i) {
        const LabelFacts& f = kLabels[i];
        LabelElement& label = s.labels[i];
        label.rect = {kLabelStartLeft, f.startTop, kLabelStartWidth, kLabelStartHeight};
        label.caption = f.caption;
        label.tag = f.tag;
        label.transparent = f.transparent;
        label.z = ++s.nextZ;
    }
    for (auto& list : s.boxes) list.push_back(BoxElement{{}, false, {}, ++s.nextZ});
    s.textFieldBox.fill(-1);
    for (auto& menu : s.menuEnabled) menu.fill(true);
    s.currSelText = kCurrSelStart;
    s.lockTag = kLockOff;
    s.mapTag = "Map_ON";
    s.textTag = "Text_OFF";
    for (int i = 0; i < kArrows; ++i) s.arrowFaces[i] = kArrowTags[i];
    s.pickerFace = kPickerTag;
    return s;
}

}  // namespace skin
