// Moving an Archive past links, folders that may not be written and full disks.
#include <gmock/gmock.h>

#include "core/move_archive_home.h"

namespace kelvash::core {
namespace {

using testing::ElementsAre;

TEST_F(Moving, ItsNoteGoesLast) {
    test::OrdinaryUser ordinary;
    std::filesystem::permissions(LevelPath(2) / "FILES", std::filesystem::perms(0555));
    EXPECT_TRUE(MoveTo("C:\\new"));
    std::filesystem::permissions(LevelPath(2) / "FILES", std::filesystem::perms(0755));
    EXPECT_EQ(user.Told().front(), "critical: Error removing folder: C:\\Levels\\LEVEL_0002");
    EXPECT_FALSE(test::Exists(drive / "new/KELVASH_MOVE")) << "it has been told already";
}

TEST_F(Moving, AFolderBehindALinkIsNotLost) {
    test::MakeFile(drive / "elsewhere/big.tr4", "far away");
    std::filesystem::create_directory_symlink(drive / "elsewhere", LevelPath(2) / "FILES/linked");
    EXPECT_FALSE(MoveTo("C:\\new"));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while copying files"));
    EXPECT_EQ(test::BytesOf(LevelPath(2) / "FILES/linked/big.tr4"), "far away");
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\Levels");
    EXPECT_TRUE(std::filesystem::is_empty(drive / "new"));
}

TEST_F(Moving, AFailedCopyLeavesTheOldFoldersAndNoCopies) {
    test::OrdinaryUser ordinary;
    std::filesystem::permissions(LevelPath(2) / "FILES/maze.tr4", std::filesystem::perms(0));
    EXPECT_FALSE(MoveTo("C:\\new"));
    std::filesystem::permissions(LevelPath(2) / "FILES/maze.tr4", std::filesystem::perms(0644));
    EXPECT_EQ(user.Told().back(), "critical: Error while copying files");
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\Levels");
    EXPECT_TRUE(test::Exists(LevelPath(1) / "FILES/maze.tr4"));
    EXPECT_TRUE(std::filesystem::is_empty(drive / "new"));
}

// The sizes that the Archive states don't tell of a file that has been put in by hand.
TEST_F(Moving, AFullTargetIsTold) {
    namespace fs = std::filesystem;
    constexpr std::uintmax_t kSpare = std::uintmax_t{1} << 32; // others may free that much meanwhile
    test::MakeFile(LevelPath(2) / "FILES/big.bin", "");
    fs::resize_file(LevelPath(2) / "FILES/big.bin", fs::space(drive).available + kSpare); // sparse
    test::OrdinaryUser ordinary;
    fs::permissions(LevelPath(1) / "FILES/maze.tr4", fs::perms(0)); // stands for the write that fails
    EXPECT_FALSE(MoveTo("C:\\new"));
    fs::permissions(LevelPath(1) / "FILES/maze.tr4", fs::perms(0644));
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: Error copying file from 'C:\\Levels\\LEVEL_0001\\FILES\\maze.tr4'  to  "
                    "'C:\\new\\KELVASH_MOVE\\LEVEL_0001\\FILES\\maze.tr4'",
                    "critical: The target drive is full. The archive is where it was."));
    EXPECT_TRUE(fs::is_empty(drive / "new"));
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\Levels");
}

TEST_F(Moving, APlaceThatCannotBeWrittenIsTold) {
    test::OrdinaryUser ordinary;
    std::filesystem::permissions(drive / "new", std::filesystem::perms(0555));
    EXPECT_FALSE(MoveTo("C:\\new"));
    std::filesystem::permissions(drive / "new", std::filesystem::perms(0755));
    EXPECT_THAT(user.Told(), ElementsAre("critical: I cannot write in the target folder: C:\\new"));
    EXPECT_TRUE(test::Exists(LevelPath(1) / "FILES/maze.tr4"));
}

TEST_F(Moving, AnOldFolderThatCannotBeRemovedIsToldAndTheRunGoesOn) {
    test::OrdinaryUser ordinary;
    std::filesystem::permissions(LevelPath(1) / "FILES", std::filesystem::perms(0555));
    EXPECT_TRUE(MoveTo("C:\\new"));
    std::filesystem::permissions(LevelPath(1) / "FILES", std::filesystem::perms(0755));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error removing folder: C:\\Levels\\LEVEL_0001",
                                         "plain: Folder archive moved in C:\\new"));
    EXPECT_FALSE(test::Exists(LevelPath(2)));
}

} // namespace
} // namespace kelvash::core
