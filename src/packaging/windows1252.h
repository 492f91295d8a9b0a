#pragma once
// Text in memory is UTF-8; text in INI files and package tag lines is Windows-1252 bytes.
// Both conversions are total: they never fail and never throw.

#include <string>
#include <string_view>

namespace skin {

// The byte written for a character that Windows-1252 cannot hold, and for a byte of the input
// that is not part of a valid UTF-8 sequence.
inline constexpr char kUnmappableCharacter = '?';

// UTF-8 text to Windows-1252 bytes. Characters outside Windows-1252 become "?", one per
// character; each byte of an invalid UTF-8 sequence becomes one "?". The five bytes that
// Windows-1252 leaves undefined (81 8D 8F 90 9D) are reached from U+0081, U+008D, U+008F,
// U+0090 and U+009D, so that every byte string survives FromWindows1252 and back.
std::string ToWindows1252(std::string_view utf8);

// Windows-1252 bytes to UTF-8 text. Every byte has a character: the five undefined bytes
// decode to the C1 control characters of the same number.
std::string FromWindows1252(std::string_view bytes);

}  // namespace skin
