#include "faces.h"

#include "theme.h"

#include <QConicalGradient>
#include <QPainterPath>
#include <QPolygonF>
#include <QRadialGradient>

#include <map>

namespace skin {

namespace {

using namespace theme;

// How far a pressed glyph sinks, in logical pixels.
constexpr qreal kPressShift = 1.0;

QColor GlyphColour(bool on)
{
    return on ? kAccent : kGlyph;
}

// A glyph's shadow lifts it off the raised ground; pressed glyphs have none.
void WithShadow(QPainter& p, bool on, const std::function<void(const QColor&)>& glyph)
{
    if (!on) {
        p.save();
        p.translate(0, 1);
        glyph(QColor(0, 0, 0, 90));
        p.restore();
    }
    glyph(GlyphColour(on));
}

void Arrow(QPainter& p, QSizeF size, bool on, qreal degrees)
{
    WithShadow(p, on, [&](const QColor& colour) {
        p.save();
        p.translate(size.width() / 2, size.height() / 2);
        p.rotate(degrees);
        const QPolygonF up{{0, -3.0}, {3.5, 2.0}, {-3.5, 2.0}};
        p.setPen(Qt::NoPen);
        p.setBrush(colour);
        p.drawPolygon(up);
        p.restore();
    });
}

void Minimise(QPainter& p, bool on)
{
    WithShadow(p, on, [&](const QColor& colour) {
        p.fillRect(QRectF(4, 9, 7, 2), colour);
    });
}

void CloseCross(QPainter& p, bool on)
{
    if (on) {
        // The pressed close button warns in red.
        p.setPen(QPen(kOutline, 1.0));
        p.setBrush(VerticalGradient(QRectF(0, 0, 15, 16), kDanger.darker(120), kDanger));
        p.drawRoundedRect(QRectF(0.5, 0.5, 14, 15), 3, 3);
    }
    const QColor ink = on ? QColor(Qt::white) : kGlyph;
    auto cross = [&](const QColor& colour, double width) {
        p.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(4.8, 5.3), QPointF(10.2, 10.7));
        p.drawLine(QPointF(10.2, 5.3), QPointF(4.8, 10.7));
    };
    if (!on) {
        // A dark rim under the light cross: the same face sits on the dark title band of the
        // main window and on the light title strip of the help window, and reads on both.
        cross(QColor(kOutline.red(), kOutline.green(), kOutline.blue(), 170), 3.4);
    }
    cross(ink, 1.6);
}

void Eraser(QPainter& p, bool on)
{
    const QColor body = GlyphColour(on);
    const QColor tip = on ? kAccentDeep.lighter(130) : QColor(0xE8, 0x8A, 0x8A);
    p.save();
    p.translate(7.5, 8.2);
    p.rotate(-40);
    const QRectF whole(-3.2, -6.0, 6.4, 12.0);
    QPainterPath outline;
    outline.addRoundedRect(whole, 1.4, 1.4);
    p.setPen(Qt::NoPen);
    p.setBrush(body);
    p.drawPath(outline);
    p.setClipPath(outline);
    p.fillRect(QRectF(-4, 1.5, 8, 6), tip);
    p.setClipping(false);
    p.setPen(QPen(kOutline, 0.9));
    p.setBrush(Qt::NoBrush);
    p.drawPath(outline);
    p.restore();
    // The line it has just wiped.
    p.setPen(QPen(body, 1.0, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(3.5, 14.5), QPointF(11.5, 14.5));
}

void Folder(QPainter& p, bool on)
{
    const QColor back = QColor(0xC4, 0x85, 0x2A);
    const QColor front = on ? kAmber.lighter(112) : kAmber;
    QPainterPath rear;
    rear.moveTo(3, 13.5);
    rear.lineTo(3, 4.5);
    rear.lineTo(6.8, 4.5);
    rear.lineTo(8.0, 6.0);
    rear.lineTo(14, 6.0);
    rear.lineTo(14, 13.5);
    rear.closeSubpath();
    p.setPen(QPen(kOutline, 0.8));
    p.setBrush(back);
    p.drawPath(rear);
    // The front flap lies open when pressed, showing the folder's inside.
    QPolygonF flap = on ? QPolygonF{{5.0, 8.0}, {15.5, 8.0}, {14, 13.5}, {3, 13.5}}
                        : QPolygonF{{3.0, 8.0}, {14.0, 8.0}, {14, 13.5}, {3, 13.5}};
    if (on) {
        p.setBrush(QColor(0xFF, 0xF4, 0xD8));
        p.drawRect(QRectF(4.5, 6.8, 8.5, 5));
    }
    p.setBrush(VerticalGradient(QRectF(0, 8, 1, 6), front.lighter(115), front));
    p.drawPolygon(flap);
}

void ColourWheel(QPainter& p, bool on)
{
    const QPointF centre(13, 11);
    constexpr qreal radius = 7.5;
    QConicalGradient hues(centre, 90);
    const QColor stops[] = {Qt::red, Qt::magenta, Qt::blue, Qt::cyan, Qt::green, Qt::yellow, Qt::red};
    for (int i = 0; i < 7; ++i) {
        hues.setColorAt(i / 6.0, stops[i]);
    }
    p.setPen(Qt::NoPen);
    p.setBrush(hues);
    p.drawEllipse(centre, radius, radius);
    QRadialGradient white(centre, radius);
    white.setColorAt(0.0, QColor(255, 255, 255, 255));
    white.setColorAt(0.25, QColor(255, 255, 255, 200));
    white.setColorAt(1.0, QColor(255, 255, 255, 0));
    p.setBrush(white);
    p.drawEllipse(centre, radius, radius);
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(on ? kAccent : kOutline, on ? 1.2 : 1.0));
    p.drawEllipse(centre, radius + 0.3, radius + 0.3);
}

void Eyedropper(QPainter& p, bool on)
{
    const QColor bulb = GlyphColour(on);
    p.save();
    p.translate(13.5, 11);
    p.rotate(-45);
    p.setPen(QPen(kOutline, 0.8));
    // Bulb and collar.
    p.setBrush(bulb);
    p.drawRoundedRect(QRectF(3.2, -2.8, 6.3, 5.6), 2.4, 2.4);
    p.setBrush(bulb.darker(135));
    p.drawRect(QRectF(1.8, -3.4, 1.6, 6.8));
    // The glass tube with a drop of colour in its lower end, and the tip.
    p.setBrush(QColor(0xDD, 0xEE, 0xF8, 210));
    p.drawRect(QRectF(-6.0, -1.7, 7.8, 3.4));
    p.setPen(Qt::NoPen);
    p.setBrush(on ? kAccent : QColor(0xE0, 0x55, 0x55));
    p.drawRect(QRectF(-5.6, -1.3, 3.6, 2.6));
    p.setPen(QPen(kOutline, 0.8));
    p.setBrush(QColor(0xDD, 0xEE, 0xF8));
    p.drawPolygon(QPolygonF{{-6.0, -1.0}, {-9.2, -0.3}, {-9.2, 0.3}, {-6.0, 1.0}});
    p.restore();
}

void BackFill(QPainter& p, bool on)
{
    // A filled swatch with the corner of a sheet above it: the colour behind the text.
    const QRectF swatch(6.5, 4.5, 13, 13);
    p.setPen(QPen(kOutline, 1.0));
    p.setBrush(on ? VerticalGradient(swatch, kAccent, kAccentDeep)
                  : VerticalGradient(swatch, kGlyph, QColor(0xB8, 0xC3, 0xD0)));
    p.drawRoundedRect(swatch, 1.5, 1.5);
    p.setPen(QPen(on ? QColor(255, 255, 255, 120) : QColor(0x6A, 0x78, 0x8A), 1.0));
    for (qreal offset = 4; offset < 24; offset += 4) {
        p.save();
        p.setClipRect(swatch.adjusted(1, 1, -1, -1));
        p.drawLine(QPointF(swatch.left() + offset - 12, swatch.bottom()),
                   QPointF(swatch.left() + offset, swatch.top()));
        p.restore();
    }
}

void TextGlyph(QPainter& p, bool on)
{
    WithShadow(p, on, [&](const QColor& colour) {
        Text(p, QRectF(0, 1, 26, 15), Qt::AlignCenter, QStringLiteral("A"), Font(14, QFont::Bold), colour);
        p.fillRect(QRectF(7, 16, 12, 2), on ? kAccent : kAmber);
    });
}

void Parcel(QPainter& p, bool on)
{
    const QColor kraft = on ? QColor(0xD9, 0xAE, 0x70) : QColor(0xC9, 0x99, 0x5A);
    const QRectF body(5.5, 13.5, 15, 12);
    const QRectF lid(4.5, 10.5, 17, 4);
    p.setPen(QPen(kOutline, 1.0));
    p.setBrush(VerticalGradient(body, kraft, kraft.darker(125)));
    p.drawRect(body);
    p.setBrush(kraft.lighter(108));
    p.drawRect(lid);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xF1, 0xDD, 0xB4));
    p.drawRect(QRectF(11.5, 11, 3, 14));
    // The arrow that packs things into it.
    const QColor arrow = on ? kAccent : kGlyph;
    p.setBrush(arrow);
    p.drawPolygon(QPolygonF{{10.5, 2.5}, {15.5, 2.5}, {15.5, 5.5}, {18, 5.5}, {13, 9.5}, {8, 5.5}, {10.5, 5.5}});
}

void Padlock(QPainter& p, bool locked)
{
    const QColor metal = GlyphColour(locked);
    // The shackle: closed into the body when locked, lifted with one leg free when open.
    QPainterPath shackle;
    if (locked) {
        shackle.moveTo(5.5, 12);
        shackle.lineTo(5.5, 8);
        shackle.arcTo(QRectF(5.5, 4.5, 6, 7), 180, -180);
        shackle.lineTo(11.5, 12);
    } else {
        shackle.moveTo(5.5, 12);
        shackle.lineTo(5.5, 5);
        shackle.arcTo(QRectF(5.5, 1.5, 6, 7), 180, -180);
        shackle.lineTo(11.5, 7.5);
    }
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(kOutline, 3.2, Qt::SolidLine, Qt::FlatCap));
    p.drawPath(shackle);
    p.setPen(QPen(metal.darker(115), 1.8, Qt::SolidLine, Qt::FlatCap));
    p.drawPath(shackle);
    const QRectF body(3, 11.5, 11, 9.5);
    p.setPen(QPen(kOutline, 1.0));
    p.setBrush(VerticalGradient(body, metal, metal.darker(130)));
    p.drawRoundedRect(body, 1.5, 1.5);
    p.setPen(Qt::NoPen);
    p.setBrush(kOutline);
    p.drawEllipse(QPointF(8.5, 15.3), 1.3, 1.3);
    p.drawRect(QRectF(8.0, 15.3, 1.0, 3.0));
}

}  // namespace

QImage DrawFace(std::string_view word, bool on, QSize size, int scale)
{
    using Glyph = std::function<void(QPainter&, bool)>;
    const QSizeF logical(size);
    static const std::map<std::string_view, Glyph> glyphs{
        {"Up", [](QPainter& p, bool pressed) { Arrow(p, {13, 13}, pressed, 0); }},
        {"Right", [](QPainter& p, bool pressed) { Arrow(p, {13, 13}, pressed, 90); }},
        {"Down", [](QPainter& p, bool pressed) { Arrow(p, {13, 13}, pressed, 180); }},
        {"Left", [](QPainter& p, bool pressed) { Arrow(p, {13, 13}, pressed, 270); }},
        {"Min", Minimise},
        {"Close", CloseCross},
        {"Clear", Eraser},
        {"Load", Folder},
        {"Color", ColourWheel},
        {"Eye", Eyedropper},
        {"Map", BackFill},
        {"Text", TextGlyph},
        {"Pack", Parcel},
        {"Lock", Padlock},
    };
    const auto found = glyphs.find(word);
    if (found == glyphs.end()) {
        return {};
    }
    const Glyph& glyph = found->second;
    return theme::Render(size, scale, [&](QPainter& p) {
        const bool window = word == "Min" || word == "Close";
        // The window buttons sit flat on the title band until pressed.
        if (!window) {
            ButtonGround(p, QRectF(QPointF(0, 0), logical), on, size.width() <= 13 ? 2.5 : 3.0);
        } else if (on && word == "Min") {
            ButtonGround(p, QRectF(QPointF(0, 0), logical), true);
        }
        if (on && word != "Close") {
            p.translate(0, kPressShift);
        }
        glyph(p, on);
    });
}

QImage DrawHelpCreate(int scale)
{
    return theme::Render({40, 25}, scale, [scale](QPainter& p) {
        ButtonGround(p, QRectF(0, 0, 40, 25), false, 4);
        p.translate(7, -2.5);
        p.scale(0.82, 0.82);
        Parcel(p, false);
        p.resetTransform();
        p.scale(scale, scale);
        // A small "+" beside the parcel: this button makes a new package.
        p.setPen(QPen(kAmber, 2.0, Qt::SolidLine, Qt::FlatCap));
        p.drawLine(QPointF(30.5, 9), QPointF(30.5, 16));
        p.drawLine(QPointF(27, 12.5), QPointF(34, 12.5));
    });
}

}  // namespace skin
