// HE2 decoder. The header is checked in stream order; the payload is decoded through a 14-bit
// lookup table that yields up to three whole symbols at a time, and every case the table cannot
// settle (long codes, a missing child, the last bytes of payload or output) falls back to the
// bit-by-bit tree walk, so errors arise at exactly the bit where the tree walk meets them.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "huffmancoding.h"
#include "huffmanformat.h"
#include "helperthread.h"
#include "huffmaninternal.h"

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

// The tree may hold at most `maxNodes` nodes; nullopt when it would need more.
std::optional<std::vector<TreeNode>> BuildTree(std::string_view table, std::uint64_t payloadBits, std::size_t maxNodes) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(table.data());
    const unsigned reachable = static_cast<unsigned>(std::min<std::uint64_t>(kMaxCodeBits, payloadBits));
    // Every code bit makes at most one node: reserve that once, up to the limit, so the tree
    // never grows by doubling past what it needs.
    std::size_t bound = 1;
    for (std::size_t p = 0; p < table.size(); p += 2 + CodeBytes(bytes[p + 1])) bound += std::min<unsigned>(bytes[p + 1], reachable);
    std::vector<TreeNode> tree;
    tree.reserve(std::min(bound, maxNodes));
    tree.push_back(TreeNode{kNone, kNone});
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
                if (tree.size() >= maxNodes || tree.size() >= kLeaf) return std::nullopt;
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
// the settled symbols use (low 6 bits, so a shift by the whole byte shifts by them; 0 means the
// table cannot settle the next symbol) and their count (top 2 bits); `symbols` holds up to three
// symbols, first in the low byte. Only the small `steps` table lies on the decoder's critical
// path, so it is kept to one byte an entry and stays in the first-level cache.
constexpr int kLookupBits = 14;
constexpr std::uint32_t kLookupSize = 1u << kLookupBits;
constexpr std::uint32_t kLookupMask = kLookupSize - 1;
constexpr std::uint32_t kSymbolsPerEntry = 3;
constexpr int kCountShift = 6;
constexpr std::uint32_t kBitsMask = (1u << kCountShift) - 1;
constexpr std::uint32_t kCountMask = 3;
static_assert(kLookupBits <= static_cast<int>(kBitsMask) && kSymbolsPerEntry <= kCountMask);
// Below this output length the table costs more to build than it saves.
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
            settled |= std::uint32_t{symbol[rest]} << (kBitsPerByte * count);
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

// The same walk for a speculative lane: it raises nothing, it only says whether it got a symbol.
bool WalkQuietly(const std::vector<TreeNode>& tree, BitReader& in, unsigned char*& out) {
    std::uint32_t node = 0;
    for (;;) {
        const std::uint64_t byte = in.pos / kBitsPerByte;
        if (byte >= in.size) return false;
        const unsigned bit = (in.payload[byte] >> (in.pos % kBitsPerByte)) & 1u;
        ++in.pos;
        const std::uint32_t child = tree[node][bit];
        if (child == kNone) return false;
        if (child & kLeaf) {
            *out++ = static_cast<unsigned char>(child & kSymbolMask);
            return true;
        }
        node = child;
    }
}

// A lane decodes through the table from some bit of the payload. Its bit buffer holds `count`
// unread bits, lowest first; a refill ORs in the word at `next`, so the bits above `count` are
// always either zero or the very bits the next refill puts there.
struct Lane {
    const unsigned char* next;
    std::uint64_t buffer;
    unsigned count;
    unsigned char* out;
};

constexpr int kLookupsPerStep = 4;  // a refill leaves at least 56 bits in the buffer
static_assert(kLookupsPerStep * kLookupBits <= 56);

// The two tables' addresses, passed by value so that they stay in registers: stores through an
// output pointer could otherwise alias them and force reloads after each store.
struct Tables {
    const std::uint8_t* steps;
    const std::uint32_t* symbols;
};
constexpr std::uint64_t kMaxStepBits = kLookupsPerStep * kLookupBits;
constexpr std::ptrdiff_t kWordBytes = sizeof(std::uint64_t);
constexpr std::ptrdiff_t kMaxRefillAdvance = kWordBytes - 1;
constexpr std::ptrdiff_t kEntryStore = sizeof(std::uint32_t);  // each lookup stores one word
constexpr std::ptrdiff_t kMaxStepOutput = kLookupsPerStep * kSymbolsPerEntry;
constexpr std::ptrdiff_t kStepRoom = kMaxStepOutput - kSymbolsPerEntry + kEntryStore;

enum class Halt { kReached, kLimit, kUnsettled };

class LaneDecoder {
public:
    LaneDecoder(const Lookup& lookup, const BitReader& in)
        : table_{lookup.steps.data(), lookup.symbols.data()}, payload_(in.payload), end_(in.payload + in.size) {}

    // Whether a lane can start at `pos`: a whole word can be loaded there.
    bool CanStartAt(std::uint64_t pos) const {
        return end_ - payload_ >= kWordBytes && pos / kBitsPerByte <= static_cast<std::uint64_t>(end_ - payload_ - kWordBytes);
    }

    Lane Start(std::uint64_t pos, unsigned char* out) const {
        Lane lane{payload_ + pos / kBitsPerByte, 0, 0, out};
        Refill(lane);
        const unsigned skip = pos % kBitsPerByte;
        lane.buffer >>= skip;
        lane.count -= skip;
        return lane;
    }

    std::uint64_t Pos(const Lane& lane) const {
        return static_cast<std::uint64_t>(lane.next - payload_) * kBitsPerByte - lane.count;
    }

    static void Refill(Lane& lane) {
        lane.buffer |= LoadWord(lane.next) << lane.count;
        lane.next += (63 - lane.count) >> 3;
        lane.count |= 56;
    }

    // One lookup; false, with the lane unchanged, when the table cannot settle the next symbol.
    static bool LookupOnce(Tables table, Lane& lane) {
        const std::size_t index = lane.buffer & kLookupMask;
        const std::uint32_t entry = table.steps[index];
        const unsigned bits = entry & kBitsMask;
        if (bits == 0) return false;
        const std::uint32_t settled = table.symbols[index];
        std::memcpy(lane.out, &settled, sizeof settled);  // bytes past the count are overwritten later
        lane.out += (entry >> kCountShift) & kCountMask;
        lane.buffer >>= bits;
        lane.count -= bits;
        return true;
    }

    // A refill and kLookupsPerStep lookups; false where an entry could not settle its symbol.
    // An unsettled entry uses no bits and advances no output, so every lookup after it meets it
    // again and leaves the lane where it stopped: one check of the last entry covers the step.
    static bool Step(Tables table, Lane& lane) {
        Refill(lane);
        std::uint32_t bits = 0;
        for (int k = 0; k < kLookupsPerStep; ++k) {
            const std::size_t index = lane.buffer & kLookupMask;
            const std::uint32_t entry = table.steps[index];
            const std::uint32_t settled = table.symbols[index];
            std::memcpy(lane.out, &settled, sizeof settled);  // bytes past the count are overwritten later
            lane.out += entry >> kCountShift;
            bits = entry & kBitsMask;
            lane.buffer >>= bits;
            lane.count -= bits;
        }
        return bits != 0;
    }

    // How many steps `lane` can take without passing the payload's last word, `outEnd` or `stopBit`.
    std::uint64_t SafeSteps(const Lane& lane, const unsigned char* outEnd, std::uint64_t stopBit) const {
        const std::ptrdiff_t inRoom = end_ - lane.next;
        const std::ptrdiff_t outRoom = outEnd - lane.out;
        const std::uint64_t pos = Pos(lane);
        if (inRoom < kWordBytes || outRoom < kStepRoom || pos >= stopBit) return 0;
        return std::min({static_cast<std::uint64_t>((inRoom - kWordBytes) / kMaxRefillAdvance + 1),
                         static_cast<std::uint64_t>((outRoom - kStepRoom) / kMaxStepOutput + 1),
                         (stopBit - pos) / kMaxStepBits});
    }

    // Decodes until `stopBit` is reached, a limit is near, or the table cannot settle a symbol.
    Halt Run(Lane& lane, const unsigned char* outEnd, std::uint64_t stopBit) const {
        Lane l = lane;  // a local copy: stores through the output pointer could alias `lane`
        const Tables table = table_;
        Halt halt;
        for (;;) {
            bool settled = true;
            for (std::uint64_t s = SafeSteps(l, outEnd, stopBit); s > 0 && (settled = Step(table, l)); --s) {
            }
            if (!settled) {
                halt = Halt::kUnsettled;
                break;
            }
            if (Pos(l) >= stopBit) {
                halt = Halt::kReached;
                break;
            }
            if (end_ - l.next < kWordBytes || outEnd - l.out < kEntryStore) {
                halt = Halt::kLimit;
                break;
            }
            Refill(l);
            if (!LookupOnce(table, l)) {
                halt = Halt::kUnsettled;
                break;
            }
        }
        lane = l;
        return halt;
    }

    // Run from a reader's position; the reader and `out` follow the lane.
    Halt RunFrom(BitReader& in, unsigned char*& out, const unsigned char* outEnd, std::uint64_t stopBit) const {
        if (in.pos >= stopBit) return Halt::kReached;
        if (!CanStartAt(in.pos)) return Halt::kLimit;
        Lane lane = Start(in.pos, out);
        const Halt halt = Run(lane, outEnd, stopBit);
        in.pos = Pos(lane);
        out = lane.out;
        return halt;
    }

    Tables table_;
    const unsigned char* payload_;
    const unsigned char* end_;
};

// Long outputs are decoded by several lanes at once, so that the processor overlaps their
// lookups. The payload ahead of the main lane is cut into segments; while the main lane decodes
// the first into the output, each other lane decodes the next one into a scratch buffer from the
// segment's first bit, which is usually not a code boundary. Huffman codes fall into step within
// a few symbols, so when the main lane reaches a segment it walks symbol by symbol until it
// stands on a boundary the lane of that segment recorded; from there both decodes are the same,
// and the scratch output is taken over. If no recorded boundary is met, the main lane decodes
// that segment itself. Only the main lane's own tree walk raises errors, so errors arise exactly
// where the single walk meets them. The main lane runs beside the first speculative lane; the
// other two run together on a second thread where the machine has one, else after them.
constexpr int kAheadLanes = 3;
constexpr int kLanes = kAheadLanes + 1;
constexpr std::uint64_t kSegmentBits = std::uint64_t{1} << 17;  // 16 KB of payload
constexpr int kRecordedLookups = 256;
constexpr std::int64_t kLanesWorthwhile = std::int64_t{1} << 20;
// The most output one round can give: a byte per payload bit of its segments, and some.
constexpr std::ptrdiff_t kRoundOutput = kLanes * kSegmentBits + 4 * (kMaxCodeBits + 1);
static_assert(kRoundOutput < kLanesWorthwhile);
// Room after the last segment for a lane's last lookups and long codes.
constexpr std::uint64_t kTailBits = 4 * (kMaxCodeBits + 1);

struct Boundary {
    std::uint64_t pos;
    std::size_t produced;
};

struct AheadLane {
    std::uint64_t start = 0, stop = 0;
    BitReader in{};
    unsigned char* out = nullptr;
    bool alive = false;
    std::vector<unsigned char> scratch;
    std::vector<Boundary> boundaries;
    std::size_t Produced() const { return static_cast<std::size_t>(out - scratch.data()); }
    unsigned char* ScratchEnd() { return scratch.data() + scratch.size(); }
};

// The speculative lanes' buffers and the second thread, made once for a whole stream.
struct AheadLanes {
    std::array<AheadLane, kAheadLanes> lanes;
    HelperLease worker;  // none on a machine of one processor, or if none starts
};

std::unique_ptr<AheadLanes> MakeAheadLanes() {
    auto ahead = std::make_unique<AheadLanes>();
    for (AheadLane& lane : ahead->lanes) {
        lane.scratch.resize(kSegmentBits + kStepRoom);
        lane.boundaries.reserve(kRecordedLookups);  // the second thread then allocates nothing
    }
    ahead->worker = LendHelperThread();
    return ahead;
}

class LanesDecoder {
public:
    LanesDecoder(const LaneDecoder& table, const std::vector<TreeNode>& tree, BitReader& in, AheadLanes& ahead)
        : table_(table), tree_(tree), in_(in), ahead_(ahead) {}

    // Decodes from `out` towards `end` until too little payload is left for a whole round;
    // leaves the rest to the caller. A round that meets `end` stops there; the work of its
    // speculative lanes beyond it is lost, so callers keep `end` beyond a round where they can.
    std::optional<std::string_view> Decode(unsigned char*& out, unsigned char* end) {
        const std::uint64_t payloadBits = std::uint64_t{in_.size} * kBitsPerByte;
        while (out < end && in_.pos + kLanes * kSegmentBits + kTailBits <= payloadBits) {
            if (auto error = Round(out, end)) return error;
        }
        return std::nullopt;
    }

private:
    // One symbol of a speculative lane by the tree walk; false ends the lane.
    void Walk(AheadLane& ahead) {
        ahead.alive = WalkQuietly(tree_, ahead.in, ahead.out);
    }

    // A lane's first boundaries, one lookup at a time.
    void Record(AheadLane& ahead) {
        ahead.boundaries.clear();
        while (ahead.alive && ahead.boundaries.size() < kRecordedLookups) {
            Lane lane = table_.Start(ahead.in.pos, ahead.out);
            bool settled = true;
            while (settled && ahead.boundaries.size() < kRecordedLookups) {
                ahead.boundaries.push_back({table_.Pos(lane), static_cast<std::size_t>(lane.out - ahead.scratch.data())});
                LaneDecoder::Refill(lane);
                settled = LaneDecoder::LookupOnce(table_.table_, lane);
            }
            ahead.in.pos = table_.Pos(lane);
            ahead.out = lane.out;
            if (!settled) Walk(ahead);
        }
    }

    // The main lane (when `kWithMain`) and the given speculative lanes in lock step, while all
    // live and have room.
    template <bool kWithMain, std::size_t kCount>
    std::optional<std::string_view> RunTogether(const std::array<AheadLane*, kCount>& aheads, unsigned char*& out,
                                                unsigned char* end, std::uint64_t mainStop) {
        constexpr std::size_t kFirst = kWithMain ? 1 : 0;
        constexpr std::size_t kAll = kFirst + kCount;
        const Tables table = table_.table_;
        for (;;) {
            for (const AheadLane* ahead : aheads)
                if (!ahead->alive) return std::nullopt;
            std::array<Lane, kAll> lanes;
            std::uint64_t steps = UINT64_MAX;
            if constexpr (kWithMain) {
                lanes[0] = table_.Start(in_.pos, out);
                steps = table_.SafeSteps(lanes[0], end, mainStop);
            }
            for (std::size_t k = 0; k < kCount; ++k) {
                lanes[kFirst + k] = table_.Start(aheads[k]->in.pos, aheads[k]->out);
                steps = std::min(steps, table_.SafeSteps(lanes[kFirst + k], aheads[k]->ScratchEnd(), aheads[k]->stop));
            }
            std::array<bool, kAll> settled;
            settled.fill(true);
            for (; steps > 0; --steps) {
                bool all = true;
                for (std::size_t k = 0; k < kAll; ++k) {
                    settled[k] = LaneDecoder::Step(table, lanes[k]);
                    all &= settled[k];
                }
                if (!all) break;
            }
            if constexpr (kWithMain) {
                in_.pos = table_.Pos(lanes[0]);
                out = lanes[0].out;
            }
            for (std::size_t k = 0; k < kCount; ++k) {
                aheads[k]->in.pos = table_.Pos(lanes[kFirst + k]);
                aheads[k]->out = lanes[kFirst + k].out;
            }
            bool stuck = true;
            if constexpr (kWithMain) {
                if (!settled[0]) {
                    stuck = false;
                    if (auto error = DecodeOneSymbol(tree_, in_, out)) return error;
                }
            }
            for (std::size_t k = 0; k < kCount; ++k) {
                if (!settled[kFirst + k]) {
                    stuck = false;
                    Walk(*aheads[k]);
                }
            }
            if (stuck) return std::nullopt;  // a lane is near its limits
        }
    }

    // A speculative lane alone to the end of its segment or of its scratch buffer.
    void Finish(AheadLane& ahead) {
        while (ahead.alive) {
            const Halt halt = table_.RunFrom(ahead.in, ahead.out, ahead.ScratchEnd(), ahead.stop);
            if (halt != Halt::kUnsettled) return;
            Walk(ahead);
        }
    }

    // The main lane alone until it reaches `stopBit` or the output's end.
    std::optional<std::string_view> RunMain(unsigned char*& out, unsigned char* end, std::uint64_t stopBit) {
        while (in_.pos < stopBit && out < end) {
            table_.RunFrom(in_, out, end, stopBit);
            if (in_.pos >= stopBit || out >= end) break;
            if (auto error = DecodeOneSymbol(tree_, in_, out)) return error;
        }
        return std::nullopt;
    }

    // Walk the main lane symbol by symbol onto a boundary that `ahead` recorded, then take over
    // its scratch output.
    std::optional<std::string_view> Join(AheadLane& ahead, unsigned char*& out, unsigned char* end) {
        std::size_t next = 0;
        while (out < end) {
            while (next < ahead.boundaries.size() && ahead.boundaries[next].pos < in_.pos) ++next;
            if (next == ahead.boundaries.size()) return std::nullopt;  // never fell into step
            const Boundary& meet = ahead.boundaries[next];
            if (meet.pos == in_.pos) {
                const std::size_t taken = ahead.Produced() - meet.produced;
                if (taken > static_cast<std::size_t>(end - out)) return std::nullopt;  // the output ends inside
                std::memcpy(out, ahead.scratch.data() + meet.produced, taken);
                out += taken;
                in_.pos = ahead.in.pos;
                return std::nullopt;
            }
            if (auto error = DecodeOneSymbol(tree_, in_, out)) return error;
        }
        return std::nullopt;
    }

    std::optional<std::string_view> Round(unsigned char*& out, unsigned char* end) {
        const std::uint64_t first = in_.pos + kSegmentBits;
        for (int k = 0; k < kAheadLanes; ++k) {
            AheadLane& ahead = ahead_.lanes[k];
            ahead.start = first + k * kSegmentBits;
            ahead.stop = ahead.start + kSegmentBits;
            ahead.in = BitReader{in_.payload, in_.size, ahead.start};
            ahead.out = ahead.scratch.data();
            ahead.alive = true;
        }
        AheadLane& near = ahead_.lanes[0];
        AheadLane& second = ahead_.lanes[1];
        AheadLane& third = ahead_.lanes[2];
        // The far lanes read only the payload and write only their own buffers.
        const std::function<void()> far = [&] {
            Record(second);
            Record(third);
            unsigned char* none = nullptr;
            RunTogether<false, 2>({&second, &third}, none, nullptr, 0);
            Finish(second);
            Finish(third);
        };
        if (ahead_.worker) ahead_.worker->Start(far);
        Record(near);
        auto error = RunTogether<true, 1>({&near}, out, end, first);
        if (!error) error = RunMain(out, end, first);
        if (!error) Finish(near);
        if (ahead_.worker) {
            ahead_.worker->Finish();  // before anything returns: the far lanes use this round's buffers
        } else if (!error) {
            far();
        }
        if (error) return error;
        for (AheadLane& ahead : ahead_.lanes) {
            if (auto failure = RunMain(out, end, ahead.start)) return failure;
            if (auto failure = Join(ahead, out, end)) return failure;
        }
        return std::nullopt;
    }

    const LaneDecoder& table_;
    const std::vector<TreeNode>& tree_;
    BitReader& in_;
    AheadLanes& ahead_;
};

// Decodes from `out` towards `end` until the reader reaches `stopBit`. A stop short of the
// payload's end leaves room for the longest code, so a symbol begun before it ends in the payload.
std::optional<std::string_view> DecodeSymbols(const std::vector<TreeNode>& tree, const Lookup* lookup,
                                              AheadLanes* lanes, BitReader& in, unsigned char*& out,
                                              unsigned char* end, std::uint64_t stopBit) {
    if (lookup && lanes) {
        const LaneDecoder table(*lookup, in);
        LanesDecoder decoder(table, tree, in, *lanes);
        if (auto error = decoder.Decode(out, end)) return error;
    }
    while (out < end && in.pos < stopBit) {
        if (lookup) {
            const LaneDecoder table(*lookup, in);
            table.RunFrom(in, out, end, stopBit);
            if (out == end || in.pos >= stopBit) break;
        }
        if (auto error = DecodeOneSymbol(tree, in, out)) return error;
    }
    return std::nullopt;
}

unsigned XorOf(const unsigned char* p, std::size_t size) {
    std::uint64_t folded = 0;
    std::size_t i = 0;
    for (; i + sizeof folded <= size; i += sizeof folded) folded ^= LoadWord(p + i);
    for (; i < size; ++i) folded ^= p[i];
    for (int shift = 32; shift >= 8; shift /= 2) folded ^= folded >> shift;
    return static_cast<unsigned>(folded & 0xFF);
}

// ---- input -----------------------------------------------------------------------------------

// The coded bytes, pulled from the source into a window as they are needed. A source that holds
// its bytes in memory is read in place.
class Feed {
public:
    Feed(ByteSource& source, std::uint64_t size, std::size_t capacity) : source_(source), remaining_(size) {
        if (source.InMemory(view_) && view_.size() >= size) {
            view_ = view_.substr(0, static_cast<std::size_t>(size));
            data_ = reinterpret_cast<const unsigned char*>(view_.data());
            end_ = view_.size();
            remaining_ = 0;
            source.Skip(size);
        } else {
            // No bigger than the stream, so that many small files cost little.
            buffer_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(capacity, std::max<std::uint64_t>(size, 64))));
            data_ = buffer_.data();
        }
    }

    const unsigned char* Data() const { return data_ + begin_; }
    std::size_t Available() const { return end_ - begin_; }
    std::uint64_t Left() const { return Available() + remaining_; }
    bool AllHere() const { return remaining_ == 0; }
    bool Failed() const { return failed_; }
    void Consume(std::size_t count) { begin_ += count; }

    // Fills the window from the source as far as it goes.
    void Fill() {
        if (buffer_.empty() || remaining_ == 0) return;
        if (begin_ > 0) {
            std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
            end_ -= begin_;
            begin_ = 0;
        }
        while (end_ < buffer_.size() && remaining_ > 0) {
            const auto want = static_cast<std::size_t>(std::min<std::uint64_t>(buffer_.size() - end_, remaining_));
            const std::ptrdiff_t got = source_.Read(reinterpret_cast<char*>(buffer_.data() + end_), want);
            if (got <= 0) {  // the source ended early or failed: what is here is all there is
                failed_ = true;
                remaining_ = 0;
                return;
            }
            end_ += static_cast<std::size_t>(got);
            remaining_ -= static_cast<std::uint64_t>(got);
        }
    }

    // The next byte, or -1 at the end.
    int Byte() {
        if (begin_ == end_) Fill();
        return begin_ == end_ ? -1 : data_[begin_++];
    }

    // The next `count` bytes (there must be as many) appended to `out`.
    void Take(std::size_t count, std::string& out) {
        while (count > 0) {
            if (begin_ == end_) Fill();
            const std::size_t part = std::min(count, Available());
            if (part == 0) return;
            out.append(reinterpret_cast<const char*>(Data()), part);
            begin_ += part;
            count -= part;
        }
    }

    // Passes over `count` bytes (there must be as many).
    void Pass(std::uint64_t count) {
        const std::size_t here = static_cast<std::size_t>(std::min<std::uint64_t>(count, Available()));
        begin_ += here;
        count -= here;
        if (count == 0) return;
        if (!source_.Skip(count)) failed_ = true;
        remaining_ -= std::min(count, remaining_);
    }

private:
    ByteSource& source_;
    std::uint64_t remaining_;  // bytes still in the source
    std::string_view view_;
    std::vector<unsigned char> buffer_;
    const unsigned char* data_ = nullptr;
    std::size_t begin_ = 0, end_ = 0;
    bool failed_ = false;
};

// ---- header ----------------------------------------------------------------------------------

// A length field: the text up to the next CR. It converts when it is an optional sign and at
// least one decimal digit with a value that fits 32 signed bits. Read byte by byte, so a field
// of any length costs no memory.
struct LengthField {
    bool closed = false;                // a CR ends it
    std::optional<std::int32_t> value;  // when it converts
};

LengthField ReadLengthField(Feed& feed) {
    bool negative = false, digits = false, valid = true;
    std::int64_t value = 0;
    for (std::size_t at = 0;; ++at) {
        const int c = feed.Byte();
        if (c < 0) return {};
        if (c == kCr) break;
        if (at == 0 && (c == '+' || c == '-')) {
            negative = c == '-';
        } else if (c >= '0' && c <= '9' && valid) {
            digits = true;
            value = value * 10 + (c - '0');
            valid = value <= (negative ? std::int64_t{INT32_MAX} + 1 : INT32_MAX);
        } else {
            valid = false;
        }
    }
    if (!valid || !digits) return {true, std::nullopt};
    return {true, static_cast<std::int32_t>(negative ? -value : value)};
}

// What the header says, up to the payload.
struct Header {
    enum class Form { None, Stored, He2 };
    Form form = Form::None;
    bool stored = false;
    std::string table;  // when kept
    unsigned char checksum = 0;
    std::int32_t length = 0;
};

// Reads the header in stream order with the decoder's checks in their order. The lookup table is
// kept only when `keepTable`, and then checked to be whole; otherwise it is passed over.
std::optional<CodecError> ReadHeader(Feed& feed, bool keepTable, Header& header) {
    if (feed.Available() < kHe2Signature.size()) feed.Fill();
    const std::string_view start(reinterpret_cast<const char*>(feed.Data()), std::min<std::size_t>(feed.Available(), kHe2Signature.size()));
    if (start == kHe0Signature) {
        feed.Consume(kHe0Signature.size());
        header.form = Header::Form::Stored;
        header.stored = true;
        return std::nullopt;
    }
    if (start != kHe2Signature) return Fail(kHuffmanNotHe2);
    feed.Consume(kHe2Signature.size());
    header.form = Header::Form::He2;

    const LengthField tableLength = ReadLengthField(feed);
    if (!tableLength.closed) return Fail(kHuffmanNotHe2);
    if (!tableLength.value) return Fail(kHuffmanHeaderCorrupt);
    if (*tableLength.value < 0) return InvalidArgument();
    // The next T bytes, or all that remain if fewer, are the lookup table.
    const auto tableSize = static_cast<std::size_t>(std::min<std::uint64_t>(*tableLength.value, feed.Left()));
    if (keepTable) {
        header.table.reserve(tableSize);
        feed.Take(tableSize, header.table);
        if (!TableIsWhole(header.table)) return InvalidArgument();
    } else {
        feed.Pass(tableSize);
    }

    const int checksum = feed.Byte();
    if (checksum < 0) return InvalidArgument();  // no byte where the checksum is needed
    header.checksum = static_cast<unsigned char>(checksum);

    const LengthField length = ReadLengthField(feed);
    if (!length.closed || !length.value) return Fail(kHuffmanHeaderCorrupt);
    header.length = *length.value;
    return std::nullopt;
}

CodecError OutOfMemory() {
    return {kOutOfMemoryNumber, std::string(kHuffmanErrorSource), std::string(kOutOfMemoryDescription)};
}

// The code tree may take this much room plus as much as the stream's own size; a lookup table
// that needs more is refused, whatever the payload.
constexpr std::uint64_t kTreeRoom = std::uint64_t{48} << 20;
// A symbol started before this many bits from a window's end is sure to end inside it, and the
// lanes' last word loads stay inside too.
constexpr std::uint64_t kWindowMargin = kTailBits;

// ---- payload ---------------------------------------------------------------------------------

he2::DecodeResult Decode(ByteSource& source, std::uint64_t size, const ByteSink& sink, const he2::DecodeBuffers& buffers,
                         const std::function<unsigned char*(std::size_t)>& wholeOutput) {
    using he2::DecodeFailure;
    Feed feed(source, size, std::max<std::size_t>(buffers.window, 2 * kWindowMargin / kBitsPerByte + 64));
    auto fail = [&](CodecError error) -> he2::DecodeResult {
        // A source that ended early makes any error of the coder a reading failure.
        if (feed.Failed()) return {DecodeFailure::Read, {}};
        return {DecodeFailure::Codec, std::move(error)};
    };
    Header header;
    if (auto error = ReadHeader(feed, true, header)) return fail(*error);
    if (header.stored) {
        for (;;) {
            if (feed.Available() == 0) feed.Fill();
            if (feed.Available() == 0) break;
            if (!sink({reinterpret_cast<const char*>(feed.Data()), feed.Available()})) return {DecodeFailure::Write, {}};
            feed.Consume(feed.Available());
        }
        return feed.Failed() ? he2::DecodeResult{DecodeFailure::Read, {}} : he2::DecodeResult{};
    }

    const std::int64_t length = header.length;
    const std::uint64_t payloadBytes = feed.Left();
    std::uint64_t taken = 0;  // payload bytes before the window
    BitReader in{feed.Data(), feed.Available()};
    unsigned checksum = 0;
    std::int64_t produced = 0;
    if (length > 0) {
        const std::uint64_t payloadBits = payloadBytes * kBitsPerByte;
        const auto tree = BuildTree(header.table, payloadBits, static_cast<std::size_t>((kTreeRoom + size) / sizeof(TreeNode)));
        if (!tree) return fail(OutOfMemory());
        header.table = std::string();
        // Every symbol takes at least one bit, so a claim beyond the payload's bits cannot be
        // met; room is made for a byte per payload bit at most.
        const std::uint64_t reachable = std::min<std::uint64_t>(static_cast<std::uint64_t>(length), payloadBits);
        const bool worthLookup = reachable >= static_cast<std::uint64_t>(kLookupWorthwhile);
        const auto lookup = worthLookup ? std::optional<Lookup>(BuildLookup(*tree)) : std::nullopt;
        // Lanes pay for their buffers on long outputs only.
        auto ahead = lookup && reachable >= static_cast<std::uint64_t>(kLanesWorthwhile) ? MakeAheadLanes()
                                                                                           : std::unique_ptr<AheadLanes>();
        std::vector<unsigned char> chunk;
        unsigned char* base = nullptr;
        std::size_t room = 0;
        if (wholeOutput) {
            room = static_cast<std::size_t>(reachable);
            base = wholeOutput(room);
        } else {
            room = static_cast<std::size_t>(std::min<std::uint64_t>(reachable, std::max<std::size_t>(buffers.output, 1)));
            chunk.resize(room);
            base = chunk.data();
        }
        unsigned char* out = base;
        auto flush = [&] {
            const auto count = static_cast<std::size_t>(out - base);
            checksum ^= XorOf(base, count);
            produced += static_cast<std::int64_t>(count);
            out = base;
            return wholeOutput || sink({reinterpret_cast<const char*>(base), count});
        };
        while (produced + (out - base) < length) {
            if (!feed.AllHere() && in.pos + kWindowMargin >= std::uint64_t{in.size} * kBitsPerByte) {
                const std::size_t used = static_cast<std::size_t>(in.pos / kBitsPerByte);
                feed.Consume(used);
                taken += used;
                feed.Fill();
                in = BitReader{feed.Data(), feed.Available(), in.pos % kBitsPerByte};
            }
            // A piece ends where a round of the lanes would no longer fit, so no round is cut short.
            const bool roundsLeft = ahead && length - produced - (out - base) >= kRoundOutput;
            if (out == base + room || (!wholeOutput && roundsLeft && base + room - out < kRoundOutput && out != base)) {
                if (!flush()) return {DecodeFailure::Write, {}};
                if (produced >= static_cast<std::int64_t>(reachable)) break;
            }
            const std::uint64_t stopBit = feed.AllHere() ? UINT64_MAX : std::uint64_t{in.size} * kBitsPerByte - kWindowMargin;
            const std::int64_t wanted = length - produced - (out - base);
            unsigned char* end = out + std::min<std::int64_t>(wanted, base + room - out);
            // Lanes where a round fits before `end`, or where `end` is the output's own end.
            AheadLanes* lanes = ahead && (end - out >= kRoundOutput || end - out == wanted) ? ahead.get() : nullptr;
            if (auto error = DecodeSymbols(*tree, lookup ? &*lookup : nullptr, lanes, in, out, end, stopBit)) return fail(Fail(*error));
        }
        if (out != base && !flush()) return {DecodeFailure::Write, {}};
        if (produced < length) return fail(Fail(kHuffmanExpectingMoreBytes));
    }
    if (taken + (in.pos + kBitsPerByte - 1) / kBitsPerByte < payloadBytes) return fail(Fail(kHuffmanExtraBytes));
    // A negative length produces nothing, so the output's length differs from it.
    if (produced != length) return fail(Fail(kHuffmanChecksumMismatch));
    if (checksum != header.checksum) return fail(Fail(kHuffmanChecksumMismatch));
    if (feed.Failed()) return {DecodeFailure::Read, {}};
    return {};
}

}  // namespace

namespace he2 {

DecodeResult DecodeStream(ByteSource& input, std::uint64_t size, const ByteSink& sink, const DecodeBuffers& buffers,
                          const std::function<unsigned char*(std::size_t)>& wholeOutput) {
    try {
        return Decode(input, size, sink, buffers, wholeOutput);
    } catch (const std::bad_alloc&) {
        return {DecodeFailure::Codec, OutOfMemory()};
    }
}

StreamInfo PeekStream(ByteSource& input, std::uint64_t size) {
    Feed feed(input, size, 4096);
    Header header;
    const auto error = ReadHeader(feed, false, header);
    switch (header.form) {
    case Header::Form::None: return {"?", std::nullopt};
    case Header::Form::Stored: return {std::string(kHe0Stamp), static_cast<std::int64_t>(size - kHe0Signature.size())};
    case Header::Form::He2: break;
    }
    if (error) return {std::string(kHe2Stamp), std::nullopt};
    return {std::string(kHe2Stamp), header.length};
}

}  // namespace he2

std::variant<std::string, CodecError> HuffmanDecode(std::string_view sData) {
    std::string output;
    MemorySource source(sData);
    const auto result = he2::DecodeStream(
        source, sData.size(),
        [&](std::string_view piece) {
            output.append(piece);
            return true;
        },
        {}, [&](std::size_t size) {
            output.resize(size);
            return reinterpret_cast<unsigned char*>(output.data());
        });
    if (result.failure != he2::DecodeFailure::None) return result.error;
    return output;
}

}  // namespace skin
