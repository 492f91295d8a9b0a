// decode(encode(x, force)) == x for any x, and small x encode as the literal encoder does. The
// first input byte chooses force, the rest is x.
#include <cstdint>
#include <cstdlib>

#include "../tests/unit/huffman/literalhuffman.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const bool force = (data[0] & 1) != 0;
    const std::string input(reinterpret_cast<const char*>(data + 1), size - 1);
    const std::string stream = skin::HuffmanEncode(input, force);
    if (input.size() <= 4096 && stream != skin::literal::Encode(input, force)) std::abort();  // the literal coder is slow
    const auto decoded = skin::HuffmanDecode(stream);
    if (!std::holds_alternative<std::string>(decoded) || std::get<std::string>(decoded) != input) std::abort();
    return 0;
}
