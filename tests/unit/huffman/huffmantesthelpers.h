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

// "ok" for a decoded string, else the error's description.
inline std::string Outcome(const std::variant<std::string, CodecError>& result) {
    if (std::holds_alternative<std::string>(result)) return "ok";
    return std::get<CodecError>(result).description;
}

inline ::testing::AssertionResult SameResult(const std::variant<std::string, CodecError>& actual,
                                             const std::variant<std::string, CodecError>& expected) {
    if (actual.index() != expected.index())
        return ::testing::AssertionFailure() << "got " << Outcome(actual) << ", expected " << Outcome(expected);
    if (const auto* text = std::get_if<std::string>(&actual)) {
        if (*text != std::get<std::string>(expected)) return ::testing::AssertionFailure() << "decoded bytes differ";
        return ::testing::AssertionSuccess();
    }
    const auto& a = std::get<CodecError>(actual);
    const auto& e = std::get<CodecError>(expected);
    if (a.number != e.number || a.source != e.source || a.description != e.description)
        return ::testing::AssertionFailure() << "error " << a.number << " " << a.source << " " << a.description
                                             << " expected " << e.number << " " << e.source << " " << e.description;
    return ::testing::AssertionSuccess();
}

// Code bits as a string of '0' and '1', first bit nearest the root.
using CodeBook = std::map<unsigned char, std::string>;

inline std::string PackCode(const std::string& bits) {
    std::string field(1, static_cast<char>(bits.size()));
    for (std::size_t i = 0; i < bits.size(); ++i) {
        if (i % 8 == 0) field.push_back('\0');
        if (bits[i] == '1') field.back() = static_cast<char>(field.back() | (1 << (i % 8)));
    }
    return field;
}

// An HE2 stream of `data` under any code book (which must hold a code for every byte of it).
inline std::string HandStream(const CodeBook& book, const std::string& data) {
    std::string table;
    for (const auto& [symbol, bits] : book) table += static_cast<char>(symbol) + PackCode(bits);
    unsigned checksum = 0;
    std::string bits;
    for (unsigned char b : data) {
        checksum ^= b;
        bits += book.at(b);
    }
    std::string payload((bits.size() + 7) / 8, '\0');
    for (std::size_t j = 0; j < bits.size(); ++j)
        if (bits[j] == '1') payload[j / 8] = static_cast<char>(payload[j / 8] | (1 << (j % 8)));
    return "HE2\r" + std::to_string(table.size()) + "\r" + table + static_cast<char>(checksum) +
           std::to_string(data.size()) + "\r" + payload;
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
