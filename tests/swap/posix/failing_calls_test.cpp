// Each call that changes the file system fails in turn: once, or from there on every call that takes room, as
// on a full disk. The operation may fail; the next one must find every save.
#include <gtest/gtest.h>

#include <cerrno>
#include <iostream>

#include "core/archive.h"
#include "core/profile.h"
#include "program/end.h"
#include "support/fault_home.h"
#include "swap/compression.h"
#include "swap/install.h"
#include "swap/remove.h"
#include "swap/restore.h"

namespace kelvash::test {
namespace {

int Ended(bool well) {
    return well ? 0 : 1;
}

class FailingCalls : public FaultHome {
  protected:
    void SetUp() override {
        if (!CanTrace()) GTEST_SKIP() << "no process can be traced here";
    }

    void FailEverywhere(const Operation& operation, int error, bool lasting);
    void FailAll(const Operation& operation) {
        FailEverywhere(operation, ENOSPC, false);
        FailEverywhere(operation, ENOSPC, true);
        FailEverywhere(operation, EACCES, false);
    }
};

void FailingCalls::FailEverywhere(const Operation& operation, int error, bool lasting) {
    Prepare(operation);
    const int points = CountCalls(operation);
    for (int at = 1; at <= points && !HasFailure(); ++at) {
        SCOPED_TRACE(operation.name + ": call " + std::to_string(at) + " of " + std::to_string(points) +
                     (lasting ? " and all later ones fail with " : " fails with ") + std::to_string(error));
        const TracedRun run = RunWith(operation, {Fault::Fail, at, error, lasting});
        EXPECT_TRUE(run.exit_code == 0 || run.exit_code == 1) << run.exit_code;
        for (const std::int32_t code : {3, 0}) {
            StartProgram();
            EXPECT_TRUE(swap::InstallLevel(code));
            CheckSaves(code);
        }
    }
    std::cout << "  " << points << " calls failed in " << operation.name << (lasting ? ", lasting" : ", once")
              << "\n";
}

TEST_F(FailingCalls, OfAnInstallLoseNothing) {
    FailAll({"install", 0, Backup::Full, [] { return Ended(swap::InstallLevel(1)); }});
}

TEST_F(FailingCalls, OfAnInstallOfAPackedLevelLoseNothing) {
    FailAll({"packed_install", 0, Backup::Full, [] { return Ended(swap::InstallLevel(3)); }});
}

TEST_F(FailingCalls, OfARemovalLoseNothing) {
    FailAll({"removal", 1, Backup::Full, [] { return Ended(swap::RemovePreviousLevel(-1) == 1); }});
}

TEST_F(FailingCalls, OfASwapLoseNothing) {
    FailAll({"swap", 1, Backup::Full, [] { return Ended(swap::InstallLevel(2)); }});
}

TEST_F(FailingCalls, OfAFastRestoreLoseNothing) {
    FailAll({"fast_restore", 1, Backup::Compact, [] { return Ended(swap::FastRestore()); }});
}

// What can't be deleted doesn't stay beside its new form.
TEST_F(FailingCalls, OfAChangeOfTheCompressionLeaveNoFileInTwoForms) {
    const Operation operation{
        "compression", 0, Backup::Full, [this] {
            user.MayAnswer("Do you want change compress status", "yes");
            user.MayAnswer("Do you want continue", "yes");
            swap::ApplyCompressionSettings({true, false}); // pictures of the levels are none
            return 0;
        }};
    Prepare(operation);
    const int points = CountCalls(operation);
    ASSERT_GT(points, 0);
    for (int at = 1; at <= points; ++at) {
        SCOPED_TRACE("call " + std::to_string(at) + " of " + std::to_string(points));
        static_cast<void>(RunWith(operation, {Fault::Fail, at, EACCES, false}));
        bool twice = false;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(world.drive / "Levels")) {
            std::filesystem::path plain = entry.path();
            twice = twice || (plain.extension() == ".zl" && Exists(plain.replace_extension()));
        }
        EXPECT_FALSE(twice);
    }
}

// What a full restore leaves behind makes it fail.
TEST_F(FailingCalls, OfAFullRestoreAreNotCalledSuccess) {
    const Operation operation{"full_restore", 1, Backup::Full, [] {
                                  Bar bar{BarPlace::ProgressDialog, -1};
                                  return Ended(swap::FullRestore(bar, false));
                              }};
    Prepare(operation);
    const int points = CountCalls(operation);
    const FileMap whole = TreeOf(world.trle);
    constexpr int kStep = 5; // each file takes some calls
    for (int at = 1; at <= points; at += kStep) {
        SCOPED_TRACE("call " + std::to_string(at) + " of " + std::to_string(points));
        const TracedRun run = RunWith(operation, {Fault::Fail, at, EACCES, false});
        if (run.exit_code == 0) {
            EXPECT_EQ(TreeOf(world.trle), whole);
        }
    }
}

// A failed write leaves the old file, and the program knows that it failed.
TEST_F(FailingCalls, OfSavingTheArchiveLeaveTheOldOne) {
    const Operation operation{"write_archive", 0, Backup::Full, [] {
                                  core::archive.Table.Edit(1)->Name = "Renamed";
                                  return Ended(core::WriteArchive(core::profile.LastArchive));
                              }};
    Prepare(operation);
    const int points = CountCalls(operation);
    const std::string after = BytesOf(world.home / "levels.kva");
    const std::string before = BytesOf(pristine / "Kelvash" / "levels.kva");
    for (const bool lasting : {false, true})
        for (int at = 1; at <= points; ++at) {
            const TracedRun run = RunWith(operation, {Fault::Fail, at, ENOSPC, lasting});
            EXPECT_EQ(BytesOf(world.home / "levels.kva"), run.exit_code == 0 ? after : before)
                << "call " << at;
        }
}

TEST_F(FailingCalls, OfSavingTheProfileLeaveTheOldOne) {
    const Operation operation{"save_profile", 0, Backup::Full, [] {
                                  core::profile.SavegamesToKeep = 77;
                                  return Ended(program::SaveProfile());
                              }};
    Prepare(operation);
    const int points = CountCalls(operation);
    for (int at = 1; at <= points; ++at) {
        const TracedRun run = RunWith(operation, {Fault::Fail, at, ENOSPC, true});
        StartProgram();
        EXPECT_EQ(core::profile.SavegamesToKeep, run.exit_code == 0 ? 77 : 5) << "call " << at;
    }
}

} // namespace
} // namespace kelvash::test
