#include "packagereader.h"

#include <cstdint>

#include "windows1252.h"

namespace skin {
namespace {

// Names in messages are shown as text, not as the package's raw bytes.
std::string shown(const std::string& name) {
    std::string text(1, '"');
    text.append(FromWindows1252(name));
    text.push_back('"');
    return text;
}

}  // namespace

PackageReader::~PackageReader() {
    Close();
}

bool PackageReader::Fail(PackageFailure failure, std::string reason) {
    if (failure_ == PackageFailure::None) {
        failure_ = failure;
        error_ = std::move(reason);
    }
    return false;
}

bool PackageReader::Open(const std::string& path) {
    Close();
    MappedFile::Problem problem = MappedFile::Problem::None;
    if (!file_.Open(path, UINT64_MAX, problem)) {
        switch (problem) {
        case MappedFile::Problem::Missing:
            return Fail(PackageFailure::FileAccess, "cannot open " + path + ": no such file");
        case MappedFile::Problem::NotAFile:
            return Fail(PackageFailure::FileAccess, "cannot open " + path + ": not a file");
        default:
            return Fail(PackageFailure::FileAccess, "cannot open " + path);
        }
    }
    bytes_ = file_.Bytes();
    size_ = bytes_.size();
    position_ = 0;
    return true;
}

void PackageReader::Close() {
    file_.Close();
    bytes_ = {};
    size_ = 0;
    position_ = 0;
}

// A line ends at CR; a LF right after it belongs to the line end. A lone LF is text. A line
// may also end at the end of the file.
bool PackageReader::ReadLine(std::string& line) {
    line.clear();
    const std::string_view rest = bytes_.substr(position_);
    // A line of the longest length may still be followed by its CR.
    const std::size_t cr = rest.substr(0, kMaxPackageLineLength + 1).find('\r');
    if (cr == std::string_view::npos) {
        if (rest.size() > kMaxPackageLineLength) {
            return Fail(PackageFailure::BadInput,
                        "a line is longer than " + std::to_string(kMaxPackageLineLength) + " bytes");
        }
        line.assign(rest);
        position_ = size_;
        return true;
    }
    line.assign(rest.substr(0, cr));
    position_ += cr + 1;
    if (position_ < size_ && bytes_[position_] == '\n') ++position_;
    return true;
}

bool PackageReader::ReadBytes(std::int32_t count, std::string_view& out) {
    // A length cannot claim more than the file holds.
    if (count < 0 || static_cast<std::uint64_t>(count) > size_ - position_) {
        return Fail(PackageFailure::BadInput, "the package ends inside the coded bytes of " + shown(storedName_) +
                                                  " (" + std::to_string(count) + " bytes announced, " +
                                                  std::to_string(size_ - position_) + " left)");
    }
    out = bytes_.substr(position_, static_cast<std::size_t>(count));
    position_ += static_cast<std::uint64_t>(count);
    return true;
}

bool PackageReader::ReadHeader(PackageForm& form) {
    form = PackageForm::None;
    if (!file_.IsOpen()) return Fail(PackageFailure::FileAccess, "no package is open");
    if (!ReadLine(header_)) return false;
    if (ContainsNoCase(header_, kSkinPackageHeader)) {
        form = PackageForm::SkinPackage;
    } else if (ContainsNoCase(header_, kFileTransferHeader)) {
        form = PackageForm::FileTransfer;
    }
    return true;
}

bool PackageReader::ReadRootLine(std::string& rootName) {
    std::string line = header_;
    for (;;) {
        rootTagFound_ = ContainsNoCase(line, kRootFolderTag);
        if (rootTagFound_ || AtEnd()) break;
        if (!ReadLine(line)) return false;
    }
    rootName = RemoveTagsNoCase(line, kRootFolderTag, kRootFolderCloseTag);
    return true;
}

bool PackageReader::Next(PackageRecord& record) {
    if (Failed() || !file_.IsOpen() || AtEnd()) return false;
    record = PackageRecord{};
    std::string line;
    if (!ReadLine(line)) return false;

    // The first tag that the line holds decides, in this order.
    if (ContainsNoCase(line, kFolderTag)) {
        record.kind = PackageRecord::Kind::Folder;
        record.name = RemoveTagsNoCase(line, kFolderTag, kFolderCloseTag);
        if (!IsSafePackageName(record.name)) {
            return Fail(PackageFailure::BadInput, "unsafe folder name " + shown(record.name));
        }
        folders_.push_back(record.name);
    } else if (ContainsNoCase(line, kFileTag)) {
        record.kind = PackageRecord::Kind::File;
        record.name = RemoveTagsNoCase(line, kFileTag, kFileCloseTag);
        if (!IsSafePackageName(record.name)) {
            return Fail(PackageFailure::BadInput, "unsafe file name " + shown(record.name));
        }
        storedName_ = record.name;
        haveFileName_ = true;
    } else if (ContainsNoCase(line, kEndFileTag)) {
        record.kind = PackageRecord::Kind::Other;
        record.line = std::move(line);
    } else if (ContainsNoCase(line, kFileLengthTag)) {
        record.kind = PackageRecord::Kind::FileData;
        const auto length = ParseFileLength(RemoveTagsNoCase(line, kFileLengthTag, kFileLengthCloseTag));
        if (!length) return Fail(PackageFailure::BadInput, "a file length is not a number: " + shown(line));
        if (!haveFileName_) return Fail(PackageFailure::BadInput, "a file length comes before any file name");
        record.length = *length;
        record.name = storedName_;
        if (AtEnd()) return true;  // a package may end after any whole line
        const auto restored = RestoreStoredFileName(storedName_);
        if (!restored || !IsSafePackageName(*restored)) {
            return Fail(PackageFailure::BadInput, "the stored name " + shown(storedName_) + " cannot be restored");
        }
        record.restoredName = *restored;
        record.hasData = true;
        if (!ReadBytes(record.length, record.coded)) return false;
    } else if (ContainsNoCase(line, kEndFolderTag)) {
        record.kind = PackageRecord::Kind::EndFolder;
        record.name = RemoveTagsNoCase(line, kEndFolderTag, kEndFolderCloseTag);
        // Closing only the folder that is open keeps the reader inside the root folder.
        if (folders_.empty() || folders_.back() != record.name) {
            return Fail(PackageFailure::BadInput, "end of folder " + shown(record.name) + " does not match an open folder");
        }
        folders_.pop_back();
    } else {
        record.kind = PackageRecord::Kind::Other;
        record.line = std::move(line);
    }
    return true;
}

}  // namespace skin
