#pragma once
// Layout constants of the HE2/HE0 streams and the word-access helpers that the encoder and the
// decoder share. Internal to the coder.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace skin::he2 {

inline constexpr char kCr = '\r';
// The two stamps that open a stream, each followed by CR.
inline constexpr std::string_view kHe2Stamp = "HE2";
inline constexpr std::string_view kHe0Stamp = "HE0";
inline constexpr std::string_view kHe2Signature = "HE2\r";
inline constexpr std::string_view kHe0Signature = "HE0\r";
static_assert(kHe2Signature.substr(0, 3) == kHe2Stamp && kHe0Signature.substr(0, 3) == kHe0Stamp);
inline constexpr int kSymbols = 256;
inline constexpr int kMaxCodeBits = 255;   // a bit count is one byte
inline constexpr int kBitsPerByte = 8;

static_assert(std::endian::native == std::endian::little,
              "the word-at-a-time bit I/O assumes a little-endian machine");

inline std::uint64_t LoadWord(const unsigned char* p) {
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

inline void StoreWord(unsigned char* p, std::uint64_t word) { std::memcpy(p, &word, sizeof word); }

}  // namespace skin::he2
