#pragma once
// OLE colours (0x00BBGGRR, or 0x80000000 plus a system colour index) to and from Qt colours.
// System colours take the application palette's counterpart.

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

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

}  // namespace skin
