#pragma once
// The names a skin package carries: the skin name (the package's root folder, and without
// its blanks the information file's name) and the two picture file names. The Brindleway
// client on Windows writes them as file names, and the package holds them as Windows-1252
// text, so package creation refuses a name that Windows cannot use or that Windows-1252
// cannot hold. The package reader does not apply this rule: it stays as lenient as it was.

#include <optional>
#include <string>
#include <string_view>

namespace skin {

// Why `name` (UTF-8) cannot be a file name in a skin package, worded to follow the name in a
// sentence, for example: contains the character "\"; nullopt when it can.
std::optional<std::string> PackageNameFault(std::string_view name);

}  // namespace skin
