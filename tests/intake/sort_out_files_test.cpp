// Savegames, pictures and helpers among a level's files: what isn't the level's own goes elsewhere.
#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "intake/store_level_home.h"
#include "support/bitmaps.h"

namespace kelvash::intake {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(StoreLevelTest, SavegamesGoIntoTheStash) {
    OpenGood({{"savegame.0", "saved"}, {"SAVEGAME.3", "saved too"}});
    Store();
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "saved");
    EXPECT_EQ(test::BytesOf(StashPath(1) / "SAVEGAME.3"), "saved too");
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4", "script.dat"));
    EXPECT_EQ(Record().SavesSize, 14);
    EXPECT_EQ(core::archive.Header.SecondaryFolderSize, 14);
}

TEST_F(StoreLevelTest, SavegamesOfALevelThatIsInTrleGoThere) {
    AddLevel(1, "In", kGood, {{"savegame.0", "swapped in"}});
    AddLevel(2, "Last", {});
    test::MakeFile(trle / "Kelvash.txt", "#LEVEL_CODE=1#\r\n#LEVEL_NAME=In#\r\n");
    test::MakeFile(trle / "savegame.0", "in play");
    OpenProperties(1);
    test::MakeFile(Work() / "savegame.0", "added");
    test::MakeFile(Work() / "savegame.1", "added too");
    Store();
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "added");
    EXPECT_EQ(test::BytesOf(trle / "savegame.1"), "added too");
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "swapped in");
    EXPECT_EQ(test::BytesOf(home / "rescued_saves_1/savegame.0"), "in play");
    EXPECT_EQ(test::BytesOf(home / "rescued_saves_1/rescued_from.txt"), "From: C:\\Levels\\LEVEL_0001\r\n");
    EXPECT_THAT(user.Told(), ElementsAre(kKept));
    EXPECT_THAT(user.Asked(), IsEmpty());
}

// Those that its view shows are of TRLE's root as well.
TEST_F(StoreLevelTest, SavegamesOfTheOriginalConfigurationGoThereToo) {
    AddLevel(2, "Last", {});
    OpenProperties(0);
    test::MakeFile(Work() / "savegame.1", "added");
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(test::BytesOf(trle / "savegame.1"), "added");
    EXPECT_THAT(NamesIn(StashPath(0)), IsEmpty());
}

TEST_F(StoreLevelTest, WhatASaveOrAPictureReplacesIsKeptAndToldOnce) {
    AddLevel(1, "First", kGood, {{"savegame.0", "the player's"}, {"savegame.1", "the same"}});
    AddLevel(2, "Last", {});
    test::MakeFile(Shots() / "shot1.jpg", "the player's shot");
    OpenProperties(1);
    test::MakeFile(Work() / "SAVEGAME.0", "added");
    test::MakeFile(Work() / "savegame.1", "the same");
    test::MakeFile(Work() / "shot1.jpg", "added shot");
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(test::BytesOf(StashPath(1) / "SAVEGAME.0"), "added");
    EXPECT_EQ(test::BytesOf(Shots() / "shot1.jpg"), "added shot");
    EXPECT_THAT(NamesIn(home / "rescued_saves_1"),
                ElementsAre("SAVEGAME.0", "rescued_from.txt", "shot1.jpg"));
    EXPECT_EQ(test::BytesOf(home / "rescued_saves_1/SAVEGAME.0"), "the player's");
    EXPECT_EQ(test::BytesOf(home / "rescued_saves_1/shot1.jpg"), "the player's shot");
    EXPECT_THAT(user.Told(), ElementsAre(kKept));
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4", "script.dat"));
    EXPECT_EQ(Record().SavesSize, 5 + 8 + 10);
}

TEST_F(StoreLevelTest, WhatCannotBeKeptIsNotReplaced) {
    AddLevel(1, "First", kGood, {{"savegame.0", "the player's"}});
    AddLevel(2, "Last", {});
    OpenProperties(1);
    test::MakeFile(Work() / "savegame.0", "added");
    test::MakeFile(home / "rescued_saves_1", "no folder");
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Error copying savegames or screenshots in: C:\\Levels\\LEVEL_0001"));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "the player's");
    EXPECT_EQ(test::BytesOf(Work() / "savegame.0"), "added");
}

TEST_F(StoreLevelTest, PicturesBecomeScreenshotsButForThoseThatTheGameLoads) {
    OpenGood({{"shot.JPG", "a shot"}, {"map.bmp", "a map"}, {"load.bmp", "load screen"}});
    Store();
    EXPECT_THAT(NamesIn(Shots()), ElementsAre("load.bmp", "map.bmp", "shot.JPG"));
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "load.bmp", "maze.tr4", "script.dat"));
    EXPECT_EQ(Record().SavesSize, 6 + 5 + 11);
}

TEST_F(StoreLevelTest, PicturesOfTheMediaConfigurationStay) {
    // One event: image.jpg as title (flag 16).
    std::string config = std::string("\1\0\0\0", 4) + std::string(16, ' ');
    std::string event(1356, '\0');
    event.replace(0, 256, std::string(256, ' '));
    event[266] = 16;
    event.replace(274, 1024, "image.jpg" + std::string(1024 - 9, ' '));
    OpenGood({{"level.mcf", config + event}, {"image.jpg", "title"}, {"other.jpg", "shot"}});
    Store();
    EXPECT_THAT(NamesIn(Shots()), ElementsAre("other.jpg"));
    EXPECT_THAT(StoredNames(), Contains("image.jpg"));
}

TEST_F(StoreLevelTest, ALoadScreenBecomesAScreenshotOnceOnly) {
    OpenGood({{"load.jpg", "load screen"}});
    Store();
    EXPECT_THAT(NamesIn(Shots()), ElementsAre("load.jpg"));
    // Properties of the last level, twice: neither an edited picture nor a deleted one is touched.
    test::MakeFile(Shots() / "load.jpg", "drawn on");
    OpenProperties(1);
    Store();
    EXPECT_EQ(test::BytesOf(Shots() / "load.jpg"), "drawn on");
    std::filesystem::remove(Shots() / "load.jpg");
    OpenProperties(1);
    Store();
    EXPECT_THAT(NamesIn(Shots()), IsEmpty());
    EXPECT_EQ(Record().SavesSize, 0);
    // One that comes in with an edit does.
    OpenProperties(1);
    std::filesystem::remove(Work() / "load.jpg");
    test::MakeFile(Work() / "load.jpg", "another screen");
    Store();
    EXPECT_EQ(test::BytesOf(Shots() / "load.jpg"), "another screen");
    EXPECT_EQ(Record().SavesSize, 14);
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(StoreLevelTest, TheJpegOfACompressedLoadScreenIsNoSecondScreenshot) {
    for (const bool no_decompress : {false, true}) {
        core::archive.Header.CompressFiles = true;
        core::profile.NoDecompress = no_decompress;
        std::filesystem::remove_all(LevelPath(1));
        while (core::archive.Table.Size() > 1)
            core::archive.Table.Remove(1);
        OpenNew();
        for (const auto& [name, bytes] : kGood)
            test::MakeFile(Work() / name, bytes);
        test::MakeFile(Work() / "load.bmp", test::MakeBitmap({}));
        level.Name = "The Maze";
        Store();
        ASSERT_EQ(level.State, FormState::Saved);
        EXPECT_THAT(StoredNames(), Contains("load.jpg"));
        EXPECT_THAT(NamesIn(Shots()), ElementsAre("load.bmp"));
        OpenProperties(1);
        EXPECT_THAT(WorkNames(), Contains(no_decompress ? "load.jpg" : "load.bmp"));
        Store();
        EXPECT_EQ(level.State, FormState::Saved);
        EXPECT_THAT(NamesIn(Shots()), ElementsAre("load.bmp"));
        EXPECT_EQ(test::BytesOf(Shots() / "load.bmp"), test::MakeBitmap({}));
        EXPECT_THAT(StoredNames(), Contains("load.jpg"));
        EXPECT_EQ(Record().SavesSize, static_cast<std::int32_t>(test::MakeBitmap({}).size()));
    }
    EXPECT_THAT(user.Asked(), IsEmpty());
}

// The first OK got as far as the picture.
TEST_F(StoreLevelTest, ALoadScreenThatAFailedOkHasPackedIsNoSecondScreenshot) {
    OpenGood({{"load.jpg", "packed"}});
    test::MakeFile(Shots() / "load.bmp", "load screen");
    Store();
    EXPECT_THAT(NamesIn(Shots()), ElementsAre("load.bmp"));
    EXPECT_THAT(StoredNames(), Contains("load.jpg"));
}

// Nothing of what is compared with the beginning has changed then.
TEST_F(StoreLevelTest, ASaveThatOnlyComesThroughCounts) {
    AddLevel(1, "First", kGood);
    AddLevel(2, "Last", {});
    OpenProperties(1);
    test::MakeFile(Work() / "savegame.0", "saved");
    Store();
    EXPECT_FALSE(level.FilesChanged);
    EXPECT_EQ(Record().SavesSize, 5);
    EXPECT_EQ(core::archive.Header.SecondaryFolderSize, 5);
}

TEST_F(StoreLevelTest, HelpersOfAPackageAndItsFileAreLeftOut) {
    OpenGood(
        {{"madplay.exe", "1"}, {"START_ME.EXE", "2"}, {"kelvash.cfg", "unreadable"}, {"tomb4.exe", "3"}});
    Store();
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4", "script.dat", "tomb4.exe"));
}

} // namespace
} // namespace kelvash::intake
