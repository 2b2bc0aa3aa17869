#include "swap/restore.h"

#include <gmock/gmock.h>

#include "core/profile.h"
#include "support/swap_home.h"
#include "swap/install.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::CurrentLevelCode;
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace fs = std::filesystem;

class Restore : public test::SwapHome {
  protected:
    Restore() { AddLevel(1, "City", {{"city.tr4", "CITY"}, {"000.wav", "new"}, {"script.dat", "city"}}); }
    Bar bar{BarPlace::CallerForm, -1};
};

TEST_F(Restore, FastTakesTheLevelOut) {
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_TRUE(FastRestore());
    EXPECT_EQ(CurrentLevelCode(), 0);
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
    EXPECT_THAT(user.Told(), ElementsAre("plain: Set in Tomb Raider Level Editor, original configuration"));
    EXPECT_EQ(user.list_changes, 1);
}

TEST_F(Restore, FastTellsItsFailure) {
    ASSERT_TRUE(InstallLevel(1));
    test::MakeFile(trle / "savegame.0", "s");
    fs::remove_all(StashPath(1));
    test::MakeFile(StashPath(1), "a file in the way");
    EXPECT_FALSE(FastRestore());
    EXPECT_THAT(user.Told(), Contains("critical: Error setting original configuration in trle folder"));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "s");
}

TEST_F(Restore, FullDeletesWhatTheUserPutIntoTheRoot) {
    test::MakeFile(trle / "stray.dat", "");
    test::MakeFile(trle / "data" / "stray.tr4", "");
    test::MakeFile(trle / "data" / "stray.pak", "");
    test::MakeFile(trle / "data" / "kept.txt", "");
    test::MakeFile(trle / "Tool.EXE", "");
    test::MakeFile(trle / "uninst.isu", "");
    test::MakeFile(trle / "Game.lnk", "");
    EXPECT_TRUE(FullRestore(bar, false));
    EXPECT_FALSE(test::Exists(trle / "stray.dat"));
    EXPECT_FALSE(test::Exists(trle / "data" / "stray.tr4"));
    EXPECT_FALSE(test::Exists(trle / "data" / "stray.pak"));
    EXPECT_TRUE(test::Exists(trle / "data" / "kept.txt"));
    EXPECT_TRUE(test::Exists(trle / "Tool.EXE"));
    EXPECT_TRUE(test::Exists(trle / "uninst.isu"));
    EXPECT_TRUE(test::Exists(trle / "Game.lnk"));
    EXPECT_EQ(test::BytesOf(trle / "script.dat"), test::BytesOf(backup / "script.dat"));
    EXPECT_THAT(
        user.Told(),
        ElementsAre(StartsWith("exclamation: Files of the TRLE folder that the backup doesn't hold made "
                               "way: 3.\r\nThey have been kept in: C:\\Kelvash\\kept_files\\"),
                    "plain: Restored original Tomb Raider Level Editor configuration"));
}

TEST_F(Restore, FullTellsItsSteps) {
    FullRestore(bar, false);
    EXPECT_THAT(user.Shown(),
                ElementsAre("Removing files of old level from TRLE folder", "",
                            "Removing all critical files from TRLE folder",
                            "Copying original .dat e .tr4 files in TRLE folder", "Restoring folder: \\audio",
                            "Restoring folder: \\graphics\\wads", "Restoring folder: \\sound\\samples",
                            "Restoring folder: \\script", "Restore finished", ""));
}

TEST_F(Restore, FullBringsTheFourFoldersBack) {
    user.MayBeTold("Files of the TRLE folder that the backup doesn't hold made way: 2.");
    fs::remove(trle / "audio" / "007.wav");
    test::MakeFile(trle / "audio" / "900.wav", "stray");
    test::MakeFile(trle / "script" / "stray.txt", "stray");
    user.WillAnswer("1 wave files", "no");
    FullRestore(bar, false);
    EXPECT_TRUE(test::Exists(trle / "audio" / "007.wav"));
    EXPECT_FALSE(test::Exists(trle / "audio" / "900.wav"));
    EXPECT_FALSE(test::Exists(trle / "script" / "stray.txt"));
}

TEST_F(Restore, FullWithACompactBackupLeavesTheFourFolders) {
    core::profile.FullBackup = false;
    fs::remove(trle / "audio" / "007.wav");
    test::MakeFile(trle / "audio" / "900.wav", "stray");
    FullRestore(bar, false);
    EXPECT_FALSE(test::Exists(trle / "audio" / "007.wav"));
    EXPECT_TRUE(test::Exists(trle / "audio" / "900.wav"));
}

TEST_F(Restore, FullTellsAFolderThatCannotBeRestored) {
    fs::remove(trle / "audio" / "000.wav");
    fs::create_directory(trle / "audio" / "000.wav");
    EXPECT_FALSE(FullRestore(bar, false));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error, restoring folder: \\audio",
                                         "plain: Restored original Tomb Raider Level Editor configuration"));
    EXPECT_TRUE(test::Exists(trle / "script.dat"));
}

TEST_F(Restore, FullTellsFilesOfTheRootInAMessageOfTheirOwn) {
    fs::remove(trle / "script.dat");
    fs::create_directory(trle / "script.dat");
    EXPECT_FALSE(FullRestore(bar, false));
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: These original files could not be brought back. It is tried again at the "
                    "next start:\r\nC:\\trle\\script.dat",
                    "plain: Restored original Tomb Raider Level Editor configuration"));
}

TEST_F(Restore, FullMovesTheBarFromTheFilesOfDataOn) {
    core::profile.FullBackup = false;
    EXPECT_TRUE(FullRestore(bar, false));
    EXPECT_THAT(user.percents, ElementsAre(0, 33, 66, 100, 0));
}

TEST_F(Restore, FullMayOpenTheProgressDialog) {
    core::profile.FullBackup = false;
    EXPECT_TRUE(FullRestore(bar, true));
    EXPECT_THAT(user.Shown(),
                ElementsAre("Removing files of old level from TRLE folder", "", "",
                            "Removing all critical files from TRLE folder",
                            "Copying original .dat e .tr4 files in TRLE folder", "Restore finished", ""));
}

TEST_F(Restore, FullTakesWhatTheBackupLacks) {
    user.MayBeTold("Files of the TRLE folder that the backup doesn't hold made way: 1.");
    fs::remove(backup / "load.bmp");
    test::MakeFile(backup / "other.bmp", "a bitmap");
    fs::remove(backup / "script.dat");
    EXPECT_TRUE(FullRestore(bar, false));
    EXPECT_FALSE(test::Exists(trle / "load.bmp"));
    EXPECT_FALSE(test::Exists(trle / "script.dat"));
}

TEST_F(Restore, FullOfAFolderThatCannotBeReadTellsItAndAsksNothing) {
    fs::rename(trle, drive / "gone");
    EXPECT_FALSE(FullRestore(bar, false));
    EXPECT_THAT(user.Told(), ElementsAre("critical: The TRLE folder can't be read now. Nothing has been "
                                         "changed: C:\\trle"));
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_FALSE(test::Exists(trle));
}

TEST_F(Restore, FullWithoutABackupDoesNothing) {
    fs::remove_all(backup);
    const std::vector<std::string> before = NamesIn(trle);
    user.WillAnswer("There is no valid backup of the original files", "cancel");
    EXPECT_FALSE(FullRestore(bar, false));
    EXPECT_EQ(NamesIn(trle), before);
}

TEST_F(Restore, FullKeepsEveryStash) {
    test::MakeFile(trle / "savegame.0", "original");
    ASSERT_TRUE(InstallLevel(1));
    test::MakeFile(trle / "savegame.0", "of the level");
    FullRestore(bar, false);
    EXPECT_FALSE(test::Exists(trle / "savegame.0"));
    EXPECT_EQ(test::BytesOf(StashPath(0) / "savegame.0"), "original");
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "of the level");
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "original");
}

TEST_F(Restore, FullTakesADamagedMarkerAway) {
    user.MayBeTold("Kelvash.txt\" is damaged");
    test::MakeFile(trle / "Kelvash.txt", "rubbish");
    FullRestore(bar, false);
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_EQ(CurrentLevelCode(), 0);
}

TEST_F(Restore, SwapToOriginalRefreshesTheList) {
    EXPECT_TRUE(SwapToOriginal());
    EXPECT_EQ(user.list_changes, 1);
    EXPECT_THAT(user.Told(), IsEmpty());
}

} // namespace
} // namespace kelvash::swap
