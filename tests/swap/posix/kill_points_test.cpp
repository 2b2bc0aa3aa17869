// The program is killed at every call that changes the file system, in each operation that moves the player's
// files or writes the Archive or the profile. Then it is started again, and the next swap must find every
// save.
#include <gtest/gtest.h>

#include <iostream>

#include "core/archive.h"
#include "core/profile.h"
#include "program/end.h"
#include "support/fault_home.h"
#include "swap/install.h"
#include "swap/remove.h"
#include "swap/restore.h"

namespace kelvash::test {
namespace {

int Ended(bool well) {
    return well ? 0 : 1;
}

int RunFullRestore() {
    Bar bar;
    swap::FullRestore(bar, false);
    return 0;
}

class KillPoints : public FaultHome {
  protected:
    void SetUp() override {
        if (!CanTrace()) GTEST_SKIP() << "no process can be traced here";
    }

    // What comes after the next start: a swap to that level, or a full restore for -1.
    void SwapAgain(std::int32_t code) {
        StartProgram();
        if (code >= 0)
            EXPECT_TRUE(swap::InstallLevel(code));
        else
            RunFullRestore();
        for (const std::string& told : user.Told())
            EXPECT_FALSE(told.starts_with("critical")) << told;
        user.Forget();
    }
    // The level files after each next swap when nothing was killed.
    void LearnOutcomes(const std::vector<std::int32_t>& next);
    void KillEverywhere(const Operation& operation, const std::vector<std::int32_t>& next);
    void CheckLevelFiles(const Operation& operation, std::int32_t code);
    void Report(const Operation& operation, int points) {
        RecordProperty(operation.name, points);
        std::cout << "  " << points << " kill points in " << operation.name << "\n";
    }

    std::map<std::int32_t, FileMap> outcomes;
    bool check_level_files = true;
};

void KillPoints::LearnOutcomes(const std::vector<std::int32_t>& next) {
    outcomes.clear();
    for (const std::int32_t code : next) {
        Restore(pristine);
        SwapAgain(code);
        outcomes[code] = LevelFiles();
    }
}

void KillPoints::CheckLevelFiles(const Operation& operation, std::int32_t code) {
    if (!check_level_files && code >= 0) return;
    FileMap files = LevelFiles();
    FileMap expected = outcomes.at(code);
    if (operation.backup ==
        Backup::Compact) { // waves stay behind, which ones depends on the levels that were in
        const auto is_wave = [](const auto& file) { return file.first.starts_with("audio/"); };
        std::erase_if(files, is_wave);
        std::erase_if(expected, is_wave);
    }
    EXPECT_EQ(files, expected);
}

void KillPoints::KillEverywhere(const Operation& operation, const std::vector<std::int32_t>& next) {
    Prepare(operation);
    LearnOutcomes(next);
    const int points = CountCalls(operation);
    ASSERT_GT(points, 0);
    for (int at = 1; at <= points && !HasFailure(); ++at) {
        ASSERT_TRUE(RunWith(operation, {Fault::Kill, at}).killed);
        Keep(killed);
        for (const std::int32_t code : next) {
            SCOPED_TRACE(operation.name + " killed at call " + std::to_string(at) + " of " +
                         std::to_string(points) + ", then level " + std::to_string(code));
            Restore(killed);
            SwapAgain(code);
            CheckSaves(std::max(code, 0));
            CheckLevelFiles(operation, code);
            SwapAgain(0);
            CheckSaves(0);
            EXPECT_FALSE(Exists(world.trle / "Kelvash.tmp"));
        }
    }
    EXPECT_TRUE(StartIsUntouched());
    Report(operation, points);
}

TEST_F(KillPoints, OfAnInstallLoseNothing) {
    KillEverywhere({"install", 0, Backup::Full, [] { return Ended(swap::InstallLevel(1)); }}, {1, 2, 0});
}

TEST_F(KillPoints, OfAnInstallWithACompactBackupLoseNothing) {
    KillEverywhere({"compact_install", 0, Backup::Compact, [] { return Ended(swap::InstallLevel(1)); }},
                   {1, 2, 0});
}

TEST_F(KillPoints, OfAnInstallOfAPackedLevelLoseNothing) {
    KillEverywhere({"packed_install", 0, Backup::Full, [] { return Ended(swap::InstallLevel(3)); }},
                   {3, 2, 0});
}

TEST_F(KillPoints, OfARemovalLoseNothing) {
    KillEverywhere({"removal", 1, Backup::Full, [] { return Ended(swap::RemovePreviousLevel(-1) == 1); }},
                   {1, 2, 0});
}

TEST_F(KillPoints, OfTheRemovalOfALevelWithoutSavesLoseNothing) {
    KillEverywhere(
        {"bare_removal", 4, Backup::Full, [] { return Ended(swap::RemovePreviousLevel(-1) == 4); }},
        {4, 2, 0});
}

TEST_F(KillPoints, OfASwapLoseNothing) {
    KillEverywhere({"swap", 1, Backup::Full, [] { return Ended(swap::InstallLevel(2)); }}, {1, 2, 3, 0});
}

TEST_F(KillPoints, OfASwapWithACompactBackupLoseNothing) {
    KillEverywhere({"compact_swap", 1, Backup::Compact, [] { return Ended(swap::InstallLevel(2)); }},
                   {1, 2, 0});
}

TEST_F(KillPoints, OfAFastRestoreLoseNothing) {
    KillEverywhere({"fast_restore", 1, Backup::Full, [] { return Ended(swap::FastRestore()); }}, {1, 2, 0});
}

TEST_F(KillPoints, OfAFullRestoreLoseNoSaves) {
    check_level_files = false; // only the next full restore brings the folder in order again
    KillEverywhere({"full_restore", 1, Backup::Full, RunFullRestore}, {2, 0, -1});
}

// Killed once more while the next start cleans up.
TEST_F(KillPoints, OfASwapAndOfTheNextLoseNothing) {
    const Operation operation{"swap", 1, Backup::Full, [] { return Ended(swap::InstallLevel(2)); }};
    const auto next = [this] {
        StartProgram();
        return Ended(swap::InstallLevel(3));
    };
    Prepare(operation);
    LearnOutcomes({0, 1});
    const int points = CountCalls(operation);
    int twice = 0;
    for (int at = 1; at <= points && !HasFailure(); ++at) {
        ASSERT_TRUE(RunWith(operation, {Fault::Kill, at}).killed);
        Keep(killed);
        // Every eleventh call of the second swap, beginning with another one each time.
        for (int again = 1 + at % 11;; again += 11) {
            SCOPED_TRACE("killed at call " + std::to_string(at) + ", then at " + std::to_string(again));
            Restore(killed);
            if (!RunTraced(next, {Fault::Kill, again}).killed) break;
            ++twice;
            const std::int32_t code = again % 2;
            SwapAgain(code);
            CheckSaves(code);
            CheckLevelFiles(operation, code);
        }
    }
    Report({"swap_killed_twice", 0, Backup::Full, nullptr}, twice);
}

TEST_F(KillPoints, OfSavingTheArchiveLeaveTheOldOneOrTheNew) {
    const Operation operation{"write_archive", 0, Backup::Full, [] {
                                  core::archive.Table.Edit(1)->Name = "Renamed";
                                  return Ended(core::WriteArchive(core::profile.LastArchive));
                              }};
    Prepare(operation);
    const int points = CountCalls(operation);
    const std::string after = BytesOf(world.home / "levels.kva");
    const std::string before = BytesOf(pristine / "Kelvash" / "levels.kva");
    ASSERT_NE(before, after);
    for (int at = 1; at <= points; ++at) {
        ASSERT_TRUE(RunWith(operation, {Fault::Kill, at}).killed);
        const std::string found = BytesOf(world.home / "levels.kva");
        EXPECT_TRUE(found == before || found == after) << "killed at call " << at;
        StartProgram();
        EXPECT_EQ(core::archive.Table[1].Name, found == before ? "City" : "Renamed");
        EXPECT_TRUE(core::WriteArchive(core::profile.LastArchive));
    }
    Report(operation, points);
}

TEST_F(KillPoints, OfSavingTheProfileLeaveTheOldOneOrTheNew) {
    const Operation operation{"save_profile", 0, Backup::Full, [] {
                                  core::profile.SavegamesToKeep = 77;
                                  return Ended(program::SaveProfile());
                              }};
    Prepare(operation);
    const int points = CountCalls(operation);
    for (int at = 1; at <= points; ++at) {
        ASSERT_TRUE(RunWith(operation, {Fault::Kill, at}).killed);
        StartProgram();
        EXPECT_TRUE(core::profile.SavegamesToKeep == 5 || core::profile.SavegamesToKeep == 77)
            << "at call " << at;
        EXPECT_EQ(core::profile.TrleFolder, "C:\\trle");
        EXPECT_TRUE(program::SaveProfile());
    }
    Report(operation, points);
}

} // namespace
} // namespace kelvash::test
