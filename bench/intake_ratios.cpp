// intake_ratios WORK: adding a level, listing zips and counting sizes beside unzip and du, in pairs. WORK is
// an empty folder for the files.
#include <functional>

#include "bench/timing.h"
#include "core/archive.h"
#include "core/profile.h"
#include "core/sizes.h"
#include "foundation/drives.h"
#include "intake/new_level.h"
#include "zip/zip_module.h"

namespace {

using namespace kelvash;
using namespace kelvash::bench;

constexpr int kAddRounds = 7;
constexpr int kZips = 1000;
constexpr int kEntries = 40;
constexpr int kLevels = 1000;

double Time(const std::function<void()>& work) {
    const auto start = Clock::now();
    work();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void OpenArchive(const fs::path& work) {
    if (!SetAppFolder(work / "c/Kelvash") || !SetDrive('C', work / "c", DriveType::Fixed)) Die("no drive");
    fs::create_directories(work / "c/Levels");
    core::profile.LastArchive = "C:\\Kelvash\\bench.kva";
    core::profile.TrleFolder = "C:\\trle";
    core::archive.Header.MainFolder = "C:\\Levels";
    core::archive.Header.SecondaryFolder = "C:\\Levels";
    core::archive.Table = {{}};
}

// 60 MB in 203 files, as level packages go.
void MakeLevelZip(const fs::path& work) {
    const fs::path level = work / "level";
    Write(level / "maze.tr4", LevelBytes(40 * kMegabyte, 1));
    for (int i = 0; i < 200; ++i)
        Write(level / "audio" / (std::to_string(100 + i) + ".wav"), LevelBytes(kMegabyte / 10, 2));
    Write(level / "script.dat", "script");
    Write(level / "english.dat", "english");
    Run({"sh", "-c",
         "cd '" + level.string() + "' && zip -q -r -D '" + (work / "c/maze.zip").string() + "' ."});
}

void AddLevelRow(const fs::path& work) {
    MakeLevelZip(work);
    const fs::path plain = work / "plain";
    Pairs pairs;
    for (int i = 0; i < kAddRounds; ++i) {
        fs::remove_all(plain);
        fs::create_directories(plain);
        Settle(work);
        const double other =
            Run({"unzip", "-q", "-j", "-o", (work / "c/maze.zip").string(), "-d", plain.string()});
        Settle(work);
        core::archive.Table = {{}};
        const double ours = Time([] { intake::AddLevels({"C:\\maze.zip"}); });
        if (core::archive.Table.Size() != 2) Die("the level was not added");
        pairs.Add(ours, other);
    }
    PrintRatio("a plain level of 60 MB added / unzip", pairs, 1.2);
}

void ListRow(const fs::path& work) {
    const fs::path files = work / "files";
    for (int i = 0; i < kEntries; ++i)
        Write(files / ("file" + std::to_string(i) + ".txt"), "content");
    const fs::path zips = work / "c/zips";
    fs::create_directories(zips);
    Run({"sh", "-c", "cd '" + files.string() + "' && zip -q -r '" + (zips / "0.zip").string() + "' ."});
    for (int i = 1; i < kZips; ++i)
        fs::copy_file(zips / "0.zip", zips / (std::to_string(i) + ".zip"));
    Pairs pairs;
    for (int i = 0; i < kAddRounds; ++i) {
        const double other =
            Run({"sh", "-c", "for z in '" + zips.string() + "'/*.zip; do unzip -l $z; done"});
        std::size_t entries = 0;
        const auto list_all = [&] {
            std::string message;
            for (int n = 0; n < kZips; ++n)
                if (const auto listed = zip::ListZip("C:\\zips\\" + std::to_string(n) + ".zip", message))
                    entries += listed->size();
        };
        pairs.Add(Time(list_all), other);
        if (entries != std::size_t{kZips} * kEntries) Die("entries are missing");
    }
    PrintRatio("1,000 zips of 40 files listed / unzip -l on each", pairs, 0.2);
}

void SizesRow(const fs::path& work) {
    core::archive.Table = {{}};
    const fs::path levels = work / "c/Levels";
    fs::remove_all(levels);
    for (int code = 1; code < kLevels; ++code) {
        core::LevelRecord level;
        level.Code = code;
        core::archive.Table.Append(level);
        std::string number = std::to_string(10000 + code).substr(1);
        for (const char* folder : {"FILES", "SAVEGAMES", "BACKUP_SAVEGAMES", "SCREENSHOTS"})
            for (int i = 0; i < 5; ++i)
                Write(levels / ("LEVEL_" + number) / folder / (std::to_string(i) + ".bin"), "content");
    }
    Settle(work);
    Pairs pairs;
    for (int i = 0; i < kRounds; ++i) {
        const double other = Run({"du", "-s", "--apparent-size", levels.string()});
        pairs.Add(Time([] { core::ComputeArchiveSize(core::Report::Silent); }), other);
    }
    PrintRatio("sizes of 1,000 levels counted / du", pairs, 1.0);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const fs::path work(argv[1]);
    fs::create_directories(work);
    OpenArchive(work);
    PrintHead();
    AddLevelRow(work);
    ListRow(work);
    SizesRow(work);
    return 0;
}
