#include "packagereader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

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

// The buffer holds the longest line a reader accepts, with its CR, several times over.
constexpr std::size_t kBufferSize = 4 * (kMaxPackageLineLength + 1);

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
    // Non-blocking, so that opening a pipe by mistake does not wait for a writer.
    fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd_ < 0) {
        if (errno == ENOENT || errno == ENOTDIR) return Fail(PackageFailure::FileAccess, "cannot open " + path + ": no such file");
        return Fail(PackageFailure::FileAccess, "cannot open " + path);
    }
    struct stat status {};
    if (::fstat(fd_, &status) != 0) {
        Close();
        return Fail(PackageFailure::FileAccess, "cannot open " + path);
    }
    if (!S_ISREG(status.st_mode)) {
        Close();
        return Fail(PackageFailure::FileAccess, "cannot open " + path + ": not a file");
    }
    ::posix_fadvise(fd_, 0, 0, POSIX_FADV_SEQUENTIAL);
    size_ = static_cast<std::uint64_t>(status.st_size);
    buffer_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kBufferSize, size_)));
    return true;
}

void PackageReader::Close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    buffer_ = {};
    bufferStart_ = 0;
    bufferLength_ = 0;
    size_ = 0;
    position_ = 0;
    coded_.Start(0, 0);
}

bool PackageReader::Load(std::uint64_t offset) {
    bufferStart_ = offset;
    bufferLength_ = 0;
    const std::size_t want = static_cast<std::size_t>(std::min<std::uint64_t>(buffer_.size(), size_ - offset));
    while (bufferLength_ < want) {
        const ssize_t got = ::pread(fd_, buffer_.data() + bufferLength_, want - bufferLength_,
                                    static_cast<off_t>(offset + bufferLength_));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return Fail(PackageFailure::FileAccess, "cannot read the package");
        bufferLength_ += static_cast<std::size_t>(got);
    }
    return true;
}

// A line ends at CR; a LF right after it belongs to the line end. A lone LF is text. A line
// may also end at the end of the file.
bool PackageReader::ReadLine(std::string& line) {
    line.clear();
    // A line of the longest length may still be followed by its CR and LF.
    const std::uint64_t want = std::min<std::uint64_t>(kMaxPackageLineLength + 2, size_ - position_);
    if (position_ < bufferStart_ || position_ + want > bufferStart_ + bufferLength_) {
        if (!Load(position_)) return false;
    }
    const std::string_view rest(buffer_.data() + (position_ - bufferStart_), static_cast<std::size_t>(want));
    const std::size_t cr = rest.substr(0, kMaxPackageLineLength + 1).find('\r');
    if (cr == std::string_view::npos) {
        if (size_ - position_ > kMaxPackageLineLength) {
            return Fail(PackageFailure::BadInput,
                        "a line is longer than " + std::to_string(kMaxPackageLineLength) + " bytes");
        }
        line.assign(rest);
        position_ = size_;
        return true;
    }
    line.assign(rest.substr(0, cr));
    position_ += cr + 1;
    if (cr + 1 < rest.size() && rest[cr + 1] == '\n') ++position_;
    return true;
}

bool PackageReader::PassCodedBytes(std::int32_t count) {
    // A length cannot claim more than the file holds.
    if (count < 0 || static_cast<std::uint64_t>(count) > size_ - position_) {
        return Fail(PackageFailure::BadInput, "the package ends inside the coded bytes of " + shown(storedName_) +
                                                  " (" + std::to_string(count) + " bytes announced, " +
                                                  std::to_string(size_ - position_) + " left)");
    }
    coded_.Start(position_, static_cast<std::uint64_t>(count));
    position_ += static_cast<std::uint64_t>(count);
    return true;
}

std::ptrdiff_t PackageReader::Coded::Read(char* into, std::size_t size) {
    size = static_cast<std::size_t>(std::min<std::uint64_t>(size, left_));
    if (size == 0) return 0;
    PackageReader& r = reader_;
    if (offset_ >= r.bufferStart_ && offset_ + size <= r.bufferStart_ + r.bufferLength_) {
        std::memcpy(into, r.buffer_.data() + (offset_ - r.bufferStart_), size);
    } else {
        for (;;) {
            const ssize_t got = ::pread(r.fd_, into, size, static_cast<off_t>(offset_));
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) return -1;
            size = static_cast<std::size_t>(got);
            break;
        }
    }
    offset_ += size;
    left_ -= size;
    return static_cast<std::ptrdiff_t>(size);
}

bool PackageReader::Coded::Skip(std::uint64_t size) {
    if (size > left_) return false;
    offset_ += size;
    left_ -= size;
    return true;
}

bool PackageReader::AtEnd() const {
    return position_ >= size_;
}

bool PackageReader::ReadHeader(PackageForm& form) {
    form = PackageForm::None;
    if (fd_ < 0) return Fail(PackageFailure::FileAccess, "no package is open");
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
    if (Failed() || fd_ < 0 || AtEnd()) return false;
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
        if (!PassCodedBytes(record.length)) return false;
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
        if (line == kEndMark) endMarkSeen_ = true;
        record.line = std::move(line);
    }
    return true;
}

}  // namespace skin
