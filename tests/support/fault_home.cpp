#include "support/fault_home.h"

#include <fstream>
#include <set>

#include "core/archive.h"
#include "core/profile.h"
#include "foundation/state.h"
#include "program/start_up.h"
#include "support/linked_tree.h"
#include "swap/install.h"
#include "trle/trle_folder.h"

namespace kelvash::test {

namespace fs = std::filesystem;

namespace {

std::vector<WorldLevel> FaultLevels() {
    std::vector<WorldLevel> levels;
    levels.push_back({1,
                      "City",
                      "City",
                      {{"city.tr4", "1 city"}, {"script.dat", "1 script"}, {"045.wav", "1 wave"}},
                      {{"savegame.0", "level 1"}, {"savegame.3", "level 1"}, {"note0.txt", "level 1"}}});
    levels.push_back({2,
                      "Coast",
                      "Coast",
                      {{"coast.tr4", "2 coast"}, {"french.dat", "2 french"}, {"load.bmp", "2 load"}},
                      {{"savegame.0", "level 2"}, {"shot1.jpg", "level 2"}}});
    levels.push_back({3,
                      "Packed",
                      "Packed",
                      {{"cave.tr4.zl", ZlibStream("3 cave")}, {"script.dat", "3 script"}},
                      {{"savegame.0", "level 3"}}});
    levels.push_back({4, "Bare", "Bare", {{"bare.tr4", "4 bare"}}, {}});
    return levels;
}

// Bytes of all files that were put into folders of their own before they were overwritten.
std::set<std::string> RescuedIn(const fs::path& home) {
    std::set<std::string> rescued;
    for (const fs::directory_entry& entry : fs::directory_iterator(home))
        if (entry.path().filename().string().starts_with("rescued_saves_"))
            for (const auto& [name, bytes] : FilesIn(entry.path()))
                rescued.insert(bytes);
    return rescued;
}

bool IsHalfDone(const std::string& name) {
    return name.ends_with(".new") || name == "kelvash.tmp";
}

} // namespace

FaultHome::FaultHome()
    : place(FastFolder(root / "place")),
      world(place / "c"),
      levels(FaultLevels()),
      pristine(place / "pristine"),
      killed(place / "killed") {
    drive = world.drive;
    home = world.home;
    fs::create_directories(home);
    MapDrives();
    user.MayAnswer("wave files of the TRLE folder", "yes"); // a compact backup can't bring them back
    for (const char* told : {"Files of the TRLE folder that the backup doesn't hold made way",
                             "have been saved in: C:\\Kelvash\\rescued_saves_", "They wait in:"})
        user.MayBeTold(told);
}

FaultHome::~FaultHome() {
    std::error_code error;
    fs::remove_all(place, error);
}

void FaultHome::StartProgram() {
    ResetProgramState();
    MapDrives();
    if (whole_start) {
        program::StartUp({});
        ASSERT_TRUE(core::ArchiveIsOpen());
        return;
    }
    ASSERT_EQ(core::LoadProfile(), core::ProfileState::Current);
    ASSERT_TRUE(core::LoadArchive(core::profile.LastArchive));
}

void FaultHome::Keep(const fs::path& kept) {
    fs::remove_all(kept);
    LinkTree(drive, kept);
}

void FaultHome::Restore(const fs::path& kept) {
    for (const fs::directory_entry& entry : fs::directory_iterator(drive))
        fs::remove_all(entry.path());
    LinkTree(kept, drive);
}

void FaultHome::Prepare(const Operation& operation) {
    for (const fs::directory_entry& entry : fs::directory_iterator(drive))
        fs::remove_all(entry.path());
    MakeTrleWorld(world, operation.backup);
    for (int track = 0; track < trle::kAudioTracks; ++track) { // a start insists on them
        const fs::path wave =
            world.trle / "audio" / ((track < 10 ? "00" : "0") + std::to_string(track) + ".wav");
        if (!fs::exists(wave)) std::ofstream(wave) << "wave " << track;
        const fs::path twin = world.backup / "audio" / wave.filename();
        if (operation.backup == Backup::Full && !fs::exists(twin)) fs::copy_file(wave, twin);
    }
    for (const WorldLevel& level : levels)
        MakeLevel(world, level);
    OpenWorld(world, levels, operation.backup);
    // Level 0 has been played, then the level; the stash of either holds older saves than the root does.
    const auto play = [&](std::int32_t code) {
        const std::string owner = "level " + std::to_string(code);
        for (const char* name : {"savegame.0", "savegame.1", "shot001.jpg"})
            WriteStamped(world.trle / name, owner);
    };
    play(0);
    ASSERT_TRUE(swap::InstallLevel(0));
    play(0);
    if (operation.in != 0) {
        ASSERT_TRUE(swap::InstallLevel(operation.in));
        if (operation.in != 4) play(operation.in); // level 4 has never been saved
        fs::remove(world.trle / "note0.txt");      // the player's own doing
    }
    Keep(pristine);
    start_ = TreeOf(pristine);
    saves.clear();
    for (const std::int32_t code : {0, 1, 2, 3, 4})
        saves[code] = SavesOf(FilesIn(world.StashPath(code)));
    saves[operation.in] = SavesOf(FilesIn(world.trle));
}

TracedRun FaultHome::RunWith(const Operation& operation, const FaultPlan& plan) {
    Restore(pristine);
    return RunTraced(
        [&] {
            StartProgram();
            return operation.run();
        },
        plan);
}

int FaultHome::CountCalls(const Operation& operation) {
    const TracedRun run = RunWith(operation, {});
    EXPECT_EQ(run.exit_code, 0) << operation.name;
    return run.calls;
}

void FaultHome::CheckSaves(std::int32_t in) const {
    const FileMap in_root = SavesOf(FilesIn(world.trle));
    const std::set<std::string> rescued = RescuedIn(world.home);
    for (const auto& [code, expected] : saves) {
        const FileMap stash = FilesIn(world.StashPath(code));
        for (const auto& [name, bytes] : expected) {
            const auto stashed = stash.find(name);
            const auto played = in_root.find(name);
            const bool there = (stashed != stash.end() && stashed->second == bytes) ||
                               (code == in && played != in_root.end() && played->second == bytes) ||
                               rescued.count(bytes) != 0;
            EXPECT_TRUE(there) << "level " << code << " has lost " << name;
        }
        for (const auto& [name, bytes] : stash) {
            if (name == "kelvash.tmp") continue; // of no use to anybody, and never brought back
            EXPECT_TRUE(IsSaveName(name) && !IsHalfDone(name)) << name << " in the stash of level " << code;
            EXPECT_TRUE(bytes.starts_with("level " + std::to_string(code)))
                << name << " in the stash of level " << code << " is of " << bytes;
        }
    }
    for (const auto& [name, bytes] : in_root)
        EXPECT_TRUE(bytes.starts_with("level " + std::to_string(in)))
            << name << " in the root is of " << bytes;
}

FileMap FaultHome::LevelFiles() const {
    FileMap files = TreeOf(world.trle);
    std::erase_if(files, [](const auto& file) {
        return IsSaveName(file.first) || IsHalfDone(file.first) || file.first == "kelvash.txt";
    });
    return files;
}

} // namespace kelvash::test
