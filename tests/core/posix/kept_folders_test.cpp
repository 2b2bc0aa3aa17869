// Level folders that no record names and that hold links.
#include <gmock/gmock.h>

#include "core/kept_folders_home.h"

namespace kelvash::core {
namespace {

namespace fs = std::filesystem;

TEST_F(KeptFolders, KnowAFileByWhateverNameAndALink) {
    user.MayBeTold("belongs to no level of this archive");
    test::MakeFile(levels / "LEVEL_0004/FILES/odd\\name", "x"); // no path text can name it
    EXPECT_FALSE(HoldsNoFile("C:\\Levels\\LEVEL_0004"));
    fs::create_directories(levels / "LEVEL_0005");
    fs::create_directory_symlink(drive, levels / "LEVEL_0005/linked");
    EXPECT_FALSE(HoldsNoFile("C:\\Levels\\LEVEL_0005"));
    ASSERT_TRUE(MakeWay("C:\\Levels\\LEVEL_0005"));
    EXPECT_TRUE(fs::is_symlink(Kept(OnlyKept()) / "linked"));
}

} // namespace
} // namespace kelvash::core
