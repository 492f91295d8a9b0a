#include "packagereader.h"

#include <filesystem>
#include <system_error>

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
    std::error_code ec;
    const auto status = std::filesystem::status(path, ec);
    if (ec || !std::filesystem::exists(status)) return Fail(PackageFailure::FileAccess, "cannot open " + path + ": no such file");
    if (!std::filesystem::is_regular_file(status)) return Fail(PackageFailure::FileAccess, "cannot open " + path + ": not a file");
    file_ = std::fopen(path.c_str(), "rb");
    if (file_ == nullptr) return Fail(PackageFailure::FileAccess, "cannot open " + path);
    size_ = std::filesystem::file_size(path, ec);
    if (ec) return Fail(PackageFailure::FileAccess, "cannot read the size of " + path);
    position_ = 0;
    return true;
}

void PackageReader::Close() {
    if (file_ != nullptr) std::fclose(file_);
    file_ = nullptr;
}

// A line ends at CR; a LF right after it belongs to the line end. A lone LF is text.
bool PackageReader::ReadLine(std::string& line) {
    line.clear();
    for (;;) {
        const int c = std::fgetc(file_);
        if (c == EOF) {
            if (std::ferror(file_)) return Fail(PackageFailure::FileAccess, "cannot read the package");
            position_ = size_;
            return true;
        }
        ++position_;
        if (c == '\r') {
            const int next = std::fgetc(file_);
            if (next == '\n') {
                ++position_;
            } else if (next != EOF) {
                std::ungetc(next, file_);
            }
            return true;
        }
        if (line.size() >= kMaxPackageLineLength) {
            return Fail(PackageFailure::BadInput,
                        "a line is longer than " + std::to_string(kMaxPackageLineLength) + " bytes");
        }
        line.push_back(static_cast<char>(c));
    }
}

bool PackageReader::ReadBytes(std::int32_t count, std::string& out) {
    // Checked before anything is allocated: a length cannot claim more than the file holds.
    if (count < 0 || static_cast<std::uint64_t>(count) > size_ - position_) {
        return Fail(PackageFailure::BadInput, "the package ends inside the coded bytes of " + shown(storedName_) +
                                                  " (" + std::to_string(count) + " bytes announced, " +
                                                  std::to_string(size_ - position_) + " left)");
    }
    out.assign(static_cast<std::size_t>(count), '\0');
    if (count > 0 && std::fread(out.data(), 1, out.size(), file_) != out.size()) {
        return Fail(PackageFailure::BadInput, "the package ends inside the coded bytes of " + shown(storedName_));
    }
    position_ += static_cast<std::uint64_t>(count);
    return true;
}

bool PackageReader::ReadHeader(PackageForm& form) {
    form = PackageForm::None;
    if (file_ == nullptr) return Fail(PackageFailure::FileAccess, "no package is open");
    if (!ReadLine(header_)) return false;
    if (ContainsNoCase(header_, kSkinPackageHeader)) {
        form = PackageForm::SkinPackage;
    } else if (ContainsNoCase(header_, kFileTransferHeader)) {
        form = PackageForm::FileTransfer;
    }
    return true;
}

bool PackageReader::ReadRootLine(std::optional<std::string>& rootName) {
    rootName.reset();
    std::string line = header_;
    for (;;) {
        if (ContainsNoCase(line, kRootFolderTag)) {
            rootName = RemoveTagsNoCase(line, kRootFolderTag, kRootFolderCloseTag);
            return true;
        }
        if (AtEnd()) return true;
        if (!ReadLine(line)) return false;
    }
}

bool PackageReader::Next(PackageRecord& record) {
    if (Failed() || file_ == nullptr || AtEnd()) return false;
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
