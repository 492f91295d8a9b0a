#pragma once
// A reusable block of uninitialised bytes for coding whole files: its pages are mapped once,
// in huge pages when the system allows, and are neither zero-filled by the library nor given
// back between the files of one package. Internal to packaging.

#include <cstddef>

namespace skin {

class ByteBuffer {
public:
    ByteBuffer() = default;
    ByteBuffer(const ByteBuffer&) = delete;
    ByteBuffer& operator=(const ByteBuffer&) = delete;
    ~ByteBuffer();

    // Room for at least `size` bytes; earlier contents are not kept. Throws std::bad_alloc.
    unsigned char* Reserve(std::size_t size);

private:
    void Release();

    unsigned char* data_ = nullptr;
    std::size_t capacity_ = 0;
};

}  // namespace skin
