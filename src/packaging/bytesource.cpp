#include "bytesource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

namespace skin {

bool ByteSource::Skip(std::uint64_t size) {
    char scrap[4096];
    while (size > 0) {
        const std::ptrdiff_t got = Read(scrap, static_cast<std::size_t>(std::min<std::uint64_t>(size, sizeof scrap)));
        if (got <= 0) return false;
        size -= static_cast<std::uint64_t>(got);
    }
    return true;
}

std::ptrdiff_t MemorySource::Read(char* into, std::size_t size) {
    const std::size_t count = std::min(size, bytes_.size() - position_);
    if (count > 0) std::memcpy(into, bytes_.data() + position_, count);
    position_ += count;
    return static_cast<std::ptrdiff_t>(count);
}

bool MemorySource::Skip(std::uint64_t size) {
    if (size > bytes_.size() - position_) {
        position_ = bytes_.size();
        return false;
    }
    position_ += static_cast<std::size_t>(size);
    return true;
}

bool MemorySource::Rewind() {
    position_ = 0;
    return true;
}

FileSource::~FileSource() {
    if (fd_ >= 0) ::close(fd_);
}

bool FileSource::Open(const std::string& path, Problem& problem) {
    problem = Problem::None;
    // Non-blocking, so that opening a pipe by mistake does not wait for a writer.
    fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd_ < 0) {
        problem = errno == ENOENT || errno == ENOTDIR ? Problem::Missing : Problem::Unreadable;
        return false;
    }
    struct stat status {};
    if (::fstat(fd_, &status) != 0) {
        problem = Problem::Unreadable;
    } else if (!S_ISREG(status.st_mode)) {
        problem = Problem::NotAFile;
    } else {
        size_ = static_cast<std::uint64_t>(status.st_size);
        ::posix_fadvise(fd_, 0, 0, POSIX_FADV_SEQUENTIAL);
        return true;
    }
    ::close(fd_);
    fd_ = -1;
    return false;
}

std::ptrdiff_t FileSource::Read(char* into, std::size_t size) {
    if (fd_ < 0) return -1;
    for (;;) {
        const ssize_t got = ::pread(fd_, into, size, static_cast<off_t>(position_));
        if (got < 0 && errno == EINTR) continue;
        if (got > 0) position_ += static_cast<std::uint64_t>(got);
        return got;
    }
}

bool FileSource::Skip(std::uint64_t size) {
    if (size > size_ - std::min(size_, position_)) return false;
    position_ += size;
    return true;
}

bool FileSource::Rewind() {
    position_ = 0;
    return fd_ >= 0;
}

}  // namespace skin
