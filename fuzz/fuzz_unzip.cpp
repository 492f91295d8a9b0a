// Unpacks arbitrary bytes as a skin package (root named by the package) and as a file-transfer
// package, in a private folder, and aborts if anything lands outside the folder UnZip made.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "bwzip.h"

namespace {

namespace fs = std::filesystem;

// Made once per process and removed at exit; never destroyed, so the exit hook can use it.
const fs::path& workFolder() {
    static const fs::path* folder = [] {
        auto* path = new fs::path(fs::temp_directory_path() / ("fuzz_unzip-" + std::to_string(::getpid())));
        fs::remove_all(*path);
        fs::create_directories(*path);
        std::atexit([] {
            std::error_code ec;
            fs::remove_all(workFolder(), ec);
        });
        return path;
    }();
    return *folder;
}

// Everything in the work folder must be the package, the base folder, or inside `made`.
void checkContained(const fs::path& base, const std::string& made) {
    for (const auto& entry : fs::recursive_directory_iterator(workFolder())) {
        const std::string path = entry.path().string();
        if (entry.path() == base || entry.path() == base / "in.bsz") continue;
        if (!made.empty() && (path + "/").rfind(made, 0) == 0) continue;
        std::fprintf(stderr, "written outside the unpack folder: %s\n", path.c_str());
        std::abort();
    }
}

}  // namespace

// Unpacks `data` in a fresh base folder, as a skin package or as a file transfer.
static void unpackOnce(const std::uint8_t* data, std::size_t size, bool skinFile) {
    const fs::path base = workFolder() / "base";
    fs::remove_all(base);
    fs::create_directories(base);
    const fs::path package = base / "in.bsz";
    if (std::FILE* out = std::fopen(package.c_str(), "wb")) {
        if (size > 0) std::fwrite(data, 1, size, out);
        std::fclose(out);
    }
    skin::BwZip zip;
    zip.SetClock([] { return skin::PackageClockTime{2026, 11, 18, 14, 26, 33}; });
    std::string bsi = "use the root name";
    if (skinFile) {
        zip.UnZip(package.string(), base.string() + "/", false, true, &bsi);
    } else {
        zip.UnZip("in.bsz", base.string() + "/", false, false, &bsi);
    }
    checkContained(base, zip.UnpackedFolder());
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    unpackOnce(data, size, true);
    unpackOnce(data, size, false);
    return 0;
}
