#pragma once
// Reading and writing single entries of INI files with the Windows private-profile
// behaviour, on any system:
// - text in memory is UTF-8; the file holds Windows-1252 bytes ("?" for other characters);
// - section and key names match without regard to ASCII letter case (letters outside ASCII
//   must match exactly), and blanks around names and values are ignored on reading;
// - lines are written with CR LF; LF-only files, blank lines and ";" comment lines are read.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace skin {

// The profile read buffer holds 255 characters with its terminating zero.
inline constexpr std::size_t kIniValueLimit = 254;
// Only this much of a file is looked at, so a huge or endless file cannot exhaust memory or
// time; a skin information file is a few kilobytes. Writing refuses a larger file.
inline constexpr std::uintmax_t kIniMaxFileBytes = 4u << 20;
// A line is looked at up to this many bytes; the rest of a longer line is skipped.
inline constexpr std::size_t kIniMaxLineBytes = 64u << 10;

// Writes `key=value` into `section` of the file, creating the file and the section when they
// are missing: the value of an existing key is replaced in place, a new key goes after the
// last entry of its section, a new section at the end of the file after a blank line. Line
// breaks inside names or values are written as blanks, so an entry never spills onto another
// line. Returns false when the file could not be read or written (or is larger than
// kIniMaxFileBytes); the skin files ignore the result, as the Windows helper did.
bool WriteINI(std::string_view section, std::string_view key, std::string_view value, const std::string& fileName);

// The value of `key` in the first section named `section`, at most kIniValueLimit
// characters; the empty text when the file, the section or the key is missing. A value
// enclosed in matching double or single quotes comes back without them.
std::string ReadINI(std::string_view section, std::string_view key, const std::string& fileName);

}  // namespace skin
