// A level whose folder can't be removed.
#include <gmock/gmock.h>

#include "intake/new_level_home.h"

namespace kelvash::intake {
namespace {

using testing::ElementsAre;

TEST_F(NewLevelTest, AFolderThatCannotBeRemovedIsTold) {
    const std::filesystem::path stuck = levels / "LEVEL_0001/FILES/stuck";
    const test::OrdinaryUser ordinary;
    WillWork([&](NewLevel& open) {
        test::MakeFile(stuck / "in.txt", "x");
        std::filesystem::permissions(stuck,
                                     std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
        CancelIn(open);
    });
    EXPECT_FALSE(intake::AddLevel());
    std::filesystem::permissions(stuck, std::filesystem::perms::owner_all);
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error in removing folder: C:\\Levels\\LEVEL_0001"));
}

} // namespace
} // namespace kelvash::intake
