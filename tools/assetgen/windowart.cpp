#include "windowart.h"

#include "art.h"
#include "icons.h"
#include "layout.h"
#include "theme.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <QRadialGradient>

namespace skin {

namespace {

using namespace theme;
using namespace layout;

constexpr qreal kCardRadius = 6.0;
constexpr qreal kHeaderHeight = 25.0;

void Card(QPainter& p, const QRectF& box)
{
    p.save();
    p.setPen(QPen(kCardEdge, 1.0));
    p.setBrush(VerticalGradient(box, kCardTop, kCardBottom));
    p.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), kCardRadius, kCardRadius);
    p.setPen(QPen(QColor(255, 255, 255, 22), 1.0));
    p.drawLine(QPointF(box.left() + kCardRadius, box.top() + 1.5),
               QPointF(box.right() - kCardRadius, box.top() + 1.5));
    p.restore();
}

// A sunken frame whose inside is exactly the given element rectangle.
void Recess(QPainter& p, const QRectF& inside, const QColor& fill)
{
    p.save();
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(255, 255, 255, 26));  // light lower-right lip
    p.drawRect(inside.adjusted(-1, -1, 2, 2));
    p.setBrush(kOutline);
    p.drawRect(inside.adjusted(-2, -2, 1, 1));
    p.setBrush(fill);
    p.drawRect(inside);
    p.restore();
}

// The empty state of a skin picture well: a quiet picture symbol in the middle.
void EmptyWell(QPainter& p, const QRectF& picture)
{
    Recess(p, picture, kWell);
    p.save();
    const QPointF centre = picture.center();
    const QColor ink(0x2C, 0x35, 0x41);
    p.setPen(QPen(ink, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    const QRectF frame(centre.x() - 22, centre.y() - 24, 44, 34);
    p.drawRoundedRect(frame, 4, 4);
    p.setPen(Qt::NoPen);
    p.setBrush(ink);
    p.drawEllipse(QPointF(frame.right() - 10, frame.top() + 9), 3.5, 3.5);
    p.drawPolygon(QPolygonF{{frame.left() + 5, frame.bottom() - 4},
                            {frame.left() + 16, frame.top() + 13},
                            {frame.left() + 25, frame.bottom() - 11},
                            {frame.left() + 30, frame.bottom() - 15},
                            {frame.right() - 5, frame.bottom() - 4}});
    Text(p, QRectF(picture.left(), frame.bottom() + 8, picture.width(), 14), Qt::AlignCenter,
         QStringLiteral("Load a picture with the folder button"), Font(10), QColor(0x4A, 0x56, 0x66));
    p.restore();
}

void Caption(QPainter& p, QPointF at, const QString& text)
{
    p.fillRect(QRectF(at.x(), at.y() + 3, 3, 10), kAccent);
    Text(p, QRectF(at.x() + 8, at.y(), 300, 16), Qt::AlignLeft | Qt::AlignVCenter, text,
         Font(11, QFont::DemiBold), kCaption);
}

void Hint(QPainter& p, const QRectF& box, const QString& text)
{
    Text(p, box, Qt::AlignLeft | Qt::AlignVCenter, text, Font(9), kCaptionDim);
}

void TitleBand(QPainter& p)
{
    const QRectF band(0, 0, kMainBackgroundSize.width(), kHeaderHeight);
    p.fillRect(band, VerticalGradient(band, kHeaderTop, kHeaderBottom));
    p.fillRect(QRectF(0, kHeaderHeight, band.width(), 1), kOutline);
    p.fillRect(QRectF(0, kHeaderHeight + 1, band.width(), 1), QColor(255, 255, 255, 14));
    p.save();
    p.translate(7, 4.5);
    PaintIcon(p, 16);
    p.restore();
    const QFont strong = Font(12, QFont::Bold);
    const QFont light = Font(12);
    const QString first = QStringLiteral("Brindleway");
    const qreal firstWidth = QFontMetricsF(strong).horizontalAdvance(first);
    Text(p, QRectF(30, 0, 200, kHeaderHeight), Qt::AlignLeft | Qt::AlignVCenter, first, strong, kCaption);
    Text(p, QRectF(30 + firstWidth + 5, 0, 300, kHeaderHeight), Qt::AlignLeft | Qt::AlignVCenter,
         QStringLiteral("Skin Framewright"), light, kCaptionDim);
}

void ToolPanel(QPainter& p)
{
    Card(p, kToolCard);
    // The status strip behind lblCurrSel stays flat so its white text reads well.
    p.save();
    QPainterPath card;
    card.addRoundedRect(kToolCard.adjusted(1, 1, -1, -1), kCardRadius - 1, kCardRadius - 1);
    p.setClipPath(card);
    p.fillRect(QRectF(kToolCard.left(), kStatusTop, kToolCard.width(), kToolCard.bottom() - kStatusTop),
               kStatusStrip);
    p.fillRect(QRectF(kToolCard.left(), kStatusTop, kToolCard.width(), 1), kCardEdge);
    p.restore();
    // Dividers between the tool groups.
    for (qreal x : kToolDividers) {
        p.fillRect(QRectF(x, kToolRowTop + 1, 1, kToolRowHeight - 2), kCardEdge);
        p.fillRect(QRectF(x + 1, kToolRowTop + 1, 1, kToolRowHeight - 2), QColor(255, 255, 255, 20));
    }
    Recess(p, kSwatch, Qt::white);
    // A dark pad under the arrows and the lock.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0, 0, 0, 50));
    p.drawRoundedRect(kArrowPad, 3, 3);
}

void QuickChips(QPainter& p)
{
    const QRect grid(kQuickChipArea.left() - 1, kQuickChipArea.top() - 1,
                     kQuickChipColumns * kQuickChipPitchX + 1, kQuickChipRows * kQuickChipPitchY + 1);
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    p.fillRect(grid.adjusted(-1, -1, 1, 1), QColor(255, 255, 255, 26));
    p.fillRect(grid.adjusted(-1, -1, 0, 0), kOutline);
    p.fillRect(grid, kOutline);
    for (int row = 0; row < kQuickChipRows; ++row) {
        for (int column = 0; column < kQuickChipColumns; ++column) {
            const ColourChip chip = QuickColourChip(row, column);
            p.fillRect(chip.rectInWindow, QColor::fromRgb(chip.colour));
        }
    }
    p.restore();
}

void DetailsCard(QPainter& p)
{
    Card(p, kDetailsCard);
    const QFont font = Font(11);
    Text(p, QRectF(kDetailsCard.left() + 4, kSkinName.top(), kSkinName.left() - kDetailsCard.left() - 10,
                   kSkinName.height()),
         Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("Skin Name:"), font, kCaption);
    Text(p, QRectF(kDetailsCard.left() + 4, kSkinAuthor.top(), kSkinAuthor.left() - kDetailsCard.left() - 10,
                   kSkinAuthor.height()),
         Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("Author:"), font, kCaption);
    Recess(p, kSkinName, Qt::white);
    Recess(p, kSkinAuthor, Qt::white);
    // The create button's own label, in the colour of its parcel.
    const QRectF label(kSkinName.right() + 6, kCreateButton.top(), kCreateButton.left() - kSkinName.right() - 12,
                       kCreateButton.height());
    Text(p, label, Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("Create\npackage"), Font(10), kAmber);
}

}  // namespace

QImage DrawMainBackground(int scale)
{
    return Render(kMainBackgroundSize, scale, [](QPainter& p) {
        const QRectF window(QPointF(0, 0), QSizeF(kMainBackgroundSize));
        p.fillRect(window, VerticalGradient(window, kWindowTop, kWindowBottom));
        QRadialGradient glow(QPointF(120, 30), 420);
        glow.setColorAt(0, QColor(kAccent.red(), kAccent.green(), kAccent.blue(), 20));
        glow.setColorAt(1, QColor(kAccent.red(), kAccent.green(), kAccent.blue(), 0));
        p.fillRect(window, glow);
        TitleBand(p);

        Card(p, kSendCard);
        Caption(p, {kSendCard.left() + 10, kSendCard.top() + 3}, QStringLiteral("Send Skin"));
        EmptyWell(p, kSendPicture);
        Hint(p, QRectF(kSendPicture.left(), kSendButtonsTop, 300, kSideButtonHeight),
             QStringLiteral("Drag on the picture to mark an object area"));

        Card(p, kReceiveCard);
        Caption(p, {kReceiveCard.left() + 10, kReceiveCard.top() + 3}, QStringLiteral("Receive Skin"));
        EmptyWell(p, kReceivePicture);
        Hint(p, QRectF(kReceivePicture.left(), kReceiveButtonsTop, 300, kSideButtonHeight),
             QStringLiteral("Drag on the picture to mark an object area"));

        ToolPanel(p);
        QuickChips(p);
        DetailsCard(p);

        // The window's edge: a dark outline with a faint light bevel inside it.
        p.setPen(QPen(kOutline, 1.0));
        p.setBrush(Qt::NoBrush);
        p.drawRect(window.adjusted(0.5, 0.5, -0.5, -0.5));
        p.setPen(QPen(QColor(255, 255, 255, 20), 1.0));
        p.drawRect(window.adjusted(1.5, 1.5, -1.5, -1.5));
    });
}

QImage DrawHelpBackground(int scale)
{
    return Render(kHelpBackgroundSize, scale, [](QPainter& p) {
        const QRectF panel(QPointF(0, 0), QSizeF(kHelpBackgroundSize));
        p.fillRect(panel, VerticalGradient(panel, QColor(0x1D, 0x24, 0x2D), QColor(0x12, 0x17, 0x1D)));
        QRadialGradient glow(QPointF(40, 0), 260);
        glow.setColorAt(0, QColor(kAccent.red(), kAccent.green(), kAccent.blue(), 16));
        glow.setColorAt(1, QColor(kAccent.red(), kAccent.green(), kAccent.blue(), 0));
        p.fillRect(panel, glow);
        // A thin accent rule under the title strip, fading out to the right.
        QLinearGradient rule(panel.topLeft(), panel.topRight());
        rule.setColorAt(0, kAccent);
        rule.setColorAt(1, QColor(kAccent.red(), kAccent.green(), kAccent.blue(), 0));
        p.fillRect(QRectF(0, 0, panel.width(), 1), rule);
        p.setPen(QPen(QColor(255, 255, 255, 14), 1.0));
        p.setBrush(Qt::NoBrush);
        p.drawRect(panel.adjusted(0.5, 1.5, -0.5, -0.5));
    });
}

}  // namespace skin
