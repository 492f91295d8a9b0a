#pragma once
// Shared helpers of the coder tests: byte literals, result inspection, hand-built HE2 streams
// with any code table, and seeded input generators.

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <map>
#include <random>
#include <string>
#include <variant>
#include <vector>

#include "huffmancoding.h"

namespace skin::testing {

inline std::string Bytes(std::initializer_list<int> values) {
    std::string out;
    for (int v : values) out.push_back(static_cast<char>(v));
    return out;
}

// The worked streams: "AAAA" and "abracadabra" forced to HE2.
inline const std::string kFourA = Bytes({0x48, 0x45, 0x32, 0x0D, 0x33, 0x0D, 0x41, 0x01, 0x01, 0x00, 0x34, 0x0D, 0x0F});
inline const std::string kAbracadabra =
    Bytes({0x48, 0x45, 0x32, 0x0D, 0x31, 0x35, 0x0D, 0x61, 0x01, 0x00, 0x62, 0x03, 0x03, 0x63, 0x03,
           0x01, 0x64, 0x03, 0x05, 0x72, 0x03, 0x07, 0x66, 0x31, 0x31, 0x0D, 0x76, 0x51, 0x3B});

// "ok" for a decoded string, else the error's description.
inline std::string Outcome(const std::variant<std::string, CodecError>& result) {
    if (std::holds_alternative<std::string>(result)) return "ok";
    return std::get<CodecError>(result).description;
}

inline std::string ErrorText(const CodecError& e) {
    return std::to_string(e.number) + " " + e.source + " " + e.description;
}

// Same decoded bytes, or the same error number, source and description.
inline ::testing::AssertionResult SameResult(const std::variant<std::string, CodecError>& actual,
                                             const std::variant<std::string, CodecError>& expected) {
    const auto* text = std::get_if<std::string>(&actual);
    const auto* want = std::get_if<std::string>(&expected);
    if (text && want) return *text == *want ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "bytes differ";
    const std::string a = text ? "ok" : ErrorText(std::get<CodecError>(actual));
    const std::string e = want ? "ok" : ErrorText(std::get<CodecError>(expected));
    if (a == e) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << a << ", expected " << e;
}

// Decodes `stream` and expects exactly `data` back.
inline void ExpectDecodes(const std::string& stream, const std::string& data) {
    const auto result = HuffmanDecode(stream);
    ASSERT_TRUE(std::holds_alternative<std::string>(result)) << Outcome(result);
    EXPECT_TRUE(std::get<std::string>(result) == data) << "size " << data.size();
}

// Code bits as a string of '0' and '1', first bit nearest the root.
using CodeBook = std::map<unsigned char, std::string>;

// Bits packed first bit lowest, as code fields and payloads hold them.
inline std::string PackBits(const std::string& bits) {
    std::string out((bits.size() + 7) / 8, '\0');
    for (std::size_t i = 0; i < bits.size(); ++i)
        if (bits[i] == '1') out[i / 8] = static_cast<char>(out[i / 8] | (1 << (i % 8)));
    return out;
}

// An HE2 stream of `data` under any code book (which must hold a code for every byte of it).
inline std::string HandStream(const CodeBook& book, const std::string& data) {
    std::string table, bits;
    for (const auto& [symbol, code] : book) table += std::string{static_cast<char>(symbol), static_cast<char>(code.size())} + PackBits(code);
    unsigned checksum = 0;
    for (unsigned char b : data) {
        checksum ^= b;
        bits += book.at(b);
    }
    return "HE2\r" + std::to_string(table.size()) + "\r" + table + static_cast<char>(checksum) +
           std::to_string(data.size()) + "\r" + PackBits(bits);
}

inline std::string RandomBytes(std::mt19937& rng, std::size_t size, int alphabet) {
    std::uniform_int_distribution<int> pick(0, alphabet - 1);
    std::string out(size, '\0');
    for (auto& c : out) c = static_cast<char>(pick(rng));
    return out;
}

// Geometric-like frequencies: many ties among rare bytes and long codes.
inline std::string SkewedBytes(std::mt19937& rng, std::size_t size) {
    std::geometric_distribution<int> pick(0.3);
    std::string out(size, '\0');
    for (auto& c : out) c = static_cast<char>(std::min(pick(rng), 255) * 7 % 256);
    return out;
}

}  // namespace skin::testing
