#pragma once
// Checks that a skin information file holds every section and key the client reads.
// A small scan of its own, so that bsztool needs nothing beyond the packaging library.

#include <optional>
#include <string>
#include <string_view>

namespace skin::bsztool {

inline constexpr int kSkinInformationSections = 19;
inline constexpr int kSkinInformationKeys = 78;

// The first section or key that is missing, as a message; nullopt when all are there.
// Section and key names match without regard to ASCII letter case.
std::optional<std::string> FindMissingSkinInformation(std::string_view iniText);

}  // namespace skin::bsztool
