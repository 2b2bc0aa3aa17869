#include "foundation/lock.h"

#include <gmock/gmock.h>

#include "foundation/drives.h"
#include "support/foundation_home.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class Lock : public FoundationHome {
  protected:
    LockHolder holder;
    FolderLock lock;
};

TEST_F(Lock, IsTakenOnce) {
    EXPECT_FALSE(lock.IsTaken());
    EXPECT_EQ(lock.Take("C:\\Kelvash", LockKind::Change, "testing", holder), LockResult::Taken);
    EXPECT_TRUE(lock.IsTaken());
    EXPECT_TRUE(lock.IsOnly());
    lock.Release();
    EXPECT_FALSE(lock.IsTaken());
}

TEST_F(Lock, IsTakenAgainWithinItsProcess) {
    FolderLock inner;
    ASSERT_EQ(lock.Take("C:\\Kelvash", LockKind::Change, "outer", holder), LockResult::Taken);
    ASSERT_EQ(inner.Take("C:\\kelvash", LockKind::Change, "inner", holder), LockResult::Taken);
    EXPECT_FALSE(lock.IsOnly());
    inner.Release();
    EXPECT_TRUE(lock.IsOnly());
}

TEST_F(Lock, OfOneKindLeavesTheOthersFree) {
    FolderLock profile;
    ASSERT_EQ(lock.Take("C:\\Kelvash", LockKind::Change, "", holder), LockResult::Taken);
    ASSERT_EQ(profile.Take("C:\\Kelvash", LockKind::Profile, "", holder), LockResult::Taken);
    EXPECT_TRUE(profile.IsOnly());
}

TEST_F(Lock, LeavesItsFileBehindAndNothingInTheFolder) {
    fs::create_directory(drive / "trle");
    ASSERT_EQ(lock.Take("C:\\trle", LockKind::Change, "", holder), LockResult::Taken);
    lock.Release();
    EXPECT_TRUE(fs::is_empty(drive / "trle"));
    EXPECT_TRUE(fs::is_regular_file(RuntimeFolder() / (FolderIdentity("C:\\trle") + ".lock")));
}

TEST_F(Lock, OfAMissingFolderIsThatOfItsPath) {
    ASSERT_EQ(lock.Take("C:\\Later", LockKind::Change, "", holder), LockResult::Taken);
    EXPECT_EQ(FolderIdentity("C:\\Later"), FolderIdentity("C:\\LATER"));
    EXPECT_NE(FolderIdentity("C:\\Later"), FolderIdentity("C:\\Earlier"));
}

TEST_F(Lock, KnowsAFolderByEveryPath) {
    fs::create_directory(drive / "inner");
    ASSERT_TRUE(SetDrive('D', drive / "inner", DriveType::Fixed));
    EXPECT_EQ(FolderIdentity("D:"), FolderIdentity("C:\\inner"));
    EXPECT_NE(FolderIdentity("D:"), FolderIdentity("C:"));
}

} // namespace
} // namespace kelvash::test
