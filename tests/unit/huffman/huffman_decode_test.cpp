// The decoder's contract: the worked streams, each error with its number, source and text, the
// order of the checks, the length-field rule, and codes far longer than the lookup table.
#include <gtest/gtest.h>

#include <string>

#include "huffmancoding.h"
#include "huffmantesthelpers.h"

namespace skin::testing {
namespace {

using namespace std::string_literals;

const std::string kFourA = Bytes({0x48, 0x45, 0x32, 0x0D, 0x33, 0x0D, 0x41, 0x01, 0x01, 0x00, 0x34, 0x0D, 0x0F});
const std::string kAbracadabra =
    Bytes({0x48, 0x45, 0x32, 0x0D, 0x31, 0x35, 0x0D, 0x61, 0x01, 0x00, 0x62, 0x03, 0x03, 0x63, 0x03,
           0x01, 0x64, 0x03, 0x05, 0x72, 0x03, 0x07, 0x66, 0x31, 0x31, 0x0D, 0x76, 0x51, 0x3B});
const std::string kInvalid = "invalid argument";

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
    if (!c.fails) {
        ASSERT_TRUE(std::holds_alternative<std::string>(result)) << Outcome(result);
        EXPECT_EQ(std::get<std::string>(result), c.expected);
        return;
    }
    ASSERT_TRUE(std::holds_alternative<CodecError>(result)) << "decoded unexpectedly";
    const auto& error = std::get<CodecError>(result);
    EXPECT_EQ(error.source, "HuffmanDecode()");
    if (c.expected == kInvalid) {
        EXPECT_EQ(error.number, kInvalidArgumentNumber);
        EXPECT_EQ(error.description, kInvalidArgumentDescription);
    } else {
        EXPECT_EQ(error.number, -2147221504);
        EXPECT_EQ(error.description, c.expected);
    }
}

const std::string kNotHe2 = "The data either was not compressed with HE2 or is corrupt";
const std::string kHeader = "The header is corrupt";
const std::string kMore = "Expecting more bytes in data stream";
const std::string kTable = "The header (lookup table) is corrupt";
const std::string kExtra = "Found extra bytes at end of data stream";
const std::string kSums = "Data corrupt because check sums do not match";

// Table entry of 'A' with the code 1.
const std::string kA1 = Bytes({'A', 1, 1});

TEST(HuffmanDecode, WorkedStreamsAndTheirEdgeCases) {
    std::string wrongChecksum = kAbracadabra;
    wrongChecksum[22] = 0x67;
    const Case cases[] = {
        {"stored form", "HE0\r\r\n\0x"s, "\r\n\0x"s, false},
        {"empty stored form", "HE0\r", "", false},
        {"four A", kFourA, "AAAA", false},
        {"abracadabra", kAbracadabra, "abracadabra", false},
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
    };
    for (const auto& c : cases) Check(c);
}

TEST(HuffmanDecode, LengthFieldsTakeASignAndDigitsThatFit32Bits) {
    const Case cases[] = {
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
    };
    for (const auto& c : cases) Check(c);
}

TEST(HuffmanDecode, ChecksRunInStreamOrder) {
    const Case cases[] = {
        // A table error comes before a broken length field.
        {"table before length", Stream("1", "A", 0, "zz", ""), kInvalid, true},
        // Running out of payload is found at the bit where it happens, before a missing child.
        {"payload ends before a missing child", Stream("3", Bytes({'A', 2, 3}), 'A', "5", "\xFF"), kMore, true},
        // A missing child inside the payload comes first.
        {"missing child before the end", Stream("3", kA1, 0, "8", "\x0E"), kTable, true},
        // Extra bytes are reported before a wrong checksum.
        {"extra before checksum", Stream("3", kA1, 7, "4", Bytes({0x0F, 0x00})), kExtra, true},
        // A claim of more than 8 bytes per payload byte fails at once, even with a broken table.
        {"impossible claim", Stream("0", "", 0, "9", "\x00"), kMore, true},
        {"huge claim", Stream("3", kA1, 0, "2147483647", "\xFF\xFF"), kMore, true},
        {"exactly 8 per byte", Stream("3", kA1, 0, "8", "\xFF"), "AAAAAAAA", false},
    };
    for (const auto& c : cases) Check(c);
}

TEST(HuffmanDecode, LaterEntriesAndLeavesOnTheWayFollowTheTreeWalk) {
    // A later entry with the same code replaces the symbol.
    Check({"same code twice", Stream("6", Bytes({'A', 1, 1, 'B', 1, 1}), 0, "2", "\x03"), "BB", false});
    // A code through a leaf: the leaf is met first and decoding restarts at the root.
    Check({"code through a leaf", Stream("6", Bytes({'A', 1, 1, 'B', 2, 3}), 0, "2", "\x03"), "AA", false});
    // An empty code names the root, which is never tested for a leaf.
    Check({"empty code", Stream("5", Bytes({'Z', 0, 'A', 1, 1}), 'A', "1", "\x01"), "A", false});
}

// A comb of codes 1, 01, 001, ... up to 255 bits: symbol s has s zeros and then a 1, and the
// last symbol has 255 zeros. Codes run far past the lookup table and past any machine word.
CodeBook Comb() {
    CodeBook book;
    for (int s = 0; s < 255; ++s) book[static_cast<unsigned char>(s)] = std::string(s, '0') + "1";
    book[255] = std::string(255, '0');
    return book;
}

TEST(HuffmanDecode, CodesUpTo255BitsDecode) {
    const CodeBook book = Comb();
    std::string data;
    for (int rep = 0; rep < 30; ++rep)
        for (int s : {0, 1, 0, 2, 11, 12, 13, 31, 32, 33, 63, 64, 65, 100, 200, 254, 255, 0, 0, 3})
            data.push_back(static_cast<char>(s));
    const auto result = HuffmanDecode(HandStream(book, data));
    ASSERT_TRUE(std::holds_alternative<std::string>(result)) << Outcome(result);
    EXPECT_TRUE(std::get<std::string>(result) == data);

    // Cut inside the 255-bit code: the walk runs out of bytes.
    const std::string lastOnly = HandStream(book, std::string(1, '\xFF'));
    EXPECT_EQ(Outcome(HuffmanDecode(lastOnly.substr(0, lastOnly.size() - 1))), kMore);
}

TEST(HuffmanDecode, LargeOutputsCrossTheFastPathBoundaries) {
    // Mixed short and long codes over many words, ending at every bit offset.
    CodeBook book = Comb();
    std::mt19937 rng(99);
    for (std::size_t size : {4096u, 4097u, 5000u, 65536u, 100003u}) {
        std::string data(size, '\0');
        std::geometric_distribution<int> pick(0.25);
        for (auto& c : data) c = static_cast<char>(std::min(pick(rng), 255));
        const auto result = HuffmanDecode(HandStream(book, data));
        ASSERT_TRUE(std::holds_alternative<std::string>(result)) << Outcome(result);
        EXPECT_TRUE(std::get<std::string>(result) == data) << size;
    }
}

}  // namespace
}  // namespace skin::testing
