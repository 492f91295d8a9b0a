#pragma once
// Fonts and twips for the window elements. The windows were laid out for Tahoma and Arial,
// which a Linux desktop rarely has, so each font names a metric-friendly fallback.

#include <QFont>
#include <QRect>
#include <QStringList>

#include <cmath>

#include "skindocument.h"

namespace skin {

struct FontSpec {
    enum class Face { Tahoma, Arial };
    Face face = Face::Tahoma;
    double points = 8.25;
    bool bold = false;
};

inline constexpr FontSpec kTahoma{FontSpec::Face::Tahoma, 8.25, false};
inline constexpr FontSpec kTahomaBold{FontSpec::Face::Tahoma, 8.25, true};
inline constexpr FontSpec kArial{FontSpec::Face::Arial, 8.25, false};
inline constexpr FontSpec kArialSmallBold{FontSpec::Face::Arial, 6.75, true};

inline QFont ElementFont(const FontSpec& wanted)
{
    QFont font;
    // Metric-compatible or narrow faces first, DejaVu Sans (always installed) last.
    font.setFamilies(wanted.face == FontSpec::Face::Tahoma
                         ? QStringList{"Tahoma", "DejaVu Sans Condensed", "DejaVu Sans"}
                         : QStringList{"Arial", "Liberation Sans", "Nimbus Sans", "DejaVu Sans Condensed", "DejaVu Sans"});
    font.setPointSizeF(wanted.points);
    font.setBold(wanted.bold);
    return font;
}

// Twips to whole pixels, to the nearest (15 is odd, so no value falls on a half).
inline int Px(int twips)
{
    return static_cast<int>(std::lround(static_cast<double>(twips) / kTwipsPerPixel));
}

inline QRect TwipsRect(int left, int top, int width, int height)
{
    return {Px(left), Px(top), Px(width), Px(height)};
}

}  // namespace skin
