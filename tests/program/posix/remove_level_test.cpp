// A level whose folder can't be removed.
#include "program/remove_level.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "support/maintenance_home.h"

namespace kelvash::program {
namespace {

using testing::Contains;

using Removal = test::MaintenanceHome;

TEST_F(Removal, AFolderThatCannotBeRemovedIsTold) {
    AddSized(1, "One");
    Select(1);
    test::OrdinaryUser ordinary;
    std::filesystem::permissions(LevelPath(1) / "FILES", std::filesystem::perms(0555));
    user.WillAnswer("Are you sure", "yes");
    user.WillAnswer("Do you want remove all sub-folders", "yes");
    EXPECT_TRUE(RemoveLevel());
    std::filesystem::permissions(LevelPath(1) / "FILES", std::filesystem::perms(0755));
    EXPECT_THAT(user.Told(), Contains("critical: Error while removing folder: C:\\Levels\\LEVEL_0001"));
    EXPECT_EQ(core::archive.Header.MainFolderSize, 0);
}

} // namespace
} // namespace kelvash::program
