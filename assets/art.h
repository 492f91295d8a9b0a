#pragma once
// The program's pictures, compiled in from assets.qrc. Every loader returns the
// double-resolution variant (device-pixel ratio 2) when the application runs on a screen
// with a device-pixel ratio above 1, so widgets stay the same logical size and turn crisp.
// The tables below are shared with the generator (tools/assetgen) that draws the pictures.

#include <QCursor>
#include <QIcon>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QtGui/qrgb.h>

#include <array>
#include <string_view>
#include <vector>

namespace skin {

// Button faces: each word has an "_ON" (pressed or active) and an "_OFF" (normal) face.
struct FaceSpec {
    std::string_view word;
    QSize size;  // logical pixels
};
inline constexpr std::array<FaceSpec, 14> kFaceSpecs{{
    {"Down", {13, 13}},  {"Left", {13, 13}}, {"Right", {13, 13}}, {"Up", {13, 13}},
    {"Clear", {15, 18}}, {"Close", {15, 16}}, {"Color", {26, 22}}, {"Pack", {26, 30}},
    {"Eye", {26, 22}},   {"Load", {17, 18}}, {"Map", {26, 22}},   {"Min", {15, 16}},
    {"Text", {26, 22}},  {"Lock", {17, 25}},
}};
inline constexpr int kFaceCount = 2 * static_cast<int>(kFaceSpecs.size());

// Whole pictures of the two windows and their pointers (names under ":/art/").
inline constexpr QSize kMainBackgroundSize{792, 409};
inline constexpr QSize kHelpBackgroundSize{352, 253};
inline constexpr QSize kHelpCreateSize{40, 25};
inline constexpr QSize kPointerSize{32, 32};
inline constexpr QPoint kPickerHotSpot{3, 28};  // the eyedropper's tip
inline constexpr QPoint kLinkHotSpot{9, 2};     // the tip of the pointing finger

// The hatch of the drawing boxes: drawn unscaled from a box's top-left corner, a pixel
// (x, y) is opaque silver exactly when (x + y) is a multiple of kHatchSpacing (lines rising
// to the right), every other pixel is fully transparent. It has no double-resolution variant.
inline constexpr QSize kHatchSize{497, 422};
inline constexpr int kHatchSpacing = 8;
inline constexpr QRgb kHatchColour = 0xFFC0C0C0;

// The quick colour chips of the main background, under the transparent element Image1
// (642, 311, 132 x 26 px): two rows of eleven flat chips, 11 x 12 px each, separated by
// 1-pixel dark lines. A chip's rectangle is in main-window pixels and holds only its colour.
struct ColourChip {
    QRect rectInWindow;
    QRgb colour;  // opaque 0xFFRRGGBB
};
inline constexpr QRect kQuickChipArea{642, 311, 132, 26};
inline constexpr int kQuickChipColumns = 11;
inline constexpr int kQuickChipRows = 2;
inline constexpr int kQuickChipPitchX = 12;
inline constexpr int kQuickChipPitchY = 13;
inline constexpr std::array<QRgb, kQuickChipColumns * kQuickChipRows> kQuickChipColours{
    0xFFFF0000, 0xFFFF8000, 0xFFFFFF00, 0xFF00FF00, 0xFF00FFFF, 0xFF0000FF,
    0xFF8000FF, 0xFFFF00FF, 0xFFFFFFFF, 0xFF808080, 0xFF000000,  // first row
    0xFF800000, 0xFF804000, 0xFF808000, 0xFF008000, 0xFF008080, 0xFF000080,
    0xFF400080, 0xFF800080, 0xFFC0C0C0, 0xFF404040, 0xFFFFE0C0,  // second row
};

// The chip in the given row and column, as the background shows it.
constexpr ColourChip QuickColourChip(int row, int column)
{
    return {QRect(kQuickChipArea.left() + column * kQuickChipPitchX,
                  kQuickChipArea.top() + row * kQuickChipPitchY, kQuickChipPitchX - 1,
                  kQuickChipPitchY - 1),
            kQuickChipColours[static_cast<std::size_t>(row * kQuickChipColumns + column)]};
}

// All chips, first row left to right, then the second.
const std::vector<ColourChip>& QuickColourChips();

// The 28 face keys ("Down_ON", "Down_OFF", ...), in the order of kFaceSpecs.
QStringList FaceKeys();

// The face of a key such as "Pack_OFF"; a null pixmap for an unknown key.
QPixmap Face(const QString& key);

// The picture ":/art/<name>.png", e.g. "main_background"; a null pixmap for an unknown name.
QPixmap Art(const QString& name);

// The window icon in 16, 32 and 64 pixels.
QIcon WindowIcon();

// The screen colour picker's pointer (hot spot kPickerHotSpot) and the link label's pointer.
QCursor PickerCursor();
QCursor LinkCursor();

}  // namespace skin
