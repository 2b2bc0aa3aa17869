// A removal whose stash the user may not write.
#include <gmock/gmock.h>

#include "swap/remove_home.h"

namespace kelvash::swap {
namespace {

using testing::ElementsAre;
namespace fs = std::filesystem;

TEST_F(Removal, TellsAStashThatCannotBeEmptied) {
    InstallOne();
    fs::create_directories(StashPath(1));
    test::MakeFile(StashPath(1) / "savegame.0", "old");
    test::MakeFile(trle / "savegame.0", "new");
    fs::permissions(StashPath(1), fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read |
                                      fs::perms::others_exec);
    std::int32_t result = 99;
    {
        const test::OrdinaryUser ordinary;
        result = RemovePreviousLevel(2);
    }
    EXPECT_EQ(result, 0);
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: I cann't delete files in C:\\Levels\\LEVEL_0001\\backup_savegames folder"));
    EXPECT_TRUE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "new");
    EXPECT_TRUE(test::Exists(trle / "data" / "city.tr4"));
}

TEST_F(Removal, ThatCannotEmptyAStashLetsTheNextLevelInAndRescuesTheSaves) {
    InstallOne();
    test::MakeFile(StashPath(1) / "savegame.0", "old");
    test::MakeFile(trle / "savegame.0", "new");
    AddLevel(3, "Song", {{"song.tr4", "SONG"}}, {{"savegame.0", "of the song"}});
    fs::permissions(StashPath(1), fs::perms::owner_read | fs::perms::owner_exec);
    bool installed = false;
    {
        const test::OrdinaryUser ordinary;
        installed = InstallLevel(3);
    }
    EXPECT_TRUE(installed);
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: I cann't delete files in C:\\Levels\\LEVEL_0001\\backup_savegames folder",
                    "exclamation: Savegames, screenshots and notes of previous level have been saved in: "
                    "C:\\Kelvash\\rescued_saves_1"));
    EXPECT_EQ(test::BytesOf(home / "rescued_saves_1" / "savegame.0"), "new");
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "of the song");
    EXPECT_EQ(test::BytesOf(trle / "data" / "song.tr4"), "SONG");
}

TEST_F(Removal, RefusesWhenSavesCannotBePutAway) {
    user.MayBeTold("I cann't copy files in C:\\Levels\\LEVEL_0001\\backup_savegames folder");
    InstallOne();
    test::MakeFile(trle / "savegame.0", "new");
    fs::permissions(StashPath(1), fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read |
                                      fs::perms::others_exec);
    std::int32_t result = 99;
    {
        const test::OrdinaryUser ordinary;
        result = RemovePreviousLevel(2);
        EXPECT_FALSE(InstallLevel(2));
    }
    EXPECT_EQ(result, kRemovalRefused);
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "new");
    EXPECT_TRUE(test::Exists(trle / "data" / "city.tr4"));
    EXPECT_FALSE(test::Exists(trle / "data" / "coast.tr4"));
}

} // namespace
} // namespace kelvash::swap
