// Loading the side pictures and resetting a side.
#include <string>

#include "editor.h"

namespace skin {
namespace {

// A side's text fields, in the order its reset parks them.
constexpr std::array<TextField, 2> kSendFields{TextField::SendMessage, TextField::SendUsers};
constexpr std::array<TextField, 3> kReceiveFields{TextField::ReceiveDate, TextField::ReceiveMessage,
                                                  TextField::ReceiveSender};

}  // namespace

void Editor::LoadSkinPicture(SkinSide side) {
    FileDialogSettings settings;
    settings.flags = kPictureDialogFlags;
    settings.filter = kPictureFilter;
    settings.filterIndex = 1;
    Operation op(*this);
    showNow();
    const std::optional<FileChoice> choice = platform_.OpenFileDialog(settings);
    if (!choice) return;  // cancelled: nothing has changed
    if (!SetSidePicture(side, choice->path, choice->title)) {
        // The frame keeps its picture and the document its file name and path.
        platform_.ShowMessage(std::string(kPictureLoadErrorText), std::string(kPictureLoadErrorTitle),
                              MessageIcon::Exclamation, MessageButtons::Ok);
    }
}

void Editor::ResetSide(SkinSide side) {
    Operation op(*this);
    // ClearSide also zeroes the box count, so the boxes to hide are counted first.
    const int count = document_.BoxCount(side);
    document_.ClearSide(side);
    auto& boxes = surface_.Boxes(side);
    for (int i = 0; i <= count && i < static_cast<int>(boxes.size()); ++i) boxes[i].visible = false;
    surface_.menuEnabled[SideIndex(side)].fill(true);
    document_.SetBoxCount(side, 0);
    auto park = [this](TextField f) {
        surface_.Label(f).rect.Top = kParkingTop;
        surface_.TextFieldBox(f) = -1;
    };
    if (side == SkinSide::Send) {
        for (TextField f : kSendFields) park(f);
    } else {
        for (TextField f : kReceiveFields) park(f);
    }
}

}  // namespace skin
