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

// Codes `sData` as an HE2 stream, or as the stored HE0 form when HE2 would be longer than the
// input and `blnForce` is false.
std::string HuffmanEncode(std::string_view sData, bool blnForce);

// Decodes an HE2 or HE0 stream. Returns the original bytes, or the error that ended decoding.
// Length fields convert when they are an optional sign and decimal digits whose value fits a
// 32-bit signed integer. A stream that declares more than 8 output bytes per payload byte fails
// with "Expecting more bytes in data stream" before anything is allocated for the output.
// Besides the output, decoding holds the code tree: at most 8 bytes per code bit in the stream's
// lookup table.
std::variant<std::string, CodecError> HuffmanDecode(std::string_view sData);

}  // namespace skin
