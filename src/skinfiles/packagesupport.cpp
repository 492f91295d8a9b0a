#include "packagesupport.h"

namespace skin {

std::string GetTempFolder(Platform& platform) {
    std::string folder = platform.TempFolder();
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
