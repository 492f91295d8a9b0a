#pragma once
// The package container: packs a list of files and folders into one skin package file and
// unpacks such a file into a new folder. Every failure becomes the method's result ("" from
// Zip, false from UnZip); the reason stays available through LastError().

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "packageformat.h"

namespace skin {

class AtomicFile;

// A local date and time, as the container's clock gives it.
struct PackageClockTime {
    int year = 2000;
    int month = 1;   // 1..12
    int day = 1;     // 1..31
    int hour = 0;    // 0..23
    int minute = 0;
    int second = 0;
};
using PackageClock = std::function<PackageClockTime()>;

// The system's local date and time; the default clock.
PackageClockTime LocalPackageClockTime();

// "18/11/2026 14:26:33": the creation date in a package header.
std::string PackageHeaderDate(const PackageClockTime& time);
// "18112026142205": the name of a time-stamped unpack folder.
std::string PackageTimeStamp(const PackageClockTime& time);

class BwZip {
public:
    BwZip();

    // Replaces the list with a new empty one.
    void ClearFileFolderList();
    // Entries in the list, folder and end-of-folder entries included.
    std::int32_t FileFolderCount() const;
    // Adds a file, or a folder with everything below it (its files in byte order of their
    // names, then its subfolders), unless the same entry is already listed. The path is kept
    // exactly as given; an empty path is ignored.
    void AddFileFolder(std::string sFileFolder);
    // Appends a package of the listed entries to `strDestFile`, with `strDestFolder` as its
    // root folder name. Returns `strDestFile`, or "" on failure or for an empty list. The new
    // content is written beside the destination and renamed over it at the end, so a failed or
    // killed packing leaves the destination absent or exactly as it was. Memory does not grow
    // with the size of the files: each is read twice, to count and to code, in pieces.
    std::string Zip(const std::string& strDestFolder, const std::string& strDestFile);
    // Unpacks the package into a new folder under `sBaseLocation` (an existing folder). The
    // package is `sFile` itself for a skin package, `sBaseLocation` + `sFile` otherwise. With
    // `bSkinFile` and an empty (or absent) `sBSIFile` the new folder is named by the clock;
    // `sBSIFile` receives the path of the skin information file written. True when the whole
    // package was unpacked; on failure what was already unpacked stays inside the new folder.
    // Each file is decoded in pieces into a temporary file beside it and renamed into place
    // only when it decoded whole, so a file that fails leaves nothing behind and never replaces
    // an existing file of its name. The new folder's name is taken atomically: when another
    // process takes it first, the next name is tried.
    bool UnZip(std::string sFile, std::string sBaseLocation, bool blnDeleteBTF = false, bool bSkinFile = false,
               std::string* sBSIFile = nullptr);

    // The list as built (and as rewritten by renaming during Zip).
    const std::vector<std::string>& FileFolderList() const { return list_; }
    // Why the last Zip or UnZip failed; empty after a success.
    const std::string& LastError() const { return error_; }
    PackageFailure LastFailure() const { return failure_; }
    // The error number of the last failure: the coder's for a decoding error, the container's
    // format error for a missing file-transfer header, 0 otherwise.
    std::int32_t LastErrorNumber() const { return errorNumber_; }
    // The folder the last UnZip made (ending in "/"), or "" when it made none.
    const std::string& UnpackedFolder() const { return unpackedFolder_; }
    // Files the last UnZip wrote whole.
    int UnpackedFiles() const { return unpackedFiles_; }
    // Whether the last successful UnZip read a whole package, up to its end mark with every
    // folder closed; false when the package simply stopped, which unpacks what is there.
    bool UnpackedWholePackage() const { return wholePackage_; }

    // Called between files so a user interface can process its pending events.
    void SetPendingEvents(std::function<void()> pendingEvents) { pendingEvents_ = std::move(pendingEvents); }
    // The clock for the header date and for time-stamped folders.
    void SetClock(PackageClock clock) { clock_ = std::move(clock); }

private:
    bool IsInList(const std::string& entry) const;
    static std::optional<std::string> RestoreFileName(const std::string& stored);

    bool Fail(PackageFailure failure, std::string reason, std::int32_t number = 0);
    void ClearError();
    void ProcessPendingEvents() const;
    bool WritePackageBody(AtomicFile& out, const std::string& strDestFolder);
    bool AppendFileRecord(AtomicFile& out, std::size_t index, std::unordered_set<std::string>& storedNames);
    bool UnpackRecords(class PackageReader& reader, std::string* sBSIFile);

    std::vector<std::string> list_;
    std::unordered_set<std::string> listed_;  // the entries of list_, for IsInList
    std::function<void()> pendingEvents_;
    PackageClock clock_;
    std::string error_;
    PackageFailure failure_ = PackageFailure::None;
    std::int32_t errorNumber_ = 0;
    std::string unpackedFolder_;
    int unpackedFiles_ = 0;
    bool wholePackage_ = false;
};

}  // namespace skin
