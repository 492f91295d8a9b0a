// The HE2 decoder on arbitrary bytes: no crash, no read out of bounds, no hang, and the same
// result (bytes or error) as the literal decoder.
#include <cstdint>
#include <cstdlib>

#include "../tests/unit/huffman/literalhuffman.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string stream(reinterpret_cast<const char*>(data), size);
    auto key = [](const std::variant<std::string, skin::CodecError>& result) {
        const auto* e = std::get_if<skin::CodecError>(&result);
        return e ? std::to_string(e->number) + e->source + "\n" + e->description : "ok\n" + std::get<std::string>(result);
    };
    if (key(skin::HuffmanDecode(stream)) != key(skin::literal::Decode(stream))) std::abort();
    return 0;
}
