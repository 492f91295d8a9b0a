#include "bwzip.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <system_error>
#include <variant>

#include "bytebuffer.h"
#include "huffmancoding.h"
#include "huffmaninternal.h"
#include "mappedfile.h"
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

bool writeAll(std::FILE* out, std::string_view bytes) {
    return bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
}

// Maps a whole file to be packed; false with the reason when it is missing, not a file,
// unreadable or too large.
bool mapInputFile(const std::string& path, MappedFile& file, std::string& reason) {
    MappedFile::Problem problem = MappedFile::Problem::None;
    if (file.Open(path, static_cast<std::uint64_t>(kMaxPackedFileSize), problem)) return true;
    switch (problem) {
    case MappedFile::Problem::Missing:
        reason = "cannot read " + path + ": no such file";
        break;
    case MappedFile::Problem::NotAFile:
        reason = "cannot read " + path + ": not a file";
        break;
    case MappedFile::Problem::TooLarge:
        reason = path + " is too large for a package (at most " + std::to_string(kMaxPackedFileSize) + " bytes)";
        break;
    default:
        reason = "cannot read " + path;
        break;
    }
    return false;
}

// Writes a whole file, replacing any file of that name, in as few calls as the system allows.
bool writeWholeFile(const std::string& path, std::string_view bytes) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) return false;
    bool written = true;
    while (written && !bytes.empty()) {
        const ssize_t count = ::write(fd, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        written = count > 0;
        if (written) bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return ::close(fd) == 0 && written;
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
}

std::int32_t BwZip::FileFolderCount() const {
    return static_cast<std::int32_t>(list_.size());
}

bool BwZip::IsInList(const std::string& entry) const {
    return std::find(list_.begin(), list_.end(), entry) != list_.end();
}

std::optional<std::string> BwZip::RestoreFileName(const std::string& stored) {
    return RestoreStoredFileName(stored);
}

void BwZip::AddFileFolder(std::string sFileFolder) {
    if (sFileFolder.empty()) return;
    std::error_code ec;
    if (!fs::is_directory(sFileFolder, ec)) {
        std::string entry = std::string(kFileTag) + sFileFolder + std::string(kFileCloseTag);
        if (!IsInList(entry)) list_.push_back(std::move(entry));
        return;
    }
    std::string entry = std::string(kFolderTag) + sFileFolder + std::string(kFolderCloseTag);
    if (IsInList(entry)) return;
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
    list_.push_back(std::string(kEndFolderTag) + sFileFolder + std::string(kEndFolderCloseTag));
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
    // Remember the destination so that a failure can put it back as it was.
    std::error_code ec;
    const bool existed = fs::exists(strDestFile, ec);
    const std::uintmax_t oldSize = existed && fs::is_regular_file(strDestFile, ec) ? fs::file_size(strDestFile, ec) : 0;

    std::FILE* out = std::fopen(strDestFile.c_str(), "ab");
    if (out == nullptr) {
        Fail(PackageFailure::FileAccess, "cannot write " + strDestFile);
        return "";
    }
    bool ok = WritePackageBody(out, strDestFolder);
    if (std::fclose(out) != 0 && ok) ok = Fail(PackageFailure::FileAccess, "cannot write " + strDestFile);
    if (ok) return strDestFile;

    if (existed) {
        fs::resize_file(strDestFile, oldSize, ec);
    } else {
        fs::remove(strDestFile, ec);
    }
    return "";
}

// Writes the package in one pass: each file is read, coded and appended before the next one
// is read, so memory holds one file at a time; clashes are found against the stored names.
bool BwZip::WritePackageBody(std::FILE* out, const std::string& strDestFolder) {
    const std::string header = std::string(kSkinPackageHeader) + PackageHeaderDate(clock_()) +
                               std::string(kSkinPackageHeaderClose) + std::string(kLineEnd);
    const std::string root = std::string(kRootFolderTag) + ToWindows1252(strDestFolder) +
                             std::string(kRootFolderCloseTag) + std::string(kLineEnd);
    if (!writeAll(out, header) || !writeAll(out, root)) return Fail(PackageFailure::FileAccess, "cannot write the package");

    std::set<std::string> storedNames;
    ByteBuffer buffer;  // one coding buffer for every file of the package
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
        } else if (!AppendFileRecord(out, i, storedNames, buffer)) {
            return false;
        }
        if (!writeAll(out, line)) return Fail(PackageFailure::FileAccess, "cannot write the package");
    }
    if (!writeAll(out, kEndMark)) return Fail(PackageFailure::FileAccess, "cannot write the package");
    return true;
}

bool BwZip::AppendFileRecord(std::FILE* out, std::size_t index, std::set<std::string>& storedNames,
                             ByteBuffer& buffer) {
    const std::string path = entryPath(list_[index], kFileTag, kFileCloseTag);
    std::string reason;
    MappedFile input;
    if (!mapInputFile(path, input, reason)) {
        const bool tooLarge = reason.find("too large") != std::string::npos;
        return Fail(tooLarge ? PackageFailure::BadInput : PackageFailure::FileAccess, reason);
    }
    const he2::CodedPieces coded = he2::EncodeInto(input.Bytes(), false, buffer);
    if (coded.size() > static_cast<std::size_t>(kMaxPackedFileSize)) {
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
        list_[index] = std::string(kFileTag) + folder + newName + std::string(kFileCloseTag);
    }

    const std::string head = std::string(kFileTag) + stored + std::string(kFileCloseTag) + std::string(kLineEnd) +
                             std::string(kFileLengthTag) + std::to_string(coded.size()) +
                             std::string(kFileLengthCloseTag) + std::string(kLineEnd);
    const std::string tail = std::string(kLineEnd) + std::string(kEndFileTag) + stored +
                             std::string(kEndFileCloseTag) + std::string(kLineEnd);
    if (!writeAll(out, head) || !writeAll(out, coded.head) || !writeAll(out, coded.body) || !writeAll(out, tail)) {
        return Fail(PackageFailure::FileAccess, "cannot write the package");
    }
    return true;
}

bool BwZip::UnZip(std::string sFile, std::string sBaseLocation, bool blnDeleteBTF, bool bSkinFile,
                  std::string* sBSIFile) {
    ClearError();
    unpackedFolder_.clear();
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
    // Digits accumulate: Skin, Skin0, Skin01, ...
    for (int n = 0; fs::is_directory(base + rootName, ec); ++n) rootName += std::to_string(n);
    if (!fs::create_directory(base + rootName, ec)) {
        return Fail(PackageFailure::FileAccess, "cannot make the folder " + base + rootName);
    }
    unpackedFolder_ = base + rootName + kSeparator;

    auto currentFolder = [&] {
        std::string folder = unpackedFolder_;
        for (const auto& name : reader.Folders()) folder += FromWindows1252(name) + kSeparator;
        return folder;
    };
    PackageRecord record;
    ByteBuffer buffer;  // one decoding buffer for every file of the package
    while (reader.Next(record)) {
        switch (record.kind) {
        case PackageRecord::Kind::Folder: {
            const std::string folder = currentFolder();
            if (!fs::create_directory(folder, ec)) {
                return ec ? Fail(PackageFailure::FileAccess, "cannot make the folder " + folder)
                          : Fail(PackageFailure::BadInput, "the package makes the folder " + folder + " twice");
            }
            break;
        }
        case PackageRecord::Kind::File:
            if (sBSIFile != nullptr && record.name.find(kSkinInformationMark) != std::string::npos) {
                const auto restored = RestoreFileName(record.name);
                *sBSIFile = currentFolder() + FromWindows1252(restored ? *restored : record.name);
            }
            break;
        case PackageRecord::Kind::FileData: {
            if (!record.hasData) break;
            ProcessPendingEvents();
            std::string_view decoded;
            if (const auto error = he2::DecodeInto(record.coded, buffer, decoded)) {
                std::string reason = FromWindows1252(record.name);
                reason.insert(0, 1, '"');
                reason.append("\": ").append(error->description);
                return Fail(PackageFailure::BadInput, std::move(reason), error->number);
            }
            const std::string target = currentFolder() + FromWindows1252(record.restoredName);
            if (!writeWholeFile(target, decoded)) {
                return Fail(PackageFailure::FileAccess, "cannot write " + target);
            }
            break;
        }
        case PackageRecord::Kind::EndFolder:
        case PackageRecord::Kind::Other:
            break;
        }
    }
    if (reader.Failed()) return Fail(reader.Failure(), reader.Error());
    reader.Close();
    if (blnDeleteBTF) fs::remove(transferPath, ec);
    return true;
}

}  // namespace skin
