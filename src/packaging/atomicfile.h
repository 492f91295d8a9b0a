#pragma once
// A file written beside its destination and put in place by one rename when it is complete, so
// that the destination is either absent, as it was, or whole: never half-written, whether the
// writer fails or is killed. Where the system allows, the file has no name at all until it is
// published, so a killed writer leaves nothing behind. Internal to packaging.

#include <cstddef>
#include <string>
#include <string_view>

namespace skin {

class AtomicFile {
public:
    AtomicFile() = default;
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    ~AtomicFile();  // abandons an unpublished file

    // Starts the file that will become `destination`. False when its folder cannot be written.
    bool Create(const std::string& destination);
    // Appends bytes; false once anything could not be written.
    bool Write(std::string_view bytes);
    // Appends the whole current content of `path` (a missing file adds nothing).
    bool AppendFileContent(const std::string& path);
    // Writes out what is buffered and renames the file over the destination.
    bool Publish();
    // Removes the unpublished file.
    void Abandon();

private:
    bool Flush();
    bool WriteOut(const char* data, std::size_t size);

    std::string destination_;
    std::string tempName_;  // its name while unpublished; empty for a nameless file
    int fd_ = -1;
    bool ok_ = false;
    std::string buffer_;
};

}  // namespace skin
