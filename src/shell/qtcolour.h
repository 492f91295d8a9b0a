#pragma once
// OLE colours (0x00BBGGRR, or 0x80000000 plus a system colour index) to and from Qt colours.
// System colours take the application palette's counterpart.

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <cmath>

#include "skindocument.h"

namespace skin {

inline constexpr std::uint32_t kOleSystemBit = 0x80000000u;

inline QColor ToQColor(OleColour ole)
{
    const auto bits = static_cast<std::uint32_t>(ole);
    if ((bits & kOleSystemBit) == 0) return QColor(bits & 0xFF, (bits >> 8) & 0xFF, (bits >> 16) & 0xFF);
    const QPalette palette = QGuiApplication::palette();
    switch (bits & ~kOleSystemBit) {
    case 5: return palette.color(QPalette::Window);      // window background
    case 8: return palette.color(QPalette::WindowText);  // window text
    case 15: return palette.color(QPalette::Button);     // button face
    case 18: return palette.color(QPalette::ButtonText);
    default: return palette.color(QPalette::Window);
    }
}

inline OleColour ToOle(const QColor& colour)
{
    const QColor rgb = colour.toRgb();
    return static_cast<OleColour>(static_cast<std::uint32_t>(rgb.red()) |
                                  (static_cast<std::uint32_t>(rgb.green()) << 8) |
                                  (static_cast<std::uint32_t>(rgb.blue()) << 16));
}

// The contrast ratio of two colours as the web's accessibility guidelines define it, from 1
// (the same luminance) to 21 (black on white); text reads clearly from 4.5 on.
inline double ContrastRatio(const QColor& a, const QColor& b)
{
    const auto luminance = [](const QColor& colour) {
        const auto linear = [](double channel) {
            return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
        };
        const QColor rgb = colour.toRgb();
        return 0.2126 * linear(rgb.redF()) + 0.7152 * linear(rgb.greenF()) + 0.0722 * linear(rgb.blueF());
    };
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// White or black, whichever sets `ink` off more; either way at least 4.58 : 1.
inline QColor PlateFor(const QColor& ink)
{
    return ContrastRatio(ink, Qt::white) >= ContrastRatio(ink, Qt::black) ? QColor(Qt::white) : QColor(Qt::black);
}

}  // namespace skin
