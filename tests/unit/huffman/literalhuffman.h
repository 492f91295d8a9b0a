#pragma once
// A slow, literal HE2 coder: one allocation per tree node, codes as strings of '0' and '1', the
// payload walked bit by bit. The fast coder must agree with it byte for byte and error for error.
#include <charconv>
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
    std::unique_ptr<Node> ChildOne, ChildZero;
};

// Bits packed first bit lowest, as code fields and payloads hold them.
inline std::string PackBits(std::string_view bits) {
    std::string out((bits.size() + 7) / 8, '\0');
    for (std::size_t i = 0; i < bits.size(); ++i)
        if (bits[i] == '1') out[i / 8] = static_cast<char>(out[i / 8] | (1 << (i % 8)));
    return out;
}

inline void AssignCodes(const Node* node, const std::string& sequence, std::string codes[256]) {
    if (node != nullptr && node->IsLeaf) codes[node->Symbol] = sequence;
    if (node == nullptr || node->IsLeaf) return;
    AssignCodes(node->ChildOne.get(), sequence + '1', codes);
    AssignCodes(node->ChildZero.get(), sequence + '0', codes);
}

inline std::string Encode(std::string_view data, bool force) {
    if (data.empty()) return "HE0\r";
    std::int32_t counter[256] = {};
    for (unsigned char b : data) ++counter[b];
    std::vector<std::unique_ptr<Node>> work;  // heaviest first
    auto insert = [&](double weight, bool leaf, int symbol, std::unique_ptr<Node> one, std::unique_ptr<Node> zero) {
        auto at = work.begin();
        while (at != work.end() && weight < (*at)->Weight) ++at;
        work.insert(at, std::make_unique<Node>(Node{weight, leaf, static_cast<unsigned char>(symbol), std::move(one), std::move(zero)}));
    };
    for (int b = 0; b < 256; ++b)
        if (counter[b] > 0) insert(static_cast<double>(counter[b]) / static_cast<double>(data.size()), true, b, nullptr, nullptr);
    if (work.size() == 1) work[0] = std::make_unique<Node>(Node{1, false, 0, std::move(work[0]), nullptr});
    while (work.size() > 1) {
        auto zero = std::move(work.back());
        work.pop_back();
        auto one = std::move(work.back());
        work.pop_back();
        const double weight = one->Weight + zero->Weight;
        insert(weight, false, 0, std::move(one), std::move(zero));
    }
    std::string codes[256];
    AssignCodes(work[0].get(), "", codes);
    std::string table, bits;
    char checksum = 0;
    for (int b = 0; b < 256; ++b)
        if (!codes[b].empty()) table += std::string{static_cast<char>(b), static_cast<char>(codes[b].size())} + PackBits(codes[b]);
    for (unsigned char b : data) {
        checksum = static_cast<char>(checksum ^ b);
        bits += codes[b];
    }
    const std::string out = "HE2\r" + std::to_string(table.size()) + "\r" + table + checksum +
                            std::to_string(data.size()) + "\r" + PackBits(bits);
    return out.size() > data.size() && !force ? "HE0\r" + std::string(data) : out;
}

// An optional sign and decimal digits whose value fits 32 bits.
inline std::optional<std::int32_t> ToLength(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

inline std::variant<std::string, CodecError> Decode(std::string s) {
    auto fail = [](std::string_view text) -> std::variant<std::string, CodecError> { return CodecError{kHuffmanErrorNumber, std::string(kHuffmanErrorSource), std::string(text)}; };
    const CodecError invalid{kInvalidArgumentNumber, std::string(kHuffmanErrorSource), std::string(kInvalidArgumentDescription)};
    if (s.starts_with("HE0\r")) return s.substr(4);
    if (!s.starts_with("HE2\r")) return fail(kHuffmanNotHe2);
    std::size_t cr = s.find('\r', 4);
    if (cr == s.npos) return fail(kHuffmanNotHe2);
    const auto t = ToLength(std::string_view(s).substr(4, cr - 4));
    if (!t) return fail(kHuffmanHeaderCorrupt);
    if (*t < 0) return invalid;
    const std::string table = s.substr(cr + 1, static_cast<std::size_t>(*t));
    s = s.substr(cr + 1 + table.size());

    Node root;
    for (std::size_t p = 0; p < table.size();) {
        const auto symbol = static_cast<unsigned char>(table[p++]);
        if (p == table.size()) return invalid;
        const int n = static_cast<unsigned char>(table[p++]);
        if (p + (n + 7) / 8 > table.size()) return invalid;
        Node* node = &root;
        for (int i = 0; i < n; ++i) {
            auto& child = (static_cast<unsigned char>(table[p + i / 8]) >> (i % 8) & 1) ? node->ChildOne : node->ChildZero;
            if (!child) child = std::make_unique<Node>();
            node = child.get();
        }
        p += (n + 7) / 8;
        node->IsLeaf = true;
        node->Symbol = symbol;
    }
    if (s.empty()) return invalid;
    const auto stored = static_cast<unsigned char>(s[0]);
    cr = s.find('\r', 1);
    if (cr == s.npos) return fail(kHuffmanHeaderCorrupt);
    const auto length = ToLength(std::string_view(s).substr(1, cr - 1));
    if (!length) return fail(kHuffmanHeaderCorrupt);
    const std::string payload = s.substr(cr + 1);

    std::string output;
    const Node* node = &root;
    std::size_t bit = 0;
    while (static_cast<long long>(output.size()) < *length) {
        if (bit / 8 == payload.size()) return fail(kHuffmanExpectingMoreBytes);
        node = (static_cast<unsigned char>(payload[bit / 8]) >> (bit % 8) & 1) ? node->ChildOne.get() : node->ChildZero.get();
        ++bit;
        if (node == nullptr) return fail(kHuffmanLookupTableCorrupt);
        if (node->IsLeaf) {
            output.push_back(static_cast<char>(node->Symbol));
            node = &root;
        }
    }
    if ((bit + 7) / 8 < payload.size()) return fail(kHuffmanExtraBytes);
    unsigned char checksum = 0;
    for (unsigned char b : output) checksum ^= b;
    if (static_cast<long long>(output.size()) != *length || checksum != stored) return fail(kHuffmanChecksumMismatch);
    return output;
}

}  // namespace skin::literal
