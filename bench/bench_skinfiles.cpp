// Package creation and skin loading through the core with a scripted platform, on a skin with
// two 4000 x 3000 24-bit BMP pictures (36 MB each): what a designer waits for between the
// click and the last message, files on disk included.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "benchinputs.h"
#include "editor.h"
#include "fakeplatform.h"
#include "skinloading.h"
#include "skinpackagecreation.h"

namespace {

namespace fs = std::filesystem;
using skin::testing::FakePlatform;

constexpr int kPictureWidth = 4000;
constexpr int kPictureHeight = 3000;

// The work folder with the two pictures, made once per process and removed at exit.
struct Workbench {
    fs::path root;
    std::string sendPicture, receivePicture;
    std::int64_t pictureBytes = 0;

    Workbench() {
        root = fs::temp_directory_path() / ("bench_skinfiles-" + std::to_string(::getpid()));
        fs::remove_all(root);
        fs::create_directories(root / "tmp");
        sendPicture = (root / "send.bmp").string();
        receivePicture = (root / "receive.bmp").string();
        put(sendPicture, skin::bench::SkinPictureBmp(kPictureWidth, kPictureHeight, 1));
        put(receivePicture, skin::bench::SkinPictureBmp(kPictureWidth, kPictureHeight, 2));
        pictureBytes = static_cast<std::int64_t>(fs::file_size(sendPicture) + fs::file_size(receivePicture));
    }
    ~Workbench() { fs::remove_all(root); }
    static void put(const std::string& path, const std::string& bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    std::string Temp() const { return (root / "tmp").string() + "/"; }
};

Workbench& Bench() {
    static Workbench bench;
    return bench;
}

// A skin with both pictures and one area per kind on each side.
void FillSkin(skin::Editor& editor, FakePlatform& platform) {
    Workbench& bench = Bench();
    editor.SetSidePicture(skin::SkinSide::Send, bench.sendPicture, "send.bmp");
    editor.SetSidePicture(skin::SkinSide::Receive, bench.receivePicture, "receive.bmp");
    editor.SetSkinName("Bench Skin");
    editor.SetSkinAuthor("Bench");
    for (skin::SkinSide side : {skin::SkinSide::Send, skin::SkinSide::Receive}) {
        for (skin::AreaKind kind = 0; kind < skin::kAreaKinds; ++kind) {
            const float at = 100.0f + 300.0f * static_cast<float>(kind);
            platform.menuAnswers.push_back(kind);
            editor.BeginArea(side, at, at / 2);
            editor.ExtendArea(side, at + 240, at / 2 + 180);
            editor.EndArea(side, at + 240, at / 2 + 180);
        }
    }
}

void CreatePackage(skin::Editor& editor, FakePlatform& platform, const std::string& package) {
    platform.saveAnswers.push_back(skin::FileChoice{package, fs::path(package).filename().string()});
    platform.messageAnswers.push_back(skin::MessageAnswer::No);  // keep the skin for the next run
    skin::CreateSkinPackage(editor, platform);
}

void BM_CreateSkinPackage(benchmark::State& state) {
    Workbench& bench = Bench();
    FakePlatform platform;
    platform.tempFolder = bench.Temp();
    skin::Editor editor(platform);
    FillSkin(editor, platform);
    const std::string package = (bench.root / "BENCH.bsz").string();
    for (auto _ : state) {
        state.PauseTiming();
        fs::remove(package);
        platform.messages.clear();
        state.ResumeTiming();
        CreatePackage(editor, platform, package);
        if (platform.messages.back().title != "Ostervale Skin Fwt.") {
            state.SkipWithError("package creation failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * bench.pictureBytes);
    state.counters["package_MB"] = static_cast<double>(fs::file_size(package)) / 1e6;
    fs::remove(package);
}

void BM_LoadSkin(benchmark::State& state) {
    Workbench& bench = Bench();
    FakePlatform platform;
    platform.tempFolder = bench.Temp();
    skin::Editor editor(platform);
    FillSkin(editor, platform);
    const std::string package = (bench.root / "LOAD.bsz").string();
    fs::remove(package);
    CreatePackage(editor, platform, package);
    for (auto _ : state) {
        state.PauseTiming();
        // Each load unpacks into a new time-stamped folder; the last one goes so disk use stays flat.
        for (const auto& entry : fs::directory_iterator(bench.Temp())) fs::remove_all(entry.path());
        platform.messages.clear();
        platform.openAnswers.push_back(skin::FileChoice{package, "LOAD.bsz"});
        state.ResumeTiming();
        skin::LoadSkin(editor, platform);
        if (platform.messages.back().text != "Skin loaded successfully!") {
            state.SkipWithError("skin loading failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * bench.pictureBytes);
    fs::remove(package);
}

}  // namespace

BENCHMARK(BM_CreateSkinPackage)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_LoadSkin)->Unit(benchmark::kMillisecond)->Iterations(3);

BENCHMARK_MAIN();
