// The HE2 decoder on arbitrary bytes: it must never crash, read out of bounds or hang, and its
// result (bytes or error) must be the one the literal, bit-by-bit decoder gives.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <variant>

#include "../tests/unit/huffman/literalhuffman.h"
#include "huffmancoding.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string stream(reinterpret_cast<const char*>(data), size);
    const auto fast = skin::HuffmanDecode(stream);
    const auto literal = skin::literal::Decode(stream);
    if (fast.index() != literal.index()) std::abort();
    if (const auto* bytes = std::get_if<std::string>(&fast)) {
        if (*bytes != std::get<std::string>(literal)) std::abort();
    } else {
        const auto& a = std::get<skin::CodecError>(fast);
        const auto& b = std::get<skin::CodecError>(literal);
        if (a.number != b.number || a.source != b.source || a.description != b.description) std::abort();
    }
    return 0;
}
