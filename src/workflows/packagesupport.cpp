#include "packagesupport.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace skin {

std::string SystemTempFolder() {
    const char* fromEnvironment = std::getenv("TMPDIR");
    std::string folder = "/tmp/";
    std::error_code ec;
    if (fromEnvironment != nullptr && *fromEnvironment != '\0' && std::filesystem::is_directory(fromEnvironment, ec)) {
        folder = fromEnvironment;
    }
    if (folder.back() != '/') folder += '/';
    return folder;
}

std::string GetTempFolder(Platform& platform) {
    std::string folder;
    try {
        folder = platform.TempFolder();
    } catch (...) {
        folder = SystemTempFolder();
    }
    // Every path built on it appends a name directly, so the separator must be there.
    if (folder.empty() || folder.back() != '/') folder += '/';
    return folder;
}

PackageClockTime PackageTimeFrom(const LocalDateTime& time) {
    return {time.year, time.month, time.day, time.hour, time.minute, time.second};
}

BwZip MakePackageContainer(Platform& platform) {
    BwZip zip;
    // The window repaints between files and a time-stamped folder follows the platform's clock.
    zip.SetPendingEvents([&platform] { platform.ProcessPendingEvents(); });
    zip.SetClock([&platform] { return PackageTimeFrom(platform.Now()); });
    return zip;
}

}  // namespace skin
