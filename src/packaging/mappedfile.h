#pragma once
// A whole regular file mapped read-only into memory, so it can be coded or parsed in place
// without being copied into a buffer first. Internal to packaging.
//
// A mapped file that another process shortens while it is mapped makes reads past the new end
// fault (SIGBUS). The container maps only the user's own files on local disk (the files being
// packed and the package being unpacked, already downloaded); it never maps a file that is
// still being received or written.

#include <cstdint>
#include <string>
#include <string_view>

namespace skin {

class MappedFile {
public:
    MappedFile() = default;
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    ~MappedFile();

    // Maps the regular file at `path`, refusing one larger than `maxSize`. False with the reason
    // ("no such file", "not a file", "too large", or that it cannot be read) otherwise.
    enum class Problem { None, Missing, NotAFile, TooLarge, Unreadable };
    bool Open(const std::string& path, std::uint64_t maxSize, Problem& problem);
    void Close();

    std::string_view Bytes() const { return {static_cast<const char*>(data_), size_}; }
    bool IsOpen() const { return open_; }

private:
    void* data_ = nullptr;
    std::size_t size_ = 0;
    bool mapped_ = false;
    bool open_ = false;
};

}  // namespace skin
