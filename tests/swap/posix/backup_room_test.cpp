// The question of the room for a backup, on a drive that can't tell how much it has.
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <cerrno>

#include "core/profile.h"
#include "support/child_process.h"
#include "support/refused_call.h"
#include "support/swap_home.h"
#include "swap/backup.h"

namespace kelvash::swap {
namespace {

namespace fs = std::filesystem;

class BackupRoom : public test::SwapHome {
  protected:
    BackupRoom() { fs::remove_all(backup); }
    // Makes a backup of a kind ("yes": full) in a process of its own. True if it was made, and the question
    // of room was the last one, to the letter.
    bool Make(const std::string& full, const std::string& anyway, const std::string& question) {
        return test::InChild([&] {
                   user.WillAnswer("Current installed configuration", "yes");
                   user.WillAnswer("Do you want a full backup?", full);
                   user.WillAnswer("has not sufficient free space", anyway);
                   return test::RefuseCall(SYS_statfs, ENOSYS) && CreateBackup(false) == (anyway == "yes") &&
                          user.Asked().back() == question;
               })
            .answer;
    }
};

TEST_F(BackupRoom, IsAskedForWithTheSizeAndTwoLineBreaks) {
    EXPECT_TRUE(Make("yes", "no",
                     "Drive [C:] has not sufficient free space for setup files (240.0 Mb)\r\n\r\nDo you want "
                     "to try backup creation, anyway?"));
    EXPECT_FALSE(test::Exists(backup));
    EXPECT_TRUE(Make("no", "no",
                     "Drive [C:] has not sufficient free space for setup files (90.0 Mb)\r\n\r\nDo you want "
                     "to try backup creation, anyway?"));
    EXPECT_FALSE(test::Exists(backup));
}

TEST_F(BackupRoom, MayBeTriedAllTheSame) {
    EXPECT_TRUE(Make("yes", "yes",
                     "Drive [C:] has not sufficient free space for setup files (240.0 Mb)\r\n\r\nDo you want "
                     "to try backup creation, anyway?"));
    EXPECT_TRUE(BackupIsValid());
}

} // namespace
} // namespace kelvash::swap
