// The decoder's contract: the worked streams, each error with its number, source and text, the
// order of the checks, the length-field rule, and codes far longer than the lookup table.
#include <gtest/gtest.h>

#include <string>

#include "huffmancoding.h"
#include "huffmantesthelpers.h"

namespace skin::testing {
namespace {

using namespace std::string_literals;

CodecError Failure(const char* description) { return {-2147221504, "HuffmanDecode()", description}; }

const CodecError kInvalid{kInvalidArgumentNumber, "HuffmanDecode()", std::string(kInvalidArgumentDescription)};
const CodecError kNotHe2 = Failure("The data either was not compressed with HE2 or is corrupt");
const CodecError kHeader = Failure("The header is corrupt");
const CodecError kMore = Failure("Expecting more bytes in data stream");
const CodecError kTable = Failure("The header (lookup table) is corrupt");
const CodecError kExtra = Failure("Found extra bytes at end of data stream");
const CodecError kSums = Failure("Data corrupt because check sums do not match");

// The stream "HE2" CR T CR, the table, the checksum byte, L CR and the payload.
std::string Stream(const std::string& t, const std::string& table, char checksum, const std::string& l,
                   const std::string& payload) {
    return "HE2\r" + t + "\r" + table + checksum + l + "\r" + payload;
}

struct Case {
    const char* name;
    std::string stream;
    std::variant<std::string, CodecError> expected;  // decoded bytes or the error
};

// Table entry of 'A' with the code 1.
const std::string kA1 = Bytes({'A', 1, 1});

TEST(HuffmanDecode, WorkedStreamsAndTheirEdgeCases) {
    std::string wrongChecksum = kAbracadabra;
    wrongChecksum[22] = 0x67;
    const Case cases[] = {
        {"stored form", "HE0\r\r\n\0x"s, "\r\n\0x"s},
        {"four A plus a byte", kFourA + "x", kExtra},
        {"four A short a byte", kFourA.substr(0, 12), kMore},
        {"checksum changed", wrongChecksum, kSums},
        {"HE1 signature", Bytes({0x48, 0x45, 0x31, 0x0D}) + kFourA.substr(4), kNotHe2},
        {"lower-case signature", "he2\r3\r", kNotHe2},
        {"too short for a signature", "HE2", kNotHe2},
        {"no table-length CR", "HE2\r12345", kNotHe2},
        {"table length x", "HE2\rx\r", kHeader},
        {"empty table, payload present", Stream("0", "", 0, "1", "\x01"), kTable},
        {"empty output", Stream("0", "", 0, "0", ""), ""},
        {"empty output with payload", Stream("0", "", 0, "0", "\x01"), kExtra},
        {"empty output with checksum", Stream("0", "", 5, "0", ""), kSums},
        {"no length CR", "HE2\r3\r" + kA1 + '\0' + "4", kHeader},
        {"length not a number", Stream("3", kA1, 0, "4a", "\x0F"), kHeader},
        {"length overflows", Stream("3", kA1, 0, "2147483648", "\x0F"), kHeader},
        {"negative table length", Stream("-1", kA1, 0, "4", "\x0F"), kInvalid},
        {"table ends before a bit count", Stream("1", "A", 0, "4", "\x0F"), kInvalid},
        {"table ends inside the code", Stream("3", Bytes({'A', 9, 1}), 0, "4", "\x0F"), kInvalid},
        {"no checksum byte", "HE2\r3\r" + kA1, kInvalid},
        {"unused high bits are ignored", Stream("3", kA1, 0, "4", "\xFF"), "AAAA"},
        {"negative length, no payload", Stream("3", kA1, 0, "-5", ""), kSums},
        {"negative length with payload", Stream("3", kA1, 0, "-5", "\x0F"), kExtra},
        // Length fields take a sign and decimal digits that fit 32 bits, nothing else.
        {"plus sign", Stream("+3", kA1, 0, "+4", "\x0F"), "AAAA"},
        {"leading zeros", Stream("003", kA1, 0, "0004", "\x0F"), "AAAA"},
        {"minus zero", Stream("-0", "", 0, "-0", ""), ""},
        {"largest table length", Stream("2147483647", kA1, 0, "4", "\x0F"), kInvalid},
        {"leading blank", Stream(" 3", kA1, 0, "4", "\x0F"), kHeader},
        {"trailing blank", Stream("3", kA1, 0, "4 ", "\x0F"), kHeader},
        {"hexadecimal", Stream("0x3", kA1, 0, "4", "\x0F"), kHeader},
        {"exponent", Stream("3", kA1, 0, "4e0", "\x0F"), kHeader},
        {"sign alone", Stream("3", kA1, 0, "-", "\x0F"), kHeader},
        {"empty length", Stream("3", kA1, 0, "", "\x0F"), kHeader},
        {"below the 32-bit range", Stream("-2147483649", kA1, 0, "4", "\x0F"), kHeader},
        {"most negative length", Stream("3", kA1, 0, "-2147483648", ""), kSums},
        // The checks run in stream order.
        {"table before length", Stream("1", "A", 0, "zz", ""), kInvalid},
        {"payload ends before a missing child", Stream("3", Bytes({'A', 2, 3}), 'A', "5", "\xFF"), kMore},
        {"missing child before the end", Stream("3", kA1, 0, "8", "\x0E"), kTable},
        {"extra before checksum", Stream("3", kA1, 7, "4", Bytes({0x0F, 0x00})), kExtra},
        {"claim over 8 per byte, broken table", Stream("0", "", 0, "9", "\x00"), kMore},
        {"huge claim", Stream("3", kA1, 0, "2147483647", "\xFF\xFF"), kMore},
        {"exactly 8 per byte", Stream("3", kA1, 0, "8", "\xFF"), "AAAAAAAA"},
        // The tree walk: a later entry replaces the symbol, a leaf on the way restarts at the
        // root, and the root (an empty code) is never tested for a leaf.
        {"same code twice", Stream("6", Bytes({'A', 1, 1, 'B', 1, 1}), 0, "2", "\x03"), "BB"},
        {"code through a leaf", Stream("6", Bytes({'A', 1, 1, 'B', 2, 3}), 0, "2", "\x03"), "AA"},
        {"empty code", Stream("5", Bytes({'Z', 0, 'A', 1, 1}), 'A', "1", "\x01"), "A"},
    };
    for (const auto& c : cases) EXPECT_TRUE(SameResult(HuffmanDecode(c.stream), c.expected)) << c.name;
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
    EXPECT_TRUE(SameResult(HuffmanDecode(lastOnly.substr(0, lastOnly.size() - 1)), kMore));

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
