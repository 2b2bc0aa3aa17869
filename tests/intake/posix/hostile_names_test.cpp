// Names that a disk here can hold and others can't.
#include <gmock/gmock.h>

#include "intake/new_level.h"
#include "support/intake_home.h"

namespace kelvash::intake {
namespace {

using testing::ElementsAre;

using HostileNames = test::IntakeHome;

TEST_F(HostileNames, AFolderIsTakenButForThem) {
    user.MayBeTold("because their names can not be used on all systems");
    OpenNew();
    for (const char* name : {"maze.tr4", "aux.txt", "trailing ", "two\nlines.txt", "COM1", "caf\xE9.txt"})
        test::MakeFile(drive / "in" / name, "x");
    EXPECT_TRUE(AddSource(level, "C:\\in"));
    EXPECT_THAT(WorkNames(), ElementsAre("maze.tr4"));
    ASSERT_EQ(user.Told().size(), 1U);
    EXPECT_THAT(user.Told().front(),
                testing::StartsWith("exclamation: Warning: following files have not been added, "
                                    "because their names can not be used on all systems:\r\n"
                                    "C:\\in\\"));
    EXPECT_THAT(user.Told().front(), testing::HasSubstr("C:\\in\\aux.txt"));
    user.Forget();
    EXPECT_FALSE(AddSource(level, "C:\\in\\aux.txt"));
    EXPECT_THAT(WorkNames(), ElementsAre("maze.tr4"));
}

} // namespace
} // namespace kelvash::intake
