#pragma once
// The element inventory of the main window, one row per element, and the code that builds
// the widgets from it. Every widget takes its element name as its objectName.

#include <QRgb>

#include <optional>
#include <span>

#include "elementfont.h"

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

// Creates every element of the table on the window, plus the hidden name menus.
void BuildMainElements(QWidget* window);

// The caption label of a busy panel ("lblLoading" inside "picLoading", "lblCreating" inside
// "picCreating").
inline constexpr const char* kLoadingCaption = "lblLoading";
inline constexpr const char* kCreatingCaption = "lblCreating";

}  // namespace skin
