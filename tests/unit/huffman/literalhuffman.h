#pragma once
// A slow, literal HE2 coder: the stream format's steps one by one, a node per allocation, codes
// as bit lists, bit-by-bit payloads. The fast coder must agree with it byte for byte and error
// for error. Also used by the fuzz targets.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "huffmancoding.h"

namespace skin::literal {

struct Node {
    double Weight = 0;
    bool IsLeaf = false;
    unsigned char Symbol = 0;
    std::vector<int> Code;
    std::unique_ptr<Node> ChildOne, ChildZero;
};

inline void AssignCodes(Node* node, std::vector<int> sequence, Node* codeTable[256]) {
    if (node == nullptr) return;
    if (node->IsLeaf) {
        node->Code = sequence;
        codeTable[node->Symbol] = node;
        return;
    }
    sequence.push_back(1);
    AssignCodes(node->ChildOne.get(), sequence, codeTable);
    sequence.back() = 0;
    AssignCodes(node->ChildZero.get(), sequence, codeTable);
}

inline std::string PackCodeBits(const std::vector<int>& code) {
    std::string out(1, static_cast<char>(code.size()));
    int current = 0;
    for (std::size_t i = 0; i < code.size(); ++i) {
        if (i % 8 == 0) {
            if (i != 0) out.push_back(static_cast<char>(current));
            current = 0;
        }
        if (code[i] == 1) current += 1 << (i % 8);
    }
    out.push_back(static_cast<char>(current));
    return out;
}

inline std::string Encode(std::string_view data, bool force) {
    const std::string he0 = std::string("HE0\r") + std::string(data);
    if (data.empty()) return "HE0\r";
    std::int32_t counter[256] = {};
    for (unsigned char b : data) counter[b] += 1;
    std::vector<std::unique_ptr<Node>> work;  // heaviest first
    auto insert = [&](std::unique_ptr<Node> node) {
        for (std::size_t i = 0; i < work.size(); ++i) {
            if (node->Weight >= work[i]->Weight) {
                work.insert(work.begin() + static_cast<std::ptrdiff_t>(i), std::move(node));
                return;
            }
        }
        work.push_back(std::move(node));
    };
    for (int b = 0; b < 256; ++b) {
        if (counter[b] < 1) continue;
        auto leaf = std::make_unique<Node>();
        leaf->Symbol = static_cast<unsigned char>(b);
        leaf->IsLeaf = true;
        leaf->Weight = static_cast<double>(counter[b]) / static_cast<double>(data.size());
        insert(std::move(leaf));
    }
    if (work.size() == 1) {
        auto root = std::make_unique<Node>();
        root->ChildOne = std::move(work[0]);
        root->Weight = 1;
        work.clear();
        work.push_back(std::move(root));
    }
    while (work.size() > 1) {
        auto node = std::make_unique<Node>();
        node->ChildZero = std::move(work.back());
        work.pop_back();
        node->ChildOne = std::move(work.back());
        work.pop_back();
        node->Weight = node->ChildOne->Weight + node->ChildZero->Weight;
        insert(std::move(node));
    }
    Node* codeTable[256] = {};
    AssignCodes(work[0].get(), {}, codeTable);
    std::string table;
    for (int b = 0; b < 256; ++b) {
        if (codeTable[b] == nullptr) continue;
        table.push_back(static_cast<char>(b));
        table += PackCodeBits(codeTable[b]->Code);
    }
    std::string out = "HE2\r" + std::to_string(table.size()) + "\r" + table;
    int checksum = 0;
    for (unsigned char b : data) checksum ^= b;
    out.push_back(static_cast<char>(checksum));
    out += std::to_string(data.size()) + "\r";
    int current = 0, k = -1;
    for (unsigned char b : data) {
        for (int bit : codeTable[b]->Code) {
            k += 1;
            if (bit == 1) current += 1 << k;
            if (k == 7) {
                out.push_back(static_cast<char>(current));
                current = 0;
                k = -1;
            }
        }
    }
    if (k > -1) out.push_back(static_cast<char>(current));
    if (out.size() > data.size() && !force) return he0;
    return out;
}

// The same length rule as the fast decoder: optional sign, decimal digits, fits 32 bits.
inline std::optional<std::int32_t> ToLength(const std::string& text) {
    std::size_t i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    if (i == text.size()) return std::nullopt;
    long long value = 0;
    for (; i < text.size(); ++i) {
        if (text[i] < '0' || text[i] > '9') return std::nullopt;
        value = value * 10 + (text[i] - '0');
        if (value > 2147483648LL) return std::nullopt;
    }
    if (negative) value = -value;
    if (value > 2147483647LL) return std::nullopt;
    return static_cast<std::int32_t>(value);
}

inline std::variant<std::string, CodecError> Decode(std::string sData) {
    auto fail = [](std::string_view description) {
        return CodecError{kHuffmanErrorNumber, std::string(kHuffmanErrorSource), std::string(description)};
    };
    const CodecError invalid{kInvalidArgumentNumber, std::string(kHuffmanErrorSource),
                             std::string(kInvalidArgumentDescription)};
    if (sData.substr(0, 4) == "HE0\r") return sData.substr(4);
    if (sData.substr(0, 4) != "HE2\r") return fail(kHuffmanNotHe2);
    sData = sData.substr(4);
    std::size_t cr = sData.find('\r');
    if (cr == std::string::npos) return fail(kHuffmanNotHe2);
    auto t = ToLength(sData.substr(0, cr));
    if (!t) return fail(kHuffmanHeaderCorrupt);
    sData = sData.substr(cr + 1);
    if (*t < 0) return invalid;
    std::string table = sData.substr(0, static_cast<std::size_t>(*t));
    sData = sData.substr(table.size());

    Node root;
    std::size_t p = 1;  // 1-based, as the format describes it
    auto byteAt = [&](std::size_t position) -> std::optional<int> {
        if (position < 1 || position > table.size()) return std::nullopt;
        return static_cast<unsigned char>(table[position - 1]);
    };
    while (p <= table.size()) {
        const int symbol = *byteAt(p);
        p += 1;
        // ReadCodeEntry
        auto n = byteAt(p);
        if (!n) return invalid;
        p += 1;
        std::vector<int> code;
        int current = 0;
        for (int i = 0; i < *n; ++i) {
            if (i % 8 == 0) {
                auto b = byteAt(p);
                if (!b) return invalid;
                current = *b;
                p += 1;
            }
            code.push_back((current >> (i % 8)) & 1);
        }
        Node* node = &root;
        for (int bit : code) {
            auto& child = bit == 1 ? node->ChildOne : node->ChildZero;
            if (!child) child = std::make_unique<Node>();
            node = child.get();
        }
        node->IsLeaf = true;
        node->Symbol = static_cast<unsigned char>(symbol);
        node->Code = code;
    }
    if (sData.empty()) return invalid;
    const int stored = static_cast<unsigned char>(sData[0]);
    sData = sData.substr(1);
    cr = sData.find('\r');
    if (cr == std::string::npos) return fail(kHuffmanHeaderCorrupt);
    auto length = ToLength(sData.substr(0, cr));
    if (!length) return fail(kHuffmanHeaderCorrupt);
    const std::string payload = sData.substr(cr + 1);
    // The one rule ahead of the bit walk: a claim of more than one byte per payload bit fails at
    // once, before anything is allocated.
    if (*length > 0 && static_cast<long long>(*length) > 8LL * static_cast<long long>(payload.size()))
        return fail(kHuffmanExpectingMoreBytes);

    std::string output;
    const Node* node = &root;
    std::size_t q = 1;
    int k = -1, current = 0;
    while (static_cast<long long>(output.size()) < *length) {
        if (k == -1) {
            if (q > payload.size()) return fail(kHuffmanExpectingMoreBytes);
            current = static_cast<unsigned char>(payload[q - 1]);
            q += 1;
        }
        k += 1;
        const int bit = (current >> k) & 1;
        node = bit == 1 ? node->ChildOne.get() : node->ChildZero.get();
        if (node == nullptr) return fail(kHuffmanLookupTableCorrupt);
        if (node->IsLeaf) {
            output.push_back(static_cast<char>(node->Symbol));
            node = &root;
        }
        if (k == 7) k = -1;
    }
    if (q <= payload.size()) return fail(kHuffmanExtraBytes);
    if (static_cast<long long>(output.size()) != *length) return fail(kHuffmanChecksumMismatch);
    int checksum = 0;
    for (unsigned char b : output) checksum ^= b;
    if (checksum != stored) return fail(kHuffmanChecksumMismatch);
    return output;
}

}  // namespace skin::literal
