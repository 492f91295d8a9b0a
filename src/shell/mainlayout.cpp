#include "mainlayout.h"

#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPalette>

#include <array>
#include <map>
#include <string_view>

#include "art.h"
#include "editorsurface.h"
#include "facebutton.h"

namespace skin {

namespace {

using K = ElementKind;

constexpr QRgb kBlack = 0x000000;
constexpr QRgb kWhite = 0xFFFFFF;
constexpr QRgb kCaptionInk = 0xE6EEF5;    // "Options:" on the dark header of the background
constexpr QRgb kLinkInk = 0xB8D6E8;       // the link label's OLE colour 0x00E8D6B8
constexpr QRgb kFieldBack = 0xE0E0E0;     // the text fields' initial back colour
constexpr int kComboHeight = 270;         // one line of Arial 6.75 point bold
constexpr int kBusyCaptionInset = 120;

// The inventory. Geometry in twips; the panels, labels and boxes the other editing
// operations move start where the table puts them.
constexpr std::array kElements{
    ElementRow{"cboOptions", K::List, 8415, 30, 2835, kComboHeight, "", "", kArialSmallBold},
    ElementRow{"Label1", K::Caption, 7785, 75, 600, 210, "Options:", "", kArial, kCaptionInk},
    ElementRow{"imgMin", K::Button, 11310, 60, 225, 240, "Min_OFF"},
    ElementRow{"imgClose", K::Button, 11580, 60, 225, 240, "Close_OFF", "Close Brindleway Skin Fwt"},
    ElementRow{"imgSend", K::Frame, 285, 765, 5430, 3870, "", "Send Skin"},
    ElementRow{"imgRecieve", K::Frame, 6135, 765, 5430, 3285, "", "Receive Skin"},
    ElementRow{"imgSendClear", K::Button, 5040, 4695, 225, 270, "Clear_OFF",
               "Send Object Reset - Use this to clear all of object boxes for the send skin"},
    ElementRow{"imgSendLoad", K::Button, 5340, 4695, 255, 270, "Load_OFF", "Click to Select the Send Skin File"},
    ElementRow{"imgReceiveClear", K::Button, 10860, 4125, 225, 270, "Clear_OFF",
               "Receive Object Reset - Use this to clear all of object boxes for the receive skin"},
    ElementRow{"imgReceiveLoad", K::Button, 11160, 4125, 255, 270, "Load_OFF",
               "Click to Select the Receive Skin File"},
    ElementRow{"txtSkinName", K::TextBox, 1440, 5235, 2370, 288, "",
               "Name of the Skin that will Appear in Brindleway"},
    ElementRow{"txtSkinAuthor", K::TextBox, 1440, 5625, 2370, 288, "", "Person / Team that Created the Skin"},
    ElementRow{"cmdCreateSkinPackage", K::Button, 5115, 5250, 390, 450, "Pack_OFF",
               "Click to Create the Skin Package File"},
    ElementRow{"imgText", K::Button, 6075, 4665, 390, 330, "Text_OFF",
               "Text Switch - Click to Make the Color Picker and Wheel Set the Current Objects Text Color"},
    ElementRow{"imgMap", K::Button, 6510, 4665, 390, 330, "Map_ON",
               "Back Switch - Click to Make the Color Picker and Wheel Set the Current Objects Back Color"},
    ElementRow{"imgPicker", K::Button, 7155, 4665, 390, 330, "Eye_OFF",
               "Click and Hold to Set the Current Objects Color"},
    ElementRow{"imgColorSelect", K::Button, 7530, 4665, 390, 330, "Color_OFF",
               "Click to Open the Color Creation Window"},
    ElementRow{"picPreView", K::Swatch, 8010, 4695, 330, 270, "", "", kTahoma, kBlack, kWhite},
    ElementRow{"imgArrMove0", K::Button, 8625, 4665, 195, 195, "Left_OFF",
               "Arrow Left - Move Current Object Left OR Decrease Object Width"},
    ElementRow{"imgArrMove1", K::Button, 8625, 4845, 195, 195, "Up_OFF",
               "Arrow Up - Move Current Object Up OR Increase Object Height"},
    ElementRow{"imgArrMove2", K::Button, 8820, 4665, 195, 195, "Right_OFF",
               "Arrow Right - Move Current Object Right OR Increase Object Width"},
    ElementRow{"imgArrMove3", K::Button, 8820, 4845, 195, 195, "Down_OFF",
               "Arrow Down - Move Current Object Down OR Decrease Object Height"},
    ElementRow{"imgLock", K::Button, 9120, 4665, 255, 375, "Lock_OFF",
               "Arrow Lock - When locked arrow keys strech object instead of move object"},
    ElementRow{"Image1", K::Area, 9630, 4665, 1980, 390, "", "Quick Color Chips (for use with picker)"},
    ElementRow{"lblCurrSel", K::Caption, 6075, 5055, 5505, 195, "Current Selection:",
               "This is the Object that is Affected by the Tools (Current Object)", kTahoma, kWhite},
    ElementRow{"lblCopyRight", K::Link, 9540, 5895, 2025, 210, "\u00A9 Ostervale Software", "", kArial, kLinkInk},
    ElementRow{"picPickPointer", K::PointerHolder, 5100, 6330, 495, 525},
    ElementRow{"lblSendMessage", K::FieldLabel, 1860, 6390, 1200, 255, " Message Text", "", kTahoma, kBlack,
               kFieldBack, "Send"},
    ElementRow{"lblSendUsers", K::FieldLabel, 1860, 6930, 1200, 255, " [ ] User List", "", kTahoma, kBlack,
               kFieldBack, "Send"},
    ElementRow{"lblReceiveMess", K::FieldLabel, 1860, 7365, 1200, 255, " Message Text", "", kTahoma, kBlack,
               kFieldBack, "Receive"},
    ElementRow{"lblReceiveDate", K::FieldLabel, 1860, 7830, 1200, 255, "Date/Time", "", kTahoma, kBlack,
               std::nullopt, "Receive"},
    ElementRow{"lblReceiveSender", K::FieldLabel, 1860, 8145, 1200, 255, "Sender", "", kTahoma, kBlack,
               std::nullopt, "Receive"},
    ElementRow{"imgObjectBox0", K::DrawingBox, 0, 0, 0, 0},
    ElementRow{"imgRObjectBox0", K::DrawingBox, 0, 0, 0, 0},
    // The busy panels come last so that they lie above everything they cover.
    ElementRow{"picLoading", K::BusyPanel, 3960, 2295, 3960, 495, "Loading Skin Information, Please Stand by...",
               "", kTahomaBold},
    ElementRow{"picCreating", K::BusyPanel, 4058, 2295, 3765, 495, "Creating Skin Package, Please Stand by...", "",
               kTahomaBold},
};

void Paint(QWidget* widget, QPalette::ColorRole role, QColor colour)
{
    QPalette palette = widget->palette();
    palette.setColor(role, colour);
    widget->setPalette(palette);
}

QLabel* CaptionLabel(const ElementRow& row, QWidget* parent)
{
    auto* label = new QLabel(QString::fromUtf8(row.content), parent);
    Paint(label, QPalette::WindowText, QColor(row.textColour));
    if (row.background) {
        label->setAutoFillBackground(true);
        Paint(label, QPalette::Window, QColor(*row.background));
    }
    return label;
}

// The fallback faces run wider than the faces the layout was made for: a caption that would be
// cut off at its label's edge is set a little tighter instead.
void FitCaption(QLabel& label)
{
    const QString text = label.text();
    const int over = QFontMetrics(label.font()).horizontalAdvance(text) - label.width();
    if (over <= 0 || text.isEmpty()) return;
    QFont font = label.font();
    font.setLetterSpacing(QFont::AbsoluteSpacing, -static_cast<qreal>(over) / text.size());
    label.setFont(font);
}

QWidget* BusyPanel(const ElementRow& row, QWidget* parent)
{
    auto* panel = new QFrame(parent);
    panel->setFrameStyle(QFrame::Panel | QFrame::Raised);
    panel->setAutoFillBackground(true);  // the system's window background
    auto* caption = new QLabel(QString::fromUtf8(row.content), panel);
    caption->setObjectName(row.name == std::string_view("picLoading") ? kLoadingCaption : kCreatingCaption);
    caption->setFont(ElementFont(row.font));
    Paint(caption, QPalette::WindowText, Qt::black);
    caption->move(Px(kBusyCaptionInset), Px(kBusyCaptionInset));
    caption->adjustSize();
    panel->hide();
    return panel;
}

QWidget* MakeElement(const ElementRow& row, QWidget* window)
{
    switch (row.kind) {
    case K::List: {
        auto* list = new QComboBox(window);
        list->setFocusPolicy(Qt::StrongFocus);
        return list;
    }
    case K::Caption:
    case K::FieldLabel: return CaptionLabel(row, window);
    case K::Button: return new FaceButton(QString::fromUtf8(row.content), window);
    case K::Frame: {
        auto* frame = new QLabel(window);
        frame->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        return frame;
    }
    case K::TextBox: return new QLineEdit(window);
    case K::Swatch: {
        auto* swatch = new QLabel(window);
        swatch->setAutoFillBackground(true);
        Paint(swatch, QPalette::Window, QColor(row.background.value_or(kWhite)));
        return swatch;
    }
    case K::Area: return new QLabel(window);
    case K::Link: {
        QLabel* link = CaptionLabel(row, window);
        link->setCursor(LinkCursor());
        return link;
    }
    case K::BusyPanel: return BusyPanel(row, window);
    case K::PointerHolder: {
        auto* holder = new QLabel(window);
        holder->setPixmap(PickerCursor().pixmap());
        return holder;
    }
    case K::DrawingBox: {
        auto* box = new QLabel(window);
        box->setFrameStyle(QFrame::Box | QFrame::Plain);
        box->setLineWidth(1);
        box->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        box->setPixmap(Art(QStringLiteral("hatch")));
        box->hide();
        return box;
    }
    }
    return nullptr;
}

// mnuObjectName ("OjectName") is never shown itself; it keeps the two pop-up name menus.
std::array<QMenu*, 2> BuildNameMenus(QWidget* window)
{
    std::array<QMenu*, 2> built{};
    auto* parentMenu = new QMenu(QStringLiteral("OjectName"), window);
    parentMenu->setObjectName(QStringLiteral("mnuObjectName"));
    struct MenuSpec {
        SkinSide side;
        const char* name;
        const char* caption;
        const char* itemPrefix;
        const char* cancelName;
    };
    constexpr std::array<MenuSpec, 2> menus{{
        {SkinSide::Send, "mnuSend", "Send Objects", "mnuSObjectArea", "mnuSCancel"},
        {SkinSide::Receive, "mnuRecieve", "Recieve Objects", "mnuRObjectArea", "mnuRCancel"},
    }};
    for (const MenuSpec& menuRow : menus) {
        QMenu* menu = parentMenu->addMenu(QString::fromUtf8(menuRow.caption));
        menu->setObjectName(QString::fromUtf8(menuRow.name));
        for (AreaKind kind = 0; kind < kAreaKinds; ++kind) {
            const std::string_view caption = KindInfo(menuRow.side, kind).caption;
            QAction* item = menu->addAction(QString::fromUtf8(caption.data(), static_cast<qsizetype>(caption.size())));
            item->setObjectName(QString::fromUtf8(menuRow.itemPrefix) + QString::number(kind));
            item->setData(kind);
        }
        menu->addSeparator();
        QAction* cancel = menu->addAction(QStringLiteral("Cancel"));
        cancel->setObjectName(QString::fromUtf8(menuRow.cancelName));
        built[SideIndex(menuRow.side)] = menu;
    }
    return built;
}

// The element the table built under `name`, as its kind; the table and the handles are made
// for each other, so a missing or mistyped one is a programming error.
template <typename T>
T* Built(const std::map<std::string_view, QWidget*>& built, std::string_view name)
{
    const auto found = built.find(name);
    T* element = found == built.end() ? nullptr : qobject_cast<T*>(found->second);
    Q_ASSERT_X(element != nullptr, "BuildMainElements", "element missing from the inventory");
    return element;
}

}  // namespace

std::span<const ElementRow> MainElements()
{
    return kElements;
}

std::array<FaceButton*, 8> MainWidgets::FaceFamily() const
{
    return {cmdCreateSkinPackage, clearButtons[0], loadButtons[0], imgColorSelect,
            clearButtons[1],      loadButtons[1],  imgClose,       imgMin};
}

MainWidgets BuildMainElements(QWidget* window)
{
    std::map<std::string_view, QWidget*> built;
    for (const ElementRow& row : kElements) {
        QWidget* element = MakeElement(row, window);
        built[row.name] = element;
        element->setObjectName(QString::fromUtf8(row.name));
        element->setGeometry(TwipsRect(row.left, row.top, row.width, row.height));
        element->setToolTip(QString::fromUtf8(row.tooltip));
        if (row.kind != ElementKind::BusyPanel) element->setFont(ElementFont(row.font));
        if (row.kind == ElementKind::Caption) FitCaption(*static_cast<QLabel*>(element));
        if (*row.tag != '\0') element->setProperty("tag", QString::fromUtf8(row.tag));
    }

    MainWidgets w;
    w.cboOptions = Built<QComboBox>(built, "cboOptions");
    w.lblCopyRight = Built<QLabel>(built, "lblCopyRight");
    w.imgMin = Built<FaceButton>(built, "imgMin");
    w.imgClose = Built<FaceButton>(built, "imgClose");
    w.pictureFrames = {Built<QLabel>(built, "imgSend"), Built<QLabel>(built, "imgRecieve")};
    w.loadButtons = {Built<FaceButton>(built, "imgSendLoad"), Built<FaceButton>(built, "imgReceiveLoad")};
    w.clearButtons = {Built<FaceButton>(built, "imgSendClear"), Built<FaceButton>(built, "imgReceiveClear")};
    w.txtSkinName = Built<QLineEdit>(built, "txtSkinName");
    w.txtSkinAuthor = Built<QLineEdit>(built, "txtSkinAuthor");
    w.cmdCreateSkinPackage = Built<FaceButton>(built, "cmdCreateSkinPackage");
    w.imgText = Built<FaceButton>(built, "imgText");
    w.imgMap = Built<FaceButton>(built, "imgMap");
    w.imgPicker = Built<FaceButton>(built, "imgPicker");
    w.imgColorSelect = Built<FaceButton>(built, "imgColorSelect");
    w.picPreView = Built<QLabel>(built, "picPreView");
    w.imgArrMove = {Built<FaceButton>(built, "imgArrMove0"), Built<FaceButton>(built, "imgArrMove1"),
                    Built<FaceButton>(built, "imgArrMove2"), Built<FaceButton>(built, "imgArrMove3")};
    w.imgLock = Built<FaceButton>(built, "imgLock");
    w.lblCurrSel = Built<QLabel>(built, "lblCurrSel");
    w.picLoading = Built<QWidget>(built, "picLoading");
    w.picCreating = Built<QWidget>(built, "picCreating");
    for (int f = 0; f < kTextFields; ++f) {
        w.fieldLabels[f] = Built<QLabel>(built, LabelName(static_cast<TextField>(f)));
    }
    w.firstBoxes = {Built<QLabel>(built, "imgObjectBox0"), Built<QLabel>(built, "imgRObjectBox0")};
    w.nameMenus = BuildNameMenus(window);
    return w;
}

}  // namespace skin
