#include "theme.h"

#include <QLinearGradient>
#include <QPainterPath>

namespace skin::theme {

QImage Render(QSize logical, int scale, const std::function<void(QPainter&)>& draw)
{
    QImage image(logical * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.scale(scale, scale);
    draw(p);
    p.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

QFont Font(qreal pixelSize, QFont::Weight weight)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(qRound(pixelSize));
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferFullHinting);
    return font;
}

void Text(QPainter& p, const QRectF& box, int flags, const QString& text, const QFont& font,
          const QColor& colour)
{
    p.save();
    p.setFont(font);
    p.setPen(colour);
    p.drawText(box, flags, text);
    p.restore();
}

QBrush VerticalGradient(const QRectF& box, const QColor& top, const QColor& bottom)
{
    QLinearGradient gradient(box.topLeft(), box.bottomLeft());
    gradient.setColorAt(0.0, top);
    gradient.setColorAt(1.0, bottom);
    return QBrush(gradient);
}

void ButtonGround(QPainter& p, const QRectF& face, bool pressed, qreal radius)
{
    p.save();
    const QRectF outer = face.adjusted(0.5, 0.5, -0.5, -0.5);
    const QRectF inner = face.adjusted(1.5, 1.5, -1.5, -1.5);
    if (pressed) {
        p.setPen(QPen(kAccentDeep, 1.0));
        p.setBrush(VerticalGradient(face, kFacePressedTop, kFacePressedBottom));
        p.drawRoundedRect(outer, radius, radius);
        // A shadow along the top inner edge makes the face read as pushed in.
        p.setPen(QPen(QColor(0, 0, 0, 110), 1.0));
        p.drawLine(QPointF(inner.left() + 1, inner.top()), QPointF(inner.right() - 1, inner.top()));
    } else {
        p.setPen(QPen(kOutline, 1.0));
        p.setBrush(VerticalGradient(face, kFaceTop, kFaceBottom));
        p.drawRoundedRect(outer, radius, radius);
        p.setPen(QPen(QColor(255, 255, 255, 48), 1.0));
        p.drawLine(QPointF(inner.left() + 1, inner.top()), QPointF(inner.right() - 1, inner.top()));
    }
    p.restore();
}

}  // namespace skin::theme
