// The HE2 decoder on arbitrary bytes: no crash, no read out of bounds, no hang, and the same
// result (bytes or error) as the literal decoder, whole in memory and in pieces alike. A stream
// whose lookup table needs more room than decoding may take is refused as out of memory.
#include <cstdint>
#include <cstdlib>

#include "../tests/unit/huffman/literalhuffman.h"
#include "huffmaninternal.h"

namespace {

// Reads in pieces of a size taken from the stream's length, so windows slide at odd places.
class PieceSource final : public skin::ByteSource {
public:
    PieceSource(const std::string& bytes, std::size_t piece) : bytes_(bytes), piece_(piece) {}
    std::ptrdiff_t Read(char* into, std::size_t size) override {
        const std::size_t count = std::min({size, piece_, bytes_.size() - at_});
        std::copy_n(bytes_.data() + at_, count, into);
        at_ += count;
        return static_cast<std::ptrdiff_t>(count);
    }

private:
    const std::string& bytes_;
    std::size_t piece_, at_ = 0;
};

using Result = std::variant<std::string, skin::CodecError>;

std::string Key(const Result& result) {
    const auto* e = std::get_if<skin::CodecError>(&result);
    return e ? std::to_string(e->number) + e->source + "\n" + e->description : "ok\n" + std::get<std::string>(result);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string stream(reinterpret_cast<const char*>(data), size);
    const Result whole = skin::HuffmanDecode(stream);
    const auto* error = std::get_if<skin::CodecError>(&whole);
    if (error && error->number == skin::kOutOfMemoryNumber) return 0;  // refused before the payload
    if (Key(whole) != Key(skin::literal::Decode(stream))) std::abort();

    PieceSource source(stream, 1 + size % 4099);
    std::string output;
    const auto pieces = skin::he2::DecodeStream(source, size, [&](std::string_view part) { return output.append(part), true; },
                                                {320, 1 + size % 101});
    const Result streamed = pieces.failure == skin::he2::DecodeFailure::None ? Result(output) : Result(pieces.error);
    if (pieces.failure == skin::he2::DecodeFailure::Read || pieces.failure == skin::he2::DecodeFailure::Write ||
        Key(streamed) != Key(whole)) {
        std::abort();
    }
    return 0;
}
