#pragma once
// The texts a skin package carries: the skin name (the package's root folder, and without
// its blanks the information file's name), the two picture file names and the author. All
// four are values of the skin information file, which holds Windows-1252 text and reads
// values back trimmed and unquoted; the names are also file names that the Brindleway client
// on Windows writes. Package creation refuses a text that would not come back unchanged, and
// a name that Windows cannot use. The package reader does not apply these rules: it stays as
// lenient as it was.

#include <optional>
#include <string>
#include <string_view>

namespace skin {

// Why `name` (UTF-8) cannot be a file name in a skin package, worded to follow the name in a
// sentence, for example: contains the character "\"; nullopt when it can.
std::optional<std::string> PackageNameFault(std::string_view name);

// Why `text` (UTF-8) would not read back unchanged as a value of the skin information file,
// worded the same way; nullopt when it would. Every name that PackageNameFault accepts but
// this refuses begins with a blank, is set in quotes or is too long.
std::optional<std::string> SkinTextFault(std::string_view text);

}  // namespace skin
