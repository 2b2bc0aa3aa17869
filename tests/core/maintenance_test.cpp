// Removal and recovery of levels.
#include "core/maintenance.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/maintenance_home.h"
#include "core/profile.h"

namespace kelvash::core {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class Maintenance : public test::MaintenanceHome {};

TEST_F(Maintenance, RemovingTakesRecordFolderAndSizes) {
    for (std::int32_t code : {1, 2, 3})
        AddSized(code, "Level " + std::to_string(code));
    Select(2);
    user.WillAnswer("Are you sure to want remove level \"Level 2\" ?", "yes");
    user.WillAnswer(
        "Do you want remove all sub-folders of level?\r\n(Folder to remove: C:\\Levels\\LEVEL_0002)", "yes");
    EXPECT_TRUE(RemoveLevel());
    EXPECT_THAT(Codes(), ElementsAre(0, 1, 3));
    EXPECT_FALSE(test::Exists(LevelPath(2)));
    EXPECT_TRUE(test::Exists(LevelPath(3)));
    EXPECT_EQ(archive.Header.MainFolderSize, 200);
    EXPECT_EQ(archive.Header.SecondaryFolderSize, 20);
    EXPECT_EQ(SelectedLevel(), 0); // the first of the list
    EXPECT_THAT(user.Told(), ElementsAre("plain: Level has been removed"));
    EXPECT_THAT(user.Shown(), Contains("Removing level folder, wait please"));
    EXPECT_TRUE(test::Exists(home / "test.kva"));
}

TEST_F(Maintenance, TheFolderStaysOnRequestAndSoDoTheSizes) {
    AddSized(1, "One");
    Select(1);
    user.WillAnswer("Are you sure", "yes");
    user.WillAnswer("Do you want remove all sub-folders", "no");
    EXPECT_TRUE(RemoveLevel());
    EXPECT_THAT(Codes(), ElementsAre(0));
    EXPECT_TRUE(test::Exists(LevelPath(1) / "FILES/maze.tr4"));
    EXPECT_EQ(archive.Header.MainFolderSize, 100);
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Maintenance, WhatCannotBeRemovedIsTold) {
    level_list = {};
    EXPECT_FALSE(RemoveLevel());
    EXPECT_EQ(user.Told().back(), "exclamation: No levels is selected");
    AddSized(1, "On CD");
    archive.Levels[1].CdNumber = 1;
    Select(1);
    EXPECT_FALSE(RemoveLevel());
    EXPECT_EQ(user.Told().back(),
              "critical: Current level is also on cd. \r\nYou can not modify its level files");
    Select(0);
    EXPECT_FALSE(RemoveLevel());
    EXPECT_EQ(user.Told().back(),
              "critical: You can not delete TRLE original level!\r\nThis level is necessary "
              "for backup\\restore functions");
    archive.Levels[1].CdNumber = 0;
    Select(1);
    user.WillAnswer("Are you sure", "no");
    EXPECT_FALSE(RemoveLevel());
    EXPECT_THAT(Codes(), ElementsAre(0, 1));
}

TEST_F(Maintenance, ALevelThatIsInTrleIsTakenOutFirst) {
    AddPlayed();
    Select(1);
    user.WillAnswer("Are you sure", "yes");
    user.WillAnswer("Do you want remove all sub-folders", "no");
    EXPECT_TRUE(RemoveLevel());
    EXPECT_FALSE(test::Exists(trle / "data/maze.tr4"));
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "in play");
    EXPECT_FALSE(test::Exists(trle / "savegame.0"));
}

TEST_F(Maintenance, ALevelThatCannotBeTakenOutStays) {
    AddMarked();
    std::filesystem::create_directories(trle / "data/maze.tr4/in the way");
    Select(1);
    user.WillAnswer("Are you sure", "yes");
    EXPECT_FALSE(RemoveLevel());
    EXPECT_EQ(user.Told().back(),
              "exclamation: The level is still in Tomb Raider Level Editor folder, so it has "
              "not been removed");
    EXPECT_THAT(Codes(), ElementsAre(0, 1));
}

TEST_F(Maintenance, SavesOfTheLevelInTrleGoWithItsFolder) {
    AddPlayed();
    Select(1);
    user.WillAnswer("Are you sure to want remove level \"In\" ?", "yes");
    user.WillAnswer(
        "Do you want remove all sub-folders of level?\r\n(Folder to remove: C:\\Levels\\LEVEL_0001)", "yes");
    EXPECT_TRUE(RemoveLevel());
    EXPECT_EQ(user.Told().back(), "plain: Level has been removed");
    EXPECT_FALSE(test::Exists(LevelPath(1))) << "and with it the stash into which the saves came";
    EXPECT_FALSE(test::Exists(trle / "savegame.0"));
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_FALSE(test::Exists(StashPath(0) / "savegame.0")) << "never under another level's name";
}

TEST_F(Maintenance, TheFolderStaysWithALevelThatTheFileStillLists) {
    AddSized(1, "One");
    ASSERT_TRUE(WriteArchive("C:\\Kelvash\\test.kva"));
    std::filesystem::create_directory(home / "test.kva.new"); // in the way of every save
    Select(1);
    user.WillAnswer("Are you sure", "yes");
    user.WillAnswer("Do you want remove all sub-folders", "yes");
    EXPECT_FALSE(RemoveLevel());
    EXPECT_TRUE(test::Exists(LevelPath(1) / "FILES/maze.tr4"));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Error while saving archive: C:\\Kelvash\\test.kva",
                            "critical: Error while saving archive: C:\\Kelvash\\test.kva",
                            "critical: The folder of the level stays, because the Archive's file still "
                            "lists the level: C:\\Levels\\LEVEL_0001"));
    EXPECT_TRUE(archive.ArchiveChanged);
}

TEST_F(Maintenance, AFolderThatCannotBeRemovedIsTold) {
    AddSized(1, "One");
    Select(1);
    test::OrdinaryUser ordinary;
    std::filesystem::permissions(LevelPath(1) / "FILES", std::filesystem::perms(0555));
    user.WillAnswer("Are you sure", "yes");
    user.WillAnswer("Do you want remove all sub-folders", "yes");
    EXPECT_TRUE(RemoveLevel());
    std::filesystem::permissions(LevelPath(1) / "FILES", std::filesystem::perms(0755));
    EXPECT_THAT(user.Told(), Contains("critical: Error while removing folder: C:\\Levels\\LEVEL_0001"));
    EXPECT_EQ(archive.Header.MainFolderSize, 0);
}

class Recovery : public Maintenance {
  protected:
    void Put(const std::string& path, const std::string& bytes) {
        test::MakeFile(drive / "old" / path, bytes);
    }
    bool Recover(const std::string& folder = "C:\\old") {
        user.WillAnswer("Choose HD main folder of archive to recover", folder);
        user.WillAnswer("Is archive to restore also on CD?", "no");
        return RecoverArchive();
    }
};

TEST_F(Recovery, LevelsComeFromTheFolders) {
    Put("LEVEL_0002/FILES/a.tr4", "12345");
    Put("level_0010/FILES/b.tr4.zl", "123");
    Put("level_0010/SAVEGAMES/savegame.0", "1");
    Put("LEVEL_03/FILES/c.tr4", "too short a number");
    Put("LEVEL_00004/FILES/c.tr4", "too long a number");
    Put("LEVEL_abcd/FILES/c.tr4", "none");
    Put("LEVEL_0000/FILES/c.tr4", "none");
    EXPECT_TRUE(Recover());
    EXPECT_THAT(Codes(), ElementsAre(0, 2, 10));
    EXPECT_EQ(archive.Levels[0].Name, "- TRLE: Original configuration -");
    EXPECT_EQ(archive.Levels[1].Name, "Level Name 2");
    EXPECT_EQ(archive.Levels[2].Name, "Level Name 10");
    EXPECT_EQ(archive.Levels[1].FilesSize, 5);
    EXPECT_EQ(archive.Header.MainFolder, "C:\\old");
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\old");
    EXPECT_EQ(archive.Header.CdCount, 0);
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\LevelArchive.kva");
    EXPECT_TRUE(test::Exists(home / "LevelArchive.kva"));
    EXPECT_EQ(
        user.Told().front(),
        "plain: If you have lost or damaged archive.kva but You have all files folder you could recover "
        "archive but then you'll have insert manually infos about: Level name and [more info] file, using "
        "command [Menu->Level->Properties of current level]");
    EXPECT_EQ(user.Told().size(), 1U);
}

TEST_F(Recovery, WithoutLevelsTheOpenArchiveStays) {
    AddSized(1, "One");
    std::filesystem::create_directories(drive / "old");
    EXPECT_FALSE(Recover());
    EXPECT_EQ(user.Told().back(), "exclamation: I've not found any 'LEVEL_###' subfolder in folder: C:\\old");
    EXPECT_THAT(Codes(), ElementsAre(0, 1));
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\test.kva");
    user.WillAnswer("Choose HD main folder", "cancel");
    EXPECT_FALSE(RecoverArchive());
}

TEST_F(Recovery, FoldersWithoutALevelAreTold) {
    Put("LEVEL_0001/FILES/readme.txt", "x");
    EXPECT_TRUE(Recover());
    EXPECT_EQ(user.Told().back(),
              "exclamation: Warning: this recovered level has no .tr4 files: \r\n"
              "C:\\old\\LEVEL_0001\\files");
}

TEST_F(Recovery, CdsAreToldToBeLeftOut) {
    Put("LEVEL_0001/FILES/a.tr4", "x");
    user.WillAnswer("Choose HD main folder of archive to recover", "C:\\old");
    user.WillAnswer("Is archive to restore also on CD?", "yes");
    EXPECT_TRUE(RecoverArchive());
    EXPECT_THAT(user.Told(),
                Contains("exclamation: Kelvash can't recover levels on CD yet: only those on disk "
                         "will be recovered"));
}

TEST_F(Recovery, AFolderThatTheFileCannotHoldIsRefused) {
    test::MakeFile(drive / "\xCE\xBB/LEVEL_0001/FILES/a.tr4", "x");
    user.WillAnswer("Choose HD main folder", "C:\\\xCE\xBB");
    EXPECT_FALSE(RecoverArchive());
    EXPECT_THAT(user.Told().back(), testing::StartsWith("critical: This path has characters"));
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\test.kva");
}

} // namespace
} // namespace kelvash::core
