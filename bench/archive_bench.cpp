// Reading and writing of an Archive of 10,000 levels, and what its list costs.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/drives.h"

namespace {

namespace fs = std::filesystem;
using namespace kelvash;

constexpr int kLevels = 10'000;

// An application's folder that goes with the program.
struct Home {
    fs::path folder;
    Home() {
        std::string name = (fs::temp_directory_path() / "kelvash-bench-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) std::abort();
        folder = name;
        if (!SetAppFolder(folder) || !SetDrive('C', folder, DriveType::Fixed)) std::abort();
        fs::create_directories(folder / "Levels");
    }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;
    ~Home() {
        std::error_code error;
        fs::remove_all(folder, error);
    }
};

void FillArchive() {
    static const Home home;
    core::archive = core::ArchiveState();
    core::archive.Header.MainFolder = core::archive.Header.SecondaryFolder = "C:\\Levels";
    for (int code = 0; code < kLevels; ++code) {
        core::LevelRecord level;
        level.Code = code;
        level.Name = "Level of number " + std::to_string(code * 7919 % kLevels);
        level.Author = "Somebody";
        level.Note = "Choose the second entry";
        core::archive.Table.Append(level);
    }
    if (!core::WriteArchive("C:\\bench.kva")) std::abort();
}

void LoadingTheArchive(benchmark::State& state) {
    FillArchive();
    for ([[maybe_unused]] auto step : state)
        if (!core::LoadArchive("C:\\bench.kva")) state.SkipWithError("can't load");
}

void WritingTheArchive(benchmark::State& state) {
    FillArchive();
    for ([[maybe_unused]] auto step : state)
        if (!core::WriteArchive("C:\\bench.kva")) state.SkipWithError("can't write");
}

void RefreshingTheLevelList(benchmark::State& state) {
    FillArchive();
    for ([[maybe_unused]] auto step : state)
        core::RefreshLevelList();
}

} // namespace

BENCHMARK(LoadingTheArchive)->Unit(benchmark::kMillisecond);
BENCHMARK(WritingTheArchive)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(RefreshingTheLevelList)->Unit(benchmark::kMillisecond);
