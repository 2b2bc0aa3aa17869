// Files of a level whose names or places no other platform allows.
#include <gmock/gmock.h>

#include "intake/new_level_files_home.h"

namespace kelvash::intake {
namespace {

using testing::ElementsAre;

TEST_F(LevelFiles, AZipThatHoldsOneOfItsOwnNameEndsTheUnpacking) {
    OpenNew();
    const std::string inner = test::BytesOf(MakeZip("in/i.zip", {{"maze.tr4", "level"}}));
    std::filesystem::rename(MakeZip("in/o.zip", {{"same.zip", inner}}), Work() / "same.zip");
    RefreshFileList(level);
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error decompressing file: same.zip"));
    EXPECT_THAT(WorkNames(), ElementsAre("same.zip"));
}

TEST_F(LevelFiles, AStoredNameThatClimbsIsNotUnpacked) {
    OpenNew({{"...zl", "x"}, {"aux.txt.zl", "x"}});
    OpenLevelFile(level, 0);
    OpenLevelFile(level, 1);
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error decompressing file '...zl",
                                         "critical: Error decompressing file 'aux.txt.zl"));
}

} // namespace
} // namespace kelvash::intake
