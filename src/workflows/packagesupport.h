#pragma once
// What package creation and skin loading share: the system temporary folder and a package
// container that takes its clock from the platform and lets it process pending events.

#include <string>

#include "bwzip.h"
#include "platform.h"

namespace skin {

// The system's temporary folder with its trailing separator: TMPDIR when it names an existing
// folder, otherwise /tmp/. It throws nothing (a TMPDIR that names no folder is no error).
std::string SystemTempFolder();

// The temporary folder with its trailing separator, as the platform gives it; should the
// platform fail, the system's (SystemTempFolder). It never throws.
std::string GetTempFolder(Platform& platform);

// The platform's local time in the container's form.
PackageClockTime PackageTimeFrom(const LocalDateTime& time);

// A new container for one run; `platform` must outlive it.
BwZip MakePackageContainer(Platform& platform);

}  // namespace skin
