// The encoder's bytes: the worked examples of the stream format, the form it chooses, and round
// trips through the decoder for the input shapes that stress code lengths.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <string>
#include <utility>

#include "huffmancoding.h"
#include "huffmantesthelpers.h"

namespace skin::testing {
namespace {

TEST(HuffmanEncode, WorkedExamplesAndTheChosenForm) {
    const std::string thirty = std::string(16, 'a') + std::string(8, 'b') + std::string(4, 'c') + std::string(2, 'd');
    // Exactly as long as its input: HE2 is kept whatever the force flag says.
    const std::string thirtyStream =
        Bytes({0x48, 0x45, 0x32, 0x0D, 0x31, 0x32, 0x0D, 0x61, 0x01, 0x01, 0x62, 0x02, 0x02, 0x63, 0x03,
               0x04, 0x64, 0x03, 0x00, 0x00, 0x33, 0x30, 0x0D, 0xFF, 0xFF, 0xAA, 0xAA, 0x24, 0x09, 0x00});
    const std::string binary = Bytes({0, 13, 255, 13, 0});
    // 20 bits of 1: FF FF 0F; the checksum of an even count of FF is 0.
    const std::string single = Bytes({'H', 'E', '2', 13, '3', 13, 0xFF, 1, 1, 0, '2', '0', 13, 0xFF, 0xFF, 0x0F});
    const struct {
        std::string input;
        bool force;
        std::string stream;
    } cases[] = {
        {"", true, "HE0\r"},
        {"", false, "HE0\r"},
        {"AAAA", true, kFourA},
        {"abracadabra", true, kAbracadabra},
        {thirty, true, thirtyStream},
        {thirty, false, thirtyStream},
        {std::string(20, '\xFF'), true, single},
        {"AAAA", false, "HE0\rAAAA"},
        {"abracadabra", false, "HE0\rabracadabra"},
        {binary, false, "HE0\r" + binary},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(HuffmanEncode(c.input, c.force), c.stream) << c.input.size() << " bytes, force " << c.force;
        ExpectDecodes(c.stream, c.input);
    }

    // Equal weights: every code is 8 bits, so each entry is symbol, count and one code byte.
    std::string all(256, '\0');
    std::iota(all.begin(), all.end(), '\0');
    const std::string stream = HuffmanEncode(all, true);
    ASSERT_TRUE(stream.starts_with("HE2\r768\r"));
    for (int b = 0; b < 256; ++b) {
        EXPECT_EQ(static_cast<unsigned char>(stream[8 + 3 * b]), b);
        EXPECT_EQ(stream[8 + 3 * b + 1], 8);
    }
}

void ExpectRoundTrip(const std::string& input) {
    for (bool force : {false, true}) {
        SCOPED_TRACE(force ? "forced" : "not forced");
        ExpectDecodes(HuffmanEncode(input, force), input);
    }
}

TEST(HuffmanRoundTrip, EmptySingleSymbolAllValuesRandomAndSkewed) {
    ExpectRoundTrip("");
    ExpectRoundTrip("x");
    ExpectRoundTrip(std::string(100000, '\r'));
    std::string all;
    for (int b = 0; b < 256 * 40; ++b) all.push_back(static_cast<char>(b));
    ExpectRoundTrip(all);

    const unsigned seed = 20261123;
    SCOPED_TRACE(seed);
    std::mt19937 rng(seed);
    for (std::size_t size : {1u, 2u, 7u, 8u, 9u, 100u, 4095u, 4096u, 4097u, 70000u}) {
        ExpectRoundTrip(RandomBytes(rng, size, 256));
        ExpectRoundTrip(RandomBytes(rng, size, 3));
        ExpectRoundTrip(SkewedBytes(rng, size));
    }
}

TEST(HuffmanRoundTrip, CodesLongerThan32Bits) {
    // 35 Fibonacci weights (about 24 MB) give the deepest tree, the smallest input with a code
    // over 32 bits; shuffled so the payload is not one run per symbol.
    std::string input;
    std::uint64_t a = 1, b = 1;
    for (int s = 0; s < 35; ++s) {
        input.append(static_cast<std::size_t>(a), static_cast<char>(s));
        b = std::exchange(a, b) + b;
    }
    std::mt19937 rng(7);
    std::shuffle(input.begin(), input.end(), rng);

    const std::string stream = HuffmanEncode(input, true);
    const std::size_t cr = stream.find('\r', 4);
    const std::size_t end = cr + 1 + std::stoul(stream.substr(4, cr - 4));
    int longest = 0;
    for (std::size_t p = cr + 1; p < end; p += 2 + static_cast<std::size_t>((stream[p + 1] & 0xFF) + 7) / 8)
        longest = std::max(longest, stream[p + 1] & 0xFF);
    EXPECT_GT(longest, 32);
    ExpectRoundTrip(input);
}

}  // namespace
}  // namespace skin::testing
