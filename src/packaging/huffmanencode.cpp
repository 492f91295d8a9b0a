// HE2 encoder. The code tree is built node by node exactly as the format prescribes (double
// weights, the heaviest-first work list with its tie-breaks), because tie-breaking decides the
// bytes; the speed comes from counting and from emitting codes a 64-bit word at a time.
#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

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

// Writes the payload at `out`, which must have 8 bytes of room past the payload's end: the bit
// buffer is stored a whole word at a time and the pointer advances by the complete bytes in it.
// With at most 7 bits left over, kPerFlush codes of at most 56 / kPerFlush bits always fit.
template <int kPerFlush>
unsigned char* EmitShortCodes(const unsigned char* in, std::size_t size, const Codes& codes,
                              unsigned char* out) {
    static_assert(kPerFlush >= 1 && 7 + kPerFlush * (kWordCodeBits / kPerFlush) <= 63);
    const std::uint64_t* table = codes.word.data();
    std::uint64_t buffer = 0;
    unsigned filled = 0;
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
    StoreWord(out, buffer);
    return out + (filled + 7) / 8;
}

// Any code length up to 255 bits, in pieces of at most 32 bits.
unsigned char* EmitLongCodes(const unsigned char* in, std::size_t size, const Codes& codes,
                             unsigned char* out) {
    constexpr int kPiece = 32;
    std::uint64_t buffer = 0;
    unsigned filled = 0;
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
    StoreWord(out, buffer);
    return out + (filled + 7) / 8;
}

unsigned char* EmitPayload(const unsigned char* in, std::size_t size, const Codes& codes,
                           unsigned char* out) {
    if (codes.maxLength <= kWordCodeBits / 4) return EmitShortCodes<4>(in, size, codes, out);
    if (codes.maxLength <= kWordCodeBits / 3) return EmitShortCodes<3>(in, size, codes, out);
    if (codes.maxLength <= kWordCodeBits / 2) return EmitShortCodes<2>(in, size, codes, out);
    if (codes.maxLength <= kWordCodeBits) return EmitShortCodes<1>(in, size, codes, out);
    return EmitLongCodes(in, size, codes, out);
}

void AppendDecimal(std::string& out, std::uint64_t value) {
    char digits[24];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    out.append(digits, end);
}

std::string StoredForm(std::string_view data) {
    std::string stream;
    stream.reserve(kHe0Signature.size() + data.size());
    stream.append(kHe0Signature);
    stream.append(data);
    return stream;
}

// The HE2 header, the payload size and the whole stream's size for `data`.
struct He2Plan {
    CodeTree tree;
    std::string header;
    std::uint64_t payloadBytes = 0;
    std::uint64_t streamSize = 0;
};

He2Plan PlanHe2(std::string_view data) {
    const auto* in = reinterpret_cast<const unsigned char*>(data.data());
    const Counts counts = CountBytes(in, data.size());
    He2Plan plan{BuildTree(counts, data.size()), {}, 0, 0};

    std::string table;
    unsigned checksum = 0;
    std::uint64_t payloadBits = 0;
    for (int b = 0; b < kSymbols; ++b) {
        if (plan.tree.codeTable[b] == kNoNode) continue;
        const auto& code = plan.tree.nodes[plan.tree.codeTable[b]].Code;
        table.push_back(static_cast<char>(b));
        table.append(PackCodeBits(code));
        payloadBits += counts[b] * code.size();
        if (counts[b] % 2 == 1) checksum ^= static_cast<unsigned>(b);  // XOR of every input byte
    }

    plan.header.assign(kHe2Signature);
    AppendDecimal(plan.header, table.size());
    plan.header.push_back(kCr);
    plan.header.append(table);
    plan.header.push_back(static_cast<char>(checksum));
    AppendDecimal(plan.header, data.size());
    plan.header.push_back(kCr);

    plan.payloadBytes = (payloadBits + 7) / 8;
    plan.streamSize = plan.header.size() + plan.payloadBytes;
    return plan;
}

// Writes the planned stream at `stream`, which has a word of room past its end for the
// emitter's whole-word stores.
void WriteHe2(std::string_view data, const He2Plan& plan, unsigned char* stream) {
    std::copy(plan.header.begin(), plan.header.end(), stream);
    unsigned char* payload = stream + plan.header.size();
    [[maybe_unused]] const unsigned char* end =
        EmitPayload(reinterpret_cast<const unsigned char*>(data.data()), data.size(), CollectCodes(plan.tree), payload);
    assert(end == payload + plan.payloadBytes);
}

}  // namespace

std::string HuffmanEncode(std::string_view sData, bool blnForce) {
    if (sData.empty()) return StoredForm(sData);
    const He2Plan plan = PlanHe2(sData);
    if (plan.streamSize > sData.size() && !blnForce) return StoredForm(sData);
    std::string stream;
    stream.resize(plan.streamSize + sizeof(std::uint64_t));
    WriteHe2(sData, plan, reinterpret_cast<unsigned char*>(stream.data()));
    stream.resize(plan.streamSize);
    return stream;
}

namespace he2 {

CodedPieces EncodeInto(std::string_view data, bool force, ByteBuffer& buffer) {
    if (data.empty()) return {kHe0Signature, data};
    const He2Plan plan = PlanHe2(data);
    if (plan.streamSize > data.size() && !force) return {kHe0Signature, data};
    unsigned char* stream = buffer.Reserve(plan.streamSize + sizeof(std::uint64_t));
    WriteHe2(data, plan, stream);
    return {{}, {reinterpret_cast<const char*>(stream), plan.streamSize}};
}

}  // namespace he2
}  // namespace skin
