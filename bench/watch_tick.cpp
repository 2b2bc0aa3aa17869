// watch_tick WORK: what the watcher costs while nothing happens beside a game, and whether it grows in an
// hour. WORK is an empty folder for the files; keys and windows are asked of the display, if there is one.
#include <ctime>

#include "bench/timing.h"
#include "companion/game.h"
#include "companion/watch_calls.h"
#include "companion/watcher.h"
#include "core/profile.h"
#include "foundation/drive_options.h"
#include "foundation/drives.h"
#include "foundation/process.h"

namespace {

using namespace kelvash;
using namespace kelvash::bench;

constexpr int kTicks = 7200; // an hour of half seconds
constexpr int kPollsPerTick = 500 / companion::kPollMillis;
constexpr int kTracks = 112;
constexpr int kWarmUp = 200;

double CpuMillis() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double ResidentMegabytes() {
    std::ifstream file("/proc/self/statm");
    double all = 0, resident = 0;
    file >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / static_cast<double>(kMegabyte);
}

// A TRLE folder with its usual files, fourteen savegames and a game that sleeps.
std::vector<std::string> MakeTrle(const fs::path& trle) {
    std::vector<std::string> tracks;
    for (int i = 0; i < kTracks; ++i) {
        const std::string name = std::to_string(1000 + i).substr(1) + ".wav";
        Write(trle / "audio" / name, "wave");
        tracks.push_back("C:\\trle\\audio\\" + name);
    }
    for (int i = 0; i < 14; ++i)
        Write(trle / ("savegame." + std::to_string(i)), std::string(15954, 's'));
    for (int i = 0; i < 60; ++i)
        Write(trle / ("file" + std::to_string(i) + ".dat"), "file");
    fs::copy_file("/bin/sleep", trle / "tomb4.exe");
    return tracks;
}

void Measure(const fs::path& work) {
    const std::vector<std::string> tracks = MakeTrle(work / "c/trle");
    if (!SetDrives({"C=" + (work / "c").string()}).empty() || !SetAppFolder(work / "home")) Die("no folders");
    core::profile.TrleFolder = "C:\\trle";
    Process game;
    if (!RunFull("C:\\trle\\tomb4.exe", {"3600"}, Window::Normal, game, false) || !companion::AdoptGame())
        Die("no game");
    companion::watch_calls.RunMediaEvents = [&] {
        if (HoldsOpen(companion::game.GameProcess.id, tracks)) Die("a track is open");
    };
    double ticks = 0, polls = 0, before = 0;
    for (int i = 0; i < kTicks + kWarmUp; ++i) {
        if (i == kWarmUp) {
            before = ResidentMegabytes();
            ticks = polls = 0;
        }
        double start = CpuMillis();
        if (!companion::Tick()) Die("the watch has ended");
        ticks += CpuMillis() - start;
        start = CpuMillis();
        for (int poll = 0; poll < kPollsPerTick; ++poll)
            companion::PollKeys();
        polls += CpuMillis() - start;
    }
    KillProcess(game);
    PrintHead();
    PrintRow("a tick of the watcher, processor time", ticks / kTicks, 0, ticks / kTicks, 1, " ms");
    PrintRow("the looks at the keys between two ticks", polls / kTicks, 0, polls / kTicks, 5, " ms");
    PrintRow("memory that an hour of watching takes", 0, 0, ResidentMegabytes() - before, 0.5, " MB");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) Die("watch_tick WORK");
    Measure(argv[1]);
}
