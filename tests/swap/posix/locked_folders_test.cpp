// Folders and files that can't be written, and what a swap tells and keeps then.
#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>

#include "core/archive.h"
#include "core/profile.h"
#include "support/swap_home.h"
#include "swap/install.h"
#include "swap/remove.h"
#include "swap/restore.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::CurrentLevelCode;
using trle_state::kNoLevel;
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

constexpr fs::perms kReadOnly = fs::perms::owner_read | fs::perms::owner_exec;
constexpr fs::perms kWritable = fs::perms::owner_all;

// While it lives no file can grow beyond some bytes: writing fails as on a full disk.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes) : old_handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit limit{bytes, old_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, old_handler_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit old_{};
    void (*old_handler_)(int);
};

class LockedFolders : public test::SwapHome {
  protected:
    LockedFolders() {
        AddLevel(1, "City", {{"city.tr4", "CITY"}, {"script.dat", "city script"}});
        AddLevel(2, "Coast", {{"coast.tr4", "COAST"}}, {{"savegame.0", "coast save"}});
        EXPECT_TRUE(InstallLevel(1));
        test::MakeFile(trle / "savegame.0", "city save");
    }
    ~LockedFolders() override {
        for (const fs::path& folder : {home, trle, trle / "data", StashPath(0), StashPath(1), StashPath(2)}) {
            std::error_code error;
            fs::permissions(folder, kWritable, error);
        }
    }
    // As somebody who obeys permissions.
    template <class Action>
    auto AsOrdinaryUser(Action action) {
        const test::OrdinaryUser ordinary;
        return action();
    }
    // Where level 1's save may be found once the folders can be written again.
    void ExpectCitySaveAfterTheNextInstall() {
        const test::OrdinaryUser ordinary;
        EXPECT_TRUE(InstallLevel(1));
        EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "city save");
        EXPECT_TRUE(InstallLevel(2));
        EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "coast save");
        EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
    }
};

TEST_F(LockedFolders, AStashThatCannotTakeTheSavesStopsTheSwap) {
    fs::permissions(StashPath(1), kReadOnly);
    EXPECT_FALSE(AsOrdinaryUser([] { return InstallLevel(2); }));
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: I cann't copy files in C:\\Levels\\LEVEL_0001\\backup_savegames folder\r\n"
                    "The files of previous level stay in trle folder, nothing has been changed"));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "city save");
    EXPECT_EQ(CurrentLevelCode(), 1);
    fs::permissions(StashPath(1), kWritable);
    ExpectCitySaveAfterTheNextInstall();
}

TEST_F(LockedFolders, AFileThatCannotBeDeletedStopsTheRemovalButNotTheInstall) {
    fs::permissions(trle / "data", kReadOnly);
    EXPECT_TRUE(AsOrdinaryUser([] { return InstallLevel(2); }));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: I cann't delete file: C:\\trle\\data\\city.tr4",
                            "critical: These files of the level could not be copied into the TRLE "
                            "folder:\r\n\\data\\coast.tr4"));
    EXPECT_EQ(CurrentLevelCode(), 2);
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "coast save");
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
    EXPECT_TRUE(test::Exists(trle / "data" / "city.tr4"));
    fs::permissions(trle / "data", kWritable);
    ExpectCitySaveAfterTheNextInstall();
}

TEST_F(LockedFolders, AFileThatCannotBeDeletedMakesTheRestoreFailTillItCan) {
    test::MakeFile(StashPath(0) / "savegame.0", "original save");
    fs::permissions(trle / "data", kReadOnly);
    EXPECT_FALSE(AsOrdinaryUser([] { return FastRestore(); }));
    EXPECT_THAT(user.Told(), ElementsAre("critical: I cann't delete file: C:\\trle\\data\\city.tr4",
                                         "critical: Error setting original configuration in trle folder"));
    EXPECT_EQ(CurrentLevelCode(), kNoLevel);
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
    fs::permissions(trle / "data", kWritable);
    EXPECT_TRUE(AsOrdinaryUser([] { return FastRestore(); }));
    EXPECT_EQ(CurrentLevelCode(), 0);
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "original save");
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
    ExpectCitySaveAfterTheNextInstall();
}

TEST_F(LockedFolders, AFileThatAFullRestoreCannotDeleteGoesWithTheNextSwap) {
    Bar bar;
    fs::permissions(trle / "data", kReadOnly);
    EXPECT_FALSE(AsOrdinaryUser([&] { return FullRestore(bar, false); }));
    EXPECT_EQ(user.Told().front(), "critical: I cann't delete file: C:\\trle\\data\\city.tr4");
    EXPECT_TRUE(test::Exists(trle / "data" / "city.tr4"));
    fs::permissions(trle / "data", kWritable);
    EXPECT_TRUE(AsOrdinaryUser([] { return FastRestore(); }));
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
}

TEST_F(LockedFolders, ARootThatCannotBeWrittenKeepsTheLevelAndItsSaves) {
    fs::permissions(trle, kReadOnly);
    EXPECT_FALSE(AsOrdinaryUser([] { return InstallLevel(2); }));
    EXPECT_THAT(user.Told().front(), HasSubstr("critical: I cann't delete file: C:\\trle\\"));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "city save");
    EXPECT_EQ(CurrentLevelCode(), kNoLevel) << "its saves are in its stash too";
    fs::permissions(trle, kWritable);
    ExpectCitySaveAfterTheNextInstall();
}

TEST_F(LockedFolders, AMarkerThatCannotBeDeletedKeepsNoOriginalAway) {
    user.MayBeTold("A change of the TRLE folder had been cut short");
    EXPECT_TRUE(InstallLevel(0));
    fs::remove(trle / "savegame.0");
    AddLevel(3, "Song", {{"song.tr4", "SONG"}, {"000.wav", "song wave"}});
    EXPECT_TRUE(InstallLevel(3));
    fs::permissions(trle, kReadOnly);
    EXPECT_EQ(AsOrdinaryUser([] { return RemovePreviousLevel(-1); }), 0);
    EXPECT_THAT(user.Told(), ElementsAre("critical: I cann't delete file: C:\\trle\\Kelvash.txt"));
    EXPECT_EQ(test::BytesOf(trle / "audio" / "000.wav"), "original audio/000.wav");
    EXPECT_TRUE(test::Exists(trle / "Kelvash.txt"));
    fs::permissions(trle, kWritable);
    EXPECT_EQ(AsOrdinaryUser([] { return RemovePreviousLevel(-1); }), 0);
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_EQ(CurrentLevelCode(), 0);
}

TEST_F(LockedFolders, AFileThatCannotComeGivesItsPlaceBackToTheUsersOwn) {
    AddLevel(3, "Big", {{"big.tr4", std::string(6000, 'b')}});
    test::MakeFile(trle / "data" / "big.tr4", "my own level");
    {
        const FullDisk full(4096);
        EXPECT_TRUE(InstallLevel(3));
    }
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: These files of the level could not be copied into the TRLE "
                            "folder:\r\n\\data\\big.tr4"));
    EXPECT_EQ(test::BytesOf(trle / "data" / "big.tr4"), "my own level");
}

TEST_F(LockedFolders, ARestoreThatCannotBeginIsNotCalledDone) {
    fs::remove(trle / "savegame.0");
    fs::permissions(home, kReadOnly);
    Bar bar;
    EXPECT_FALSE(AsOrdinaryUser([&] { return FullRestore(bar, false); }));
    EXPECT_THAT(user.Told(), testing::Each(StartsWith("critical: Error: I can't overwrite (or create) file: "
                                                      "C:\\Kelvash\\Swap_")));
    EXPECT_EQ(test::BytesOf(trle / "script.dat"), "city script");
    fs::permissions(home, kWritable);
}

TEST_F(LockedFolders, AnApplicationFolderWithoutRoomForTheRecordStopsTheSwap) {
    fs::permissions(home, kReadOnly);
    EXPECT_FALSE(AsOrdinaryUser([] { return InstallLevel(2); }));
    EXPECT_THAT(user.Told(), ElementsAre(StartsWith("critical: Error: I can't overwrite (or create) file: "
                                                    "C:\\Kelvash\\Swap_")));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "city save");
    EXPECT_EQ(CurrentLevelCode(), 1);
    fs::permissions(home, kWritable);
    ExpectCitySaveAfterTheNextInstall();
}

TEST_F(LockedFolders, AFullDiskStopsTheSwapAndKeepsTheSaves) {
    test::MakeFile(trle / "savegame.1", std::string(5000, 's'));
    {
        const FullDisk full(4096);
        EXPECT_FALSE(InstallLevel(2));
    }
    EXPECT_THAT(user.Told().front(), HasSubstr("critical: I cann't copy files in C:\\Levels\\LEVEL_0001"));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "city save");
    EXPECT_EQ(test::BytesOf(trle / "savegame.1"), std::string(5000, 's'));
    ExpectCitySaveAfterTheNextInstall();
}

TEST_F(LockedFolders, AnArchiveThatCannotGrowKeepsItsOldFile) {
    core::profile.AutoSave = true;
    ASSERT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
    const std::string before = test::BytesOf(home / "test.kva");
    {
        const FullDisk full(1000);
        core::ArchiveTouched();
    }
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while saving archive: C:\\Kelvash\\test.kva"));
    EXPECT_TRUE(core::archive.ArchiveChanged);
    EXPECT_EQ(test::BytesOf(home / "test.kva"), before);
}

} // namespace
} // namespace kelvash::swap
