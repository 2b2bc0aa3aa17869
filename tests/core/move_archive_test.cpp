// Moving the level folders of an Archive.
#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/kept_folders.h"
#include "core/maintenance.h"
#include "core/move_archive_home.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "support/maintenance_home.h"

namespace kelvash::core {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(Moving, AllLevelFoldersGoToTheNewPlace) {
    std::filesystem::remove_all(LevelPath(2) / "SCREENSHOTS");
    test::MakeFile(levels / "other.txt", "not a level");
    EXPECT_TRUE(MoveTo("C:\\new"));
    EXPECT_EQ(archive.Header.MainFolder, "C:\\new");
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\new");
    EXPECT_EQ(test::BytesOf(drive / "new/LEVEL_0001/FILES/maze.tr4"), "level One");
    EXPECT_EQ(test::BytesOf(drive / "new/LEVEL_0002/BACKUP_SAVEGAMES/savegame.0"), "saved");
    EXPECT_TRUE(std::filesystem::is_directory(drive / "new/LEVEL_0002/SCREENSHOTS"));
    EXPECT_FALSE(test::Exists(LevelPath(1)));
    EXPECT_FALSE(test::Exists(LevelPath(2)));
    EXPECT_TRUE(test::Exists(levels / "other.txt"));
    EXPECT_TRUE(test::Exists(home / "LEVEL_0000"));
    EXPECT_THAT(user.Told(), ElementsAre("plain: Folder archive moved in C:\\new"));
    for (const char* shown : {"moving level subfolders in progress", "Creating empty subfolders in progress",
                              "Removing old level subfolders in progress"})
        EXPECT_THAT(user.Shown(), Contains(shown));
}

TEST_F(Moving, TheNewPlaceIsSavedWhateverAutoSaveSays) {
    profile.AutoSave = false;
    EXPECT_TRUE(MoveTo("C:\\new"));
    archive = {};
    ASSERT_TRUE(LoadArchive("C:\\Kelvash\\test.kva"));
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\new");
}

TEST_F(Moving, APlaceThatDoesNotFitIsAskedAgain) {
    std::filesystem::create_directories(drive / "taken/LEVEL_0002");
    for (const char* target : {"C:\\Levels", "C:\\taken", "C:\\Levels\\LEVEL_0001\\FILES", "cancel"})
        user.WillAnswer("Select target folder", target);
    EXPECT_FALSE(MoveArchive());
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: The archive is already in folder: C:\\Levels",
                    "exclamation: In target folder there is already a folder: C:\\taken\\LEVEL_0002",
                    "exclamation: The target can not be inside a level's folder: C:\\Levels\\LEVEL_0001"));
    EXPECT_TRUE(test::Exists(LevelPath(1)));
}

// Two drives may reach one folder: what is copied into the old place would go with it.
TEST_F(Moving, TheOldPlaceIsKnownUnderAnotherDrive) {
    ASSERT_TRUE(SetDrive('E', levels, DriveType::Fixed));
    for (const char* target : {"E:", "E:\\LEVEL_0001\\FILES", "cancel"})
        user.WillAnswer("Select target folder", target);
    EXPECT_FALSE(MoveArchive());
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: The archive is already in folder: C:\\Levels",
                    "exclamation: The target can not be inside a level's folder: C:\\Levels\\LEVEL_0001"));
    EXPECT_EQ(test::BytesOf(LevelPath(1) / "FILES/maze.tr4"), "level One");
}

// Killed between the saving of the Archive and the removal of the last old folder.
TEST_F(Moving, WhatAKillHasLeftIsToldOnce) {
    test::MakeFile(levels / "KELVASH_MOVE/move.txt", "#FROM=C:\\before\r\n");
    test::MakeFile(drive / "before/LEVEL_0002/FILES/maze.tr4", "level Two");
    TellCutShortMove();
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: The last move of the Archive was cut short when its levels were "
                            "already in the new folder. Their old folders haven't all been removed from: "
                            "C:\\before"));
    EXPECT_TRUE(test::Exists(drive / "before/LEVEL_0002/FILES/maze.tr4"));
    EXPECT_FALSE(test::Exists(levels / "KELVASH_MOVE"));
    TellCutShortMove();
    EXPECT_EQ(user.Told().size(), 1U);
}

TEST_F(Moving, NothingIsToldOfFoldersThatAreGoneOrOthers) {
    test::MakeFile(levels / "KELVASH_MOVE/move.txt", "#FROM=C:\\before\r\n");
    std::filesystem::create_directories(drive / "before/LEVEL_0009");
    TellCutShortMove();
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_FALSE(test::Exists(levels / "KELVASH_MOVE"));
    EXPECT_TRUE(test::Exists(drive / "before/LEVEL_0009"));
}

TEST_F(Moving, EmptyFoldersOfALevelComeAlong) {
    std::filesystem::create_directories(LevelPath(1) / "FILES/DOC/empty");
    EXPECT_TRUE(MoveTo("C:\\new"));
    EXPECT_TRUE(std::filesystem::is_directory(drive / "new/LEVEL_0001/FILES/DOC/empty"));
}

TEST_F(Moving, TooLittleRoomIsTold) {
    archive.Header.MainFolderSize = 1e17;
    user.WillAnswer("Select target folder", "C:\\new");
    user.WillAnswer("Select target folder", "cancel");
    EXPECT_FALSE(MoveArchive());
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: In drive [C:] free space is not sufficient (it needs "
                            "93132257.5 Gb free space.)\r\nChoose a different target drive, please"));
}

TEST_F(Moving, AStopLeavesTheArchiveWhereItWas) {
    user.stop_if_offered = true;
    EXPECT_FALSE(MoveTo("C:\\new"));
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: Moving of archive has been stopped. The archive is where it "
                            "was."));
    EXPECT_TRUE(test::Exists(LevelPath(1) / "FILES/maze.tr4"));
    EXPECT_TRUE(std::filesystem::is_empty(drive / "new"));
}

TEST_F(Moving, AnArchiveThatCannotBeSavedStaysWhereItWas) {
    std::filesystem::create_directories(home / "test.kva/in the way");
    EXPECT_FALSE(MoveTo("C:\\new"));
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\Levels");
    EXPECT_TRUE(test::Exists(LevelPath(1) / "FILES/maze.tr4"));
    EXPECT_TRUE(std::filesystem::is_empty(drive / "new"));
    EXPECT_EQ(user.Told().size(), 1U);
}

TEST_F(Moving, AFolderThatIsNoPlaceIsToldWithItsReason) {
    std::filesystem::create_directories(drive / "\xCE\xBB");
    const std::string long_path = "C:\\" + std::string(254, 'x');
    test::MakeFile(drive / "file", "no folder");
    for (const std::string& target : {std::string("C:\\\xCE\xBB"), long_path, std::string("C:\\nowhere"),
                                      std::string("C:\\file"), std::string("cancel")})
        user.WillAnswer("Select target folder", target);
    EXPECT_FALSE(MoveArchive());
    EXPECT_THAT(
        user.Told(),
        ElementsAre(
            "exclamation: This path has characters that the files of Kelvash can not hold (only those "
            "of Windows-1252): C:\\\xCE\xBB",
            "exclamation: This path is too long for the files of Kelvash (at most 256 characters): " +
                long_path,
            "exclamation: The target folder does not exist: C:\\nowhere",
            "exclamation: The target folder does not exist: C:\\file"));
}

TEST_F(Moving, KeptFoldersComeAlong) {
    test::MakeFile(levels / "KEPT/LEVEL_0003_2026-11-21_183000/FILES/cave.tr4", "kept");
    std::filesystem::create_directories(drive / "new/KEPT/LEVEL_0009_2020-01-01_000000");
    EXPECT_TRUE(MoveTo("C:\\new"));
    EXPECT_EQ(test::BytesOf(drive / "new/KEPT/LEVEL_0003_2026-11-21_183000/FILES/cave.tr4"), "kept");
    EXPECT_TRUE(test::Exists(drive / "new/KEPT/LEVEL_0009_2020-01-01_000000"));
    EXPECT_FALSE(test::Exists(levels / "KEPT"));
    EXPECT_FALSE(test::Exists(drive / "new/KELVASH_MOVE"));
}

TEST_F(Moving, AFileAmongTheKeptFoldersIsNotDeleted) {
    test::MakeFile(levels / "KEPT/LEVEL_0003_2026-11-21_183000/FILES/cave.tr4", "kept");
    test::MakeFile(levels / "KEPT/list.txt", "of the user");
    EXPECT_TRUE(MoveTo("C:\\new"));
    EXPECT_EQ(test::BytesOf(levels / "KEPT/list.txt"), "of the user");
}

TEST_F(Moving, ATargetAmongTheKeptFoldersIsRefused) {
    std::filesystem::create_directories(levels / "KEPT/LEVEL_0003_2026-11-21_183000");
    user.WillAnswer("Select target folder", "C:\\Levels\\KEPT");
    user.WillAnswer("Select target folder", "cancel");
    EXPECT_FALSE(MoveArchive());
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: The target can not be inside a level's folder: C:\\Levels\\KEPT"));
}

// What a move left that was killed when its copies had taken their places, but not yet the Archive's file.
TEST_F(Moving, CopiesOfAKilledMoveAreReplaced) {
    std::filesystem::copy(LevelPath(1), drive / "new/LEVEL_0001", std::filesystem::copy_options::recursive);
    for (const char* file : {"FILES/maze.tr4", "BACKUP_SAVEGAMES/savegame.0"})
        std::filesystem::last_write_time(drive / "new/LEVEL_0001" / file,
                                         std::filesystem::last_write_time(LevelPath(1) / file));
    test::MakeFile(drive / "new/LEVEL_0002/BACKUP_SAVEGAMES/savegame.7", "played since");
    test::MakeFile(drive / "new/KELVASH_MOVE/move.txt", "#FROM=C:\\Levels\r\n");
    test::MakeFile(drive / "new/KELVASH_MOVE/LEVEL_0002/FILES/half.tr4", "half");
    EXPECT_TRUE(MoveTo("C:\\new"));
    EXPECT_EQ(test::BytesOf(drive / "new/LEVEL_0001/FILES/maze.tr4"), "level One");
    EXPECT_EQ(test::BytesOf(drive / "new/LEVEL_0002/FILES/maze.tr4"), "level Two");
    EXPECT_FALSE(test::Exists(drive / "new/LEVEL_0002/BACKUP_SAVEGAMES/savegame.7"));
    const std::vector<KeptLevel> kept = ListKept();
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(test::BytesOf(drive / "new/KEPT" / kept[0].Folder / "BACKUP_SAVEGAMES/savegame.7"),
              "played since");
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: A copy that an interrupted move had left in the target folder has "
                            "been changed since. It is kept in: C:\\new\\KEPT\\" +
                                kept[0].Folder,
                            "plain: Folder archive moved in C:\\new"));
}

TEST_F(Moving, CopiesOfTheMoveOfAnotherArchiveAreForeign) {
    std::filesystem::create_directories(drive / "new/LEVEL_0001");
    test::MakeFile(drive / "new/KELVASH_MOVE/move.txt", "#FROM=C:\\Others\r\n");
    user.WillAnswer("Select target folder", "C:\\new");
    user.WillAnswer("Select target folder", "cancel");
    EXPECT_FALSE(MoveArchive());
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: In target folder there is already a folder: C:\\new\\LEVEL_0001"));
}

TEST_F(Moving, FilesOnDiskOfALevelOnCdComeAlong) {
    archive.Table.Edit(1)->CdNumber = 1;
    archive.Header.CdCount = 1;
    archive.Header.MainFolder = "D:\\cd";
    const std::string question =
        "Current archive is also on CD\r\nDo you want transfer whole archive on HD? \r\n"
        "(Note: if you choose [NO] will be moved only HD (secondary) folder)";
    user.WillAnswer(question, "yes");
    EXPECT_FALSE(MoveArchive());
    EXPECT_EQ(user.Told().back(), "exclamation: Kelvash can't transfer levels from CD to disk yet");
    user.WillAnswer(question, "no");
    EXPECT_TRUE(MoveTo("C:\\new"));
    EXPECT_EQ(test::BytesOf(drive / "new/LEVEL_0001/FILES/maze.tr4"), "level One");
    EXPECT_FALSE(test::Exists(LevelPath(1)));
    EXPECT_TRUE(test::Exists(drive / "new/LEVEL_0001/BACKUP_SAVEGAMES/savegame.0"));
    EXPECT_TRUE(test::Exists(drive / "new/LEVEL_0002/FILES/maze.tr4"));
    EXPECT_EQ(archive.Header.MainFolder, "D:\\cd");
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\new");
}

} // namespace
} // namespace kelvash::core
