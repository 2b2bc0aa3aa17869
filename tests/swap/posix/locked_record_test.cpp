// The record is written by nobody while another program is at work in the application's folder.
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/owner_moves.h"
#include "foundation/lock.h"
#include "support/swap_home.h"
#include "swap/install.h"
#include "swap/record_additions.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::HashOfBytes;
using trle_state::ReadSwapRecord;
namespace {

using testing::ElementsAre;
using testing::StartsWith;

namespace fs = std::filesystem;

// Another program that holds the lock of the application's folder.
class Holder {
  public:
    Holder() {
        int ready[2];
        EXPECT_EQ(pipe(ready), 0);
        EXPECT_EQ(pipe(end_), 0);
        process_ = fork();
        if (process_ == 0) {
            close(end_[1]);
            LockHolder holder;
            FolderLock lock;
            const char taken =
                lock.Take("C:\\Kelvash", LockKind::Change, "its work", holder) == LockResult::Taken ? 'y'
                                                                                                    : 'n';
            char end = 0;
            _exit(write(ready[1], &taken, 1) == 1 && read(end_[0], &end, 1) == 0 ? 0 : 1);
        }
        close(ready[1]);
        char taken = 0;
        EXPECT_EQ(read(ready[0], &taken, 1), 1);
        EXPECT_EQ(taken, 'y');
        close(ready[0]);
    }
    ~Holder() {
        close(end_[1]);
        close(end_[0]);
        EXPECT_EQ(waitpid(process_, nullptr, 0), process_);
    }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

  private:
    int end_[2] = {};
    pid_t process_ = -1;
};

class LockedRecord : public test::SwapHome {
  protected:
    LockedRecord() {
        AddLevel(1, "City", {{"city.tr4", "CITY"}});
        EXPECT_TRUE(InstallLevel(1));
        fs::create_directories(drive / "Moved");
        fs::copy(LevelPath(1), drive / "Moved" / "LEVEL_0001", fs::copy_options::recursive);
    }
    static std::string OwnersFolder() { return ReadSwapRecord().Record.Owner.Folder; }
    static std::string Hash() { return ReadSwapRecord().Record.Copied.front().Stamp.Hash; }
};

TEST_F(LockedRecord, KeepsItsOwnerTillTheLockIsFree) {
    {
        const Holder holder;
        EXPECT_FALSE(core::NoteLevelsMoved("C:\\Levels", "C:\\Moved"));
        EXPECT_THAT(user.Told(), ElementsAre(StartsWith("critical: Another Kelvash")));
        EXPECT_EQ(OwnersFolder(), "C:\\Levels\\LEVEL_0001");
    }
    EXPECT_TRUE(core::NoteLevelsMoved("C:\\Levels", "C:\\Moved"));
    EXPECT_EQ(OwnersFolder(), "C:\\Moved\\LEVEL_0001");
}

TEST_F(LockedRecord, GetsNoHashesAndNoFilesTillTheLockIsFree) {
    ASSERT_EQ(Hash(), "");
    {
        const Holder holder;
        CompleteHashes();
        EXPECT_FALSE(AddToRecord({"\\city.h"}));
        EXPECT_EQ(user.Told().size(), 2U);
        EXPECT_EQ(Hash(), "");
        EXPECT_EQ(ReadSwapRecord().Record.Copied.size(), 1U);
    }
    CompleteHashes();
    EXPECT_EQ(Hash(), HashOfBytes("CITY"));
    EXPECT_TRUE(AddToRecord({"\\city.h"}));
    EXPECT_EQ(ReadSwapRecord().Record.Copied.size(), 2U);
}

} // namespace
} // namespace kelvash::swap
