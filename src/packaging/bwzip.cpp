#include "bwzip.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <system_error>
#include <variant>

#include "atomicfile.h"
#include "bytesource.h"
#include "huffmancoding.h"
#include "huffmaninternal.h"
#include "packagereader.h"
#include "windows1252.h"

namespace skin {
namespace fs = std::filesystem;

namespace {

constexpr char kSeparator = '/';

std::string twoDigits(int value) {
    std::string text = std::to_string(value);
    return text.size() < 2 ? "0" + text : text;
}

std::string fourDigits(int value) {
    std::string text = std::to_string(value);
    while (text.size() < 4) text.insert(text.begin(), '0');
    return text;
}

bool startsWith(const std::string& text, std::string_view prefix) {
    return text.size() >= prefix.size() && text.compare(0, prefix.size(), prefix) == 0;
}

// The path between an entry's tags; entries always start with their own tag.
std::string entryPath(const std::string& entry, std::string_view open, std::string_view close) {
    std::string path = entry.substr(open.size());
    if (path.size() >= close.size() && path.compare(path.size() - close.size(), close.size(), close) == 0) {
        path.resize(path.size() - close.size());
    }
    return path;
}

std::string lastComponent(const std::string& path) {
    const std::size_t slash = path.rfind(kSeparator);
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Opens a file to be packed; false with the reason, and whether the file is at fault or could
// not be read, when it is missing, not a file, unreadable or too large.
bool openInputFile(const std::string& path, FileSource& file, std::string& reason, PackageFailure& failure) {
    FileSource::Problem problem = FileSource::Problem::None;
    failure = PackageFailure::FileAccess;
    if (file.Open(path, problem)) {
        if (file.Size() <= static_cast<std::uint64_t>(kMaxPackedFileSize)) return true;
        failure = PackageFailure::BadInput;
        reason = path + " is too large for a package (at most " + std::to_string(kMaxPackedFileSize) + " bytes)";
        return false;
    }
    switch (problem) {
    case FileSource::Problem::Missing:
        reason = "cannot read " + path + ": no such file";
        break;
    case FileSource::Problem::NotAFile:
        reason = "cannot read " + path + ": not a file";
        break;
    default:
        reason = "cannot read " + path;
        break;
    }
    return false;
}

// Why a name could not be made: a name the file system cannot hold is the package's fault.
PackageFailure failureOfName(int error) {
    return error == ENAMETOOLONG || error == EILSEQ || error == EINVAL ? PackageFailure::BadInput
                                                                       : PackageFailure::FileAccess;
}

std::string reasonOf(int error) {
    return std::error_code(error, std::generic_category()).message();
}

}  // namespace

PackageClockTime LocalPackageClockTime() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

std::string PackageHeaderDate(const PackageClockTime& time) {
    return twoDigits(time.day) + "/" + twoDigits(time.month) + "/" + fourDigits(time.year) + " " +
           twoDigits(time.hour) + ":" + twoDigits(time.minute) + ":" + twoDigits(time.second);
}

std::string PackageTimeStamp(const PackageClockTime& time) {
    return twoDigits(time.day) + twoDigits(time.month) + fourDigits(time.year) + twoDigits(time.hour) +
           twoDigits(time.minute) + twoDigits(time.second);
}

BwZip::BwZip() : clock_(LocalPackageClockTime) {}

void BwZip::ClearFileFolderList() {
    list_ = {};
    listed_ = {};
}

std::int32_t BwZip::FileFolderCount() const {
    return static_cast<std::int32_t>(list_.size());
}

bool BwZip::IsInList(const std::string& entry) const {
    return listed_.count(entry) != 0;
}

std::optional<std::string> BwZip::RestoreFileName(const std::string& stored) {
    return RestoreStoredFileName(stored);
}

void BwZip::AddFileFolder(std::string sFileFolder) {
    if (sFileFolder.empty()) return;
    std::error_code ec;
    if (!fs::is_directory(sFileFolder, ec)) {
        std::string entry = std::string(kFileTag) + sFileFolder + std::string(kFileCloseTag);
        if (!IsInList(entry)) {
            listed_.insert(entry);
            list_.push_back(std::move(entry));
        }
        return;
    }
    std::string entry = std::string(kFolderTag) + sFileFolder + std::string(kFolderCloseTag);
    if (IsInList(entry)) return;
    listed_.insert(entry);
    list_.push_back(std::move(entry));

    // Byte order of names, files first, so a package does not depend on the file system's order.
    std::vector<std::string> files;
    std::vector<std::string> folders;
    for (fs::directory_iterator it(sFileFolder, ec), end; !ec && it != end; it.increment(ec)) {
        std::error_code typeError;
        const std::string name = it->path().filename().string();
        (it->is_directory(typeError) ? folders : files).push_back(name);
    }
    std::sort(files.begin(), files.end());
    std::sort(folders.begin(), folders.end());
    const std::string prefix =
        sFileFolder.back() == kSeparator ? sFileFolder : sFileFolder + std::string(1, kSeparator);
    for (const auto& name : files) AddFileFolder(prefix + name);
    for (const auto& name : folders) AddFileFolder(prefix + name);
    std::string end = std::string(kEndFolderTag) + sFileFolder + std::string(kEndFolderCloseTag);
    listed_.insert(end);
    list_.push_back(std::move(end));
}

bool BwZip::Fail(PackageFailure failure, std::string reason, std::int32_t number) {
    failure_ = failure;
    error_ = std::move(reason);
    errorNumber_ = number;
    return false;
}

void BwZip::ClearError() {
    failure_ = PackageFailure::None;
    error_.clear();
    errorNumber_ = 0;
}

void BwZip::ProcessPendingEvents() const {
    if (pendingEvents_) pendingEvents_();
}

std::string BwZip::Zip(const std::string& strDestFolder, const std::string& strDestFile) {
    ClearError();
    if (list_.empty()) {
        Fail(PackageFailure::BadInput, "nothing to pack: the list is empty");
        return "";
    }
    // Packing appends: the new file starts with whatever the destination holds now.
    AtomicFile out;
    if (!out.Create(strDestFile) || !out.AppendFileContent(strDestFile)) {
        Fail(PackageFailure::FileAccess, "cannot write " + strDestFile);
        return "";
    }
    if (!WritePackageBody(out, strDestFolder)) return "";
    if (!out.Publish()) {
        Fail(PackageFailure::FileAccess, "cannot write " + strDestFile);
        return "";
    }
    return strDestFile;
}

// Writes the package in one pass: each file is counted, then coded straight into the package,
// before the next one is read; clashes are found against the stored names.
bool BwZip::WritePackageBody(AtomicFile& out, const std::string& strDestFolder) {
    const std::string header = std::string(kSkinPackageHeader) + PackageHeaderDate(clock_()) +
                               std::string(kSkinPackageHeaderClose) + std::string(kLineEnd);
    const std::string root = std::string(kRootFolderTag) + ToWindows1252(strDestFolder) +
                             std::string(kRootFolderCloseTag) + std::string(kLineEnd);
    if (!out.Write(header) || !out.Write(root)) return Fail(PackageFailure::FileAccess, "cannot write the package");

    std::unordered_set<std::string> storedNames;
    for (std::size_t i = 0; i < list_.size(); ++i) {
        ProcessPendingEvents();
        const std::string& entry = list_[i];
        std::string line;
        if (startsWith(entry, kFolderTag)) {
            line = std::string(kFolderTag) + ToWindows1252(lastComponent(entryPath(entry, kFolderTag, kFolderCloseTag))) +
                   std::string(kFolderCloseTag) + std::string(kLineEnd);
        } else if (startsWith(entry, kEndFolderTag)) {
            line = std::string(kEndFolderTag) +
                   ToWindows1252(lastComponent(entryPath(entry, kEndFolderTag, kEndFolderCloseTag))) +
                   std::string(kEndFolderCloseTag) + std::string(kLineEnd);
        } else if (!AppendFileRecord(out, i, storedNames)) {
            return false;
        }
        if (!out.Write(line)) return Fail(PackageFailure::FileAccess, "cannot write the package");
    }
    if (!out.Write(kEndMark)) return Fail(PackageFailure::FileAccess, "cannot write the package");
    return true;
}

bool BwZip::AppendFileRecord(AtomicFile& out, std::size_t index, std::unordered_set<std::string>& storedNames) {
    const std::string path = entryPath(list_[index], kFileTag, kFileCloseTag);
    std::string reason;
    PackageFailure failure = PackageFailure::None;
    FileSource input;
    if (!openInputFile(path, input, reason, failure)) return Fail(failure, reason);
    he2::StreamEncoder encoder;
    if (!encoder.Plan(input, input.Size(), false)) return Fail(PackageFailure::FileAccess, "cannot read " + path);
    if (encoder.CodedSize() > static_cast<std::uint64_t>(kMaxPackedFileSize)) {
        return Fail(PackageFailure::BadInput, path + " is too large for a package once coded");
    }

    // A name already stored in this package gets the marker before its first dot, then again.
    const std::string name = lastComponent(path);
    std::string newName = name;
    std::string stored = ToWindows1252(newName);
    for (int n = 1; storedNames.count(stored) != 0; ++n) {
        const auto renamed = InsertRenameMarker(newName, n);
        if (!renamed) {
            return Fail(PackageFailure::BadInput, "two files are named \"" + name +
                                                      "\"; a name without a dot cannot be stored twice in one package");
        }
        newName = *renamed;
        stored = ToWindows1252(newName);
    }
    storedNames.insert(stored);
    if (newName != name) {
        const std::size_t slash = path.rfind(kSeparator);
        const std::string folder = slash == std::string::npos ? "" : path.substr(0, slash + 1);
        listed_.erase(list_[index]);
        list_[index] = std::string(kFileTag) + folder + newName + std::string(kFileCloseTag);
        listed_.insert(list_[index]);
    }

    const std::string head = std::string(kFileTag) + stored + std::string(kFileCloseTag) + std::string(kLineEnd) +
                             std::string(kFileLengthTag) + std::to_string(encoder.CodedSize()) +
                             std::string(kFileLengthCloseTag) + std::string(kLineEnd);
    const std::string tail = std::string(kLineEnd) + std::string(kEndFileTag) + stored +
                             std::string(kEndFileCloseTag) + std::string(kLineEnd);
    if (!out.Write(head)) return Fail(PackageFailure::FileAccess, "cannot write the package");
    switch (encoder.Write(input, [&](std::string_view piece) { return out.Write(piece); })) {
    case he2::StreamEncoder::Result::Written: break;
    case he2::StreamEncoder::Result::ReadFailed: return Fail(PackageFailure::FileAccess, "cannot read " + path);
    case he2::StreamEncoder::Result::InputChanged: return Fail(PackageFailure::FileAccess, path + " changed while it was packed");
    case he2::StreamEncoder::Result::WriteFailed: return Fail(PackageFailure::FileAccess, "cannot write the package");
    }
    if (!out.Write(tail)) return Fail(PackageFailure::FileAccess, "cannot write the package");
    return true;
}

bool BwZip::UnZip(std::string sFile, std::string sBaseLocation, bool blnDeleteBTF, bool bSkinFile,
                  std::string* sBSIFile) {
    ClearError();
    unpackedFolder_.clear();
    unpackedFiles_ = 0;
    wholePackage_ = false;
    std::error_code ec;
    if (sBaseLocation.empty() || !fs::is_directory(sBaseLocation, ec)) {
        return Fail(PackageFailure::FileAccess, "the folder \"" + sBaseLocation + "\" does not exist");
    }
    const std::string base = sBaseLocation.back() == kSeparator ? sBaseLocation : sBaseLocation + kSeparator;
    // The file-transfer form, and its deletion, go by the base location as the caller gave it.
    const std::string transferPath = sBaseLocation + sFile;

    PackageReader reader;
    PackageForm form = PackageForm::None;
    if (!reader.Open(bSkinFile ? sFile : transferPath) || !reader.ReadHeader(form)) {
        return Fail(reader.Failure(), reader.Error());
    }
    if (bSkinFile && !ContainsNoCase(reader.HeaderLine(), kSkinPackageHeader)) {
        return Fail(PackageFailure::BadInput, "not a skin package: the first line has no skin package header");
    }
    if (!bSkinFile && !ContainsNoCase(reader.HeaderLine(), kFileTransferHeader)) {
        return Fail(PackageFailure::BadInput, std::string(kInvalidFileFormat), kContainerFormatError);
    }

    std::string storedRoot;
    if (!reader.ReadRootLine(storedRoot)) return Fail(reader.Failure(), reader.Error());
    std::string rootName;
    if (bSkinFile && (sBSIFile == nullptr || sBSIFile->empty())) {
        rootName = PackageTimeStamp(clock_());
    } else {
        rootName = FromWindows1252(storedRoot);
        if (!IsSafePackageName(storedRoot) || !IsSafePackageName(rootName)) {
            return Fail(PackageFailure::BadInput, "unsafe root folder name \"" + rootName + "\"");
        }
    }
    // Digits accumulate: Skin, Skin0, Skin01, ... Making the folder is the test, so two unpacks
    // at once never take the same name.
    for (int n = 0;; ++n) {
        if (::mkdir((base + rootName).c_str(), 0777) == 0) break;
        const int error = errno;
        if (error != EEXIST) return Fail(failureOfName(error), "cannot make the folder " + base + rootName + ": " + reasonOf(error));
        rootName += std::to_string(n);
    }
    unpackedFolder_ = base + rootName + kSeparator;

    if (!UnpackRecords(reader, sBSIFile)) {
        error_ += " (" + std::to_string(unpackedFiles_) + (unpackedFiles_ == 1 ? " file" : " files") +
                  " unpacked before it)";
        return false;
    }
    wholePackage_ = reader.EndedWhole();
    reader.Close();
    if (blnDeleteBTF) fs::remove(transferPath, ec);
    return true;
}

bool BwZip::UnpackRecords(PackageReader& reader, std::string* sBSIFile) {
    // The current folder, kept as the records open and close folders.
    std::string folder = unpackedFolder_;
    std::vector<std::size_t> folderStarts;
    PackageRecord record;
    while (reader.Next(record)) {
        switch (record.kind) {
        case PackageRecord::Kind::Folder: {
            folderStarts.push_back(folder.size());
            folder += FromWindows1252(record.name);
            if (::mkdir(folder.c_str(), 0777) != 0) {
                const int error = errno;
                if (error == EEXIST) return Fail(PackageFailure::BadInput, "the package makes the folder " + folder + " twice");
                return Fail(failureOfName(error), "cannot make the folder " + folder + ": " + reasonOf(error));
            }
            folder += kSeparator;
            break;
        }
        case PackageRecord::Kind::EndFolder:
            folder.resize(folderStarts.back());
            folderStarts.pop_back();
            break;
        case PackageRecord::Kind::File:
            if (sBSIFile != nullptr && record.name.find(kSkinInformationMark) != std::string::npos) {
                const auto restored = RestoreFileName(record.name);
                *sBSIFile = folder + FromWindows1252(restored ? *restored : record.name);
            }
            break;
        case PackageRecord::Kind::FileData: {
            if (!record.hasData) break;
            ProcessPendingEvents();
            const std::string target = folder + FromWindows1252(record.restoredName);
            std::string shownName = FromWindows1252(record.name);
            shownName.insert(0, 1, '"');
            shownName.push_back('"');
            AtomicFile out;
            if (!out.Create(target)) {
                const int error = errno;
                return Fail(failureOfName(error), "cannot write " + target + ": " + reasonOf(error));
            }
            const he2::DecodeResult decoded =
                he2::DecodeStream(reader.CodedBytes(), static_cast<std::uint64_t>(record.length),
                                  [&](std::string_view piece) { return out.Write(piece); });
            switch (decoded.failure) {
            case he2::DecodeFailure::None: break;
            case he2::DecodeFailure::Codec:
                return Fail(PackageFailure::BadInput, shownName + ": " + decoded.error.description, decoded.error.number);
            case he2::DecodeFailure::Read: return Fail(PackageFailure::FileAccess, "cannot read the package");
            case he2::DecodeFailure::Write: return Fail(PackageFailure::FileAccess, "cannot write " + target);
            }
            if (!out.Publish()) {
                const int error = errno;
                return Fail(failureOfName(error), "cannot write " + target + ": " + reasonOf(error));
            }
            ++unpackedFiles_;
            break;
        }
        case PackageRecord::Kind::Other:
            break;
        }
    }
    if (reader.Failed()) return Fail(reader.Failure(), reader.Error());
    return true;
}

}  // namespace skin
