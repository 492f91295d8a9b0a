// The encoder's bytes: the worked examples of the stream format, the form it chooses, and round
// trips through the decoder for the input shapes that stress code lengths.
#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <string>

#include "huffmancoding.h"
#include "huffmantesthelpers.h"

namespace skin::testing {
namespace {

const std::string kFourA = Bytes({0x48, 0x45, 0x32, 0x0D, 0x33, 0x0D, 0x41, 0x01, 0x01, 0x00, 0x34, 0x0D, 0x0F});
const std::string kAbracadabra =
    Bytes({0x48, 0x45, 0x32, 0x0D, 0x31, 0x35, 0x0D, 0x61, 0x01, 0x00, 0x62, 0x03, 0x03, 0x63, 0x03,
           0x01, 0x64, 0x03, 0x05, 0x72, 0x03, 0x07, 0x66, 0x31, 0x31, 0x0D, 0x76, 0x51, 0x3B});
const std::string kThirtyLetters =
    Bytes({0x48, 0x45, 0x32, 0x0D, 0x31, 0x32, 0x0D, 0x61, 0x01, 0x01, 0x62, 0x02, 0x02, 0x63, 0x03,
           0x04, 0x64, 0x03, 0x00, 0x00, 0x33, 0x30, 0x0D, 0xFF, 0xFF, 0xAA, 0xAA, 0x24, 0x09, 0x00});

std::string ThirtyLetterInput() {
    return std::string(16, 'a') + std::string(8, 'b') + std::string(4, 'c') + std::string(2, 'd');
}

TEST(HuffmanEncode, WorkedExamplesComeOutByteForByte) {
    EXPECT_EQ(HuffmanEncode("", true), "HE0\r");
    EXPECT_EQ(HuffmanEncode("", false), "HE0\r");
    EXPECT_EQ(HuffmanEncode("AAAA", true), kFourA);
    EXPECT_EQ(HuffmanEncode("abracadabra", true), kAbracadabra);
    // Exactly as long as the input: HE2 is kept whatever the force flag says.
    EXPECT_EQ(HuffmanEncode(ThirtyLetterInput(), true), kThirtyLetters);
    EXPECT_EQ(HuffmanEncode(ThirtyLetterInput(), false), kThirtyLetters);
}

TEST(HuffmanEncode, FallsBackToStoredFormWhenCodingWouldGrow) {
    EXPECT_EQ(HuffmanEncode("AAAA", false), "HE0\rAAAA");
    EXPECT_EQ(HuffmanEncode("abracadabra", false), "HE0\rabracadabra");
    const std::string binary = Bytes({0, 13, 255, 13, 0});
    EXPECT_EQ(HuffmanEncode(binary, false), "HE0\r" + binary);
}

TEST(HuffmanEncode, AllByteValuesGiveA256EntryTable) {
    std::string all(256, '\0');
    std::iota(all.begin(), all.end(), '\0');
    const std::string stream = HuffmanEncode(all, true);
    // Equal weights: every code is 8 bits, so each entry is symbol, count and one code byte.
    ASSERT_TRUE(stream.starts_with("HE2\r768\r"));
    for (int b = 0; b < 256; ++b) {
        EXPECT_EQ(static_cast<unsigned char>(stream[8 + 3 * b]), b);
        EXPECT_EQ(stream[8 + 3 * b + 1], 8);
    }
}

TEST(HuffmanEncode, SingleSymbolHasTheOneBitCodeOne) {
    const std::string stream = HuffmanEncode(std::string(20, '\xFF'), true);
    // 20 bits of 1: FF FF 0F; checksum of an even count of FF is 0.
    EXPECT_EQ(stream, Bytes({'H', 'E', '2', 13, '3', 13, 0xFF, 1, 1, 0, '2', '0', 13, 0xFF, 0xFF, 0x0F}));
}

// Round trips for both force values.
void ExpectRoundTrip(const std::string& input) {
    for (bool force : {false, true}) {
        const auto decoded = HuffmanDecode(HuffmanEncode(input, force));
        ASSERT_TRUE(std::holds_alternative<std::string>(decoded)) << Outcome(decoded) << " force " << force;
        EXPECT_TRUE(std::get<std::string>(decoded) == input) << "size " << input.size() << " force " << force;
    }
}

TEST(HuffmanRoundTrip, EmptySingleSymbolAndAllValues) {
    ExpectRoundTrip("");
    ExpectRoundTrip("x");
    ExpectRoundTrip(std::string(100000, '\r'));
    std::string all;
    for (int rep = 0; rep < 40; ++rep)
        for (int b = 0; b < 256; ++b) all.push_back(static_cast<char>(b));
    ExpectRoundTrip(all);
}

TEST(HuffmanRoundTrip, RandomAndSkewedInputsOfManySizes) {
    const unsigned seed = 20261123;
    SCOPED_TRACE(seed);
    std::mt19937 rng(seed);
    for (std::size_t size : {1u, 2u, 7u, 8u, 9u, 100u, 4095u, 4096u, 4097u, 70000u}) {
        ExpectRoundTrip(RandomBytes(rng, size, 256));
        ExpectRoundTrip(RandomBytes(rng, size, 3));
        ExpectRoundTrip(SkewedBytes(rng, size));
    }
}

// Fibonacci frequencies give the deepest tree an input of a given length can have.
std::string FibonacciInput(int symbols) {
    std::string out;
    std::uint64_t a = 1, b = 1;
    for (int s = 0; s < symbols; ++s) {
        out.append(static_cast<std::size_t>(a), static_cast<char>(s));
        const std::uint64_t next = a + b;
        a = b;
        b = next;
    }
    // Interleave a little so the payload is not one run per symbol.
    std::mt19937 rng(7);
    std::shuffle(out.begin(), out.end(), rng);
    return out;
}

int LongestCode(const std::string& stream) {
    const std::size_t cr = stream.find('\r', 4);
    const std::size_t tableLength = std::stoul(stream.substr(4, cr - 4));
    int longest = 0;
    for (std::size_t p = cr + 1; p < cr + 1 + tableLength;) {
        const int bits = static_cast<unsigned char>(stream[p + 1]);
        longest = std::max(longest, bits);
        p += 2 + static_cast<std::size_t>((bits + 7) / 8);
    }
    return longest;
}

TEST(HuffmanRoundTrip, CodesLongerThan32Bits) {
    // 35 Fibonacci weights (about 24 MB) are the smallest input that needs a code over 32 bits.
    const std::string input = FibonacciInput(35);
    EXPECT_GT(LongestCode(HuffmanEncode(input, true)), 32);
    ExpectRoundTrip(input);
}

}  // namespace
}  // namespace skin::testing
