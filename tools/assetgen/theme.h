#pragma once
// The one palette and the shared drawing helpers of every generated picture, so the
// windows, the faces and the icons keep one look.

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSize>
#include <QString>

#include <functional>

namespace skin::theme {

// Window grounds: a deep blue-grey slate.
inline const QColor kWindowTop{0x2F, 0x39, 0x46};
inline const QColor kWindowBottom{0x1F, 0x26, 0x2F};
inline const QColor kHeaderTop{0x3A, 0x46, 0x56};
inline const QColor kHeaderBottom{0x2D, 0x37, 0x44};
inline const QColor kOutline{0x0E, 0x12, 0x17};
inline const QColor kBevelLight{0x4A, 0x57, 0x69};
inline const QColor kCardTop{0x33, 0x3E, 0x4C};
inline const QColor kCardBottom{0x2A, 0x33, 0x3F};
inline const QColor kCardEdge{0x18, 0x1E, 0x26};
inline const QColor kWell{0x14, 0x19, 0x20};
inline const QColor kStatusStrip{0x1A, 0x20, 0x28};

// Texts baked into pictures.
inline const QColor kCaption{0xD4, 0xDC, 0xE6};
inline const QColor kCaptionDim{0x8C, 0x99, 0xAA};

// Accents: cool blue for active and pressed looks, amber for the create action.
inline const QColor kAccent{0x4C, 0xB8, 0xF0};
inline const QColor kAccentDeep{0x23, 0x7F, 0xC0};
inline const QColor kAmber{0xF2, 0xA9, 0x3B};
inline const QColor kDanger{0xD0, 0x47, 0x47};

// Button grounds and glyphs.
inline const QColor kFaceTop{0x55, 0x63, 0x77};
inline const QColor kFaceBottom{0x3D, 0x48, 0x58};
inline const QColor kFacePressedTop{0x15, 0x1B, 0x23};
inline const QColor kFacePressedBottom{0x22, 0x2B, 0x36};
inline const QColor kGlyph{0xE6, 0xEC, 0xF2};

// A transparent picture of the given logical size drawn at scale (1 or 2) by draw, which
// paints in logical pixels with antialiasing on.
QImage Render(QSize logical, int scale, const std::function<void(QPainter&)>& draw);

// The program's sans-serif face at a pixel size.
QFont Font(qreal pixelSize, QFont::Weight weight = QFont::Normal);

// Text inside a rectangle with alignment flags.
void Text(QPainter& p, const QRectF& box, int flags, const QString& text, const QFont& font,
          const QColor& colour);

// The raised (normal) or sunken (pressed, active) ground of a button face.
void ButtonGround(QPainter& p, const QRectF& face, bool pressed, qreal radius = 3.0);

// A vertical linear gradient brush from top to bottom of the given rectangle.
QBrush VerticalGradient(const QRectF& box, const QColor& top, const QColor& bottom);

}  // namespace skin::theme
