// Packing and unpacking a skin with two 4000x3000 24-bit pictures, side by side with gzip -1
// and gzip -d on the same files, and the peak memory of packing one 100 MB file.
// Goals: pack + unpack in at most half the time of gzip -1 + gzip -d; peak memory at most
// 2.5 times the largest file plus 50 MB.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "benchinputs.h"
#include "bwzip.h"

namespace {

namespace fs = std::filesystem;

constexpr int kPictureWidth = 4000;
constexpr int kPictureHeight = 3000;
constexpr int kRuns = 3;
constexpr std::size_t kLargeFileBytes = 100u * 1024 * 1024;
constexpr double kTimeGoal = 0.5;
constexpr double kMemoryFactor = 2.5;
constexpr double kMemorySlackMb = 50.0;
constexpr const char* kPackChildFlag = "--pack-child";

void writeFile(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// The median wall time of `runs` calls, in seconds; `prepare` runs untimed before each.
double medianSeconds(const std::function<void()>& prepare, const std::function<void()>& work) {
    std::vector<double> times;
    for (int i = 0; i < kRuns; ++i) {
        prepare();
        const auto start = std::chrono::steady_clock::now();
        work();
        times.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void run(const std::string& command) {
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "failed: %s\n", command.c_str());
        std::exit(1);
    }
}

// Runs this program again to pack one file, so the child's peak memory is its own.
double packChildPeakMb(const fs::path& input, const fs::path& package) {
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::execl("/proc/self/exe", "bench_package", kPackChildFlag, input.c_str(), package.c_str(), nullptr);
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    ::wait4(pid, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "packing child failed\n");
        std::exit(1);
    }
    return static_cast<double>(usage.ru_maxrss) / 1024.0;  // ru_maxrss is in KiB
}

int packChild(const char* input, const char* package) {
    skin::BwZip zip;
    zip.AddFileFolder(input);
    return zip.Zip("Large", package).empty() ? 1 : 0;
}

void memoryBench(const fs::path& dir) {
    std::printf("\nPeak memory of packing one %zu MB file (child process, max RSS)\n", kLargeFileBytes >> 20);
    const double fileMb = static_cast<double>(kLargeFileBytes) / (1024.0 * 1024.0);
    const double goal = kMemoryFactor * fileMb + kMemorySlackMb;
    struct Kind {
        const char* name;
        std::function<std::string()> make;
    };
    const std::vector<Kind> kinds{
        {"picture (HE2)", [] { return skin::bench::SkinPictureBmp(5910, 5910, 7).substr(0, kLargeFileBytes); }},
        {"random (HE0)", [] { return skin::bench::RandomBytes(kLargeFileBytes, 11); }},
    };
    for (const auto& kind : kinds) {
        const fs::path input = dir / "large.bin";
        writeFile(input, kind.make());  // the string is freed before the child starts
        fs::remove(dir / "large.bsz");
        const double peak = packChildPeakMb(input, dir / "large.bsz");
        std::printf("  %-14s peak %7.1f MB   goal <= %.1f MB   %s\n", kind.name, peak, goal,
                    peak <= goal ? "met" : "MISSED");
        fs::remove(input);
        fs::remove(dir / "large.bsz");
    }
}

void speedBench(const fs::path& dir) {
    const fs::path skinDir = dir / "skin";
    fs::create_directories(skinDir);
    writeFile(skinDir / "send.bmp", skin::bench::SkinPictureBmp(kPictureWidth, kPictureHeight, 1));
    writeFile(skinDir / "receive.bmp", skin::bench::SkinPictureBmp(kPictureWidth, kPictureHeight, 2));
    writeFile(skinDir / "Skin.bsi", skin::bench::EnglishText(3000, 5));
    const std::uintmax_t inputBytes =
        fs::file_size(skinDir / "send.bmp") + fs::file_size(skinDir / "receive.bmp") + fs::file_size(skinDir / "Skin.bsi");

    const fs::path package = dir / "skin.bsz";
    const fs::path out = dir / "out";
    const double pack = medianSeconds([&] { fs::remove(package); }, [&] {
        skin::BwZip zip;
        for (const char* name : {"send.bmp", "receive.bmp", "Skin.bsi"}) zip.AddFileFolder((skinDir / name).string());
        if (zip.Zip("Skin", package.string()).empty()) std::exit(1);
    });
    const double unpack = medianSeconds([&] { fs::remove_all(out); fs::create_directories(out); }, [&] {
        skin::BwZip zip;
        std::string bsi = "keep root";
        if (!zip.UnZip(package.string(), out.string() + "/", false, true, &bsi)) std::exit(1);
    });

    const double gzip = medianSeconds([] {}, [&] {
        for (const char* name : {"send.bmp", "receive.bmp", "Skin.bsi"}) {
            run("gzip -1 -c '" + (skinDir / name).string() + "' > '" + (dir / name).string() + ".gz'");
        }
    });
    const double gunzip = medianSeconds([] {}, [&] {
        for (const char* name : {"send.bmp", "receive.bmp", "Skin.bsi"}) {
            run("gzip -d -c '" + (dir / name).string() + ".gz' > '" + (dir / name).string() + ".out'");
        }
    });
    std::uintmax_t gzipBytes = 0;
    for (const char* name : {"send.bmp", "receive.bmp", "Skin.bsi"}) gzipBytes += fs::file_size((dir / name).string() + ".gz");

    const double mb = static_cast<double>(inputBytes) / (1024.0 * 1024.0);
    std::printf("Skin with two %dx%d 24-bit BMPs and a .bsi: %.1f MB in (median of %d runs)\n", kPictureWidth,
                kPictureHeight, mb, kRuns);
    std::printf("  pack     %7.3f s  %7.1f MB/s   package %5.1f%% of input\n", pack, mb / pack,
                100.0 * static_cast<double>(fs::file_size(package)) / static_cast<double>(inputBytes));
    std::printf("  unpack   %7.3f s  %7.1f MB/s\n", unpack, mb / unpack);
    std::printf("  gzip -1  %7.3f s  %7.1f MB/s   gzip    %5.1f%% of input\n", gzip, mb / gzip,
                100.0 * static_cast<double>(gzipBytes) / static_cast<double>(inputBytes));
    std::printf("  gzip -d  %7.3f s  %7.1f MB/s\n", gunzip, mb / gunzip);
    const double ratio = (pack + unpack) / (gzip + gunzip);
    std::printf("  (pack + unpack) / (gzip -1 + gzip -d) = %.2f   goal <= %.2f   %s\n", ratio, kTimeGoal,
                ratio <= kTimeGoal ? "met" : "MISSED");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == kPackChildFlag) return packChild(argv[2], argv[3]);
    const fs::path dir = fs::temp_directory_path() / ("bench_package-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    memoryBench(dir);
    speedBench(dir);
    fs::remove_all(dir);
    return 0;
}
