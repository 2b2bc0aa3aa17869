#include "swap/remove.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/profile.h"
#include "support/swap_home.h"
#include "swap/install.h"
#include "swap/remove_home.h"
#include "swap/restore.h"
#include "trle_state/swap_record.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::OwnerOf;
using trle_state::ReadSwapRecord;
using trle_state::RecordState;
using trle_state::StampOf;
using trle_state::SwapRecord;
using trle_state::SwapStep;
using trle_state::WriteSwapRecord;
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace fs = std::filesystem;

TEST_F(Removal, WithoutAMarkerStashesForLevelZero) {
    test::MakeFile(trle / "savegame.0", "save");
    test::MakeFile(trle / "shot1.jpg", "shot");
    test::MakeFile(trle / "note1.txt", "note");
    test::MakeFile(StashPath(0) / "savegame.7", "old");
    EXPECT_EQ(RemovePreviousLevel(1), 0);
    // Nobody knows where else the old save could be.
    EXPECT_THAT(NamesIn(StashPath(0)), ElementsAre("note1.txt", "savegame.0", "savegame.7", "shot1.jpg"));
    EXPECT_THAT(NamesIn(trle), Not(Contains("savegame.0")));
    EXPECT_THAT(NamesIn(trle), Not(Contains("shot1.jpg")));
    EXPECT_THAT(NamesIn(trle), Not(Contains("note1.txt")));
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Removal, LeavesTheLevelThatIsWanted) {
    InstallOne();
    test::MakeFile(trle / "savegame.0", "save");
    EXPECT_EQ(RemovePreviousLevel(1), 1);
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "save");
    EXPECT_EQ(test::BytesOf(trle / "data" / "city.tr4"), "CITY");
    EXPECT_TRUE(test::Exists(trle / "Kelvash.txt"));
}

TEST_F(Removal, TakesTheLevelOutAndBringsTheOriginalsBack) {
    InstallOne();
    test::MakeFile(trle / "savegame.0", "save");
    user.Forget();
    EXPECT_EQ(RemovePreviousLevel(2), 1);
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
    EXPECT_EQ(test::BytesOf(trle / "script.dat"), test::BytesOf(backup / "script.dat"));
    EXPECT_EQ(test::BytesOf(trle / "audio" / "045.wav"), test::BytesOf(backup / "audio" / "045.wav"));
    EXPECT_THAT(NamesIn(StashPath(1)), ElementsAre("savegame.0"));
    EXPECT_THAT(user.Shown(), ElementsAre("Removing files of previous custom level",
                                          "Restoring files changed by previous custom level"));
}

TEST_F(Removal, MinusOneAlwaysRemoves) {
    InstallOne();
    EXPECT_EQ(RemovePreviousLevel(-1), 1);
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
}

TEST_F(Removal, MakesRestoredFilesWritable) {
    fs::permissions(backup / "script.dat", fs::perms::owner_read);
    InstallOne();
    EXPECT_EQ(RemovePreviousLevel(2), 1);
    EXPECT_NE(fs::status(trle / "script.dat").permissions() & fs::perms::owner_write, fs::perms::none);
}

TEST_F(Removal, WithACompactBackupLeavesTheLevelsWaves) {
    core::profile.FullBackup = false;
    AddLevel(3, "Song", {{"song.tr4", "SONG"}, {"100.wav", "song wave"}});
    ASSERT_TRUE(InstallLevel(3));
    EXPECT_EQ(RemovePreviousLevel(2), 3);
    EXPECT_EQ(test::BytesOf(trle / "audio" / "100.wav"), "song wave");
    EXPECT_FALSE(test::Exists(trle / "data" / "song.tr4"));
}

TEST_F(Removal, KnowsTheAudioFolderInAnyCase) {
    core::profile.FullBackup = false;
    MarkLevelOne(
        "#OVERWROTEN_FILES=#\r\n#COPIED_FILES=\\AUDIO\\100.wav|\\Audio\\101.wav|\\data\\city.tr4#\r\n");
    for (const char* name : {"audio/100.wav", "audio/101.wav", "data/city.tr4"})
        test::MakeFile(trle / name, "of the level");
    user.MayBeTold("made way: 1.");
    EXPECT_EQ(RemovePreviousLevel(2), 1);
    EXPECT_EQ(test::BytesOf(trle / "audio" / "100.wav"), "of the level");
    EXPECT_EQ(test::BytesOf(trle / "audio" / "101.wav"), "of the level");
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
}

TEST_F(Removal, WithACompactBackupLosesAnOverwrittenWave) {
    user.MayBeTold("Files of the TRLE folder that the backup doesn't hold made way: 1.");
    core::profile.FullBackup = false;
    fs::remove_all(backup / "audio");
    InstallOne();
    EXPECT_EQ(RemovePreviousLevel(2), 1);
    EXPECT_FALSE(test::Exists(trle / "audio" / "045.wav"));
    EXPECT_EQ(test::BytesOf(home / "kept_files" / "audio" / "045.wav"), "original audio/045.wav");
}

TEST_F(Removal, TellsAMissingLevelFolderAndLeavesAll) {
    InstallOne();
    user.Forget();
    fs::remove_all(LevelPath(1));
    EXPECT_EQ(RemovePreviousLevel(2), 1);
    EXPECT_THAT(
        user.Told(),
        ElementsAre(
            "critical: I cann't find level folder [C:\\Levels\\LEVEL_0001] relative to previuos custom "
            "level installed in trle folder\r\nTo resolve this problem use menu command [Tools->Set "
            "original configuration in TRLE] and choose FULL restore"));
    EXPECT_TRUE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_TRUE(test::Exists(trle / "data" / "city.tr4"));
}

TEST_F(Removal, LeavesTheWantedLevelInThoughItsFolderIsMissing) {
    InstallOne();
    test::MakeFile(trle / "savegame.0", "save");
    fs::remove_all(LevelPath(1));
    EXPECT_EQ(RemovePreviousLevel(1), 1);
    EXPECT_THAT(user.Told(), ElementsAre(testing::StartsWith("critical: I cann't find level folder "
                                                             "[C:\\Levels\\LEVEL_0001] relative to")));
    EXPECT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "save");
    EXPECT_TRUE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_EQ(test::BytesOf(trle / "data" / "city.tr4"), "CITY");
    EXPECT_THAT(user.Told().size(), 2U);
}

TEST_F(Removal, OfAMarkerWithLevelZeroDoesNothingWhereThatIsWanted) {
    test::MakeFile(trle / "Kelvash.txt", "#LEVEL_CODE=0000#\r\n");
    test::MakeFile(trle / "savegame.3", "save");
    test::MakeFile(StashPath(0) / "savegame.4", "stashed");
    EXPECT_EQ(RemovePreviousLevel(0), 0);
    EXPECT_EQ(test::BytesOf(trle / "savegame.3"), "save");
    EXPECT_TRUE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_TRUE(InstallLevel(0));
    EXPECT_TRUE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_EQ(test::BytesOf(trle / "savegame.3"), "save");
    EXPECT_EQ(test::BytesOf(trle / "savegame.4"), "stashed");
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Removal, TellsSavesThatCannotBeRescued) {
    user.MayBeTold("Kelvash.txt\" is damaged");
    test::MakeFile(home / "rescued_saves_1", "in the way");
    test::MakeFile(trle / "Kelvash.txt", "nothing of use");
    test::MakeFile(trle / "savegame.0", "save");
    const std::string told =
        "critical: Nothing more is done, because savegames, screenshots and notes in the TRLE folder have no "
        "level to go to and can't be put into the application's folder: C:\\Kelvash";
    EXPECT_FALSE(InstallLevel(2));
    EXPECT_EQ(user.Told().back(), told);
    Bar bar;
    EXPECT_FALSE(FullRestore(bar, false));
    EXPECT_EQ(user.Told().back(), told);
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "save");
}

TEST_F(Removal, TellsADamagedMarkerAndDeletesIt) {
    test::MakeFile(trle / "Kelvash.txt", "nothing of use");
    test::MakeFile(trle / "savegame.0", "save");
    EXPECT_EQ(RemovePreviousLevel(2), -1);
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Configuration file \"C:\\trle\\Kelvash.txt\" is damaged\r\nIt will "
                            "not be possible recover correctly old level data",
                            "exclamation: Savegames, screenshots and notes of previous level have been saved "
                            "in: C:\\Kelvash\\rescued_saves_1"));
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_EQ(test::BytesOf(home / "rescued_saves_1" / "savegame.0"), "save");
    EXPECT_FALSE(test::Exists(trle / "savegame.0"));
}

TEST_F(Removal, TakesAnEmptyMarkerAwayWithoutAWord) {
    test::MakeFile(trle / "Kelvash.txt", "");
    EXPECT_EQ(RemovePreviousLevel(2), -1);
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
}

TEST_F(Removal, WithAnEmptyCopiedListLeavesTheFiles) {
    MarkLevelOne("#OVERWROTEN_FILES=#\r\n#COPIED_FILES=#\r\n");
    test::MakeFile(trle / "data" / "city.tr4", "CITY");
    EXPECT_EQ(RemovePreviousLevel(2), 1);
    EXPECT_EQ(test::BytesOf(trle / "data" / "city.tr4"), "CITY");
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
}

TEST_F(Removal, OfAMarkerWithLevelZeroOnlyStashes) {
    test::MakeFile(trle / "Kelvash.txt", "#LEVEL_CODE=0000#\r\n#COPIED_FILES=\\script.dat#\r\n");
    test::MakeFile(trle / "savegame.3", "save");
    EXPECT_EQ(RemovePreviousLevel(2), 0);
    EXPECT_THAT(NamesIn(StashPath(0)), ElementsAre("savegame.3"));
    EXPECT_TRUE(test::Exists(trle / "script.dat"));
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
}

TEST_F(Removal, TakesAFileThatIsGoneForDeleted) {
    InstallOne();
    fs::remove(trle / "data" / "city.tr4");
    EXPECT_EQ(RemovePreviousLevel(2), 1);
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Removal, StopsAtTheFirstFileThatCannotBeDeleted) {
    MarkLevelOne("#OVERWROTEN_FILES=#\r\n#COPIED_FILES=\\a.dat|\\data|\\b.dat#\r\n");
    test::MakeFile(trle / "a.dat", "a");
    test::MakeFile(trle / "b.dat", "b");
    EXPECT_EQ(RemovePreviousLevel(2), 0);
    EXPECT_THAT(user.Told().front(), "critical: I cann't delete file: C:\\trle\\data");
    EXPECT_FALSE(test::Exists(trle / "a.dat"));
    EXPECT_TRUE(test::Exists(trle / "b.dat"));
    EXPECT_TRUE(test::Exists(trle / "Kelvash.txt"));
}

TEST_F(Removal, KeepsTheStashOfLevelZeroThatNothingElseHolds) {
    test::MakeFile(trle / "savegame.0", "original save");
    InstallOne();
    EXPECT_EQ(RemovePreviousLevel(-1), 1); // the level is taken out of the Archive; nothing goes in
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(test::BytesOf(StashPath(0) / "savegame.0"), "original save");
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "original save");
}

// A record as a killed program leaves it.
SwapRecord HalfOut() {
    SwapRecord record = ReadSwapRecord().Record;
    record.Step = SwapStep::Leaving;
    record.Saves.clear();
    return record;
}

TEST_F(Removal, MergesIntoAStashThatTheRecordProtects) {
    InstallOne();
    ASSERT_TRUE(WriteSwapRecord(HalfOut()));
    test::MakeFile(StashPath(1) / "savegame.0", "already stashed");
    test::MakeFile(trle / "savegame.1", "still in the root");
    EXPECT_EQ(RemovePreviousLevel(2), 0); // it was taken out first, so nothing was in any more
    EXPECT_THAT(NamesIn(StashPath(1)), ElementsAre("savegame.0", "savegame.1"));
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
}

TEST_F(Removal, UsesTheRecordsListsForAnInstallCutShort) {
    SwapRecord record;
    record.Step = SwapStep::Entering;
    record.Owner = OwnerOf(core::PlaceOf(1));
    record.Copied = {{"\\script.dat", StampOf("C:\\Levels\\LEVEL_0001\\FILES\\script.dat")},
                     {"\\data\\city.tr4", StampOf("C:\\Levels\\LEVEL_0001\\FILES\\city.tr4")}};
    record.Overwritten = {{"\\script.dat", StampOf("C:\\trle\\script.dat")}};
    ASSERT_TRUE(WriteSwapRecord(record));
    test::MakeFile(trle / "Kelvash.txt", "#LEVEL_CODE=0001#\r\n#LEVEL_NAME=City#\r\n");
    fs::remove(trle / "script.dat");
    for (const auto& [name, place] : {std::pair{"city.tr4", "data/city.tr4"}, {"script.dat", "script.dat"}}) {
        const fs::path stored = LevelPath(1) / "FILES" / name;
        fs::copy_file(stored, trle / place);
        fs::last_write_time(trle / place, fs::last_write_time(stored)); // as the program copies
    }
    EXPECT_EQ(RemovePreviousLevel(2), 0);
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
    EXPECT_EQ(test::BytesOf(trle / "script.dat"), test::BytesOf(backup / "script.dat"));
}

// Originals that an earlier removal couldn't bring back, while the next level is in: what it doesn't mind
// comes, a language file beside its own would be the game's choice.
TEST_F(Removal, BringsNoLanguageFileBesideTheLevelsOwn) {
    AddLevel(3, "Torre", {{"torre.tr4", "TORRE"}, {"italian.dat", "italian"}});
    ASSERT_TRUE(InstallLevel(3));
    ASSERT_FALSE(test::Exists(trle / "english.dat"));
    SwapRecord record = ReadSwapRecord().Record;
    record.LeftOverwritten = {{"\\objects.h", StampOf("C:\\trle\\objects.h")},
                              {"\\english.dat", StampOf("C:\\Kelvash\\backup_trle\\english.dat")}};
    ASSERT_TRUE(WriteSwapRecord(record));
    fs::remove(trle / "objects.h");
    EXPECT_EQ(EndCutShort(), CutShort::Ended);
    EXPECT_TRUE(test::Exists(trle / "objects.h"));
    EXPECT_FALSE(test::Exists(trle / "english.dat"));
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "english.dat"), test::BytesOf(backup / "english.dat"));
    EXPECT_FALSE(test::Exists(trle / "italian.dat"));
}

TEST_F(Removal, HasARecordForEachTrleFolder) {
    InstallOne();
    core::profile.TrleFolder = "C:\\other";
    EXPECT_EQ(ReadSwapRecord().State, RecordState::None);
    ASSERT_TRUE(WriteSwapRecord(SwapRecord()));
    core::profile.TrleFolder = "C:\\trle";
    EXPECT_EQ(ReadSwapRecord().Record.Step, SwapStep::In);
    EXPECT_EQ(RemovePreviousLevel(2), 1);
}

} // namespace
} // namespace kelvash::swap
