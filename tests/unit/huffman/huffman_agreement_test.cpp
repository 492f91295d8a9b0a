// The fast coder against the literal one: identical streams from the encoder on random and
// skewed inputs, identical results (bytes or error) from the decoder on valid, hand-built and
// mutated streams. Seeds are printed on failure; set HE2_SEED to replay one.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

#include "huffmancoding.h"
#include "huffmantesthelpers.h"
#include "literalhuffman.h"

namespace skin::testing {
namespace {

unsigned BaseSeed() {
    const char* text = std::getenv("HE2_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : 4242u;
}

std::string RandomInput(std::mt19937& rng) {
    std::uniform_int_distribution<int> shape(0, 6);
    std::uniform_int_distribution<std::size_t> size(1, 3000);
    switch (shape(rng)) {
        case 0: return RandomBytes(rng, size(rng), 256);
        case 1: return RandomBytes(rng, size(rng), 2);
        case 2: return RandomBytes(rng, std::uniform_int_distribution<std::size_t>(1, 12)(rng), 5);
        case 3: return std::string(size(rng), static_cast<char>(rng()));
        case 4: {
            // Counts in small equal groups tie constantly; the insertion rule alone orders them.
            std::string input;
            for (int s = std::uniform_int_distribution<int>(1, 60)(rng); s > 0; --s)
                input.append(static_cast<std::size_t>(1 + rng() % 4) * (1 + s % 3), static_cast<char>(rng()));
            std::shuffle(input.begin(), input.end(), rng);
            return input;
        }
        default: return SkewedBytes(rng, size(rng));
    }
}

TEST(HuffmanAgreement, EncoderMatchesTheLiteralEncoder) {
    const unsigned seed = BaseSeed();
    SCOPED_TRACE(seed);
    std::mt19937 rng(seed);
    for (int round = 0; round < 600; ++round) {
        const std::string input = RandomInput(rng);
        for (bool force : {false, true})
            ASSERT_EQ(HuffmanEncode(input, force), literal::Encode(input, force))
                << "round " << round << " size " << input.size() << " force " << force;
    }
}

// One random change to a stream: a byte replaced, removed or inserted, a cut, a length digit.
std::string Mutate(std::string stream, std::mt19937& rng) {
    if (stream.empty()) return std::string(1, static_cast<char>(rng()));
    std::uniform_int_distribution<std::size_t> at(0, stream.size() - 1);
    switch (rng() % 6) {
        case 0: stream[at(rng)] = static_cast<char>(rng()); break;
        case 1: stream[at(rng)] ^= static_cast<char>(1 << (rng() % 8)); break;
        case 2: stream.erase(at(rng), 1); break;
        case 3: stream.insert(at(rng), 1, static_cast<char>(rng())); break;
        case 4: stream.resize(at(rng)); break;
        default: {
            const char digits[] = "0123456789-+\r";
            stream[at(rng)] = digits[rng() % 13];
        }
    }
    return stream;
}

// A code book of random codes that need not form a prefix code: overlaps, repeats, gaps.
CodeBook RandomBook(std::mt19937& rng) {
    CodeBook book;
    const int entries = std::uniform_int_distribution<int>(1, 40)(rng);
    const int longest = rng() % 4 == 0 ? 80 : 14;
    for (int e = 0; e < entries; ++e) {
        std::string bits(std::uniform_int_distribution<int>(1, longest)(rng), '0');
        for (auto& b : bits) b = rng() % 2 ? '1' : '0';
        book[static_cast<unsigned char>(rng() % 64)] = bits;
    }
    return book;
}

TEST(HuffmanAgreement, DecoderMatchesTheLiteralDecoder) {
    const unsigned seed = BaseSeed() + 2;
    SCOPED_TRACE(seed);
    std::mt19937 rng(seed);
    for (int round = 0; round < 4500; ++round) {
        std::string stream;
        if (round % 3 == 0) {
            stream = HuffmanEncode(RandomInput(rng), rng() % 2 == 0);
        } else if (round % 3 == 1) {
            // Arbitrary bytes after a plausible header.
            stream = "HE2\r" + std::to_string(rng() % 40) + "\r" + RandomBytes(rng, rng() % 40, 256) +
                     std::to_string(rng() % 300) + "\r" + RandomBytes(rng, rng() % 60, 256);
        } else {
            const CodeBook book = RandomBook(rng);
            std::string data(std::uniform_int_distribution<std::size_t>(0, 6000)(rng), '\0');
            std::vector<unsigned char> symbols;
            for (const auto& entry : book) symbols.push_back(entry.first);
            for (auto& c : data) c = static_cast<char>(symbols[rng() % symbols.size()]);
            stream = HandStream(book, data);
        }
        for (int m = static_cast<int>(rng() % 3); m > 0; --m) stream = Mutate(stream, rng);
        ASSERT_TRUE(SameResult(HuffmanDecode(stream), literal::Decode(stream))) << "round " << round;
    }
}

TEST(HuffmanAgreement, DecoderMatchesOnLongStreams) {
    // Outputs of megabytes take the decoder's two-chain path; changes deep in the payload must
    // still give the single walk's result.
    const unsigned seed = BaseSeed() + 4;
    SCOPED_TRACE(seed);
    std::mt19937 rng(seed);
    CodeBook comb;
    for (int s = 0; s < 40; ++s) comb[static_cast<unsigned char>(s)] = std::string(s, '0') + "1";
    for (int round = 0; round < 8; ++round) {
        const std::size_t size = std::uniform_int_distribution<std::size_t>(1u << 20, 3u << 20)(rng);
        std::string stream;
        if (round % 2 == 0) {
            stream = HuffmanEncode(round % 4 == 0 ? SkewedBytes(rng, size) : RandomBytes(rng, size, 200), true);
        } else {
            std::string data(size, '\0');
            std::geometric_distribution<int> pick(0.4);
            for (auto& c : data) c = static_cast<char>(std::min(pick(rng), 39));
            stream = HandStream(comb, data);
        }
        ASSERT_TRUE(SameResult(HuffmanDecode(stream), literal::Decode(stream))) << "round " << round;
        for (int m = 0; m < 3; ++m) {
            std::string changed = stream;
            const std::size_t at = std::uniform_int_distribution<std::size_t>(stream.size() / 3, stream.size() - 1)(rng);
            if (m == 2) changed.resize(at);
            else changed[at] = static_cast<char>(changed[at] ^ (1 << (rng() % 8)));
            ASSERT_TRUE(SameResult(HuffmanDecode(changed), literal::Decode(changed))) << "round " << round << " change " << m;
        }
    }
}

}  // namespace
}  // namespace skin::testing
