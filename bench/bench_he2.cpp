// HE2 encode and decode against zlib's Huffman-only deflate and inflate (the peer coder doing
// the same job) and memcpy, on generated skin pictures, text and random bytes. Prints a table of
// throughput in MB/s of original bytes (1 MB = 10^6 bytes), the fastest of many calls.
#include <malloc.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "benchinputs.h"
#include "huffmancoding.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr double kMinSeconds = 1.0;
constexpr int kMinCalls = 5;
constexpr std::size_t kTenMegabytes = 10'000'000;
constexpr int kKeepHeapBelow = 1 << 30;

// Throughput of the fastest of many calls of `work` (at least kMinCalls, for at least
// kMinSeconds): the machine is shared, and the fastest call is the least disturbed one.
double MegabytesPerSecond(std::size_t bytes, const std::function<void()>& work) {
    double fastest = 1e30, total = 0;
    for (int calls = 0; calls < kMinCalls || total < kMinSeconds; ++calls) {
        const auto start = Clock::now();
        work();
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        fastest = std::min(fastest, seconds);
        total += seconds;
    }
    return static_cast<double>(bytes) / fastest / 1e6;
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

int main(int argc, char** argv) {
    // By default the heap keeps freed memory, as in a long-running program, so that every call
    // of every coder writes into pages it has touched before. With --fresh-pages each large
    // output is mapped anew and the kernel's page faults are measured too (for all coders alike).
    const bool freshPages = argc > 1 && std::string_view(argv[1]) == "--fresh-pages";
    if (!freshPages) {
        mallopt(M_MMAP_THRESHOLD, kKeepHeapBelow);
        mallopt(M_TRIM_THRESHOLD, kKeepHeapBelow);
    }
    std::printf("%s\n\n", freshPages ? "fresh pages for every output" : "heap memory reused between calls");
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
