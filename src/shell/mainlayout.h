#pragma once
// The element inventory of the main window, one row per element, and the code that builds
// the widgets from it and hands them back by their kind. Every widget takes its element name
// as its objectName (for tests and tools); the program itself holds the handles.

#include <QRgb>

#include <array>
#include <optional>
#include <span>

#include "elementfont.h"
#include "skindocument.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QWidget;

namespace skin {

enum class ElementKind {
    List,         // QComboBox (items added by the window)
    Caption,      // QLabel with a text
    Button,       // FaceButton; content is its tag
    Frame,        // QLabel that shows a side picture stretched
    TextBox,      // QLineEdit
    Swatch,       // plain coloured box
    Area,         // transparent QLabel that only carries a tooltip
    Link,         // QLabel with the link pointer
    BusyPanel,    // hidden QFrame with a caption at 8, 8 px
    PointerHolder,  // QLabel holding the picker's pointer picture
    FieldLabel,   // a text-field label; content is its caption
    DrawingBox,   // hidden hatch box of the area drawing
};

struct ElementRow {
    const char* name;
    ElementKind kind;
    int left, top, width, height;  // twips
    const char* content = "";      // face key (Button) or caption
    const char* tooltip = "";
    FontSpec font = kTahoma;
    QRgb textColour = 0x000000;
    std::optional<QRgb> background = std::nullopt;  // none: transparent
    const char* tag = "";          // a text-field label's side word
};

std::span<const ElementRow> MainElements();

class FaceButton;

// The main window's elements, as built. Arrays of two are by SideIndex, the labels by
// TextField order.
struct MainWidgets {
    QComboBox* cboOptions = nullptr;
    QLabel* lblCopyRight = nullptr;
    FaceButton* imgMin = nullptr;
    FaceButton* imgClose = nullptr;
    std::array<QLabel*, 2> pictureFrames{};  // imgSend, imgRecieve
    std::array<FaceButton*, 2> loadButtons{};   // imgSendLoad, imgReceiveLoad
    std::array<FaceButton*, 2> clearButtons{};  // imgSendClear, imgReceiveClear
    QLineEdit* txtSkinName = nullptr;
    QLineEdit* txtSkinAuthor = nullptr;
    FaceButton* cmdCreateSkinPackage = nullptr;
    FaceButton* imgText = nullptr;
    FaceButton* imgMap = nullptr;
    FaceButton* imgPicker = nullptr;
    FaceButton* imgColorSelect = nullptr;
    QLabel* picPreView = nullptr;
    std::array<FaceButton*, 4> imgArrMove{};
    FaceButton* imgLock = nullptr;
    QLabel* lblCurrSel = nullptr;
    QWidget* picLoading = nullptr;
    QWidget* picCreating = nullptr;
    std::array<QLabel*, kTextFields> fieldLabels{};
    std::array<QLabel*, 2> firstBoxes{};  // imgObjectBox0, imgRObjectBox0
    std::array<QMenu*, 2> nameMenus{};    // mnuSend, mnuRecieve

    // The eight members of the button-face family, which swap their faces themselves.
    std::array<FaceButton*, 8> FaceFamily() const;
};

// Creates every element of the table on the window, plus the hidden name menus.
MainWidgets BuildMainElements(QWidget* window);

// The caption label of a busy panel ("lblLoading" inside "picLoading", "lblCreating" inside
// "picCreating").
inline constexpr const char* kLoadingCaption = "lblLoading";
inline constexpr const char* kCreatingCaption = "lblCreating";

}  // namespace skin
