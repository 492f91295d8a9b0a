#pragma once
// The window icon, the two pointers and the hatch of the drawing boxes.

#include <QImage>
#include <QPainter>

namespace skin {

// The program's icon (a framed skin window on the accent tile) at a logical edge length.
QImage DrawIcon(int edge, int scale);

// Paints the icon into an existing painter at its origin, edge logical pixels wide.
void PaintIcon(QPainter& p, qreal edge);

// 32 x 32 pointers: an eyedropper with its tip on kPickerHotSpot, a hand pointing at
// kLinkHotSpot.
QImage DrawPickerPointer(int scale);
QImage DrawLinkPointer(int scale);

// The hatch picture, pixel exact and unscaled (see kHatchSize and kHatchSpacing).
QImage DrawHatch();

}  // namespace skin
