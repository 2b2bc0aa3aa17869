// The making of the backup is killed at each, or fails at some, of its calls that change the file system.
// What is in the backup's place afterwards is whole: nothing, the old one, or the new one; and the next try
// succeeds and leaves nothing lying about.
#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <iostream>

#include "core/profile.h"
#include "support/fault_home.h"
#include "swap/backup.h"
#include "swap/backup_note.h"

namespace kelvash::test {
namespace {

class BackupFaults : public FaultHome {
  protected:
    void SetUp() override {
        if (!CanTrace()) GTEST_SKIP() << "no process can be traced here";
    }

    // The world with or without a backup, an old one told from a new one by a file in each.
    void Begin(Backup kind, bool has_backup) {
        whole_start = false;
        Prepare({"backup", 0, kind, nullptr});
        std::filesystem::remove_all(world.home / "backup_trle.txt");
        if (has_backup) {
            MakeFile(world.backup / "old.dat", "of the old one");
            MakeFile(world.home / "backup_trle.txt", std::string("#TRLE_FOLDER=C:\\trle\r\n#KIND=") +
                                                         (kind == Backup::Full ? "full" : "compact") +
                                                         "\r\n");
        } else {
            std::filesystem::remove_all(world.backup);
        }
        WriteStamped(world.trle / "script.dat", "newer");
        Keep(pristine);
        old_tree = TreeOf(world.backup);
    }
    bool Create(const char* kind) {
        user.WillAnswer("is original?", "yes");
        user.WillAnswer("Do you want a full backup?", kind);
        return swap::CreateBackup(false);
    }
    int Refresh(const char* question, const char* answer) {
        user.WillAnswer(question, answer);
        user.WillAnswer("is original?", "yes");
        swap::RefreshFullBackup();
        const std::vector<std::string>& told = user.Told();
        return std::any_of(told.begin(), told.end(),
                           [](const std::string& text) { return text.starts_with("critical"); })
                   ? 1
                   : 0;
    }
    // Every call of the beginning and the end, and some of those between, that only copy files.
    static int Next(int at, int points) { return at < 25 || at + 45 > points ? at + 1 : at + 7; }

    void CheckNothingLiesAbout() {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(world.home))
            if (entry.path().filename().string().starts_with("backup_trle"))
                names.push_back(entry.path().filename().string());
        EXPECT_THAT(names, testing::UnorderedElementsAre("backup_trle", "backup_trle.txt"));
    }
    // After the fault, in the state that the disk is in: the next start, and the next try.
    void CheckFirst(const char* kind) {
        StartProgram();
        if (swap::BackupIsValid()) {
            EXPECT_EQ(TreeOf(world.backup), new_tree);
        }
        swap::FinishBackup();
        if (swap::BackupIsValid()) {
            EXPECT_EQ(swap::StateOfBackup(), swap::BackupState::Valid);
        } else {
            ASSERT_TRUE(Create(kind));
        }
        EXPECT_EQ(TreeOf(world.backup), new_tree);
        CheckNothingLiesAbout();
        user.Forget();
    }
    void CheckRefresh(const char* question, const char* answer) {
        StartProgram();
        swap::FinishBackup();
        const FileMap found = TreeOf(world.backup);
        EXPECT_TRUE(found == old_tree || found == new_tree);
        EXPECT_EQ(swap::StateOfBackup(), swap::BackupState::Valid);
        EXPECT_EQ(core::profile.FullBackup, swap::ReadBackupNote()->Full);
        if (found == old_tree) {
            EXPECT_EQ(Refresh(question, answer), 0);
            EXPECT_EQ(TreeOf(world.backup), new_tree);
        }
        EXPECT_TRUE(core::profile.FullBackup);
        CheckNothingLiesAbout();
        user.Forget();
    }
    int Learn(const Operation& operation) {
        const int points = CountCalls(operation);
        EXPECT_GT(points, 50) << "the tracer has seen no copying";
        new_tree = TreeOf(world.backup);
        EXPECT_NE(new_tree, old_tree);
        return points;
    }
    void Kill(const Operation& operation, const std::function<void()>& check) {
        const int points = Learn(operation);
        for (int at = 1; at <= points && !HasFailure(); ++at) {
            SCOPED_TRACE("killed at call " + std::to_string(at) + " of " + std::to_string(points));
            ASSERT_TRUE(RunWith(operation, {Fault::Kill, at}).killed);
            check();
        }
        std::cout << "  " << points << " kill points in " << operation.name << "\n";
    }
    void Fail(const Operation& operation, const std::function<void()>& check) {
        const int points = Learn(operation);
        for (const bool lasting : {false, true})
            for (int at = 1; at <= points && !HasFailure(); at = Next(at, points)) {
                SCOPED_TRACE("call " + std::to_string(at) + " of " + std::to_string(points) +
                             (lasting ? " and all later ones fail" : " fails"));
                const TracedRun run = RunWith(operation, {Fault::Fail, at, ENOSPC, lasting});
                ASSERT_TRUE(run.exit_code == 0 || run.exit_code == 1) << run.exit_code;
                if (run.exit_code == 0) {
                    EXPECT_EQ(TreeOf(world.backup), new_tree);
                }
                check();
            }
    }

    FileMap old_tree;
    FileMap new_tree;
};

constexpr const char* kAlready = "Current backup is already FULL";
constexpr const char* kRemoveOld = "Remove old backup files before creating new backup?";

TEST_F(BackupFaults, AKilledFirstBackupNeverCounts) {
    Begin(Backup::Full, false);
    Kill({"first_full", 0, Backup::Full, [this] { return Create("yes") ? 0 : 1; }},
         [this] { CheckFirst("yes"); });
    EXPECT_EQ(new_tree, TreeOf(world.trle));
}

TEST_F(BackupFaults, AKilledFirstCompactBackupNeverCounts) {
    Begin(Backup::Full, false);
    Kill({"first_compact", 0, Backup::Full, [this] { return Create("no") ? 0 : 1; }},
         [this] { CheckFirst("no"); });
}

TEST_F(BackupFaults, AFullDiskLeavesNoHalfBackup) {
    Begin(Backup::Full, false);
    Fail({"first_full", 0, Backup::Full, [this] { return Create("yes") ? 0 : 1; }},
         [this] { CheckFirst("yes"); });
}

TEST_F(BackupFaults, AFullDiskLeavesNoHalfCompactBackup) {
    Begin(Backup::Full, false);
    Fail({"first_compact", 0, Backup::Full, [this] { return Create("no") ? 0 : 1; }},
         [this] { CheckFirst("no"); });
}

TEST_F(BackupFaults, AKilledRefreshLeavesTheOldOneOrTheNew) {
    Begin(Backup::Full, true);
    Kill({"refresh", 0, Backup::Full, [this] { return Refresh(kAlready, "yes"); }},
         [this] { CheckRefresh(kAlready, "yes"); });
    EXPECT_EQ(new_tree.count("old.dat"), 0U);
}

TEST_F(BackupFaults, AKilledRefreshThatKeepsOldFilesLosesNone) {
    Begin(Backup::Compact, true);
    Kill({"merge", 0, Backup::Compact, [this] { return Refresh(kRemoveOld, "no"); }},
         [this] { CheckRefresh(kRemoveOld, "no"); });
    EXPECT_EQ(new_tree.count("old.dat"), 1U);
}

TEST_F(BackupFaults, AFullDiskLeavesTheOldBackup) {
    Begin(Backup::Full, true);
    Fail({"refresh", 0, Backup::Full, [this] { return Refresh(kAlready, "yes"); }},
         [this] { CheckRefresh(kAlready, "yes"); });
}

} // namespace
} // namespace kelvash::test
