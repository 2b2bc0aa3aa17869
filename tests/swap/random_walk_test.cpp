// Long random walks of installs, play, restores and removals over levels of all kinds. After every step the
// whole TRLE folder, the marker and every level's stash are compared with a model that knows only the rules.
#include <gtest/gtest.h>

#include <iostream>
#include <random>

#include "core/archive.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/native_text.h"
#include "foundation/state.h"
#include "support/swap_model.h"
#include "support/swap_world.h"
#include "support/test_home.h"
#include "swap/install.h"
#include "swap/remove.h"
#include "swap/restore.h"
#include "trle_state/trle_state.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

// A media configuration with one event: a movie.
std::string MovieConfig(std::string name) {
    std::string config(20 + 1356, '\0');
    config[0] = 1;
    name.resize(256, ' ');
    config.replace(20, 256, name);
    config[20 + 266] = 4;
    return config;
}

WorldLevel Zipped(WorldLevel level, const std::string& name, const std::string& plain) {
    level.files.push_back({name, ZlibStream(plain)});
    level.plain.push_back({name, plain});
    return level;
}

std::vector<WorldLevel> WalkLevels() {
    std::vector<WorldLevel> levels;
    levels.push_back({1,
                      "Plain level",
                      "Plain level",
                      {{"city.tr4", "1 city"},
                       {"script.dat", "1 script"},
                       {"objects.h", "1 objects"},
                       {"load.bmp", "1 load"},
                       {"readme.txt", "1 readme"},
                       {"savegame.9", "1 not a save in use"}},
                      {{"savegame.0", "level 1"},
                       {"savegame.1", "level 1"},
                       {"shot001.jpg", "level 1"},
                       {"note0.txt", "level 1"}}});
    levels.push_back(Zipped(Zipped({2, "Packed", "Packed", {{"script.dat", "2 script"}}, {}}, "castle.tr4.zl",
                                   std::string(5000, 'c')),
                            "045.WAV.ZL", "2 wave"));
    levels.push_back({3,
                      "Caff\xC3\xA8 with picture",
                      "Caff\xE8 with picture",
                      {{"LOAD.JPG", GreyJpeg()},
                       {"italian.dat", "3 italian"},
                       {"Script.Dat", "3 script"},
                       {"rome.tr4", "3 rome"}},
                      {{"SAVEGAME.0", "level 3"}, {"extra.bin", "no save"}},
                      {{"LOAD.JPG", GreyBitmap()}}});
    levels.push_back(
        {4, "Script only", "Script only", {{"script.dat", "4 script"}, {"egypt.tr4", "4 egypt"}}, {}});
    levels.push_back({5,
                      "Shouting",
                      "Shouting",
                      {{"SCRIPT.DAT", "5 script"},
                       {"English.Dat", "5 english"},
                       {"TITLE.TR4", "5 title"},
                       {"Objects.H", "5 objects"},
                       {"Load.BMP", "5 load"},
                       {"EDGEPTR.pcx", "5 edge"}},
                      {{"Note1.TXT", "level 5"}}});
    levels.push_back({6,
                      "Waves",
                      "Waves",
                      {{"000.wav", "6 wave"},
                       {"001.WAV", "6 wave"},
                       {"new.wav", "6 wave"},
                       {"sea.tr4", "6 sea"},
                       {"sea.pak", "6 pak"},
                       {"error.log", "6 log"}},
                      {{"savegame.0", "level 6"}}});
    levels.push_back({7,
                      "Cinema",
                      "Cinema",
                      {{"media.mcf", MovieConfig("intro.avi")},
                       {"intro.avi", "7 movie"},
                       {"film.tr4", "7 film"},
                       {"other.avi", "7 not used"}},
                      {}});
    levels.push_back({8,
                      "Foreign",
                      "Foreign",
                      {{"french.dat", "8 french"}, {"own.h", "8 own"}, {"paris.tr4", "8 paris"}},
                      {{"savegame.12", "level 8"}, {"Shotty.JPG", "level 8"}}});
    levels.push_back({9, "Bare", "Bare", {{"bare.tr4", "9 bare"}}, {}});
    levels.push_back({12,
                      "Nothing to run",
                      "Nothing to run",
                      {{"script.dat", "12 script"}},
                      {{"savegame.3", "level 12"}}});
    return levels;
}

class RandomWalk : public TestHome, public testing::WithParamInterface<std::tuple<int, Backup>> {
  protected:
    void SetUp() override {
        user.MayAnswer("wave files of the TRLE folder", "no");
        user.MayBeTold("Files of the TRLE folder that the backup doesn't hold made way");
    }
    RandomWalk()
        : world(drive), levels(WalkLevels()), random(static_cast<unsigned>(std::get<0>(GetParam()))) {
        const Backup backup = std::get<1>(GetParam());
        MakeTrleWorld(world, backup);
        for (const WorldLevel& level : levels)
            MakeLevel(world, level);
        OpenWorld(world, levels, backup);
        model.emplace(world, levels, backup);
    }

    int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }
    const WorldLevel& AnyLevel() {
        return levels[static_cast<std::size_t>(Below(static_cast<int>(levels.size())))];
    }

    void Play();
    void Install(std::int32_t code);
    void DeleteLevelFile();
    void RepairLevel();
    void Restart();
    std::string Step();
    void CheckWorld() const;
    void CheckSaves() const;

    World world;
    std::vector<WorldLevel> levels;
    std::mt19937 random;
    std::optional<SwapModel> model;
};

// The game writes, changes and deletes its files in the TRLE root, in any spelling.
void RandomWalk::Play() {
    static const std::vector<std::string> names = {"savegame.0",  "savegame.1",  "SAVEGAME.2", "savegame.12",
                                                   "shot001.jpg", "Shot002.jpg", "note0.txt",  "NOTES.txt"};
    for (int i = 1 + Below(3); i > 0; --i) {
        const std::string& name = names[static_cast<std::size_t>(Below(static_cast<int>(names.size())))];
        if (Below(3) != 0) {
            const std::string owner = "level " + std::to_string(model->Current());
            model->PlayerWrites(Lower(name), WriteStamped(world.trle / name, owner));
        } else {
            for (const fs::directory_entry& entry : fs::directory_iterator(world.trle))
                if (Lower(TextOfNative(entry.path().filename())) == Lower(name)) {
                    fs::remove(entry.path());
                    break;
                }
            model->PlayerDeletes(Lower(name));
        }
    }
}

void RandomWalk::Install(std::int32_t code) {
    if (model->AsksForTr4(code)) user.WillAnswer("this level has NO .tr4 file", Below(2) == 0 ? "no" : "yes");
    const bool installed = swap::InstallLevel(code);
    EXPECT_EQ(installed, model->InstallLevel(code));
}

void RandomWalk::DeleteLevelFile() {
    const WorldLevel& level = AnyLevel();
    const NamedFile& file =
        level.files[static_cast<std::size_t>(Below(static_cast<int>(level.files.size())))];
    fs::remove(world.FilesPath(level.code) / file.name);
    model->LevelFileDeleted(level.code, file.name);
}

void RandomWalk::RepairLevel() {
    const WorldLevel& level = AnyLevel();
    for (const NamedFile& file : level.files)
        MakeFile(world.FilesPath(level.code) / file.name, file.bytes);
    model->LevelFilesRepaired(level.code);
}

void RandomWalk::Restart() {
    ResetProgramState();
    MapDrives();
    EXPECT_EQ(core::LoadProfile(), core::ProfileState::Current);
    EXPECT_TRUE(core::LoadArchive(core::profile.LastArchive));
}

std::string RandomWalk::Step() {
    const int choice = Below(100);
    if (choice < 30) {
        Play();
        return "play";
    }
    if (choice < 63) {
        const std::int32_t code = AnyLevel().code;
        Install(code);
        return "install " + std::to_string(code);
    }
    if (choice < 71) {
        Install(0);
        return "install 0";
    }
    if (choice < 76) {
        EXPECT_TRUE(swap::FastRestore());
        EXPECT_EQ(user.Told().back(), "plain: Set in Tomb Raider Level Editor, original configuration");
        model->InstallLevel(0);
        return "fast restore";
    }
    if (choice < 82) {
        Bar bar;
        swap::FullRestore(bar, false);
        EXPECT_EQ(user.Told().back(), "plain: Restored original Tomb Raider Level Editor configuration");
        model->FullRestore();
        return "full restore";
    }
    if (choice < 88) {
        const std::int32_t previous = swap::RemovePreviousLevel(-1);
        EXPECT_EQ(previous, model->RemovePreviousLevel(-1));
        return "remove";
    }
    if (choice < 92) {
        DeleteLevelFile();
        return "delete a level's file";
    }
    if (choice < 96) {
        RepairLevel();
        return "repair a level";
    }
    Restart();
    return "restart";
}

void RandomWalk::CheckWorld() const {
    FileMap trle = TreeOf(world.trle);
    std::optional<std::string> marker;
    if (const auto found = trle.find("kelvash.txt"); found != trle.end()) {
        marker = Lower(found->second);
        trle.erase(found);
    }
    EXPECT_EQ(trle, model->Trle());
    EXPECT_EQ(marker, model->Marker());
    EXPECT_EQ(trle_state::CurrentLevelCode(), model->Current());
    EXPECT_EQ(FilesIn(world.StashPath(0)), model->Stash(0)) << "stash of level 0";
    for (const WorldLevel& level : levels) {
        EXPECT_EQ(FilesIn(world.StashPath(level.code)), model->Stash(level.code))
            << "stash of level " << level.code;
        EXPECT_EQ(FilesIn(world.FilesPath(level.code)), model->Files(level.code))
            << "files of level " << level.code;
    }
    EXPECT_FALSE(Exists(world.home / "_temp_Dec"));
}

// Says nothing of where a save should be, only that it is where its level can get at it.
void RandomWalk::CheckSaves() const {
    const FileMap in_trle = FilesIn(world.trle);
    for (const auto& [code, saves] : model->Alive()) {
        const FileMap stash = FilesIn(world.StashPath(code));
        for (const auto& [name, bytes] : saves) {
            const auto in_stash = stash.find(name);
            const auto played = in_trle.find(name);
            const bool there =
                (in_stash != stash.end() && in_stash->second == bytes) ||
                (code == model->Current() && played != in_trle.end() && played->second == bytes);
            EXPECT_TRUE(there) << "level " << code << " has lost " << name << " (" << bytes << ")";
        }
    }
}

TEST_P(RandomWalk, KeepsTheFolderAndEverySaveAsTheModelSays) {
    constexpr int kSteps = 180;
    std::map<std::string, int> done;
    std::string road;
    for (int i = 0; i < kSteps && !HasFailure(); ++i) {
        const std::string step = Step();
        ++done[step.substr(0, step.find_first_of("0123456789"))];
        road += step + (i % 8 == 7 ? ",\n" : ", ");
        CheckWorld();
        CheckSaves();
    }
    if (HasFailure()) std::cout << "the walk: " << road << "\n";
    for (const std::string& told : user.Told()) {
        if (!told.starts_with("critical")) continue;
        EXPECT_EQ(told, "critical: Correction archive CD operation has been aborted");
    }
    for (const auto& [step, times] : done)
        std::cout << "  " << times << " x " << step << "\n";
    RecordProperty("steps", kSteps);
}

std::string WalkName(const testing::TestParamInfo<std::tuple<int, Backup>>& walk) {
    const auto& [seed, backup] = walk.param;
    return (backup == Backup::Full ? "Full" : "Compact") + std::to_string(seed);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWalk,
                         testing::Combine(testing::Values(1, 2, 3, 4),
                                          testing::Values(Backup::Full, Backup::Compact)),
                         WalkName);

} // namespace
} // namespace kelvash::test
