// decode(encode(x, force)) == x for any x; the first input byte chooses force, the rest is x.
// Small inputs are also checked against the literal encoder byte for byte.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <variant>

#include "../tests/unit/huffman/literalhuffman.h"
#include "huffmancoding.h"

namespace {
constexpr std::size_t kLiteralCheckLimit = 4096;  // the literal encoder is slow
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const bool force = (data[0] & 1) != 0;
    const std::string input(reinterpret_cast<const char*>(data + 1), size - 1);
    const std::string stream = skin::HuffmanEncode(input, force);
    if (input.size() <= kLiteralCheckLimit && stream != skin::literal::Encode(input, force)) std::abort();
    const auto decoded = skin::HuffmanDecode(stream);
    const auto* bytes = std::get_if<std::string>(&decoded);
    if (bytes == nullptr || *bytes != input) std::abort();
    return 0;
}
