// HE2 decoder. The header is checked in stream order; the payload is decoded through a 12-bit
// lookup table that yields up to three whole symbols at a time, and every case the table cannot
// settle (long codes, a missing child, the last bytes of payload or output) falls back to the
// bit-by-bit tree walk, so errors arise at exactly the bit where the tree walk meets them.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "huffmancoding.h"
#include "huffmanformat.h"

namespace skin {
namespace {

using namespace he2;

CodecError Fail(std::string_view description) {
    return {kHuffmanErrorNumber, std::string(kHuffmanErrorSource), std::string(description)};
}

CodecError InvalidArgument() {
    return {kInvalidArgumentNumber, std::string(kHuffmanErrorSource),
            std::string(kInvalidArgumentDescription)};
}

// ---- header ----------------------------------------------------------------------------------

// An optional sign and at least one decimal digit, with a value that fits 32 signed bits.
std::optional<std::int32_t> ParseLength(std::string_view text) {
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (text.empty()) return std::nullopt;
    const std::int64_t limit = negative ? std::int64_t{INT32_MAX} + 1 : INT32_MAX;
    std::int64_t value = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + (c - '0');
        if (value > limit) return std::nullopt;
    }
    return static_cast<std::int32_t>(negative ? -value : value);
}

std::size_t CodeBytes(unsigned bitCount) { return (bitCount + kBitsPerByte - 1) / kBitsPerByte; }

// Whether every entry of the lookup table is complete: symbol, bit count and code bytes.
bool TableIsWhole(std::string_view table) {
    std::size_t p = 0;
    while (p < table.size()) {
        if (++p >= table.size()) return false;
        const auto bitCount = static_cast<unsigned char>(table[p++]);
        if (CodeBytes(bitCount) > table.size() - p) return false;
        p += CodeBytes(bitCount);
    }
    return true;
}

// ---- code tree -------------------------------------------------------------------------------

// A child reference: 0 for none (the root is never a child), kLeaf plus the symbol for a leaf,
// otherwise the index of an inner node. What lies below a leaf is never reached by decoding
// (reaching a leaf returns to the root), so it is not stored; neither is anything deeper than
// the payload has bits.
constexpr std::uint32_t kNone = 0;
constexpr std::uint32_t kLeaf = 0x80000000u;
constexpr std::uint32_t kSymbolMask = 0xFFu;
using TreeNode = std::array<std::uint32_t, 2>;  // [0] the 0 child, [1] the 1 child

std::vector<TreeNode> BuildTree(std::string_view table, std::uint64_t payloadBits) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(table.data());
    const unsigned reachable = static_cast<unsigned>(std::min<std::uint64_t>(kMaxCodeBits, payloadBits));
    std::vector<TreeNode> tree(1, TreeNode{kNone, kNone});
    std::size_t p = 0;
    while (p < table.size()) {
        const unsigned symbol = bytes[p];
        const unsigned bitCount = bytes[p + 1];
        const unsigned char* code = bytes + p + 2;
        p += 2 + CodeBytes(bitCount);
        // An empty code names the root, which decoding never tests for a leaf.
        std::uint32_t node = 0;
        for (unsigned i = 0; i < bitCount && i < reachable; ++i) {
            const unsigned bit = (code[i / kBitsPerByte] >> (i % kBitsPerByte)) & 1u;
            std::uint32_t& child = tree[node][bit];
            if (i + 1 == bitCount) {
                child = kLeaf | symbol;
                break;
            }
            if (child & kLeaf) break;
            if (child == kNone) {
                if (tree.size() >= kLeaf) throw std::bad_alloc();
                child = static_cast<std::uint32_t>(tree.size());
                tree.push_back(TreeNode{kNone, kNone});  // may move `child`'s storage
            }
            node = tree[node][bit];
        }
    }
    return tree;
}

// ---- lookup table ----------------------------------------------------------------------------

// Two parallel tables indexed by the next kLookupBits payload bits. `steps` holds the bits that
// the settled symbols use (low 6 bits, so a shift by the whole byte shifts by them) and their
// count (top 2 bits); 0 means the table cannot settle the next symbol. `symbols` holds up to three
// symbols, first in the low byte. Only the small `steps` table lies on the decoder's critical
// path, so it is kept to one byte an entry.
constexpr int kLookupBits = 14;
constexpr std::uint32_t kLookupSize = 1u << kLookupBits;
constexpr std::uint32_t kLookupMask = kLookupSize - 1;
constexpr std::uint32_t kSymbolsPerEntry = 3;
constexpr int kCountShift = 6;
constexpr std::uint32_t kBitsMask = (1u << kCountShift) - 1;
static_assert(kLookupBits <= static_cast<int>(kBitsMask) && kSymbolsPerEntry < 4);
// Below this output length the tables cost more to build than they save.
constexpr std::int64_t kLookupWorthwhile = 4096;

struct Lookup {
    std::vector<std::uint8_t> steps;
    std::vector<std::uint32_t> symbols;
};

// The first symbol of every bit pattern: each leaf within reach fills the patterns that begin
// with its code.
void FillFirstSymbols(const std::vector<TreeNode>& tree, std::uint32_t node, int depth, std::uint32_t code,
                      std::vector<std::uint8_t>& length, std::vector<std::uint8_t>& symbol) {
    for (std::uint32_t bit = 0; bit < 2; ++bit) {
        const std::uint32_t child = tree[node][bit];
        const std::uint32_t prefix = code | (bit << depth);
        if (child == kNone) continue;
        if (child & kLeaf) {
            for (std::uint32_t p = prefix; p < kLookupSize; p += 2u << depth) {
                length[p] = static_cast<std::uint8_t>(depth + 1);
                symbol[p] = static_cast<std::uint8_t>(child & kSymbolMask);
            }
        } else if (depth + 1 < kLookupBits) {
            FillFirstSymbols(tree, child, depth + 1, prefix, length, symbol);
        }
    }
}

Lookup BuildLookup(const std::vector<TreeNode>& tree) {
    std::vector<std::uint8_t> length(kLookupSize), symbol(kLookupSize);
    FillFirstSymbols(tree, 0, 0, 0, length, symbol);
    Lookup lookup{std::vector<std::uint8_t>(kLookupSize), std::vector<std::uint32_t>(kLookupSize)};
    for (std::uint32_t p = 0; p < kLookupSize; ++p) {
        const std::uint32_t first = length[p];
        if (first == 0) continue;
        // Each further symbol starts where the last ended; it counts only if all its bits are here.
        std::uint32_t used = first, count = 1, settled = symbol[p];
        while (count < kSymbolsPerEntry) {
            const std::uint32_t rest = p >> used;
            const std::uint32_t next = length[rest];
            if (next == 0 || used + next > kLookupBits) break;
            settled |= std::uint32_t{symbol[rest]} << (8 * count);
            used += next;
            ++count;
        }
        lookup.steps[p] = static_cast<std::uint8_t>(used | (count << kCountShift));
        lookup.symbols[p] = settled;
    }
    return lookup;
}

// ---- payload ---------------------------------------------------------------------------------

struct BitReader {
    const unsigned char* payload;
    std::size_t size;       // D bytes
    std::uint64_t pos = 0;  // bits taken so far
};

// One symbol by the plain tree walk, with its checks in their order.
std::optional<std::string_view> DecodeOneSymbol(const std::vector<TreeNode>& tree, BitReader& in,
                                                unsigned char*& out) {
    std::uint32_t node = 0;
    for (;;) {
        const std::uint64_t byte = in.pos / kBitsPerByte;
        if (in.pos % kBitsPerByte == 0 && byte >= in.size) return kHuffmanExpectingMoreBytes;
        const unsigned bit = (in.payload[byte] >> (in.pos % kBitsPerByte)) & 1u;
        ++in.pos;
        const std::uint32_t child = tree[node][bit];
        if (child == kNone) return kHuffmanLookupTableCorrupt;
        if (child & kLeaf) {
            *out++ = static_cast<unsigned char>(child & kSymbolMask);
            return std::nullopt;
        }
        node = child;
    }
}

// One run of table decoding: a bit position, an output pointer and the limits it must stay in.
// It is "ready" while a whole payload word can be loaded at its position, it has not reached
// `stopBit`, and four entries' symbols (plus one word store) fit before `outLimit`.
struct Chain {
    std::uint64_t pos;
    std::uint64_t stopBit;
    unsigned char* out;
    unsigned char* outLimit;
};

constexpr int kLookupsPerWord = 4;  // each word gives at least 57 usable bits
static_assert(kLookupsPerWord * kLookupBits <= 64 - 7);
constexpr std::ptrdiff_t kFastRoom = kLookupsPerWord * kSymbolsPerEntry + sizeof(std::uint32_t);

class TableDecoder {
public:
    TableDecoder(const Lookup& lookup, const BitReader& in)
        : steps_(lookup.steps.data()), symbols_(lookup.symbols.data()), payload_(in.payload),
          lastWordByte_(in.size >= sizeof(std::uint64_t) ? in.size - sizeof(std::uint64_t) : 0),
          hasWord_(in.size >= sizeof(std::uint64_t)) {}

    bool Ready(const Chain& c) const {
        return hasWord_ && c.out <= c.outLimit && c.pos < c.stopBit && c.pos / kBitsPerByte <= lastWordByte_;
    }

    // Four lookups from one payload word; false if an entry could not settle its symbol.
    bool Step(Chain& c) const {
        std::uint64_t word = LoadWord(payload_ + c.pos / kBitsPerByte) >> (c.pos % kBitsPerByte);
        for (int k = 0; k < kLookupsPerWord; ++k) {
            const std::uint32_t index = word & kLookupMask;
            const std::uint32_t step = steps_[index];
            if (step == 0) return false;
            const std::uint32_t settled = symbols_[index];
            std::memcpy(c.out, &settled, sizeof settled);  // bytes past the count are overwritten later
            c.out += step >> kCountShift;
            word >>= (step & kBitsMask);
            c.pos += step & kBitsMask;
        }
        return true;
    }

    // One lookup; false if it could not settle its symbol.
    bool StepOnce(Chain& c) const {
        const std::uint64_t word = LoadWord(payload_ + c.pos / kBitsPerByte) >> (c.pos % kBitsPerByte);
        const std::uint32_t step = steps_[word & kLookupMask];
        if (step == 0) return false;
        const std::uint32_t settled = symbols_[word & kLookupMask];
        std::memcpy(c.out, &settled, sizeof settled);
        c.out += step >> kCountShift;
        c.pos += step & kBitsMask;
        return true;
    }

    // Runs one chain until it is not ready or meets an entry it cannot settle. The chain is
    // copied into locals: stores through its output pointer could otherwise alias it.
    void Run(Chain& chain) const {
        Chain c = chain;
        while (Ready(c) && Step(c)) {
        }
        chain = c;
    }

    // Runs two independent chains side by side, so that the processor overlaps their lookups,
    // until either is not ready or meets an entry it cannot settle (its flag turns false).
    void RunPair(Chain& first, Chain& second, bool& firstOk, bool& secondOk) const {
        Chain a = first, b = second;
        bool aOk = true, bOk = true;
        while (Ready(a) && Ready(b)) {
            aOk = Step(a);
            bOk = Step(b);
            if (!aOk || !bOk) break;
        }
        first = a;
        second = b;
        firstOk = aOk;
        secondOk = bOk;
    }

private:
    const std::uint8_t* steps_;
    const std::uint32_t* symbols_;
    const unsigned char* payload_;
    std::uint64_t lastWordByte_;
    bool hasWord_;
};

// Long outputs are decoded by two chains at once. The payload is cut into segments; while the
// main chain decodes one segment into the output, a speculative chain decodes the next one into
// a scratch buffer from the segment's first bit, which is usually not a code boundary. Huffman
// codes fall into step within a few symbols, so when the main chain reaches the next segment it
// walks symbol by symbol until it stands on a boundary the speculative chain recorded; from
// there both decodes are the same, and the scratch output is taken over. If no recorded
// boundary is met, the main chain decodes that segment itself. Only the main chain's own tree
// walk raises errors, so errors arise exactly where the single chain meets them.
constexpr std::uint64_t kSegmentBits = std::uint64_t{1} << 18;  // 32 KB of payload
constexpr int kRecordedSteps = 64;
constexpr std::int64_t kTwoChainsWorthwhile = std::int64_t{1} << 20;

struct Boundary {
    std::uint64_t pos;
    std::size_t produced;
};

class TwoChainDecoder {
public:
    TwoChainDecoder(const TableDecoder& table, const std::vector<TreeNode>& tree, BitReader& in)
        : table_(table), tree_(tree), in_(in), scratch_(kSegmentBits + 2 * kFastRoom) {}

    // Decodes from `out` towards `end` until fewer than two whole segments of payload remain
    // after the main chain's position; leaves the rest to the caller.
    std::optional<std::string_view> Decode(unsigned char*& out, unsigned char* end) {
        const std::uint64_t payloadBits = std::uint64_t{in_.size} * kBitsPerByte;
        for (;;) {
            const std::uint64_t start = (in_.pos / kSegmentBits + 1) * kSegmentBits;
            // A word must be loadable anywhere the speculative chain may stop.
            if (start + kSegmentBits + 2 * 64 > payloadBits || out >= end) return std::nullopt;
            if (auto error = Round(start, out, end)) return error;
        }
    }

private:
    // The speculative chain's own tree walk for a symbol the table cannot settle. It raises
    // nothing: if the walk fails the chain just stops, and the main chain meets the failure
    // itself if it is real.
    bool WalkQuietly(Chain& c) const {
        std::uint32_t node = 0;
        for (;;) {
            const std::uint64_t byte = c.pos / kBitsPerByte;
            if (byte >= in_.size) return false;
            const unsigned bit = (in_.payload[byte] >> (c.pos % kBitsPerByte)) & 1u;
            ++c.pos;
            const std::uint32_t child = tree_[node][bit];
            if (child == kNone) return false;
            if (child & kLeaf) {
                *c.out++ = static_cast<unsigned char>(child & kSymbolMask);
                return true;
            }
            node = child;
        }
    }

    std::optional<std::string_view> Round(std::uint64_t start, unsigned char*& out, unsigned char* end) {
        unsigned char* const scratch = scratch_.data();
        Chain ahead{start, start + kSegmentBits, scratch, scratch + scratch_.size() - kFastRoom};
        auto produced = [&] { return static_cast<std::size_t>(ahead.out - scratch); };

        // The speculative chain records its first boundaries one lookup at a time.
        boundaries_.clear();
        bool aheadAlive = true;
        while (boundaries_.size() < kRecordedSteps && (aheadAlive = table_.Ready(ahead))) {
            boundaries_.push_back({ahead.pos, produced()});
            if (!table_.StepOnce(ahead) && !(aheadAlive = WalkQuietly(ahead))) break;
        }

        // Both chains on to the end of their segments, side by side while both can use the table.
        Chain main{in_.pos, start, out, end - kFastRoom};
        for (;;) {
            const bool mainMore = main.pos < start && main.out < end;
            aheadAlive = aheadAlive && table_.Ready(ahead);
            if (!mainMore && !aheadAlive) break;
            if (mainMore && aheadAlive && table_.Ready(main)) {
                bool mainOk = true, aheadOk = true;
                table_.RunPair(main, ahead, mainOk, aheadOk);
                if (!aheadOk) aheadAlive = WalkQuietly(ahead);
                if (mainOk) continue;
            } else if (aheadAlive) {
                table_.Run(ahead);
                if (table_.Ready(ahead)) aheadAlive = WalkQuietly(ahead);  // stopped on a long code
                if (!mainMore) continue;
                table_.Run(main);
            } else {
                table_.Run(main);
            }
            // The main chain stopped where the table cannot settle, or near the output's end.
            if (main.pos >= start || main.out >= end) continue;
            in_.pos = main.pos;
            unsigned char* walked = main.out;  // keeps `main` itself out of memory
            if (auto error = DecodeOneSymbol(tree_, in_, walked)) {
                out = walked;
                return error;
            }
            main.pos = in_.pos;
            main.out = walked;
        }
        boundaries_.push_back({ahead.pos, produced()});
        in_.pos = main.pos;
        out = main.out;

        // Walk symbol by symbol onto a recorded boundary, then take over the scratch output.
        std::size_t next = 0;
        while (out < end) {
            while (next < boundaries_.size() && boundaries_[next].pos < in_.pos) ++next;
            if (next == boundaries_.size()) return std::nullopt;  // never fell into step
            const Boundary& meet = boundaries_[next];
            if (meet.pos == in_.pos) {
                const std::size_t taken = produced() - meet.produced;
                if (taken > static_cast<std::size_t>(end - out)) return std::nullopt;  // the output ends inside
                std::memcpy(out, scratch + meet.produced, taken);
                out += taken;
                in_.pos = ahead.pos;
                return std::nullopt;
            }
            if (auto error = DecodeOneSymbol(tree_, in_, out)) return error;
        }
        return std::nullopt;
    }

    const TableDecoder& table_;
    const std::vector<TreeNode>& tree_;
    BitReader& in_;
    std::vector<unsigned char> scratch_;
    std::vector<Boundary> boundaries_;
};

std::optional<std::string_view> DecodeSymbols(const std::vector<TreeNode>& tree, const Lookup* lookup,
                                              BitReader& in, unsigned char* out, unsigned char* end) {
    if (lookup && end - out >= kTwoChainsWorthwhile) {
        const TableDecoder table(*lookup, in);
        TwoChainDecoder twoChains(table, tree, in);
        if (auto error = twoChains.Decode(out, end)) return error;
    }
    while (out < end) {
        if (lookup) {
            const TableDecoder table(*lookup, in);
            Chain chain{in.pos, UINT64_MAX, out, end - kFastRoom};
            table.Run(chain);
            in.pos = chain.pos;
            out = chain.out;
            if (out == end) break;
        }
        if (auto error = DecodeOneSymbol(tree, in, out)) return error;
    }
    return std::nullopt;
}

unsigned XorOf(const std::string& bytes) {
    std::uint64_t folded = 0;
    std::size_t i = 0;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    for (; i + sizeof folded <= bytes.size(); i += sizeof folded) folded ^= LoadWord(p + i);
    for (; i < bytes.size(); ++i) folded ^= p[i];
    for (int shift = 32; shift >= 8; shift /= 2) folded ^= folded >> shift;
    return static_cast<unsigned>(folded & 0xFF);
}

}  // namespace

std::variant<std::string, CodecError> HuffmanDecode(std::string_view sData) {
    if (sData.starts_with(kHe0Signature)) return std::string(sData.substr(kHe0Signature.size()));
    if (!sData.starts_with(kHe2Signature)) return Fail(kHuffmanNotHe2);
    std::string_view rest = sData.substr(kHe2Signature.size());

    std::size_t cr = rest.find(kCr);
    if (cr == std::string_view::npos) return Fail(kHuffmanNotHe2);
    const auto tableLength = ParseLength(rest.substr(0, cr));
    if (!tableLength) return Fail(kHuffmanHeaderCorrupt);
    rest.remove_prefix(cr + 1);
    if (*tableLength < 0) return InvalidArgument();
    const std::string_view table = rest.substr(0, static_cast<std::size_t>(*tableLength));
    rest.remove_prefix(table.size());
    if (!TableIsWhole(table)) return InvalidArgument();

    if (rest.empty()) return InvalidArgument();  // no byte where the checksum is needed
    const auto storedChecksum = static_cast<unsigned char>(rest.front());
    rest.remove_prefix(1);

    cr = rest.find(kCr);
    if (cr == std::string_view::npos) return Fail(kHuffmanHeaderCorrupt);
    const auto length = ParseLength(rest.substr(0, cr));
    if (!length) return Fail(kHuffmanHeaderCorrupt);
    const std::string_view payload = rest.substr(cr + 1);

    // Every symbol takes at least one bit: a longer claim cannot be met, so nothing is allocated.
    const std::uint64_t payloadBits = std::uint64_t{payload.size()} * kBitsPerByte;
    if (*length > 0 && static_cast<std::uint64_t>(*length) > payloadBits)
        return Fail(kHuffmanExpectingMoreBytes);

    std::string output;
    BitReader in{reinterpret_cast<const unsigned char*>(payload.data()), payload.size()};
    if (*length > 0) {
        const auto tree = BuildTree(table, payloadBits);
        const auto lookup = *length >= kLookupWorthwhile ? std::optional<Lookup>(BuildLookup(tree)) : std::nullopt;
        output.resize(static_cast<std::size_t>(*length));
        auto* out = reinterpret_cast<unsigned char*>(output.data());
        if (auto error = DecodeSymbols(tree, lookup ? &*lookup : nullptr, in, out, out + output.size()))
            return Fail(*error);
    }
    if ((in.pos + kBitsPerByte - 1) / kBitsPerByte < payload.size()) return Fail(kHuffmanExtraBytes);
    // A negative length produces nothing, so the output's length differs from it.
    if (static_cast<std::int64_t>(output.size()) != *length) return Fail(kHuffmanChecksumMismatch);
    if (XorOf(output) != storedChecksum) return Fail(kHuffmanChecksumMismatch);
    return output;
}

}  // namespace skin
