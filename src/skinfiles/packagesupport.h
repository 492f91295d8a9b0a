#pragma once
// What package creation and skin loading share: the system temporary folder and a package
// container that takes its clock from the platform and lets it process pending events.

#include <string>

#include "bwzip.h"
#include "platform.h"

namespace skin {

// The system temporary folder with its trailing separator, as the platform gives it.
std::string GetTempFolder(Platform& platform);

// The platform's local time in the container's form.
PackageClockTime PackageTimeFrom(const LocalDateTime& time);

// A new container for one run; `platform` must outlive it.
BwZip MakePackageContainer(Platform& platform);

}  // namespace skin
