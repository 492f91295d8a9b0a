#pragma once
// Where the main window's elements sit, in pixels, so the background frames them exactly.
// The element places come from the window's twips layout (15 twips to a pixel).

#include <QRectF>

#include <array>
#include <string_view>

namespace skin::layout {

inline constexpr qreal kTwipsPerPixel = 15.0;

constexpr QRectF Twips(qreal left, qreal top, qreal width, qreal height)
{
    return {left / kTwipsPerPixel, top / kTwipsPerPixel, width / kTwipsPerPixel, height / kTwipsPerPixel};
}

// Elements of the window.
inline constexpr QRectF kSendPicture = Twips(285, 765, 5430, 3870);
inline constexpr QRectF kReceivePicture = Twips(6135, 765, 5430, 3285);
inline constexpr QRectF kSkinName = Twips(1440, 5235, 2370, 288);
inline constexpr QRectF kSkinAuthor = Twips(1440, 5625, 2370, 288);
inline constexpr QRectF kCreateButton = Twips(5115, 5250, 390, 450);
inline constexpr QRectF kSwatch = Twips(8010, 4695, 330, 270);
inline constexpr QRectF kCurrentSelection = Twips(6075, 5055, 5505, 195);
inline constexpr QRectF kCopyright = Twips(9540, 5895, 2025, 210);
inline constexpr QRectF kOptionsList = Twips(8415, 30, 2835, 315);
inline constexpr QRectF kOptionsLabel = Twips(7785, 75, 600, 210);

// Faces at their buttons, for the mock-up: the key a button shows at start, and its place.
struct PlacedFace {
    std::string_view key;
    qreal left;
    qreal top;
};
inline constexpr std::array<PlacedFace, 16> kPlacedFaces{{
    {"Min_OFF", 11310 / kTwipsPerPixel, 60 / kTwipsPerPixel},
    {"Close_OFF", 11580 / kTwipsPerPixel, 60 / kTwipsPerPixel},
    {"Clear_OFF", 5040 / kTwipsPerPixel, 4695 / kTwipsPerPixel},
    {"Load_OFF", 5340 / kTwipsPerPixel, 4695 / kTwipsPerPixel},
    {"Clear_OFF", 10860 / kTwipsPerPixel, 4125 / kTwipsPerPixel},
    {"Load_OFF", 11160 / kTwipsPerPixel, 4125 / kTwipsPerPixel},
    {"Pack_OFF", 5115 / kTwipsPerPixel, 5250 / kTwipsPerPixel},
    {"Text_OFF", 6075 / kTwipsPerPixel, 4665 / kTwipsPerPixel},
    {"Map_ON", 6510 / kTwipsPerPixel, 4665 / kTwipsPerPixel},
    {"Eye_OFF", 7155 / kTwipsPerPixel, 4665 / kTwipsPerPixel},
    {"Color_OFF", 7530 / kTwipsPerPixel, 4665 / kTwipsPerPixel},
    {"Left_OFF", 8625 / kTwipsPerPixel, 4665 / kTwipsPerPixel},
    {"Up_OFF", 8625 / kTwipsPerPixel, 4845 / kTwipsPerPixel},
    {"Right_OFF", 8820 / kTwipsPerPixel, 4665 / kTwipsPerPixel},
    {"Down_OFF", 8820 / kTwipsPerPixel, 4845 / kTwipsPerPixel},
    {"Lock_OFF", 9120 / kTwipsPerPixel, 4665 / kTwipsPerPixel},
}};

// The background's own furniture around those elements.
inline constexpr qreal kSendButtonsTop = 4695 / kTwipsPerPixel;
inline constexpr qreal kReceiveButtonsTop = 4125 / kTwipsPerPixel;
inline constexpr qreal kSideButtonHeight = 270 / kTwipsPerPixel;
inline constexpr QRectF kSendCard{10, 31, 380, 306};
inline constexpr QRectF kReceiveCard{400, 31, 380, 268};
inline constexpr QRectF kToolCard{400, 305, 380, 51};
inline constexpr QRectF kDetailsCard{10, 342, 380, 60};
inline constexpr qreal kToolRowTop = 4665 / kTwipsPerPixel;
inline constexpr qreal kToolRowHeight = 26;
inline constexpr qreal kStatusTop = 338;
inline constexpr std::array<qreal, 3> kToolDividers{467, 566, 633};
inline constexpr QRectF kArrowPad{573, 309, 54, 29};

}  // namespace skin::layout
