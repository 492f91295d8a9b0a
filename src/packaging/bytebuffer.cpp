#include "bytebuffer.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>

namespace skin {
namespace {

// Blocks are whole, aligned huge pages, so a 36 MB picture costs a few dozen page faults
// instead of thousands; below one huge page the block is simply a page-rounded mapping.
constexpr std::size_t kHugePage = std::size_t{2} << 20;
constexpr std::size_t kSmallPage = 4096;

std::size_t roundUp(std::size_t size, std::size_t unit) {
    return (size + unit - 1) / unit * unit;
}

}  // namespace

ByteBuffer::~ByteBuffer() {
    Release();
}

void ByteBuffer::Release() {
    if (data_ != nullptr) ::munmap(data_, capacity_);
    data_ = nullptr;
    capacity_ = 0;
}

unsigned char* ByteBuffer::Reserve(std::size_t size) {
    if (size <= capacity_ && data_ != nullptr) return data_;
    Release();
    const bool huge = size >= kHugePage;
    const std::size_t capacity = roundUp(size == 0 ? 1 : size, huge ? kHugePage : kSmallPage);
    // Over-map by one huge page, then trim both ends so the block starts on a huge-page boundary.
    const std::size_t mapped = huge ? capacity + kHugePage : capacity;
    void* block = ::mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED) throw std::bad_alloc();
    auto* start = static_cast<unsigned char*>(block);
    if (huge) {
        const auto address = reinterpret_cast<std::uintptr_t>(start);
        auto* aligned = reinterpret_cast<unsigned char*>(roundUp(address, kHugePage));
        if (aligned > start) ::munmap(start, static_cast<std::size_t>(aligned - start));
        const std::size_t after = mapped - static_cast<std::size_t>(aligned - start) - capacity;
        if (after > 0) ::munmap(aligned + capacity, after);
        start = aligned;
        ::madvise(start, capacity, MADV_HUGEPAGE);  // a hint; without it the pages are small
        // Fault in what will be written in one call rather than page by page; on a kernel that
        // does not know the advice the pages simply fault as they are written.
        ::madvise(start, roundUp(size, kSmallPage), MADV_POPULATE_WRITE);
    }
    data_ = start;
    capacity_ = capacity;
    return data_;
}

}  // namespace skin
