// Unpacks arbitrary bytes as a skin package and as a file transfer in a private folder, and
// aborts if anything lands outside the folder UnZip made.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "bwzip.h"

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fs::path work = fs::temp_directory_path() / ("fuzz_unzip-" + std::to_string(::getpid()));
    [[maybe_unused]] static const int cleanup = std::atexit([] { std::error_code ec; fs::remove_all(work, ec); });
    const fs::path base = work / "base";
    for (bool skinFile : {true, false}) {
        fs::remove_all(work);
        fs::create_directories(base);
        std::ofstream(base / "in.bsz", std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        skin::BwZip zip;
        zip.SetClock([] { return skin::PackageClockTime{2026, 11, 18, 14, 26, 33}; });
        std::string bsi = "use the root name";
        zip.UnZip(skinFile ? (base / "in.bsz").string() : "in.bsz", base.string() + "/", false, skinFile, &bsi);
        const std::string made = zip.UnpackedFolder();
        for (const auto& entry : fs::recursive_directory_iterator(work)) {
            const std::string path = entry.path().string();
            if (entry.path() == base || entry.path() == base / "in.bsz") continue;
            if (!made.empty() && (path + "/").starts_with(made)) continue;
            std::fprintf(stderr, "written outside the unpack folder: %s\n", path.c_str());
            std::abort();
        }
    }
    return 0;
}
