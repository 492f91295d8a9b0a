#pragma once
// HE2: the program's own static Huffman coder, and HE0, its stored form.
// Streams are byte strings held whole in memory.

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace skin {

// An error raised by a component: a number, a source text and a description.
struct CodecError {
    std::int32_t number = 0;
    std::string source;
    std::string description;
};

// Every decoding failure carries this number (the platform's base for object-defined errors,
// plus the coder's offset 0) and this source, with one of the descriptions below.
inline constexpr std::int32_t kHuffmanErrorNumber = -2147221504;  // 0x80040000
inline constexpr std::string_view kHuffmanErrorSource = "HuffmanDecode()";

inline constexpr std::string_view kHuffmanNotHe2 = "The data either was not compressed with HE2 or is corrupt";
inline constexpr std::string_view kHuffmanHeaderCorrupt = "The header is corrupt";
inline constexpr std::string_view kHuffmanExpectingMoreBytes = "Expecting more bytes in data stream";
inline constexpr std::string_view kHuffmanLookupTableCorrupt = "The header (lookup table) is corrupt";
inline constexpr std::string_view kHuffmanExtraBytes = "Found extra bytes at end of data stream";
inline constexpr std::string_view kHuffmanChecksumMismatch = "Data corrupt because check sums do not match";

// The general invalid-argument error, which has no description of the coder's own. It is raised
// for a negative table length and for a lookup table that ends where a bit count, a code byte or
// the checksum byte that follows it is needed. It carries the platform's number for an invalid
// procedure call (5), the coder's source and the platform's text for that number.
inline constexpr std::int32_t kInvalidArgumentNumber = 5;
inline constexpr std::string_view kInvalidArgumentDescription = "Invalid procedure call or argument";

// A stream whose lookup table would need more memory than decoding may take (a few dozen
// megabytes beyond the stream's own size) fails with the platform's out-of-memory error, as
// does any decoding for which the memory cannot be had.
inline constexpr std::int32_t kOutOfMemoryNumber = 7;
inline constexpr std::string_view kOutOfMemoryDescription = "Out of memory";

// Codes `sData` as an HE2 stream, or as the stored HE0 form when HE2 would be longer than the
// input and `blnForce` is false.
std::string HuffmanEncode(std::string_view sData, bool blnForce);

// Decodes an HE2 or HE0 stream. Returns the original bytes, or the error that ended decoding.
// Length fields convert when they are an optional sign and decimal digits whose value fits a
// 32-bit signed integer. Room is made for at most one output byte per payload bit, however
// much output the stream claims. Besides the output, decoding holds the lookup table and the
// code tree built from it.
std::variant<std::string, CodecError> HuffmanDecode(std::string_view sData);

}  // namespace skin
