#include "mappedfile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace skin {

MappedFile::~MappedFile() {
    Close();
}

void MappedFile::Close() {
    if (mapped_) ::munmap(data_, size_);
    data_ = nullptr;
    size_ = 0;
    mapped_ = false;
    open_ = false;
}

bool MappedFile::Open(const std::string& path, std::uint64_t maxSize, Problem& problem) {
    Close();
    problem = Problem::None;
    // Non-blocking, so that opening a pipe by mistake does not wait for a writer.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        problem = errno == ENOENT || errno == ENOTDIR ? Problem::Missing : Problem::Unreadable;
        return false;
    }
    struct stat status {};
    if (::fstat(fd, &status) != 0) {
        problem = Problem::Unreadable;
    } else if (!S_ISREG(status.st_mode)) {
        problem = Problem::NotAFile;
    } else if (static_cast<std::uint64_t>(status.st_size) > maxSize) {
        problem = Problem::TooLarge;
    } else if (status.st_size > 0) {
        size_ = static_cast<std::size_t>(status.st_size);
        // Populated at once: one pass over the page cache instead of a fault per page.
        data_ = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE | MAP_POPULATE, fd, 0);
        if (data_ == MAP_FAILED) {
            data_ = nullptr;
            size_ = 0;
            problem = Problem::Unreadable;
        } else {
            mapped_ = true;
            ::madvise(data_, size_, MADV_SEQUENTIAL);
        }
    }
    ::close(fd);
    open_ = problem == Problem::None;
    return open_;
}

}  // namespace skin
