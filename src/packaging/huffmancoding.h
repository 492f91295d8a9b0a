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

// Codes `sData` as an HE2 stream, or as the stored HE0 form when HE2 would be longer than the
// input and `blnForce` is false.
std::string HuffmanEncode(std::string_view sData, bool blnForce);

// Decodes an HE2 or HE0 stream. Returns the original bytes, or the error that ended decoding.
std::variant<std::string, CodecError> HuffmanDecode(std::string_view sData);

}  // namespace skin
