#pragma once
// The button faces: a raised ground with a light glyph for "_OFF", a sunken ground with the
// glyph in the accent colour, shifted down a pixel, for "_ON" (pressed or active).

#include <QImage>
#include <QSize>

#include <string_view>

namespace skin {

// The face of a button word ("Down", "Pack", ...) at the given logical size and scale;
// a null image for an unknown word.
QImage DrawFace(std::string_view word, bool on, QSize size, int scale);

// The create-button picture of the help window (40 x 25 logical pixels).
QImage DrawHelpCreate(int scale);

}  // namespace skin
