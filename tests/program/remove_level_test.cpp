#include "program/remove_level.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "support/maintenance_home.h"

namespace kelvash::program {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using Removal = test::MaintenanceHome;

TEST_F(Removal, RemovingTakesRecordFolderAndSizes) {
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
    EXPECT_EQ(core::archive.Header.MainFolderSize, 200);
    EXPECT_EQ(core::archive.Header.SecondaryFolderSize, 20);
    EXPECT_EQ(core::SelectedLevel(), 0); // the first of the list
    EXPECT_THAT(user.Told(), ElementsAre("plain: Level has been removed"));
    EXPECT_THAT(user.Shown(), Contains("Removing level folder, wait please"));
    EXPECT_TRUE(test::Exists(home / "test.kva"));
}

TEST_F(Removal, TheFolderStaysOnRequestAndSoDoTheSizes) {
    AddSized(1, "One");
    Select(1);
    user.WillAnswer("Are you sure", "yes");
    user.WillAnswer("Do you want remove all sub-folders", "no");
    EXPECT_TRUE(RemoveLevel());
    EXPECT_THAT(Codes(), ElementsAre(0));
    EXPECT_TRUE(test::Exists(LevelPath(1) / "FILES/maze.tr4"));
    EXPECT_EQ(core::archive.Header.MainFolderSize, 100);
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Removal, WhatCannotBeRemovedIsTold) {
    core::level_list = {};
    EXPECT_FALSE(RemoveLevel());
    EXPECT_EQ(user.Told().back(), "exclamation: No levels is selected");
    AddSized(1, "On CD");
    core::archive.Table.Edit(1)->CdNumber = 1;
    Select(1);
    EXPECT_FALSE(RemoveLevel());
    EXPECT_EQ(user.Told().back(),
              "critical: Current level is also on cd. \r\nYou can not modify its level files");
    Select(0);
    EXPECT_FALSE(RemoveLevel());
    EXPECT_EQ(user.Told().back(),
              "critical: You can not delete TRLE original level!\r\nThis level is necessary "
              "for backup\\restore functions");
    core::archive.Table.Edit(1)->CdNumber = 0;
    Select(1);
    user.WillAnswer("Are you sure", "no");
    EXPECT_FALSE(RemoveLevel());
    EXPECT_THAT(Codes(), ElementsAre(0, 1));
}

TEST_F(Removal, ALevelThatIsInTrleIsTakenOutFirst) {
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

TEST_F(Removal, ALevelThatCannotBeTakenOutStays) {
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

TEST_F(Removal, SavesOfTheLevelInTrleGoWithItsFolder) {
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

TEST_F(Removal, TheFolderStaysWithALevelThatTheFileStillLists) {
    AddSized(1, "One");
    ASSERT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
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
    EXPECT_TRUE(core::archive.ArchiveChanged);
}

} // namespace
} // namespace kelvash::program
