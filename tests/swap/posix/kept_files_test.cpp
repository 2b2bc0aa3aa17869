// A file of a level that can't be copied.
#include <gmock/gmock.h>

#include "swap/kept_files_home.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {
namespace {

using testing::ElementsAre;
using trle_state::LevelIsWhole;
namespace fs = std::filesystem;

TEST_F(KeptFile, OfAFileThatCannotBeCopiedNothingIsNeeded) {
    fs::remove(LevelPath(2) / "FILES" / "coast.tr4");
    fs::create_symlink("/nowhere", LevelPath(2) / "FILES" / "gone.dat");
    test::MakeFile(LevelPath(2) / "FILES" / "coast.tr4", "COAST");
    fs::create_directory(trle / "data" / "coast.tr4");
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: These files of the level could not be copied into the TRLE "
                            "folder:\r\n\\data\\coast.tr4"));
    EXPECT_FALSE(LevelIsWhole());
    EXPECT_NE(Marker().find("#COPIED_FILES=\\data\\coast.tr4#"), std::string::npos);
}

} // namespace
} // namespace kelvash::swap
