// Sizes of trees with symbolic links.
#include "foundation/files.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

class TreeLinks : public test::FoundationHome {};

TEST_F(TreeLinks, SizeFollowsLinksToFilesAndNoneToFolders) {
    test::MakeFile(drive / "level/FILES/city.tr4", std::string(20, 'c'));
    test::MakeFile(drive / "elsewhere/big.tr4", "1234567");
    std::filesystem::create_symlink(drive / "elsewhere/big.tr4", drive / "level/link.tr4");
    std::filesystem::create_directory_symlink(drive / "elsewhere", drive / "level/folder");
    std::filesystem::create_directory_symlink(drive / "level", drive / "whole");
    EXPECT_EQ(TreeSize("C:\\level", "*"), 27);
    EXPECT_EQ(TreeSize("C:\\whole", "*"), 27); // the root itself may be one
}

} // namespace
} // namespace kelvash
