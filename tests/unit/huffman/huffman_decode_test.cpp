// The decoder's contract: the worked streams, each error with its number, source and text, the
// order of the checks, the length-field rule, and codes far longer than the lookup table.
#include <gtest/gtest.h>

#include <string>

#include "huffmancoding.h"
#include "huffmantesthelpers.h"

namespace skin::testing {
namespace {

using namespace std::string_literals;

const std::string kInvalid = "invalid argument";
const std::string kNotHe2 = "The data either was not compressed with HE2 or is corrupt";
const std::string kHeader = "The header is corrupt";
const std::string kMore = "Expecting more bytes in data stream";
const std::string kTable = "The header (lookup table) is corrupt";
const std::string kExtra = "Found extra bytes at end of data stream";
const std::string kSums = "Data corrupt because check sums do not match";

// The stream "HE2" CR T CR, the table, the checksum byte, L CR and the payload.
std::string Stream(const std::string& t, const std::string& table, char checksum, const std::string& l,
                   const std::string& payload) {
    return "HE2\r" + t + "\r" + table + checksum + l + "\r" + payload;
}

struct Case {
    const char* name;
    std::string stream;
    std::string expected;  // decoded bytes, or an error description, or kInvalid
    bool fails;
};

void Check(const Case& c) {
    SCOPED_TRACE(c.name);
    const auto result = HuffmanDecode(c.stream);
    if (!c.fails) return ExpectDecodes(c.stream, c.expected);
    ASSERT_TRUE(std::holds_alternative<CodecError>(result)) << "decoded unexpectedly";
    const auto& error = std::get<CodecError>(result);
    EXPECT_EQ(error.source, "HuffmanDecode()");
    const bool invalid = c.expected == kInvalid;
    EXPECT_EQ(error.number, invalid ? kInvalidArgumentNumber : -2147221504);
    EXPECT_EQ(error.description, invalid ? kInvalidArgumentDescription : c.expected);
}

// Table entry of 'A' with the code 1.
const std::string kA1 = Bytes({'A', 1, 1});

TEST(HuffmanDecode, WorkedStreamsAndTheirEdgeCases) {
    std::string wrongChecksum = kAbracadabra;
    wrongChecksum[22] = 0x67;
    const Case cases[] = {
        {"stored form", "HE0\r\r\n\0x"s, "\r\n\0x"s, false},
        {"four A plus a byte", kFourA + "x", kExtra, true},
        {"four A short a byte", kFourA.substr(0, 12), kMore, true},
        {"checksum changed", wrongChecksum, kSums, true},
        {"HE1 signature", Bytes({0x48, 0x45, 0x31, 0x0D}) + kFourA.substr(4), kNotHe2, true},
        {"lower-case signature", "he2\r3\r", kNotHe2, true},
        {"too short for a signature", "HE2", kNotHe2, true},
        {"no table-length CR", "HE2\r12345", kNotHe2, true},
        {"table length x", "HE2\rx\r", kHeader, true},
        {"empty table, payload present", Stream("0", "", 0, "1", "\x01"), kTable, true},
        {"empty output", Stream("0", "", 0, "0", ""), "", false},
        {"empty output with payload", Stream("0", "", 0, "0", "\x01"), kExtra, true},
        {"empty output with checksum", Stream("0", "", 5, "0", ""), kSums, true},
        {"no length CR", "HE2\r3\r" + kA1 + '\0' + "4", kHeader, true},
        {"length not a number", Stream("3", kA1, 0, "4a", "\x0F"), kHeader, true},
        {"length overflows", Stream("3", kA1, 0, "2147483648", "\x0F"), kHeader, true},
        {"negative table length", Stream("-1", kA1, 0, "4", "\x0F"), kInvalid, true},
        {"table ends before a bit count", Stream("1", "A", 0, "4", "\x0F"), kInvalid, true},
        {"table ends inside the code", Stream("3", Bytes({'A', 9, 1}), 0, "4", "\x0F"), kInvalid, true},
        {"no checksum byte", "HE2\r3\r" + kA1, kInvalid, true},
        {"unused high bits are ignored", Stream("3", kA1, 0, "4", "\xFF"), "AAAA", false},
        {"negative length, no payload", Stream("3", kA1, 0, "-5", ""), kSums, true},
        {"negative length with payload", Stream("3", kA1, 0, "-5", "\x0F"), kExtra, true},
        // Length fields take a sign and decimal digits that fit 32 bits, nothing else.
        {"plus sign", Stream("+3", kA1, 0, "+4", "\x0F"), "AAAA", false},
        {"leading zeros", Stream("003", kA1, 0, "0004", "\x0F"), "AAAA", false},
        {"minus zero", Stream("-0", "", 0, "-0", ""), "", false},
        {"largest table length", Stream("2147483647", kA1, 0, "4", "\x0F"), kInvalid, true},
        {"leading blank", Stream(" 3", kA1, 0, "4", "\x0F"), kHeader, true},
        {"trailing blank", Stream("3", kA1, 0, "4 ", "\x0F"), kHeader, true},
        {"hexadecimal", Stream("0x3", kA1, 0, "4", "\x0F"), kHeader, true},
        {"exponent", Stream("3", kA1, 0, "4e0", "\x0F"), kHeader, true},
        {"sign alone", Stream("3", kA1, 0, "-", "\x0F"), kHeader, true},
        {"empty length", Stream("3", kA1, 0, "", "\x0F"), kHeader, true},
        {"below the 32-bit range", Stream("-2147483649", kA1, 0, "4", "\x0F"), kHeader, true},
        {"most negative length", Stream("3", kA1, 0, "-2147483648", ""), kSums, true},
        // The checks run in stream order.
        {"table before length", Stream("1", "A", 0, "zz", ""), kInvalid, true},
        {"payload ends before a missing child", Stream("3", Bytes({'A', 2, 3}), 'A', "5", "\xFF"), kMore, true},
        {"missing child before the end", Stream("3", kA1, 0, "8", "\x0E"), kTable, true},
        {"extra before checksum", Stream("3", kA1, 7, "4", Bytes({0x0F, 0x00})), kExtra, true},
        {"claim over 8 per byte, broken table", Stream("0", "", 0, "9", "\x00"), kMore, true},
        {"huge claim", Stream("3", kA1, 0, "2147483647", "\xFF\xFF"), kMore, true},
        {"exactly 8 per byte", Stream("3", kA1, 0, "8", "\xFF"), "AAAAAAAA", false},
        // The tree walk: a later entry replaces the symbol, a leaf on the way restarts at the
        // root, and the root (an empty code) is never tested for a leaf.
        {"same code twice", Stream("6", Bytes({'A', 1, 1, 'B', 1, 1}), 0, "2", "\x03"), "BB", false},
        {"code through a leaf", Stream("6", Bytes({'A', 1, 1, 'B', 2, 3}), 0, "2", "\x03"), "AA", false},
        {"empty code", Stream("5", Bytes({'Z', 0, 'A', 1, 1}), 'A', "1", "\x01"), "A", false},
    };
    for (const auto& c : cases) Check(c);
}

TEST(HuffmanDecode, CodesUpTo255BitsAcrossTheFastPathBoundaries) {
    // A comb of codes 1, 01, 001, ...: symbol s has s zeros and then a 1, the last has 255 zeros.
    // Codes run far past the lookup table and past any machine word.
    CodeBook book;
    for (int s = 0; s < 255; ++s) book[static_cast<unsigned char>(s)] = std::string(s, '0') + "1";
    book[255] = std::string(255, '0');
    std::string data;
    for (int rep = 0; rep < 30; ++rep)
        for (int s : {0, 1, 0, 2, 11, 12, 13, 31, 32, 33, 63, 64, 65, 100, 200, 254, 255, 0, 0, 3})
            data.push_back(static_cast<char>(s));
    ExpectDecodes(HandStream(book, data), data);

    // Cut inside the 255-bit code: the walk runs out of bytes.
    const std::string lastOnly = HandStream(book, std::string(1, '\xFF'));
    EXPECT_EQ(Outcome(HuffmanDecode(lastOnly.substr(0, lastOnly.size() - 1))), kMore);

    // Mixed short and long codes over many words, ending at every bit offset.
    std::mt19937 rng(99);
    std::geometric_distribution<int> pick(0.25);
    for (std::size_t size : {4096u, 4097u, 5000u, 65536u, 100003u}) {
        std::string mixed(size, '\0');
        for (auto& c : mixed) c = static_cast<char>(std::min(pick(rng), 255));
        ExpectDecodes(HandStream(book, mixed), mixed);
    }
}

}  // namespace
}  // namespace skin::testing
