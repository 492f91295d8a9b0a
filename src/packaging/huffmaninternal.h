#pragma once
// Entry points of the HE2 coder for the package container: the same streams as HuffmanEncode
// and HuffmanDecode, written into a reusable buffer instead of a new string, and with the
// stored HE0 form's bytes left where they are. Internal to packaging.

#include <optional>
#include <string_view>

#include "bytebuffer.h"
#include "huffmancoding.h"

namespace skin::he2 {

// A coded stream in two pieces, `head` then `body`, to be written one after the other.
struct CodedPieces {
    std::string_view head;
    std::string_view body;
    std::size_t size() const { return head.size() + body.size(); }
};

// The stream HuffmanEncode(data, force) returns. An HE2 stream is written into `buffer` (head
// empty, body the stream); the stored form is its signature followed by `data` itself.
CodedPieces EncodeInto(std::string_view data, bool force, ByteBuffer& buffer);

// Decodes as HuffmanDecode does. On success `result` views the original bytes: inside `buffer`
// for an HE2 stream, inside `data` for the stored form.
std::optional<CodecError> DecodeInto(std::string_view data, ByteBuffer& buffer, std::string_view& result);

}  // namespace skin::he2
