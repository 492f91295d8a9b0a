// The HE2 coder: the worked streams byte for byte, the decoder's errors and length fields, and
// agreement with the literal coder on random, hand-built and damaged streams.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <map>
#include <new>
#include <random>
#include <string>
#include <tuple>

#include <malloc.h>

#include "huffmancoding.h"
#include "huffmaninternal.h"
#include "literalhuffman.h"

// The largest single allocation, to show that an impossible length claim allocates nothing, and
// the most memory held at once.
namespace {
std::size_t gLargestAllocation = 0;
std::size_t gHeld = 0, gMostHeld = 0;
}
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void* operator new(std::size_t size) {
    gLargestAllocation = std::max(gLargestAllocation, size);
    if (void* p = std::malloc(size ? size : 1)) {
        gHeld += malloc_usable_size(p);
        gMostHeld = std::max(gMostHeld, gHeld);
        return p;
    }
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
    if (p != nullptr) gHeld -= malloc_usable_size(p);
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept { ::operator delete(p); }

namespace skin::testing {
namespace {

using Result = std::variant<std::string, CodecError>;

std::string Bytes(std::initializer_list<int> values) { return std::string(values.begin(), values.end()); }

std::string Show(const Result& result) {
    if (const auto* e = std::get_if<CodecError>(&result)) return std::to_string(e->number) + " " + e->source + " " + e->description;
    const std::string& bytes = std::get<std::string>(result);
    return bytes.size() < 64 ? "\"" + bytes + "\"" : std::to_string(bytes.size()) + " bytes, hash " + std::to_string(std::hash<std::string>{}(bytes));
}

// Hands out at most `piece` bytes per read and keeps its bytes to itself, so the coder takes
// the path it takes for files: pieces, windows and a second pass.
class TrickleSource final : public ByteSource {
public:
    TrickleSource(std::string bytes, std::size_t piece) : bytes_(std::move(bytes)), piece_(piece) {}
    std::ptrdiff_t Read(char* into, std::size_t size) override {
        const std::size_t count = std::min({size, piece_, bytes_.size() - at_});
        std::copy_n(bytes_.data() + at_, count, into);
        at_ += count;
        return static_cast<std::ptrdiff_t>(count);
    }
    bool Rewind() override {
        at_ = 0;
        if (!second_.empty()) bytes_ = second_;
        return true;
    }
    std::string second_;  // what a second pass reads, when it differs

private:
    std::string bytes_;
    std::size_t piece_, at_ = 0;
};

std::string EncodeInPieces(const std::string& input, bool force, std::size_t piece) {
    TrickleSource source(input, piece);
    he2::StreamEncoder encoder;
    EXPECT_TRUE(encoder.Plan(source, input.size(), force));
    std::string stream;
    EXPECT_EQ(encoder.Write(source, [&](std::string_view part) { return stream.append(part), true; }),
              he2::StreamEncoder::Result::Written);
    EXPECT_EQ(stream.size(), encoder.CodedSize());
    return stream;
}

Result DecodeInPieces(const std::string& stream, std::size_t piece, he2::DecodeBuffers buffers) {
    TrickleSource source(stream, piece);
    std::string output;
    const auto result = he2::DecodeStream(source, stream.size(), [&](std::string_view part) { return output.append(part), true; }, buffers);
    if (result.failure == he2::DecodeFailure::Codec) return result.error;
    EXPECT_EQ(result.failure, he2::DecodeFailure::None);
    return output;
}

const std::string kFourA = Bytes({0x48, 0x45, 0x32, 0x0D, 0x33, 0x0D, 0x41, 0x01, 0x01, 0x00, 0x34, 0x0D, 0x0F});
const std::string kAbracadabra = Bytes({0x48, 0x45, 0x32, 0x0D, 0x31, 0x35, 0x0D, 0x61, 0x01, 0x00, 0x62, 0x03, 0x03, 0x63, 0x03,
                                        0x01, 0x64, 0x03, 0x05, 0x72, 0x03, 0x07, 0x66, 0x31, 0x31, 0x0D, 0x76, 0x51, 0x3B});

TEST(HuffmanEncode, WorkedExamplesAndTheChosenForm) {
    const std::string thirty = std::string(16, 'a') + std::string(8, 'b') + std::string(4, 'c') + std::string(2, 'd');
    // Exactly as long as its input, so HE2 is kept whatever the force flag says.
    const std::string thirtyStream = Bytes({0x48, 0x45, 0x32, 0x0D, 0x31, 0x32, 0x0D, 0x61, 0x01, 0x01, 0x62, 0x02, 0x02, 0x63, 0x03,
                                            0x04, 0x64, 0x03, 0x00, 0x00, 0x33, 0x30, 0x0D, 0xFF, 0xFF, 0xAA, 0xAA, 0x24, 0x09, 0x00});
    const std::tuple<std::string, bool, std::string> cases[] = {
        {"", true, "HE0\r"}, {"AAAA", true, kFourA}, {"AAAA", false, "HE0\rAAAA"}, {"abracadabra", true, kAbracadabra},
        {"abracadabra", false, "HE0\rabracadabra"}, {thirty, true, thirtyStream}, {thirty, false, thirtyStream}};
    for (const auto& [input, force, stream] : cases) {
        EXPECT_EQ(HuffmanEncode(input, force), stream) << input << ", force " << force;
        EXPECT_EQ(Show(HuffmanDecode(stream)), Show(input));
    }
}

CodecError Failure(const char* description) { return {-2147221504, "HuffmanDecode()", description}; }
const CodecError kInvalid{5, "HuffmanDecode()", "Invalid procedure call or argument"};
const CodecError kNotHe2 = Failure("The data either was not compressed with HE2 or is corrupt");
const CodecError kHeader = Failure("The header is corrupt");
const CodecError kMore = Failure("Expecting more bytes in data stream");
const CodecError kTable = Failure("The header (lookup table) is corrupt");
const CodecError kExtra = Failure("Found extra bytes at end of data stream");
const CodecError kSums = Failure("Data corrupt because check sums do not match");

// "HE2" CR, table length CR, table, checksum byte, output length CR, payload.
std::string Stream(const std::string& t, const std::string& table, char checksum, const std::string& l, const std::string& payload) {
    return "HE2\r" + t + "\r" + table + checksum + l + "\r" + payload;
}

TEST(HuffmanDecode, ErrorsLengthFieldsAndTreeWalk) {
    const std::string a1 = Bytes({'A', 1, 1});  // 'A' with the code 1
    std::string wrongChecksum = kAbracadabra;
    wrongChecksum[22] = 0x67;
    const std::pair<std::string, Result> cases[] = {
        {kFourA + "x", kExtra},
        {kFourA.substr(0, 12), kMore},
        {wrongChecksum, kSums},
        {Bytes({0x48, 0x45, 0x31, 0x0D}) + kFourA.substr(4), kNotHe2},
        {"HE2\r12345", kNotHe2},
        {"HE2\rx\r", kHeader},
        {Stream("0", "", 0, "1", "\x01"), kTable},
        {"HE2\r3\r" + a1 + '\0' + "4", kHeader},
        {Stream("-1", a1, 0, "4", "\x0F"), kInvalid},
        {Stream("1", "A", 0, "4", "\x0F"), kInvalid},
        {Stream("3", Bytes({'A', 9, 1}), 0, "4", "\x0F"), kInvalid},
        {"HE2\r3\r" + a1, kInvalid},
        {Stream("3", a1, 0, "4", "\xFF"), "AAAA"},  // unused high bits are ignored
        // Length fields: an optional sign and decimal digits that fit 32 bits.
        {Stream("+3", a1, 0, "+4", "\x0F"), "AAAA"},
        {Stream("003", a1, 0, "0004", "\x0F"), "AAAA"},
        {Stream("-0", "", 0, "-0", ""), ""},
        {Stream("2147483647", a1, 0, "4", "\x0F"), kInvalid},
        {Stream("3", a1, 0, "-2147483648", ""), kSums},
        // A claim of more than 8 bytes per payload byte is walked as far as the payload goes.
        {Stream("0", "", 0, "9", "\x01"), kTable},
        {Stream("3", a1, 0, "10", "\x03"), kTable},
        {Stream("3", a1, 0, "9", "\xFF"), kMore},
        {Stream("3", a1, 0, "8", "\xFF"), "AAAAAAAA"},
        // A later entry replaces the symbol, a leaf on the way restarts at the root, and the
        // root (an empty code) is never a leaf.
        {Stream("6", Bytes({'A', 1, 1, 'B', 1, 1}), 0, "2", "\x03"), "BB"},
        {Stream("6", Bytes({'A', 1, 1, 'B', 2, 3}), 0, "2", "\x03"), "AA"},
        {Stream("5", Bytes({'Z', 0, 'A', 1, 1}), 'A', "1", "\x01"), "A"},
    };
    for (const auto& [stream, expected] : cases) EXPECT_EQ(Show(HuffmanDecode(stream)), Show(expected)) << Show(stream);
    for (const char* bad : {" 3", "3 ", "0x3", "3e0", "-", "", "3a", "2147483648", "-2147483649"}) {
        EXPECT_EQ(Show(HuffmanDecode(Stream(bad, a1, 0, "4", "\x0F"))), Show(kHeader)) << bad;
        EXPECT_EQ(Show(HuffmanDecode(Stream("3", a1, 0, bad, "\x0F"))), Show(kHeader)) << bad;
    }

    gLargestAllocation = 0;
    const Result claim = HuffmanDecode(Stream("3", a1, 0, "2147483647", "\xFF\xFF"));
    EXPECT_LT(gLargestAllocation, 1000u);
    EXPECT_EQ(Show(claim), Show(kMore));
}

// Short or long; uniform, of one to five values, skewed, or with counts that tie often.
std::string RandomInput(std::mt19937& rng) {
    const unsigned shape = rng() % 4, alphabet = shape == 0 ? 256 : 1 + rng() % 5, first = rng();
    std::string out(rng() % 3 ? 1 + rng() % 8000 : 1 + rng() % 12, '\0');
    std::geometric_distribution<unsigned> skew(0.3);
    for (auto& c : out) c = static_cast<char>(first + (shape == 2 ? std::min(skew(rng), 255u) * 7 : rng() % alphabet));
    if (shape == 3) {
        out.clear();
        for (int s = 1 + rng() % 60; s > 0; --s) out.append((1 + rng() % 4) * (1 + s % 3), static_cast<char>(rng()));
        std::shuffle(out.begin(), out.end(), rng);
    }
    return out;
}

TEST(HuffmanEncode, AgreesWithTheLiteralEncoderAndRoundTrips) {
    std::mt19937 rng(4242);
    std::vector<std::string> inputs;
    for (int round = 0; round < 600; ++round) inputs.push_back(RandomInput(rng));
    // Fibonacci counts make the deepest tree: 34 symbols in 15 MB give a 33-bit code.
    std::string deep;
    for (std::uint64_t s = 0, a = 1, b = 1; s < 34; ++s, b = std::exchange(a, b) + b) deep.append(a, static_cast<char>(s));
    std::shuffle(deep.begin(), deep.end(), rng);
    inputs.push_back(deep);
    // Long enough to be coded in halves on two threads, with short codes and an odd length.
    std::string skewed(1311071, '\0');
    std::geometric_distribution<int> letters(0.2);
    for (auto& c : skewed) c = static_cast<char>('a' + std::min(letters(rng), 25));
    inputs.push_back(skewed);
    inputs.push_back("");
    for (const auto& input : inputs) {
        for (bool force : {false, true}) {
            const std::string stream = HuffmanEncode(input, force);
            ASSERT_TRUE(stream == literal::Encode(input, force)) << Show(input) << ", force " << force;
            ASSERT_EQ(Show(HuffmanDecode(stream)), Show(input));
            // Coded and decoded in pieces, through small windows, the bytes are the same.
            const std::size_t piece = 1 + input.size() % 977;
            ASSERT_TRUE(EncodeInPieces(input, force, piece) == stream) << Show(input) << ", force " << force;
            ASSERT_EQ(Show(DecodeInPieces(stream, piece, {320, 1 + input.size() % 61})), Show(input));
        }
    }
}

// An HE2 stream of `data` under any code book, prefix-free or not.
std::string HandStream(const std::map<unsigned char, std::string>& book, const std::string& data) {
    std::string table, bits;
    char checksum = 0;
    for (const auto& [symbol, code] : book) table += std::string{static_cast<char>(symbol), static_cast<char>(code.size())} + literal::PackBits(code);
    for (char c : data) {
        checksum = static_cast<char>(checksum ^ c);
        bits += book.at(static_cast<unsigned char>(c));
    }
    return "HE2\r" + std::to_string(table.size()) + "\r" + table + checksum + std::to_string(data.size()) + "\r" + literal::PackBits(bits);
}

// Random codes of up to 14, 80 or 255 bits, with overlaps, repeats and gaps.
std::string RandomHandStream(std::mt19937& rng) {
    std::map<unsigned char, std::string> book;
    const unsigned limit = rng() % 2 ? 14 : rng() % 2 ? 80 : 255;
    for (int e = 1 + rng() % 40; e > 0; --e) {
        std::string code(1 + rng() % limit, '0');
        for (auto& b : code) b = rng() % 2 ? '1' : '0';
        book[static_cast<unsigned char>(rng() % 64)] = code;
    }
    std::string data(rng() % 6000, '\0');
    for (auto& c : data) c = static_cast<char>(std::next(book.begin(), rng() % book.size())->first);
    return HandStream(book, data);
}

// One byte replaced, flipped, removed or inserted, a cut, or a stray digit, sign or CR.
std::string Mutate(std::string stream, std::mt19937& rng) {
    if (stream.empty()) return std::string(1, static_cast<char>(rng()));
    const std::size_t at = rng() % stream.size();
    switch (rng() % 6) {
        case 0: stream[at] = static_cast<char>(rng()); break;
        case 1: stream[at] = static_cast<char>(stream[at] ^ (1 << rng() % 8)); break;
        case 2: stream.erase(at, 1); break;
        case 3: stream.insert(at, 1, static_cast<char>(rng())); break;
        case 4: stream.resize(at); break;
        default: stream[at] = "0123456789-+\r"[rng() % 13];
    }
    return stream;
}

TEST(HuffmanDecode, AgreesWithTheLiteralDecoder) {
    std::mt19937 rng(4244);
    // For the long streams, which take the decoder's parallel path: symbol s is s zeros and a 1,
    // the last is 255 zeros.
    std::map<unsigned char, std::string> comb;
    for (int s = 0; s < 256; ++s) comb[static_cast<unsigned char>(s)] = s < 255 ? std::string(s, '0') + "1" : std::string(255, '0');
    std::geometric_distribution<int> pick(0.4);
    for (int round = 0; round < 3012; ++round) {
        std::string stream = round % 2 ? HuffmanEncode(RandomInput(rng), rng() % 2) : RandomHandStream(rng);
        if (round >= 3000) {
            std::string data(round % 2 ? 1 + rng() % 100000 : (1u << 20) + rng() % (2u << 20), '\0');
            for (auto& c : data) c = static_cast<char>(rng() % 500 == 0 ? static_cast<int>(rng() % 256) : std::min(pick(rng), 40));
            stream = round % 4 < 2 ? HandStream(comb, data) : HuffmanEncode(data, true);
            ASSERT_EQ(Show(HuffmanDecode(stream)), Show(data)) << "round " << round;
        }
        for (int m = static_cast<int>(rng() % 3) + (round >= 3000); m > 0; --m) stream = Mutate(stream, rng);
        const std::string expected = Show(literal::Decode(stream));
        ASSERT_EQ(Show(HuffmanDecode(stream)), expected) << "round " << round;
        // In pieces, with windows and output buffers from tiny to whole, errors and all.
        const he2::DecodeBuffers buffers{round % 3 == 0 ? 320u : round % 3 == 1 ? 4096u : 1u << 20,
                                         round % 4 == 0 ? 1u : round % 4 == 1 ? 997u : 1u << 21};
        ASSERT_EQ(Show(DecodeInPieces(stream, 1 + rng() % 70000, buffers)), expected) << "round " << round;
    }
}

TEST(HuffmanEncode, AFileThatChangesBetweenItsTwoPassesIsNotCodedWrongly) {
    const std::string counted = "abracadabra abracadabra abracadabra";
    for (const std::string& second : {counted + "!", counted.substr(1), std::string("zbracadabra") + counted.substr(11)}) {
        TrickleSource source(counted, 7);
        source.second_ = second;
        he2::StreamEncoder encoder;
        ASSERT_TRUE(encoder.Plan(source, counted.size(), true));
        EXPECT_EQ(encoder.Write(source, [](std::string_view) { return true; }), he2::StreamEncoder::Result::InputChanged) << second;
    }
}

// A lookup table of many long codes that part early, each a chain of its own in the code tree.
std::string LongCodeStream(int entries, const std::string& payload) {
    std::string table;
    for (int e = 0; e < entries; ++e) {
        std::string code(254, '0');
        for (int bit = 0; bit < 20; ++bit) code[bit] = (e >> bit) & 1 ? '1' : '0';
        table += std::string{'A', static_cast<char>(code.size())} + literal::PackBits(code);
    }
    return "HE2\r" + std::to_string(table.size()) + "\r" + table + '\0' + std::to_string(payload.size() * 8 / 254) + "\r" + payload;
}

TEST(HuffmanDecode, LongCodeTablesStayWithinTheirRoom) {
    // 3,000 chains (100 KB of table) fit: the stream decodes as the literal decoder decodes it.
    const std::string fits = LongCodeStream(3000, std::string(4 * 32, '\0'));
    gMostHeld = gHeld;
    const auto before = gHeld;
    EXPECT_EQ(Show(HuffmanDecode(fits)), Show(literal::Decode(fits)));
    EXPECT_LT(gMostHeld - before, (std::size_t{48} << 20) + 2 * fits.size());
    // 60,000 chains (2 MB) would take 120 MB of tree: refused with the out-of-memory error,
    // holding little more than the table itself.
    const std::string tooMany = LongCodeStream(60000, std::string(4 * 32, '\0'));
    gMostHeld = gHeld;
    EXPECT_EQ(Show(HuffmanDecode(tooMany)), Show(CodecError{7, "HuffmanDecode()", "Out of memory"}));
    EXPECT_LT(gMostHeld - before, (std::size_t{64} << 20) + 2 * tooMany.size());
}

}  // namespace
}  // namespace skin::testing
