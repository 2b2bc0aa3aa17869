// A full backup that fails on a file that the user may not read.
#include <gmock/gmock.h>

#include "swap/backup_home.h"

namespace kelvash::swap {
namespace {

using testing::Contains;
using testing::ElementsAre;
namespace fs = std::filesystem;

TEST_F(Backup, RefreshThatFailsLeavesTheOldOne) {
    core::profile.FullBackup = true;
    test::MakeFile(backup / "data" / "old.tr4", "old");
    test::MakeFile(backup / "old.dat", "old");
    test::MakeFile(backup / "old.bmp", "old");
    test::OrdinaryUser ordinary;
    fs::permissions(trle / "data" / "title.tr4", fs::perms(0));
    user.WillAnswer("Current backup is already FULL", "yes");
    user.WillAnswer(kOriginal, "yes");
    RefreshFullBackup();
    fs::permissions(trle / "data" / "title.tr4", fs::perms(0644));
    EXPECT_THAT(user.Told(), Contains("critical: Error creating full backup in : C:\\Kelvash\\backup_trle"));
    EXPECT_EQ(test::BytesOf(backup / "data" / "old.tr4"), "old");
    EXPECT_FALSE(test::Exists(backup / "tomb4.exe"));
    EXPECT_THAT(Backups(), ElementsAre("backup_trle"));
}

} // namespace
} // namespace kelvash::swap
