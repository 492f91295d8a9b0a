// HE2 encode and decode against zlib's Huffman-only deflate and inflate (the peer coder doing
// the same job) and memcpy, on generated skin pictures, text and random bytes. Prints a table of
// throughput in MB/s of original bytes (1 MB = 10^6 bytes), best of several timed runs.
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "benchinputs.h"
#include "huffmancoding.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr double kMinSecondsPerRun = 0.2;
constexpr int kRuns = 5;
constexpr std::size_t kTenMegabytes = 10'000'000;

// Best throughput over kRuns runs, each repeating `work` for at least kMinSecondsPerRun.
double MegabytesPerSecond(std::size_t bytes, const std::function<void()>& work) {
    double best = 0;
    for (int run = 0; run < kRuns; ++run) {
        int reps = 0;
        const auto start = Clock::now();
        double seconds = 0;
        do {
            work();
            ++reps;
            seconds = std::chrono::duration<double>(Clock::now() - start).count();
        } while (seconds < kMinSecondsPerRun);
        best = std::max(best, static_cast<double>(bytes) * reps / seconds / 1e6);
    }
    return best;
}

void Require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "bench_he2: %s\n", what);
        std::exit(1);
    }
}

std::string ZlibHuffmanDeflate(const std::string& input) {
    z_stream stream{};
    Require(deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15, 8, Z_HUFFMAN_ONLY) == Z_OK, "deflateInit2");
    std::string out(deflateBound(&stream, static_cast<uLong>(input.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.data()));
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    Require(deflate(&stream, Z_FINISH) == Z_STREAM_END, "deflate");
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

std::string ZlibInflate(const std::string& packed, std::size_t size) {
    z_stream stream{};
    Require(inflateInit2(&stream, 15) == Z_OK, "inflateInit2");
    std::string out(size, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    Require(inflate(&stream, Z_FINISH) == Z_STREAM_END, "inflate");
    inflateEnd(&stream);
    return out;
}

struct Input {
    std::string name;
    std::string bytes;
    bool force;
};

}  // namespace

int main() {
    const std::vector<Input> inputs = {
        {"skin BMP 800x600", skin::bench::SkinPictureBmp(800, 600), false},
        {"skin BMP 4000x3000", skin::bench::SkinPictureBmp(4000, 3000), false},
        {"English text 10 MB", skin::bench::EnglishText(kTenMegabytes), false},
        {"random 10 MB", skin::bench::RandomBytes(kTenMegabytes), false},
        {"random 10 MB, HE2 forced", skin::bench::RandomBytes(kTenMegabytes), true},
    };
    std::printf("| input | bytes | HE2 size | zlib size | HE2 enc | zlib deflate | enc ratio | HE2 dec | "
                "zlib inflate | dec ratio | memcpy | HE2 dec / memcpy |\n");
    std::printf("|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|\n");
    for (const Input& input : inputs) {
        const std::string he2 = skin::HuffmanEncode(input.bytes, input.force);
        const auto decoded = skin::HuffmanDecode(he2);
        Require(std::holds_alternative<std::string>(decoded) && std::get<std::string>(decoded) == input.bytes,
                "HE2 round trip");
        const std::string zlib = ZlibHuffmanDeflate(input.bytes);
        Require(ZlibInflate(zlib, input.bytes.size()) == input.bytes, "zlib round trip");

        const std::size_t n = input.bytes.size();
        const double he2Encode = MegabytesPerSecond(n, [&] { (void)skin::HuffmanEncode(input.bytes, input.force); });
        const double zlibDeflate = MegabytesPerSecond(n, [&] { (void)ZlibHuffmanDeflate(input.bytes); });
        const double he2Decode = MegabytesPerSecond(n, [&] { (void)skin::HuffmanDecode(he2); });
        const double zlibInflate = MegabytesPerSecond(n, [&] { (void)ZlibInflate(zlib, n); });
        std::string copy(n, '\0');
        const double copySpeed = MegabytesPerSecond(n, [&] {
            std::memcpy(copy.data(), input.bytes.data(), n);
            asm volatile("" : : "r"(copy.data()) : "memory");  // keep the copy
        });
        std::printf("| %s | %zu | %zu (%s) | %zu | %.0f | %.0f | %.2fx | %.0f | %.0f | %.2fx | %.0f | %.2f |\n",
                    input.name.c_str(), n, he2.size(), he2.starts_with("HE2") ? "HE2" : "HE0", zlib.size(),
                    he2Encode, zlibDeflate, he2Encode / zlibDeflate, he2Decode, zlibInflate,
                    he2Decode / zlibInflate, copySpeed, he2Decode / copySpeed);
        std::fflush(stdout);
    }
    return 0;
}
