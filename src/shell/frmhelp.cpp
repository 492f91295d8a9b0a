#include "frmhelp.h"

#include <QFontMetrics>
#include <QLabel>
#include <QPainter>
#include <QWindow>

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

#include "art.h"
#include "elementfont.h"
#include "facebutton.h"
#include "options.h"
#include "version.h"
#include "windowmover.h"

namespace skin {

namespace {

constexpr int kHelpWidth = 10200;  // twips
constexpr int kHelpHeight = 4085;
constexpr QRgb kStepInk = 0xE0E0E0;
constexpr std::string_view kFooterHead = "Ostervale Software  \u00B7  ";

enum class Panel { Left, Right };
enum class Piece { Heading, Text, Face, Picture };

// One piece of the help text or one inert button copy. Left-panel pieces are placed on the
// window, right-panel pieces on the right panel. A width of 0 sizes a text to its one line.
struct HelpRow {
    Panel panel;
    Piece piece;
    int left, top, width, height;  // twips
    const char* content;           // text, face key or picture name
    const char* tooltip = "";
    const char* name = "";
};

constexpr int kRightPanelLeft = 5280;
constexpr int kRightPanelWidth = 4980;
constexpr int kRightPanelHeight = 3885;
constexpr int kRightWrapMargin = 120;  // unsized right-panel texts wrap this far from its edge

constexpr std::array kHelpRows{
    HelpRow{Panel::Left, Piece::Heading, 75, 465, 0, 0, "Step 1"},
    HelpRow{Panel::Left, Piece::Text, 1110, 465, 3885, 405,
            "Click the load button located under the Send Skin window and find your send skin picture file."},
    HelpRow{Panel::Left, Piece::Face, 765, 510, 255, 270, "Load_OFF", "", "imgHelpLoad"},
    HelpRow{Panel::Left, Piece::Heading, 75, 1005, 0, 0, "Step 2"},
    HelpRow{Panel::Left, Piece::Text, 1110, 1005, 0, 0, "Repeat the same step for the receive skin."},
    HelpRow{Panel::Left, Piece::Heading, 75, 1395, 0, 0, "Step 3"},
    HelpRow{Panel::Left, Piece::Text, 1110, 1395, 4005, 660,
            "Click on the top-left corner of each object area, hold and drag the mouse to the bottom-right "
            "corner of the objects area. This will define the objects dimensions."},
    HelpRow{Panel::Left, Piece::Heading, 75, 2145, 0, 0, "Step 4"},
    HelpRow{Panel::Left, Piece::Text, 1110, 2145, 4050, 585,
            "Upon release of the mouse button a menu will appear  allowing you to specify which object you "
            "have created. "},
    HelpRow{Panel::Left, Piece::Heading, 75, 2700, 0, 0, "Step 5"},
    HelpRow{Panel::Left, Piece::Text, 1110, 2700, 0, 0, "Repeat steps 3 & 4 for the receive skin."},
    HelpRow{Panel::Left, Piece::Heading, 75, 3150, 0, 0, "Step 6"},
    HelpRow{Panel::Left, Piece::Text, 1695, 3150, 3045, 480,
            "Tweak object size and position by selecting it and using the arrow tools."},
    HelpRow{Panel::Left, Piece::Face, 840, 3180, 195, 195, "Left_OFF",
            "Arrow Left - Move Current Object Left OR Decrease Object Width", "imgHelpArrow0"},
    HelpRow{Panel::Left, Piece::Face, 840, 3360, 195, 195, "Up_OFF",
            "Arrow Up - Move Current Object Up OR Increase Object Height", "imgHelpArrow1"},
    HelpRow{Panel::Left, Piece::Face, 1035, 3180, 195, 195, "Right_OFF",
            "Arrow Right - Move Current Object Right OR Increase Object Width", "imgHelpArrow2"},
    HelpRow{Panel::Left, Piece::Face, 1035, 3360, 195, 195, "Down_OFF",
            "Arrow Down - Move Current Object Down OR Decrease Object Height", "imgHelpArrow3"},
    HelpRow{Panel::Left, Piece::Face, 1290, 3180, 255, 375, "Lock_OFF",
            "Arrow Lock - When locked arrow keys strech object instead of move object", "imgHelpLock"},
    HelpRow{Panel::Right, Piece::Heading, 90, 465, 0, 0, "Step 7"},
    HelpRow{Panel::Right, Piece::Text, 810, 465, 0, 0, "For each object repeat:"},
    HelpRow{Panel::Right, Piece::Text, 1320, 795, 0, 0, "Set the Font / Back color:"},
    HelpRow{Panel::Right, Piece::Face, 855, 720, 390, 330, "Text_OFF", "", "imgHelpText"},
    HelpRow{Panel::Right, Piece::Text, 1605, 1035, 0, 0, "A. Click on the Font OR Back Switch"},
    HelpRow{Panel::Right, Piece::Text, 1605, 1260, 0, 0, "B. Click on the object to change"},
    HelpRow{Panel::Right, Piece::Text, 1605, 1515, 0, 0, "C. Select the color (see below)"},
    HelpRow{Panel::Right, Piece::Text, 1380, 1800, 0, 0,
            "Use the color picker to select a color on your screen. To use click and hold."},
    HelpRow{Panel::Right, Piece::Face, 855, 1815, 390, 330, "Eye_OFF", "", "imgHelpPicker"},
    HelpRow{Panel::Right, Piece::Text, 1380, 2235, 0, 0,
            "Use the color wheel to open the color creation window. Allows straight RGB values."},
    HelpRow{Panel::Right, Piece::Face, 855, 2130, 390, 330, "Color_OFF", "", "imgHelpColor"},
    HelpRow{Panel::Right, Piece::Text, 1380, 2700, 0, 0, "*Some objects only require a font color."},
    HelpRow{Panel::Right, Piece::Heading, 90, 3165, 0, 0, "Step 8"},
    HelpRow{Panel::Right, Piece::Text, 1665, 3135, 0, 0,
            "Enter the skin name and author then click the create skin package button."},
    HelpRow{Panel::Right, Piece::Picture, 870, 3180, 600, 375, "help_create", "Click to Create the Skin Package File",
            "imgHelpCreate"},
};

constexpr int kFooterTop = 3765;        // twips: where the footer strip starts
constexpr qreal kSmallestStepPoints = 6;
constexpr qreal kStepPointsStep = 0.25;

bool IsStepText(const QObject* piece)
{
    return piece->objectName() == QLatin1String("lblStepText") || piece->objectName() == QLatin1String("lblStep");
}

// The height a step text takes in `font` at the label's width, wrapped as the label wraps it.
int TextHeight(const QLabel& label, const QFont& font)
{
    const int flags = Qt::AlignLeft | Qt::AlignTop | (label.wordWrap() ? Qt::TextWordWrap : 0);
    return QFontMetrics(font).boundingRect(QRect(0, 0, label.width(), 1 << 20), flags, label.text()).height();
}

// The steps were laid out for Tahoma; other faces run wider or taller, and a text would then
// reach the step below it (or run past its panel). Each text that does is set smaller until it
// ends at least a pixel above whatever text lies below it and within its panel.
void FitStepTexts(QWidget& panel, int bottom, int right)
{
    const QList<QLabel*> pieces = panel.findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
    for (QLabel* text : pieces) {
        if (!IsStepText(text)) continue;
        int limit = bottom;
        for (const QLabel* other : pieces) {
            const QRect below = other->geometry();
            if (other != text && IsStepText(other) && below.top() > text->y() && below.left() <= text->geometry().right() &&
                below.right() >= text->x()) {
                limit = std::min(limit, below.top() - 1);
            }
        }
        const int room = limit - text->y();
        QFont font = text->font();
        const auto fits = [&] {
            return TextHeight(*text, font) <= room &&
                   (text->wordWrap() || text->x() + QFontMetrics(font).horizontalAdvance(text->text()) <= right);
        };
        while (!fits() && font.pointSizeF() > kSmallestStepPoints) font.setPointSizeF(font.pointSizeF() - kStepPointsStep);
        text->setFont(font);
        if (text->wordWrap()) {
            text->resize(text->width(), std::min(text->height(), room));
        } else {
            text->adjustSize();
        }
    }
}

QWidget* Strip(QWidget* parent, const char* name, QRect twips)
{
    auto* strip = new QWidget(parent);
    strip->setObjectName(QString::fromUtf8(name));
    strip->setGeometry(TwipsRect(twips.x(), twips.y(), twips.width(), twips.height()));
    strip->setAutoFillBackground(true);  // the system's window background
    return strip;
}

DragArea* MoveArea(QWidget* parent, int index, QRect twips)
{
    auto* area = new DragArea(parent);
    area->setObjectName(QStringLiteral("imgMove") + QString::number(index));
    area->setGeometry(TwipsRect(twips.x(), twips.y(), twips.width(), twips.height()));
    return area;
}

QLabel* InkLabel(const QString& text, QWidget* parent, const FontSpec& font, QColor ink)
{
    auto* label = new QLabel(text, parent);
    label->setFont(ElementFont(font));
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, ink);
    label->setPalette(palette);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);  // presses go to the drag area beneath
    return label;
}

}  // namespace

FrmHelp::FrmHelp(QWidget* owner)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
{
    create();
    if (owner != nullptr && owner->windowHandle() != nullptr) windowHandle()->setTransientParent(owner->windowHandle());
    setObjectName(QStringLiteral("frmHelp"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Help - Brindleway Skin Framewright"));
    setWindowIcon(WindowIcon());
    // Stacking: the left drag area lowest, then the steps, then the panels and strips.
    MoveArea(this, 0, {0, 315, 5385, 3435});
    buildSteps();
    buildStrips();
    Form_Load();
}

void FrmHelp::Form_Load()
{
    // The frame is gone and the window stays on top through its flags.
    setFixedSize(Px(kHelpWidth), Px(kHelpHeight));
    footer_->setText(FooterText());
}

QString FrmHelp::FooterText()
{
    QString site = QString::fromUtf8(kSiteBase.data(), static_cast<qsizetype>(kSiteBase.size()));
    site.remove(QStringLiteral("https://"));
    return QString::fromUtf8(kFooterHead.data(), static_cast<qsizetype>(kFooterHead.size())) + site +
           QStringLiteral("  \u00B7  Version ") + QString::number(kVersionMajor) + QLatin1Char('.') +
           QString::number(kVersionMinor) + QLatin1Char('.') + QString::number(kVersionRevision);
}

void FrmHelp::imgClose_Click()
{
    close();
}

void FrmHelp::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.drawPixmap(0, 0, Art(QStringLiteral("help_background")));
}

void FrmHelp::buildSteps()
{
    auto* right = new QLabel(this);
    right->setObjectName(QStringLiteral("picRightPanel"));
    right->setGeometry(TwipsRect(kRightPanelLeft, 0, kRightPanelWidth, kRightPanelHeight));
    right->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    right->setPixmap(Art(QStringLiteral("help_background")));
    MoveArea(right, 1, {-90, 315, 4980, 3435});

    for (const HelpRow& row : kHelpRows) {
        QWidget* parent = row.panel == Panel::Left ? static_cast<QWidget*>(this) : right;
        const QString content = QString::fromUtf8(row.content);
        QLabel* piece = nullptr;
        switch (row.piece) {
        case Piece::Heading:
        case Piece::Text: {
            piece = InkLabel(content, parent, row.piece == Piece::Heading ? kTahomaBold : kTahoma, QColor(kStepInk));
            piece->setObjectName(row.piece == Piece::Heading ? QStringLiteral("lblStep") : QStringLiteral("lblStepText"));
            int width = row.width;
            if (width == 0 && row.panel == Panel::Right && row.piece == Piece::Text) {
                width = kRightPanelWidth - row.left - kRightWrapMargin;
            }
            if (width > 0) {
                piece->setWordWrap(true);
                piece->setAlignment(Qt::AlignLeft | Qt::AlignTop);
                const int height = row.height > 0 ? Px(row.height) : piece->heightForWidth(Px(width));
                piece->setGeometry(Px(row.left), Px(row.top), Px(width), height);
            } else {
                piece->move(Px(row.left), Px(row.top));
                piece->adjustSize();
            }
            break;
        }
        case Piece::Face:
        case Piece::Picture:
            piece = new QLabel(parent);
            piece->setObjectName(QString::fromUtf8(row.name));
            piece->setPixmap(row.piece == Piece::Face ? Face(content) : Art(content));
            piece->setProperty("face", content);
            piece->setToolTip(QString::fromUtf8(row.tooltip));
            piece->setGeometry(TwipsRect(row.left, row.top, row.width, row.height));
            break;
        }
    }
    FitStepTexts(*this, Px(kFooterTop), Px(kRightPanelLeft));
    FitStepTexts(*right, Px(kFooterTop), right->width());
}

void FrmHelp::buildStrips()
{
    QWidget* title = Strip(this, "picTitle", {-30, -15, 10260, 315});
    MoveArea(title, 2, {0, 0, 10215, 300});
    auto* icon = new QLabel(title);
    icon->setGeometry(TwipsRect(45, 30, 240, 240));
    icon->setPixmap(WindowIcon().pixmap(icon->size()));
    icon->setAttribute(Qt::WA_TransparentForMouseEvents);
    QLabel* caption = InkLabel(QStringLiteral(".: How to use Brindleway Skin Framewright :."), title, kTahomaBold, Qt::black);
    caption->setObjectName(QStringLiteral("lblTitle"));
    caption->move(Px(3292), Px(30));
    caption->adjustSize();
    // Not a member of the face family: it keeps its normal face while pressed.
    auto* close = new FaceButton(QStringLiteral("Close_OFF"), title);
    close->setObjectName(QStringLiteral("imgClose"));
    close->setAutoFace(false);
    close->setGeometry(TwipsRect(9945, 30, 225, 240));
    close->setToolTip(QStringLiteral("Close Brindleway Skin Fwt"));
    connect(close, &FaceButton::clicked, this, &FrmHelp::imgClose_Click);

    QWidget* footer = Strip(this, "picFooter", {-15, 3765, 10215, 315});
    MoveArea(footer, 3, {0, 0, 10215, 300});
    footer_ = InkLabel(QString(), footer, kTahomaBold, Qt::black);
    footer_->setObjectName(QStringLiteral("lblFooter"));
    footer_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    footer_->setGeometry(Px(825), Px(45), Px(8520), footer->height() - Px(45));

    for (const auto& [name, left, top] : {std::tuple{"picLeftEdge", -120, 30}, std::tuple{"picRightEdge", 10155, -15}}) {
        QWidget* edge = Strip(this, name, {left, top, 150, 3945});
        QPalette palette = edge->palette();
        palette.setColor(QPalette::Window, Qt::white);
        edge->setPalette(palette);
    }
}

}  // namespace skin
