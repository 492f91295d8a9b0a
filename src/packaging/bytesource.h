#pragma once
// Byte streams for coding in pieces: a source the coder pulls from and a sink it pushes to, so
// that a file of any size is coded with a few fixed buffers. Internal to packaging.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace skin {

class ByteSource {
public:
    virtual ~ByteSource() = default;
    // Up to `size` bytes into `into`: the count read, 0 at the end, -1 when reading failed.
    virtual std::ptrdiff_t Read(char* into, std::size_t size) = 0;
    // Passes over `size` bytes; false when fewer were left or reading failed.
    virtual bool Skip(std::uint64_t size);
    // Back to the first byte, for a second pass; false when the source cannot go back.
    virtual bool Rewind() { return false; }
    // The bytes still to be read, when they are all in memory already: a reader may use them
    // in place instead of copying them.
    virtual bool InMemory(std::string_view& rest) const { (void)rest; return false; }
};

// Bytes already in memory.
class MemorySource final : public ByteSource {
public:
    explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}
    std::ptrdiff_t Read(char* into, std::size_t size) override;
    bool Skip(std::uint64_t size) override;
    bool Rewind() override;
    bool InMemory(std::string_view& rest) const override {
        rest = bytes_.substr(position_);
        return true;
    }

private:
    std::string_view bytes_;
    std::size_t position_ = 0;
};

// A regular file, read from its start with plain reads (never mapped, so its pages do not count
// towards the program's memory).
class FileSource final : public ByteSource {
public:
    FileSource() = default;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;
    ~FileSource() override;

    enum class Problem { None, Missing, NotAFile, Unreadable };
    // Opens the regular file at `path`; false with the reason otherwise.
    bool Open(const std::string& path, Problem& problem);
    std::uint64_t Size() const { return size_; }

    std::ptrdiff_t Read(char* into, std::size_t size) override;
    bool Skip(std::uint64_t size) override;
    bool Rewind() override;

private:
    int fd_ = -1;
    std::uint64_t size_ = 0;
    std::uint64_t position_ = 0;
};

// Takes the coder's output piece by piece; false when it could not be written.
using ByteSink = std::function<bool(std::string_view)>;

}  // namespace skin
