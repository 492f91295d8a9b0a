#include "atomicfile.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <utility>

namespace skin {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 20;
constexpr int kNameAttempts = 100;

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// A name beside `destination` that no other writer (thread or process) picks at the same time.
std::string tempNameFor(const std::string& destination) {
    static std::atomic<unsigned> counter{0};
    const std::size_t slash = destination.rfind('/');
    const std::string folder = slash == std::string::npos ? "" : destination.substr(0, slash + 1);
    const std::string name = slash == std::string::npos ? destination : destination.substr(slash + 1);
    // Short enough that a long destination name still leaves room for the suffix.
    return folder + "." + name.substr(0, 200) + "." + std::to_string(::getpid()) + "-" + std::to_string(counter++) + ".part";
}

// Creates a new, named file beside `destination`; its name goes to `name`.
int createNamed(const std::string& destination, std::string& name) {
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        name = tempNameFor(destination);
        const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST) return fd;
    }
    return -1;
}

}  // namespace

AtomicFile::~AtomicFile() {
    Abandon();
}

bool AtomicFile::Create(const std::string& destination) {
    Abandon();
    destination_ = destination;
    tempName_.clear();
#ifdef O_TMPFILE
    // A nameless file needs /proc to be given a name when it is published.
    if (::access("/proc/self/fd", X_OK) == 0) fd_ = ::open(folderOf(destination).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
#endif
    if (fd_ < 0) fd_ = createNamed(destination, tempName_);
    ok_ = fd_ >= 0;
    buffer_.clear();
    return ok_;
}

bool AtomicFile::WriteOut(const char* data, std::size_t size) {
    while (ok_ && size > 0) {
        const ssize_t count = ::write(fd_, data, size);
        if (count < 0 && errno == EINTR) continue;
        ok_ = count > 0;
        if (ok_) {
            data += count;
            size -= static_cast<std::size_t>(count);
        }
    }
    return ok_;
}

bool AtomicFile::Flush() {
    const bool written = WriteOut(buffer_.data(), buffer_.size());
    buffer_.clear();
    return written;
}

bool AtomicFile::Write(std::string_view bytes) {
    if (!ok_) return false;
    if (buffer_.size() + bytes.size() <= kBufferSize) {
        buffer_.append(bytes);
        return true;
    }
    if (!Flush()) return false;
    if (bytes.size() >= kBufferSize) return WriteOut(bytes.data(), bytes.size());
    buffer_.append(bytes);
    return true;
}

bool AtomicFile::AppendFileContent(const std::string& path) {
    const int in = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (in < 0) return errno == ENOENT;
    std::string piece(kBufferSize, '\0');
    bool ok = Flush();
    for (;;) {
        const ssize_t got = ::read(in, piece.data(), piece.size());
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) {
            ok = ok && got == 0;
            break;
        }
        if (!WriteOut(piece.data(), static_cast<std::size_t>(got))) break;
    }
    ::close(in);
    ok_ = ok_ && ok;
    return ok_;
}

bool AtomicFile::Publish() {
    if (fd_ < 0 || !Flush()) {
        Abandon();
        return false;
    }
    bool published = true;
    if (tempName_.empty()) {
        // A nameless file takes the destination's name at once when that is free; otherwise it
        // gets a temporary name first, since linking cannot replace a file.
        const std::string self = "/proc/self/fd/" + std::to_string(fd_);
        if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, destination_.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            ok_ = false;
            return ::close(std::exchange(fd_, -1)) == 0;
        }
        for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
            tempName_ = tempNameFor(destination_);
            published = ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, tempName_.c_str(), AT_SYMLINK_FOLLOW) == 0;
            if (published || errno != EEXIST) break;
        }
        if (!published) tempName_.clear();
    }
    published = ::close(fd_) == 0 && published;
    fd_ = -1;
    if (published) published = ::rename(tempName_.c_str(), destination_.c_str()) == 0;
    if (!published && !tempName_.empty()) ::unlink(tempName_.c_str());
    tempName_.clear();
    ok_ = false;
    return published;
}

void AtomicFile::Abandon() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    if (!tempName_.empty()) ::unlink(tempName_.c_str());
    tempName_.clear();
    ok_ = false;
    buffer_.clear();
}

}  // namespace skin
