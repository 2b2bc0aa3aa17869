// gaps WORK: the longest that a window would wait for the interface in the program's long jobs. WORK is an
// empty folder for the files.
#include <algorithm>
#include <functional>
#include <iostream>

#include "bench/timing.h"
#include "bench/world.h"
#include "core/level_list.h"
#include "core/maintenance.h"
#include "core/sizes.h"
#include "foundation/messages.h"
#include "foundation/user.h"
#include "intake/export_level.h"
#include "intake/new_level.h"
#include "swap/compression.h"
#include "swap/install.h"

namespace {

using namespace kelvash;
using namespace kelvash::bench;

constexpr double kTarget = 50;
constexpr int kManyLevels = 10'000;

// Agrees to all, and looks at the clock where a window would repaint.
class Watch final : public User {
  public:
    Watch() { SetUser(this); }
    ~Watch() override { SetUser(nullptr); }
    void Message(MessageStyle style, const MessageText& text) override {
        if (style == MessageStyle::Critical) Die(text.text);
    }
    Answer Ask(Buttons, MessageStyle, const MessageText&) override { return Answer::Yes; }
    std::optional<std::string> Input(const std::string&, const MessageText&,
                                     const std::string& initial) override {
        return initial;
    }
    std::optional<std::string> OpenFile(const FileDialog&) override { return chosen; }
    std::optional<std::string> SaveFile(const FileDialog&) override { return chosen; }
    std::optional<std::string> ChooseFolder(const MessageText&, const std::string&) override {
        return chosen;
    }
    void OpenProgress(BarPlace, const std::string&) override {}
    void CloseProgress(BarPlace) override {}
    void SetLabel(BarPlace, const std::string&) override {}
    void SetBar(BarPlace, int) override {}
    void LevelListChanged() override {}
    bool StopRequested() override { return false; }
    void PumpEvents() override {
        const auto now = Clock::now();
        gap = std::max(gap, std::chrono::duration<double, std::milli>(now - last_).count());
        last_ = now;
    }
    void Start() {
        gap = 0;
        last_ = Clock::now();
    }

    std::string chosen; // in the next dialog
    double gap = 0;     // milliseconds

  private:
    Clock::time_point last_;
};

void Measure(Watch& watch, const std::string& what, const std::function<void()>& job) {
    const JobScope command;
    const auto start = Clock::now();
    watch.Start();
    job();
    watch.PumpEvents();
    const double time = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    PrintRow("longest wait in: " + what, time, 0, watch.gap, kTarget, " ms");
}

void Install(int code) {
    if (!swap::InstallLevel(code)) Die("the level was not installed");
}

void MeasureLevels(Watch& watch, const World& world) {
    Run({"sh", "-c",
         "cd '" + world.Files(1).string() + "' && zip -q -r -0 '" + (world.work / "c/level.zip").string() +
             "' ."});
    Measure(watch, "swap of a plain level", [] { Install(1); });
    Measure(watch, "swap of a packed level", [] { Install(3); });
    Measure(watch, "original configuration", [] { Install(0); });
    Measure(watch, "a level added", [] { intake::AddLevels({"C:\\level.zip"}); });
    core::archive.Header.CompressFiles = true;
    Measure(watch, "a level added and packed", [] { intake::AddLevels({"C:\\level.zip"}); });
    core::SelectLevel(3);
    watch.chosen = "C:\\out.zip";
    Measure(watch, "a packed level exported", [] { intake::ExportLevel(); });
    Measure(watch, "all levels unpacked", [] {
        static_cast<void>(swap::ApplyCompressionSettings({false, false}));
    });
    fs::create_directories(world.work / "c/Elsewhere");
    watch.chosen = "C:\\Elsewhere";
    Measure(watch, "an Archive of six levels moved", [] {
        if (!core::MoveArchive()) Die("the Archive was not moved");
    });
}

void MeasureManyLevels(Watch& watch, const World& world) {
    core::archive.Table = {core::LevelRecord()};
    for (int code = 1; code < kManyLevels; ++code) {
        core::LevelRecord level;
        level.Code = code;
        core::archive.Table.Append(level);
        std::string number = std::to_string(10000 + code).substr(1);
        Write(world.work / "c/Elsewhere" / ("LEVEL_" + number) / "FILES" / "a.tr4", "content");
    }
    Measure(watch, "10,000 levels saved", [] { core::SaveArchive(); });
    Measure(watch, "10,000 levels loaded", [] {
        if (!core::LoadArchive("H:\\bench.kva")) Die("the Archive was not loaded");
    });
    Measure(watch, "sizes of 10,000 levels", [] { core::ComputeArchiveSize(core::Report::Silent); });
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    Watch watch;
    const World world(fs::absolute(argv[1]));
    world.Make();
    PrintHead();
    MeasureLevels(watch, world);
    MeasureManyLevels(watch, world);
    return 0;
}
