// Locks between processes.
#include "foundation/lock.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "foundation/platform/platform.h"
#include "foundation/process.h"
#include "support/foundation_home.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class LockOfProcesses : public FoundationHome {
  protected:
    ~LockOfProcesses() override { End(); }

    // A process that takes the lock and holds it till it is killed.
    void HoldElsewhere(const std::string& doing) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        other_ = fork();
        if (other_ == 0) {
            FolderLock own;
            const bool taken = own.Take("C:\\Kelvash", LockKind::Change, doing, holder) == LockResult::Taken;
            const char answer = taken ? 't' : 'f';
            if (write(ends[1], &answer, 1) == 1) pause();
            _exit(1);
        }
        char answer = 0;
        ASSERT_EQ(read(ends[0], &answer, 1), 1);
        ASSERT_EQ(answer, 't');
        close(ends[0]);
        close(ends[1]);
    }
    void End() {
        if (other_ <= 0) return;
        kill(other_, SIGKILL);
        waitpid(other_, nullptr, 0);
        other_ = 0;
    }
    LockResult TakeHere() { return lock.Take("C:\\Kelvash", LockKind::Change, "here", holder); }
    // What a process that is forked now would get.
    LockResult TakenElsewhere() {
        const pid_t child = fork();
        if (child == 0) {
            _exit(static_cast<int>(TakeAnew()));
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return static_cast<LockResult>(WEXITSTATUS(status));
    }
    // The child has its parent's tables; a descriptor of its own is what another program has.
    static LockResult TakeAnew() {
        const int descriptor =
            platform::OpenLockFile(RuntimeFolder() / (FolderIdentity("C:\\Kelvash") + ".lock"));
        return platform::TryLock(descriptor);
    }

    LockHolder holder;
    FolderLock lock;
    pid_t other_ = 0;
};

TEST_F(LockOfProcesses, KeepsAnotherProcessOutAndNamesItsHolder) {
    HoldElsewhere("adding a level\nto be read in one line");
    EXPECT_EQ(TakeHere(), LockResult::Held);
    EXPECT_FALSE(lock.IsTaken());
    EXPECT_EQ(holder.Program, "foundation_tests");
    EXPECT_EQ(holder.Process, other_);
    EXPECT_EQ(holder.Doing, "adding a level to be read in one line");
}

// It has the lock an instant before its name is there.
TEST_F(LockOfProcesses, WaitsForTheNameOfWhoHasJustTakenIt) {
    const fs::path file = RuntimeFolder() / (FolderIdentity("C:\\Kelvash") + ".lock");
    const int descriptor = platform::OpenLockFile(file);
    ASSERT_EQ(platform::TryLock(descriptor), LockResult::Taken);
    platform::WriteNote(descriptor, {});
    std::thread late([descriptor] {
        usleep(20'000);
        platform::WriteNote(descriptor, "kelvash\n4711\nadding a level\n");
    });
    EXPECT_EQ(TakeHere(), LockResult::Held);
    late.join();
    EXPECT_EQ(holder.Program, "kelvash");
    EXPECT_EQ(holder.Process, 4711);
    platform::WriteNote(descriptor, {});
    EXPECT_EQ(TakeHere(), LockResult::Held) << "it doesn't wait for ever";
    EXPECT_EQ(holder.Process, 0);
    platform::CloseLockFile(descriptor);
}

TEST_F(LockOfProcesses, EndsWithTheDeathOfItsProcess) {
    HoldElsewhere("dying");
    End();
    EXPECT_EQ(TakeHere(), LockResult::Taken);
}

TEST_F(LockOfProcesses, IsAwaited) {
    HoldElsewhere("soon over");
    const pid_t killer = fork();
    if (killer == 0) {
        usleep(300000);
        kill(other_, SIGKILL);
        _exit(0);
    }
    EXPECT_EQ(lock.Await("C:\\Kelvash", LockKind::Change, "", 10, holder), LockResult::Taken);
    waitpid(killer, nullptr, 0);
}

TEST_F(LockOfProcesses, IsGivenUpAfterTheWait) {
    HoldElsewhere("for ever");
    EXPECT_EQ(lock.Await("C:\\Kelvash", LockKind::Change, "", 0.2, holder), LockResult::Held);
    user.stop = true;
    EXPECT_EQ(lock.Await("C:\\Kelvash", LockKind::Change, "", 3600, holder), LockResult::Held);
}

TEST_F(LockOfProcesses, IsNotInheritedByAStartedProgram) {
    MakeFile(drive / "tool", "#!/bin/sh\nexec sleep 30\n");
    fs::permissions(drive / "tool", fs::perms::owner_all);
    ASSERT_EQ(TakeHere(), LockResult::Taken);
    Process tool;
    ASSERT_TRUE(RunFull("C:\\tool", {}, Window::Hidden, tool, false));
    EXPECT_EQ(TakenElsewhere(), LockResult::Held);
    lock.Release();
    EXPECT_EQ(TakenElsewhere(), LockResult::Taken);
    KillProcess(tool);
    WaitForProcess(tool, 5);
}

TEST_F(LockOfProcesses, IsFreeForOthersAfterItsLastRelease) {
    FolderLock inner;
    ASSERT_EQ(TakeHere(), LockResult::Taken);
    ASSERT_EQ(inner.Take("C:\\Kelvash", LockKind::Change, "", holder), LockResult::Taken);
    inner.Release();
    EXPECT_EQ(TakenElsewhere(), LockResult::Held);
    lock.Release();
    EXPECT_EQ(TakenElsewhere(), LockResult::Taken);
}

TEST_F(LockOfProcesses, TellsOthersWhatItIsDoingNow) {
    HoldElsewhere("first");
    const fs::path file = RuntimeFolder() / (FolderIdentity("C:\\Kelvash") + ".lock");
    EXPECT_EQ(BytesOf(file), "foundation_tests\n" + std::to_string(other_) + "\nfirst\n");
    End();
    ASSERT_EQ(TakeHere(), LockResult::Taken);
    lock.Tell("second");
    EXPECT_EQ(BytesOf(file), "foundation_tests\n" + std::to_string(getpid()) + "\nsecond\n");
    lock.Release();
    EXPECT_EQ(BytesOf(file), "");
}

TEST_F(LockOfProcesses, LiesInAFolderThatNobodyElseReaches) {
    EXPECT_EQ(RuntimeFolder(), root / "run" / "kelvash");
    EXPECT_EQ(fs::status(root / "run" / "kelvash").permissions(), fs::perms::owner_all);
}

TEST_F(LockOfProcesses, LiesNowhereThatOthersCanReach) {
    EXPECT_TRUE(platform::MakePrivateFolder(root / "own"));
    fs::permissions(root / "own", fs::perms::group_write, fs::perm_options::add);
    EXPECT_FALSE(platform::MakePrivateFolder(root / "own"));
    fs::create_directory(root / "real");
    fs::permissions(root / "real", fs::perms::owner_all);
    fs::create_directory_symlink(root / "real", root / "link");
    EXPECT_FALSE(platform::MakePrivateFolder(root / "link"));
    MakeFile(root / "file", "");
    EXPECT_FALSE(platform::MakePrivateFolder(root / "file"));
}

TEST_F(LockOfProcesses, LiesInNoFolderOfAnotherUser) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
    ASSERT_TRUE(platform::MakePrivateFolder(root / "theirs"));
    ASSERT_EQ(chown((root / "theirs").c_str(), 65534, 65534), 0);
    EXPECT_FALSE(platform::MakePrivateFolder(root / "theirs"));
    ASSERT_EQ(chown((root / "run").c_str(), 65534, 65534), 0);
    EXPECT_NE(RuntimeFolder(), root / "run" / "kelvash");
}

} // namespace
} // namespace kelvash::test
