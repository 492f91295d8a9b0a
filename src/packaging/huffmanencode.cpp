// HE2 encoder. The code tree is built node by node exactly as the format prescribes (double
// weights, the heaviest-first work list with its tie-breaks), because tie-breaking decides the
// bytes; the speed comes from counting and from emitting codes a 64-bit word at a time, on long
// inputs in two halves on two threads.
#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "helperthread.h"
#include "huffmancoding.h"
#include "huffmanformat.h"
#include "huffmaninternal.h"

namespace skin {
namespace {

using namespace he2;

// ---- counting --------------------------------------------------------------------------------

using Counts = std::array<std::uint64_t, kSymbols>;

// Four interleaved tables keep successive equal bytes from stalling on the same counter.
Counts CountBytes(const unsigned char* data, std::size_t size) {
    constexpr std::size_t kChunk = std::size_t{1} << 30;  // 32-bit sub-counters cannot overflow
    Counts counts{};
    while (size > 0) {
        const std::size_t chunk = std::min(size, kChunk);
        std::array<std::array<std::uint32_t, kSymbols>, 4> part{};
        std::size_t i = 0;
        for (; i + 4 <= chunk; i += 4) {
            ++part[0][data[i]];
            ++part[1][data[i + 1]];
            ++part[2][data[i + 2]];
            ++part[3][data[i + 3]];
        }
        for (; i < chunk; ++i) ++part[0][data[i]];
        for (int b = 0; b < kSymbols; ++b)
            counts[b] += std::uint64_t{part[0][b]} + part[1][b] + part[2][b] + part[3][b];
        data += chunk;
        size -= chunk;
    }
    return counts;
}

// ---- the code tree ---------------------------------------------------------------------------

constexpr int kNoNode = -1;

struct HuffmanNode {
    double Weight = 0;
    bool IsLeaf = false;
    unsigned char Symbol = 0;
    std::vector<unsigned char> Code;
    int ChildOne = kNoNode;
    int ChildZero = kNoNode;
};

struct CodeTree {
    std::vector<HuffmanNode> nodes;     // owns every node; children are indices into it
    std::array<int, kSymbols> codeTable;  // leaf of each byte value, or kNoNode
};

// Places `node` before the first element that weighs no more than it, else at the end.
void InsertByWeight(std::vector<int>& workList, const std::vector<HuffmanNode>& nodes, int node) {
    const double weight = nodes[node].Weight;
    auto at = std::find_if(workList.begin(), workList.end(),
                           [&](int other) { return weight >= nodes[other].Weight; });
    workList.insert(at, node);
}

void AssignCodes(CodeTree& tree, int node, std::vector<unsigned char> sequence) {
    if (node == kNoNode) return;
    HuffmanNode& current = tree.nodes[node];
    if (current.IsLeaf) {
        current.Code = sequence;
        tree.codeTable[current.Symbol] = node;
        return;
    }
    const int one = current.ChildOne;
    const int zero = current.ChildZero;
    sequence.push_back(1);
    AssignCodes(tree, one, sequence);
    sequence.back() = 0;
    AssignCodes(tree, zero, sequence);
}

CodeTree BuildTree(const Counts& counts, std::size_t length) {
    CodeTree tree;
    tree.codeTable.fill(kNoNode);
    tree.nodes.reserve(2 * kSymbols);
    std::vector<int> workList;
    workList.reserve(kSymbols);
    const double total = static_cast<double>(length);
    for (int b = 0; b < kSymbols; ++b) {
        if (counts[b] == 0) continue;
        HuffmanNode leaf;
        leaf.Symbol = static_cast<unsigned char>(b);
        leaf.IsLeaf = true;
        leaf.Weight = static_cast<double>(counts[b]) / total;
        tree.nodes.push_back(std::move(leaf));
        InsertByWeight(workList, tree.nodes, static_cast<int>(tree.nodes.size()) - 1);
    }
    if (workList.size() == 1) {
        HuffmanNode root;
        root.ChildOne = workList.front();
        root.Weight = 1;
        tree.nodes.push_back(std::move(root));
        workList.front() = static_cast<int>(tree.nodes.size()) - 1;
    }
    while (workList.size() > 1) {
        HuffmanNode inner;
        inner.ChildZero = workList.back();
        workList.pop_back();
        inner.ChildOne = workList.back();
        workList.pop_back();
        inner.Weight = tree.nodes[inner.ChildOne].Weight + tree.nodes[inner.ChildZero].Weight;
        tree.nodes.push_back(std::move(inner));
        InsertByWeight(workList, tree.nodes, static_cast<int>(tree.nodes.size()) - 1);
    }
    AssignCodes(tree, workList.front(), {});
    return tree;
}

// The lookup-table code field: the bit count, then the code bits packed least significant first.
std::string PackCodeBits(const std::vector<unsigned char>& code) {
    std::string field(1, static_cast<char>(code.size()));
    unsigned current = 0;
    for (std::size_t i = 0; i < code.size(); ++i) {
        if (i % kBitsPerByte == 0) {
            if (i != 0) field.push_back(static_cast<char>(current));
            current = 0;
        }
        if (code[i] != 0) current += 1u << (i % kBitsPerByte);
    }
    field.push_back(static_cast<char>(current));
    return field;
}

// ---- emission --------------------------------------------------------------------------------

// A code of up to kWordCodeBits bits as one word: code bit i in bit i, the length in the top byte.
constexpr int kWordCodeBits = 56;
constexpr int kLengthShift = 56;
constexpr std::uint64_t kCodeMask = (std::uint64_t{1} << kLengthShift) - 1;
constexpr int kCodeWords = (kMaxCodeBits + 63) / 64;

struct Codes {
    std::array<std::uint64_t, kSymbols> word{};                          // for short codes
    std::array<std::array<std::uint64_t, kCodeWords>, kSymbols> bits{};  // any code
    std::array<int, kSymbols> length{};
    int maxLength = 0;
};

Codes CollectCodes(const CodeTree& tree) {
    Codes codes;
    for (int b = 0; b < kSymbols; ++b) {
        if (tree.codeTable[b] == kNoNode) continue;
        const auto& code = tree.nodes[tree.codeTable[b]].Code;
        for (std::size_t i = 0; i < code.size(); ++i)
            if (code[i] != 0) codes.bits[b][i / 64] |= std::uint64_t{1} << (i % 64);
        codes.length[b] = static_cast<int>(code.size());
        codes.maxLength = std::max(codes.maxLength, codes.length[b]);
        if (codes.length[b] <= kWordCodeBits)
            codes.word[b] = codes.bits[b][0] | (std::uint64_t(codes.length[b]) << kLengthShift);
    }
    return codes;
}

// The bits of a partly written payload byte, carried from one piece of input to the next.
struct BitState {
    std::uint64_t buffer = 0;
    unsigned filled = 0;  // 0 to 7 between pieces
};

// Writes the complete payload bytes of `size` input bytes at `out`, which must have 8 bytes of
// room past them: the bit buffer is stored a whole word at a time and the pointer advances by
// the complete bytes in it. With at most 7 bits left over, kPerFlush codes of at most
// 56 / kPerFlush bits always fit. The bits of an incomplete last byte stay in `state`.
template <int kPerFlush>
unsigned char* EmitShortCodes(const unsigned char* in, std::size_t size, const Codes& codes, unsigned char* out,
                              BitState& state) {
    static_assert(kPerFlush >= 1 && 7 + kPerFlush * (kWordCodeBits / kPerFlush) <= 63);
    const std::uint64_t* table = codes.word.data();
    std::uint64_t buffer = state.buffer;
    unsigned filled = state.filled;
    auto add = [&](unsigned char byte) {
        const std::uint64_t entry = table[byte];
        buffer |= (entry & kCodeMask) << filled;
        filled += static_cast<unsigned>(entry >> kLengthShift);
    };
    auto flush = [&] {
        StoreWord(out, buffer);
        out += filled >> 3;
        buffer >>= filled & ~7u;
        filled &= 7u;
    };
    std::size_t i = 0;
    for (; i + kPerFlush <= size; i += kPerFlush) {
        for (int k = 0; k < kPerFlush; ++k) add(in[i + k]);
        flush();
    }
    for (; i < size; ++i) {
        add(in[i]);
        flush();
    }
    state = {buffer, filled};
    return out;
}

// Any code length up to 255 bits, in pieces of at most 32 bits.
unsigned char* EmitLongCodes(const unsigned char* in, std::size_t size, const Codes& codes, unsigned char* out,
                             BitState& state) {
    constexpr int kPiece = 32;
    std::uint64_t buffer = state.buffer;
    unsigned filled = state.filled;
    for (std::size_t i = 0; i < size; ++i) {
        const auto& bits = codes.bits[in[i]];
        const int length = codes.length[in[i]];
        for (int start = 0; start < length; start += kPiece) {
            const int count = std::min(kPiece, length - start);
            const std::uint64_t piece =
                (bits[start / 64] >> (start % 64)) & ((std::uint64_t{1} << count) - 1);
            buffer |= piece << filled;
            filled += static_cast<unsigned>(count);
            StoreWord(out, buffer);
            out += filled >> 3;
            buffer >>= filled & ~7u;
            filled &= 7u;
        }
    }
    state = {buffer, filled};
    return out;
}

// Codes of up to 56 bits, four to a flush whenever the four fit the bit buffer, which they
// nearly always do: long codes belong to rare bytes.
unsigned char* EmitGuardedCodes(const unsigned char* in, std::size_t size, const Codes& codes, unsigned char* out,
                                BitState& state) {
    const std::uint64_t* table = codes.word.data();
    std::uint64_t buffer = state.buffer;
    unsigned filled = state.filled;
    auto flush = [&] {
        StoreWord(out, buffer);
        out += filled >> 3;
        buffer >>= filled & ~7u;
        filled &= 7u;
    };
    std::size_t i = 0;
    for (; i + 4 <= size; i += 4) {
        const std::uint64_t e0 = table[in[i]], e1 = table[in[i + 1]], e2 = table[in[i + 2]], e3 = table[in[i + 3]];
        const unsigned l0 = static_cast<unsigned>(e0 >> kLengthShift), l1 = static_cast<unsigned>(e1 >> kLengthShift);
        const unsigned l2 = static_cast<unsigned>(e2 >> kLengthShift), l3 = static_cast<unsigned>(e3 >> kLengthShift);
        if (l0 + l1 + l2 + l3 <= static_cast<unsigned>(kWordCodeBits)) {
            buffer |= (e0 & kCodeMask) << filled;
            filled += l0;
            buffer |= (e1 & kCodeMask) << filled;
            filled += l1;
            buffer |= (e2 & kCodeMask) << filled;
            filled += l2;
            buffer |= (e3 & kCodeMask) << filled;
            filled += l3;
            flush();
        } else {
            for (const std::uint64_t e : {e0, e1, e2, e3}) {
                buffer |= (e & kCodeMask) << filled;
                filled += static_cast<unsigned>(e >> kLengthShift);
                flush();
            }
        }
    }
    for (; i < size; ++i) {
        buffer |= (table[in[i]] & kCodeMask) << filled;
        filled += static_cast<unsigned>(table[in[i]] >> kLengthShift);
        flush();
    }
    state = {buffer, filled};
    return out;
}

unsigned char* EmitPayload(const unsigned char* in, std::size_t size, const Codes& codes, unsigned char* out,
                           BitState& state) {
    if (codes.maxLength <= kWordCodeBits / 4) return EmitShortCodes<4>(in, size, codes, out, state);
    if (codes.maxLength <= kWordCodeBits) return EmitGuardedCodes(in, size, codes, out, state);
    return EmitLongCodes(in, size, codes, out, state);
}

// Appends the whole bytes [from, to) and then the bits of `tail` behind the bits that `state`
// holds for `out`: every byte shifts by as many bits as `state` holds.
unsigned char* AppendBits(unsigned char* out, BitState& state, const unsigned char* from, const unsigned char* to,
                          BitState tail) {
    const auto count = static_cast<std::size_t>(to - from);
    const unsigned shift = state.filled;
    std::uint64_t carry = state.buffer;
    if (shift == 0) {
        std::memcpy(out, from, count);
    } else {
        std::size_t j = 0;
        for (; j + sizeof carry <= count; j += sizeof carry) {
            const std::uint64_t word = LoadWord(from + j);
            StoreWord(out + j, carry | word << shift);
            carry = word >> (64 - shift);
        }
        for (; j < count; ++j) {
            out[j] = static_cast<unsigned char>(carry | std::uint64_t{from[j]} << shift);
            carry = from[j] >> (kBitsPerByte - shift);
        }
    }
    out += count;
    std::uint64_t pending = carry | tail.buffer << shift;
    unsigned filled = shift + tail.filled;
    if (filled >= kBitsPerByte) {
        *out++ = static_cast<unsigned char>(pending);
        pending >>= kBitsPerByte;
        filled -= kBitsPerByte;
    }
    state = {pending, filled};
    return out;
}

// Pieces at least this long are shared with the helper thread, half each.
constexpr std::size_t kHalvesWorthwhile = std::size_t{64} << 10;

// The codes of a piece, with the helper coding its second half from the first bit of `second`,
// whose bits then follow the first half's: the same bits as one thread writes.
unsigned char* EmitInHalves(HelperThread& helper, const unsigned char* in, std::size_t size, const Codes& codes,
                            unsigned char* out, BitState& state, unsigned char* second) {
    const std::size_t half = size / 2;
    BitState secondState;
    unsigned char* secondEnd = second;
    const std::function<void()> job = [&] { secondEnd = EmitPayload(in + half, size - half, codes, second, secondState); };
    helper.Start(job);
    out = EmitPayload(in, half, codes, out, state);
    helper.Finish();
    return AppendBits(out, state, second, secondEnd, secondState);
}

Counts CountInHalves(HelperThread* helper, const unsigned char* data, std::size_t size) {
    if (helper == nullptr || size < kHalvesWorthwhile) return CountBytes(data, size);
    const std::size_t half = size / 2;
    Counts second{};
    const std::function<void()> job = [&] { second = CountBytes(data + half, size - half); };
    helper->Start(job);
    Counts counts = CountBytes(data, half);
    helper->Finish();
    for (int b = 0; b < kSymbols; ++b) counts[b] += second[b];
    return counts;
}

void AppendDecimal(std::string& out, std::uint64_t value) {
    char digits[24];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    out.append(digits, end);
}

unsigned XorOf(const unsigned char* p, std::size_t size) {
    std::uint64_t folded = 0;
    std::size_t i = 0;
    for (; i + sizeof folded <= size; i += sizeof folded) folded ^= LoadWord(p + i);
    for (; i < size; ++i) folded ^= p[i];
    for (int shift = 32; shift >= 8; shift /= 2) folded ^= folded >> shift;
    return static_cast<unsigned>(folded & 0xFF);
}

unsigned XorInHalves(HelperThread* helper, const unsigned char* data, std::size_t size) {
    if (helper == nullptr || size < kHalvesWorthwhile) return XorOf(data, size);
    const std::size_t half = size / 2;
    unsigned second = 0;
    const std::function<void()> job = [&] { second = XorOf(data + half, size - half); };
    helper->Start(job);
    const unsigned first = XorOf(data, half);
    helper->Finish();
    return first ^ second;
}

// Input is read in pieces that stay in the second-level cache; a piece's payload fits the
// output piece whatever the code lengths.
constexpr std::size_t kInputPiece = std::size_t{256} << 10;
constexpr std::size_t kOutputPiece = std::size_t{512} << 10;
constexpr std::size_t kWordRoom = sizeof(std::uint64_t);
// Inputs at least this long share their work with a helper thread.
constexpr std::uint64_t kHelperWorthwhile = std::uint64_t{1} << 20;

}  // namespace

namespace he2 {

struct StreamEncoder::Planned {
    std::uint64_t size = 0;
    bool stored = true;
    std::string header;  // HE2: everything before the payload; stored: the signature
    Codes codes;
    unsigned checksum = 0;
    std::uint64_t payloadBytes = 0;
    std::vector<unsigned char> input;
    HelperLease helper;  // for long inputs, where the machine has one
};

StreamEncoder::StreamEncoder() = default;
StreamEncoder::~StreamEncoder() = default;

bool StreamEncoder::Plan(ByteSource& source, std::uint64_t size, bool force) {
    plan_ = std::make_unique<Planned>();
    Planned& plan = *plan_;
    plan.size = size;
    plan.header.assign(kHe0Signature);
    if (size == 0) return true;
    if (size >= kHelperWorthwhile) plan.helper = LendHelperThread();
    Counts counts{};
    std::string_view resident;
    if (source.InMemory(resident) && resident.size() >= size) {
        counts = CountInHalves(plan.helper.get(), reinterpret_cast<const unsigned char*>(resident.data()), static_cast<std::size_t>(size));
    } else {
        plan.input.resize(std::min<std::uint64_t>(size, kInputPiece));
        for (std::uint64_t done = 0; done < size;) {
            const std::ptrdiff_t got = source.Read(reinterpret_cast<char*>(plan.input.data()),
                                                   static_cast<std::size_t>(std::min<std::uint64_t>(size - done, kInputPiece)));
            if (got <= 0) return false;
            const Counts piece = CountInHalves(plan.helper.get(), plan.input.data(), static_cast<std::size_t>(got));
            for (int b = 0; b < kSymbols; ++b) counts[b] += piece[b];
            done += static_cast<std::uint64_t>(got);
        }
    }
    const CodeTree tree = BuildTree(counts, static_cast<std::size_t>(size));

    std::string table;
    std::uint64_t payloadBits = 0;
    for (int b = 0; b < kSymbols; ++b) {
        if (tree.codeTable[b] == kNoNode) continue;
        const auto& code = tree.nodes[tree.codeTable[b]].Code;
        table.push_back(static_cast<char>(b));
        table.append(PackCodeBits(code));
        payloadBits += counts[b] * code.size();
        if (counts[b] % 2 == 1) plan.checksum ^= static_cast<unsigned>(b);  // XOR of every input byte
    }
    std::string header(kHe2Signature);
    AppendDecimal(header, table.size());
    header.push_back(kCr);
    header.append(table);
    header.push_back(static_cast<char>(plan.checksum));
    AppendDecimal(header, size);
    header.push_back(kCr);
    plan.payloadBytes = (payloadBits + 7) / 8;
    // The stored form when HE2 would be longer than the input, unless HE2 is forced.
    if (header.size() + plan.payloadBytes > size && !force) return true;
    plan.stored = false;
    plan.header = std::move(header);
    plan.codes = CollectCodes(tree);
    return true;
}

std::uint64_t StreamEncoder::CodedSize() const {
    return plan_->header.size() + (plan_->stored ? plan_->size : plan_->payloadBytes);
}

StreamEncoder::Result StreamEncoder::Write(ByteSource& source, const ByteSink& sink) {
    Planned& plan = *plan_;
    if (!sink(plan.header)) return Result::WriteFailed;
    if (plan.size == 0) return Result::Written;
    if (!source.Rewind()) return Result::ReadFailed;
    const int maxLength = std::max(plan.codes.maxLength, 1);
    const std::size_t piece =
        plan.stored ? kInputPiece : std::min(kInputPiece, kOutputPiece * kBitsPerByte / static_cast<std::size_t>(maxLength));
    std::vector<unsigned char> output(plan.stored ? 0 : kOutputPiece + kWordRoom);
    // The helper's half of a piece: its payload fits the output piece, as the whole piece's does.
    std::vector<unsigned char> second(plan.stored || !plan.helper ? 0 : kOutputPiece + kWordRoom);
    // Bytes already in memory are coded in place, others through the input buffer.
    std::string_view resident;
    const bool inPlace = source.InMemory(resident) && resident.size() >= plan.size;
    if (!inPlace) plan.input.resize(std::min<std::uint64_t>(plan.size, kInputPiece));
    BitState state;
    unsigned checksum = 0;
    std::uint64_t payload = 0;
    for (std::uint64_t done = 0; done < plan.size;) {
        const auto want = static_cast<std::size_t>(std::min<std::uint64_t>(plan.size - done, piece));
        const unsigned char* in = plan.input.data();
        std::ptrdiff_t got = 0;
        if (inPlace) {
            in = reinterpret_cast<const unsigned char*>(resident.data()) + done;
            got = source.Skip(want) ? static_cast<std::ptrdiff_t>(want) : -1;
        } else {
            got = source.Read(reinterpret_cast<char*>(plan.input.data()), want);
        }
        if (got < 0) return Result::ReadFailed;
        if (got == 0) return Result::InputChanged;
        const auto count = static_cast<std::size_t>(got);
        done += count;
        checksum ^= XorInHalves(plan.helper.get(), in, count);
        std::string_view bytes(reinterpret_cast<const char*>(in), count);
        if (!plan.stored) {
            unsigned char* end = plan.helper && count >= kHalvesWorthwhile
                                     ? EmitInHalves(*plan.helper, in, count, plan.codes, output.data(), state, second.data())
                                     : EmitPayload(in, count, plan.codes, output.data(), state);
            bytes = {reinterpret_cast<const char*>(output.data()), static_cast<std::size_t>(end - output.data())};
        }
        payload += bytes.size();
        if (!sink(bytes)) return Result::WriteFailed;
    }
    char extra;
    if (!inPlace && source.Read(&extra, 1) != 0) return Result::InputChanged;
    if (!plan.stored && state.filled > 0) {
        const char last = static_cast<char>(state.buffer & 0xFF);
        ++payload;
        if (!sink({&last, 1})) return Result::WriteFailed;
    }
    if (checksum != plan.checksum || (!plan.stored && payload != plan.payloadBytes)) return Result::InputChanged;
    return Result::Written;
}

}  // namespace he2

std::string HuffmanEncode(std::string_view sData, bool blnForce) {
    MemorySource source(sData);
    he2::StreamEncoder encoder;
    encoder.Plan(source, sData.size(), blnForce);
    std::string stream;
    stream.reserve(encoder.CodedSize());
    encoder.Write(source, [&](std::string_view piece) {
        stream.append(piece);
        return true;
    });
    return stream;
}

}  // namespace skin
