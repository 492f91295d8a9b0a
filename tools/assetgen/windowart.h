#pragma once
// The whole static art of the main window and the help window's panel.

#include <QImage>

namespace skin {

// 792 x 409: title band, framed wells for the two skin pictures, field captions, tool panel,
// the quick colour chips and a plain status strip.
QImage DrawMainBackground(int scale);

// 352 x 253: the darker panel behind the help window's steps.
QImage DrawHelpBackground(int scale);

}  // namespace skin
