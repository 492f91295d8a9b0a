#pragma once
// Entry points of the HE2 coder for the package container: the same streams as HuffmanEncode
// and HuffmanDecode, coded in pieces from a source to a sink, so that memory does not grow
// with the size of a file. Internal to packaging.

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "bytesource.h"
#include "huffmancoding.h"

namespace skin::he2 {

// Encodes in two passes over a source that can be read twice: Plan counts the input, Write
// rewinds and writes the stream, byte for byte what HuffmanEncode returns for the same input.
class StreamEncoder {
public:
    StreamEncoder();
    ~StreamEncoder();
    StreamEncoder(const StreamEncoder&) = delete;
    StreamEncoder& operator=(const StreamEncoder&) = delete;

    // Counts the `size` bytes of `input`; false when they could not all be read.
    bool Plan(ByteSource& input, std::uint64_t size, bool force);
    // The length of the stream that Write will produce.
    std::uint64_t CodedSize() const;

    enum class Result { Written, ReadFailed, InputChanged, WriteFailed };
    // Rewinds `input` and writes the planned stream to `sink`. InputChanged when the input no
    // longer has the counted length or content.
    Result Write(ByteSource& input, const ByteSink& sink);

private:
    struct Planned;
    std::unique_ptr<Planned> plan_;
};

// How a streamed decoding ended.
enum class DecodeFailure { None, Codec, Read, Write };
struct DecodeResult {
    DecodeFailure failure = DecodeFailure::None;
    CodecError error;  // for Codec: the decoder's error
};

// Room used while decoding in pieces; small values are for tests.
struct DecodeBuffers {
    std::size_t window = std::size_t{2} << 20;  // coded bytes held at a time
    std::size_t output = std::size_t{2} << 20;  // decoded bytes held before they go to the sink
};

// Decodes the `size` coded bytes of `input` as HuffmanDecode does, with the same errors in the
// same order, passing the output to `sink` in pieces. Nothing is held for the output beyond the
// buffers, whatever length the stream claims. When `wholeOutput` is given, an HE2 stream's
// output is written into the room it returns for the whole claimed length (at most one byte per
// payload bit) instead, and `sink` takes only the stored form's bytes.
DecodeResult DecodeStream(ByteSource& input, std::uint64_t size, const ByteSink& sink,
                          const DecodeBuffers& buffers = {},
                          const std::function<unsigned char*(std::size_t)>& wholeOutput = {});

// Coded form and original size of a stream, read from its header without decoding; the
// lookup table is passed over, not read. The length text converts exactly as the decoder
// converts it.
struct StreamInfo {
    std::string form;                      // "HE2", "HE0" or "?" when neither
    std::optional<std::int64_t> original;  // unknown when the header is damaged
};
StreamInfo PeekStream(ByteSource& input, std::uint64_t size);

}  // namespace skin::he2
