#include "icons.h"

#include "art.h"
#include "theme.h"

#include <QPainterPath>

namespace skin {

namespace {

using namespace theme;

constexpr qreal kIconGrid = 16.0;  // the icon is designed on a 16-unit grid

// Builds a shape from rounded rectangles so the outline is drawn once around all of them.
QPainterPath Union(std::initializer_list<QPainterPath> parts)
{
    QPainterPath whole;
    for (const QPainterPath& part : parts) {
        whole = whole.united(part);
    }
    return whole.simplified();
}

QPainterPath Rounded(const QRectF& box, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(box, radius, radius);
    return path;
}

}  // namespace

void PaintIcon(QPainter& p, qreal edge)
{
    p.save();
    p.scale(edge / kIconGrid, edge / kIconGrid);
    const QRectF tile(0.5, 0.5, 15, 15);
    p.setPen(QPen(QColor(0x12, 0x3A, 0x6A), 1.0));
    p.setBrush(VerticalGradient(tile, kAccent, QColor(0x22, 0x5C, 0xB0)));
    p.drawRoundedRect(tile, 3.2, 3.2);
    // A skin window: a white frame with its title band...
    p.setPen(Qt::NoPen);
    p.setBrush(Qt::white);
    p.drawRect(QRectF(3, 3, 10, 3));
    p.setPen(QPen(Qt::white, 1.0));
    p.setBrush(QColor(0x1B, 0x3F, 0x6E));
    p.drawRect(QRectF(3.5, 5.5, 9, 7));
    // ...and an object area marked on it.
    p.setPen(Qt::NoPen);
    p.setBrush(kAmber);
    p.drawRect(QRectF(5, 8, 4, 3));
    p.restore();
}

QImage DrawIcon(int edge, int scale)
{
    return Render({edge, edge}, scale, [edge](QPainter& p) { PaintIcon(p, edge); });
}

QImage DrawPickerPointer(int scale)
{
    return Render(kPointerSize, scale, [](QPainter& p) {
        // Lay the dropper along a 45-degree axis that starts at the hot spot's centre.
        p.translate(kPickerHotSpot.x() + 0.5, kPickerHotSpot.y() + 0.5);
        p.rotate(-45);
        const QPainterPath tip = [] {
            QPainterPath path;
            path.moveTo(0, -0.4);
            path.lineTo(6, -1.8);
            path.lineTo(6, 1.8);
            path.lineTo(0, 0.4);
            path.closeSubpath();
            return path;
        }();
        const QPainterPath tube = Rounded(QRectF(5.5, -2.4, 14, 4.8), 0.6);
        const QPainterPath collar = Rounded(QRectF(19, -4, 3.2, 8), 0.8);
        const QPainterPath bulb = Rounded(QRectF(21.5, -3.6, 11, 7.2), 3.4);
        const QPainterPath whole = Union({tip, tube, collar, bulb});
        p.setPen(QPen(Qt::black, 2.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::black);
        p.drawPath(whole);
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0xF4, 0xF8, 0xFB));
        p.drawPath(Union({tip, tube}));
        p.setBrush(kAccent);
        p.drawRect(QRectF(3.0, -0.9, 9, 1.8));
        p.setBrush(QColor(0x9A, 0xA6, 0xB4));
        p.drawPath(collar);
        p.setBrush(QColor(0x3A, 0x45, 0x55));
        p.drawPath(bulb);
        p.setBrush(QColor(255, 255, 255, 90));
        p.drawRoundedRect(QRectF(23.5, -2.6, 7, 1.6), 0.8, 0.8);
    });
}

QImage DrawLinkPointer(int scale)
{
    return Render(kPointerSize, scale, [](QPainter& p) {
        const QPainterPath hand = Union({
            Rounded(QRectF(kLinkHotSpot.x() - 2.0, kLinkHotSpot.y() - 1.0, 5, 16), 2.5),  // index
            Rounded(QRectF(11.5, 10, 4.6, 10), 2.3),
            Rounded(QRectF(15.6, 11, 4.6, 10), 2.3),
            Rounded(QRectF(19.7, 12.5, 4.4, 9), 2.2),
            Rounded(QRectF(7, 15, 17, 12.5), 4.0),  // palm
        });
        QPainterPath thumb = Rounded(QRectF(-2.5, -2.2, 10, 4.4), 2.2);
        thumb = QTransform().translate(5.8, 20.5).rotate(50).map(thumb);
        const QPainterPath whole = Union({hand, thumb});
        p.setPen(QPen(Qt::black, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::white);
        p.drawPath(whole);
        // Finger creases.
        p.setPen(QPen(QColor(0x50, 0x50, 0x50), 0.9, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(11.8, 15.5), QPointF(11.8, 18.5));
        p.drawLine(QPointF(15.9, 16), QPointF(15.9, 19));
        p.drawLine(QPointF(20.0, 16.5), QPointF(20.0, 19.5));
    });
}

QImage DrawHatch()
{
    QImage hatch(kHatchSize, QImage::Format_ARGB32);
    hatch.fill(Qt::transparent);
    for (int y = 0; y < hatch.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(hatch.scanLine(y));
        for (int x = 0; x < hatch.width(); ++x) {
            if ((x + y) % kHatchSpacing == 0) {
                line[x] = kHatchColour;
            }
        }
    }
    return hatch;
}

}  // namespace skin
