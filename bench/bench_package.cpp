// Packing and unpacking a skin with two 4000x3000 24-bit pictures, side by side with gzip -1
// and gzip -d on the same files, and the peak memory of packing, unpacking, verifying and
// listing a package of one 100 MB file of picture rows, English text and random bytes.
// Goals: pack + unpack in at most half the time of gzip -1 + gzip -d; each peak memory at most
// 32 MB, whatever the file's size.

#include <fcntl.h>
#include <spawn.h>
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
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "benchinputs.h"
#include "bwzip.h"

namespace {

namespace fs = std::filesystem;

constexpr int kPictureWidth = 4000;
constexpr int kPictureHeight = 3000;
constexpr int kRounds = 5;
constexpr std::size_t kLargeFileBytes = 100u * 1024 * 1024;
constexpr double kTimeGoal = 0.5;
constexpr double kMemoryGoalMb = 32.0;
constexpr const char* kPackChildFlag = "--pack-child";
constexpr const char* kUnpackChildFlag = "--unpack-child";

void writeFile(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// One timed operation: `prepare` runs untimed before each call of `work`.
struct Timed {
    const char* name;
    std::function<void()> prepare;
    std::function<void()> work;
    std::vector<double> seconds = {};
    double Fastest() const { return *std::min_element(seconds.begin(), seconds.end()); }
    double Median() const {
        std::vector<double> sorted = seconds;
        std::sort(sorted.begin(), sorted.end());
        return sorted[sorted.size() / 2];
    }
};

// Rounds of every operation in turn, so that a change in the machine's load falls on all of
// them alike rather than on whichever happened to run at the time.
void timeInRounds(std::vector<Timed>& operations) {
    for (int round = 0; round < kRounds; ++round) {
        for (Timed& op : operations) {
            op.prepare();
            const auto start = std::chrono::steady_clock::now();
            op.work();
            op.seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        }
    }
}

// Runs gzip directly (no shell in the timing) with its output sent to `output`.
void gzip(const char* option, const fs::path& input, const fs::path& output) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const std::string in = input.string();
    char* const argv[] = {const_cast<char*>("gzip"), const_cast<char*>(option), const_cast<char*>("-c"),
                          const_cast<char*>(in.c_str()), nullptr};
    pid_t pid = 0;
    int status = 0;
    const int spawned = ::posix_spawnp(&pid, "gzip", &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0 || ::waitpid(pid, &status, 0) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "gzip %s %s failed\n", option, in.c_str());
        std::exit(1);
    }
}

// Runs `argv` (this program again, or bsztool) and returns its peak memory, its own alone.
double childPeakMb(const std::vector<std::string>& args) {
    std::fflush(stdout);  // or the child would print this process's pending output again
    const pid_t pid = ::fork();
    if (pid == 0) {
        std::vector<char*> argv;
        for (const auto& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
        argv.push_back(nullptr);
        if (std::freopen("/dev/null", "w", stdout) == nullptr) ::_exit(127);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    int status = 0;
    rusage usage{};
    ::wait4(pid, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "%s %s failed\n", args[0].c_str(), args[1].c_str());
        std::exit(1);
    }
    return static_cast<double>(usage.ru_maxrss) / 1024.0;  // ru_maxrss is in KiB
}

int packChild(const char* input, const char* package) {
    skin::BwZip zip;
    zip.AddFileFolder(input);
    return zip.Zip("Large", package).empty() ? 1 : 0;
}

int unpackChild(const char* package, const char* folder) {
    skin::BwZip zip;
    std::string bsi = "keep the root name";
    return zip.UnZip(package, folder, false, true, &bsi) ? 0 : 1;
}

void memoryBench(const fs::path& dir) {
    std::printf("\nPeak memory with one %zu MB file of picture rows, English text and random bytes "
                "(child process, max RSS)\n", kLargeFileBytes >> 20);
    std::fflush(stdout);
    const fs::path input = dir / "large.bin";
    // Made by a child of its own: a child's peak memory counts what it shared with this process
    // until its exec, so this process stays small.
    if (const pid_t maker = ::fork(); maker == 0) {
        const std::size_t picture = kLargeFileBytes * 2 / 5, text = kLargeFileBytes * 3 / 10;
        std::string bytes = skin::bench::SkinPictureBmp(4000, 3500, 7).substr(0, picture);
        bytes += skin::bench::EnglishText(text);
        bytes += skin::bench::RandomBytes(kLargeFileBytes - picture - text, 11);
        writeFile(input, bytes);
        ::_exit(0);
    } else {
        ::waitpid(maker, nullptr, 0);
    }
    const std::string self = fs::read_symlink("/proc/self/exe").string();
    const std::string package = (dir / "large.bsz").string();
    fs::create_directories(dir / "out");
    std::vector<std::pair<const char*, std::vector<std::string>>> runs{
        {"pack (BwZip::Zip)", {self, kPackChildFlag, input.string(), package}},
        {"unpack (BwZip::UnZip)", {self, kUnpackChildFlag, package, (dir / "out").string() + "/"}},
    };
#ifdef BSZTOOL_PATH
    runs.push_back({"bsztool verify", {BSZTOOL_PATH, "verify", package}});
    runs.push_back({"bsztool list", {BSZTOOL_PATH, "list", package}});
#endif
    for (const auto& [name, args] : runs) {
        const double peak = childPeakMb(args);
        std::printf("  %-22s peak %6.1f MB   goal <= %.0f MB   %s\n", name, peak, kMemoryGoalMb,
                    peak <= kMemoryGoalMb ? "met" : "MISSED");
    }
    fs::remove_all(dir / "out");
    fs::remove(input);
    fs::remove(package);
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
    const std::vector<const char*> names{"send.bmp", "receive.bmp", "Skin.bsi"};
    auto gz = [&](const char* name) { return dir / (std::string(name) + ".gz"); };
    auto gunzipped = [&](const char* name) { return dir / (std::string(name) + ".out"); };
    // Every side starts from a warm page cache and writes new files: old outputs are removed
    // before the clock starts, for the package and for gzip alike.
    std::vector<Timed> operations{
        {"pack", [&] { fs::remove(package); },
         [&] {
             skin::BwZip zip;
             for (const char* name : names) zip.AddFileFolder((skinDir / name).string());
             if (zip.Zip("Skin", package.string()).empty()) std::exit(1);
         }},
        {"unpack", [&] { fs::remove_all(out); fs::create_directories(out); },
         [&] {
             skin::BwZip zip;
             std::string bsi = "keep root";
             if (!zip.UnZip(package.string(), out.string() + "/", false, true, &bsi)) std::exit(1);
         }},
        {"gzip -1", [&] { for (const char* name : names) fs::remove(gz(name)); },
         [&] { for (const char* name : names) gzip("-1", skinDir / name, gz(name)); }},
        {"gzip -d", [&] { for (const char* name : names) fs::remove(gunzipped(name)); },
         [&] { for (const char* name : names) gzip("-d", gz(name), gunzipped(name)); }},
    };
    timeInRounds(operations);
    for (const char* name : names) {
        if (readFile(out / "Skin" / name) != readFile(skinDir / name)) {
            std::fprintf(stderr, "unpacked %s differs from the original\n", name);
            std::exit(1);
        }
    }
    std::uintmax_t gzipBytes = 0;
    for (const char* name : names) gzipBytes += fs::file_size(gz(name));

    const double mb = static_cast<double>(inputBytes) / (1024.0 * 1024.0);
    std::printf("Skin with two %dx%d 24-bit BMPs and a .bsi: %.1f MB in (%d interleaved rounds)\n", kPictureWidth,
                kPictureHeight, mb, kRounds);
    std::printf("  %-8s %9s %9s %11s\n", "", "fastest", "median", "MB/s (med)");
    for (const Timed& op : operations) {
        std::printf("  %-8s %7.3f s %7.3f s %11.1f\n", op.name, op.Fastest(), op.Median(), mb / op.Median());
    }
    std::printf("  package %5.1f%% of input, gzip -1 %5.1f%% of input\n",
                100.0 * static_cast<double>(fs::file_size(package)) / static_cast<double>(inputBytes),
                100.0 * static_cast<double>(gzipBytes) / static_cast<double>(inputBytes));
    auto ratio = [&](auto time) {
        return (time(operations[0]) + time(operations[1])) / (time(operations[2]) + time(operations[3]));
    };
    const double fastest = ratio([](const Timed& op) { return op.Fastest(); });
    const double median = ratio([](const Timed& op) { return op.Median(); });
    std::printf("  (pack + unpack) / (gzip -1 + gzip -d) = %.2f fastest, %.2f median   goal <= %.2f   %s\n", fastest,
                median, kTimeGoal, median <= kTimeGoal ? "met" : "MISSED");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == kPackChildFlag) return packChild(argv[2], argv[3]);
    if (argc == 4 && std::string(argv[1]) == kUnpackChildFlag) return unpackChild(argv[2], argv[3]);
    const fs::path dir = fs::temp_directory_path() / ("bench_package-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    memoryBench(dir);
    speedBench(dir);
    fs::remove_all(dir);
    return 0;
}
