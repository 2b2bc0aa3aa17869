// Another program is at work in the TRLE folder: the watcher is refused without a word and may come again.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "companion/archive_slots.h"
#include "companion/restore_slots.h"
#include "foundation/lock.h"
#include "support/savegame_home.h"

namespace kelvash::companion {
namespace {

using test::SaveMap;

// A process that holds the lock of a folder for as long as this lives.
class OtherProgram {
  public:
    explicit OtherProgram(const char* folder) {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        child_ = fork();
        if (child_ == 0) {
            LockHolder holder;
            FolderLock lock;
            const bool taken = lock.Take(folder, LockKind::Change, "testing", holder) == LockResult::Taken;
            const char sign = taken ? 'y' : 'n';
            if (write(ends[1], &sign, 1) == 1) pause();
            _exit(1);
        }
        char sign = 0;
        EXPECT_EQ(read(ends[0], &sign, 1), 1);
        EXPECT_EQ(sign, 'y');
        close(ends[0]);
        close(ends[1]);
    }
    ~OtherProgram() {
        kill(child_, SIGKILL);
        EXPECT_EQ(waitpid(child_, nullptr, 0), child_);
    }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

  private:
    pid_t child_;
};

class BusySavegames : public test::SavegameHome {};

TEST_F(BusySavegames, TheWatcherIsRefusedWithoutAWord) {
    PutSlot(0, 1);
    PutSlot(1, 2);
    {
        const OtherProgram other("C:\\trle");
        EXPECT_EQ(ArchiveSlots(1, 15, Asker::Watcher).Result, SlotsResult::Busy);
        EXPECT_EQ(RestoreLastSlot(1, Asker::Watcher).Result, SlotsResult::Busy);
        EXPECT_TRUE(user.Told().empty());
        EXPECT_EQ(ArchiveSlots(1, 15, Asker::User).Result, SlotsResult::Refused);
        ASSERT_EQ(user.Told().size(), 1U);
        EXPECT_TRUE(user.Told().front().starts_with("critical: Another Kelvash (")) << user.Told().front();
        EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "1"}, {"savegame.1", "2"}}));
    }
    EXPECT_EQ(ArchiveSlots(1, 15, Asker::Watcher).Result, SlotsResult::Done);
}

} // namespace
} // namespace kelvash::companion
