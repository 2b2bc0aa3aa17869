// Whose the saves in the TRLE folder are, whatever happened to marker, record, Archive and folders meanwhile:
// they go home, or into a rescue folder, and never to another level.
#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/maintenance.h"
#include "core/owner_moves.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "program/remove_level.h"
#include "support/swap_home.h"
#include "swap/install.h"
#include "swap/remove.h"
#include "swap/rescued_saves.h"
#include "swap/restore.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::CurrentLevelCode;
using trle_state::kNoLevel;
using trle_state::LookAtTrle;
using trle_state::SwapRecordPath;
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace fs = std::filesystem;

class WhoseSaves : public test::SwapHome {
  protected:
    WhoseSaves() {
        user.MayBeTold("have been saved in: C:\\Kelvash\\rescued_saves_");
        AddLevel(1, "City", {{"city.tr4", "CITY"}, {"script.dat", "city script"}},
                 {{"savegame.0", "old city"}});
        AddLevel(2, "Coast", {{"coast.tr4", "COAST"}}, {{"savegame.0", "old coast"}});
        for (const int code : {1, 2})
            test::MakeFile(LevelPath(code) / "tr4.inf", "files of level " + std::to_string(code));
        test::MakeFile(trle / "savegame.0", "original save");
        EXPECT_TRUE(InstallLevel(1));
        test::MakeFile(trle / "savegame.0", "city save");
        user.Forget();
    }
    void OpenOtherArchive() {
        levels = drive / "Other";
        core::archive.Header.MainFolder = "C:\\Other";
        core::archive.Header.SecondaryFolder = "C:\\Other";
        core::archive.Table = {};
        AddLevel(0, "- TRLE: Original configuration -", {});
        AddLevel(1, "Mine", {{"mine.tr4", "MINE"}}, {{"savegame.0", "mine save"}});
        test::MakeFile(LevelPath(1) / "tr4.inf", "files of the mine");
    }
    fs::path CityStash() const { return drive / "Levels" / "LEVEL_0001" / "BACKUP_SAVEGAMES"; }
    std::string Rescued(int n) const {
        return test::BytesOf(home / ("rescued_saves_" + std::to_string(n)) / "savegame.0");
    }
};

TEST_F(WhoseSaves, AreTheirOwnersWhenAnotherArchiveIsOpen) {
    OpenOtherArchive();
    EXPECT_EQ(CurrentLevelCode(), kNoLevel);
    EXPECT_EQ(LookAtTrle().OwnerFolder, "C:\\Levels\\LEVEL_0001");
    ASSERT_TRUE(InstallLevel(1)); // not the one that is in already
    EXPECT_EQ(test::BytesOf(CityStash() / "savegame.0"), "city save");
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "mine save");
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "mine save");
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
    EXPECT_TRUE(test::Exists(trle / "data" / "mine.tr4"));
    EXPECT_EQ(CurrentLevelCode(), 1);
}

TEST_F(WhoseSaves, GoHomeFromARestoreWithAnotherArchiveOpen) {
    OpenOtherArchive();
    EXPECT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(CityStash() / "savegame.0"), "city save");
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "original save");
    EXPECT_EQ(CurrentLevelCode(), 0);
}

TEST_F(WhoseSaves, GoHomeWhenTheMarkerIsGoneEmptyCutOrEdited) {
    const std::string marker = Marker();
    const std::string damages[] = {"-", "", marker.substr(0, 130),
                                   "#LEVEL_CODE=0002#\r\n#LEVEL_NAME=Coast#\r\n", "nonsense"};
    for (const std::string& damage : damages) {
        SCOPED_TRACE(damage);
        if (damage == "-")
            fs::remove(trle / "Kelvash.txt");
        else
            test::MakeFile(trle / "Kelvash.txt", damage);
        EXPECT_EQ(CurrentLevelCode(), 1);
        ASSERT_TRUE(InstallLevel(1)); // is in already; the marker is written anew
        EXPECT_EQ(Marker(), marker);
        if (damage == "-")
            fs::remove(trle / "Kelvash.txt");
        else
            test::MakeFile(trle / "Kelvash.txt", damage);
        ASSERT_TRUE(InstallLevel(2));
        EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
        EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "old coast");
        EXPECT_EQ(test::BytesOf(trle / "script.dat"), test::BytesOf(backup / "script.dat"));
        EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
        ASSERT_TRUE(InstallLevel(1));
        EXPECT_EQ(Marker(), marker);
    }
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(WhoseSaves, AreNobodysWhenTrleWasSetUpAnew) {
    fs::remove_all(trle);
    fs::copy(backup, trle, fs::copy_options::recursive);
    test::MakeFile(trle / "savegame.0", "of whom");
    EXPECT_EQ(CurrentLevelCode(), 0);
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(Rescued(1), "of whom");
    EXPECT_EQ(test::BytesOf(StashPath(0) / "savegame.0"), "original save");
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "old city");
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "original save");
}

TEST_F(WhoseSaves, AreRescuedWhenTheirLevelsFolderIsGone) {
    fs::remove_all(LevelPath(1));
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_THAT(user.Told(),
                ElementsAre(HasSubstr("critical: I cann't find level folder [C:\\Levels\\LEVEL_0001]"),
                            HasSubstr("rescued_saves_1")));
    EXPECT_EQ(Rescued(1), "city save");
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "old coast");
    EXPECT_TRUE(test::Exists(trle / "data" / "city.tr4")) << "its files stay for now";
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4")) << "and go with the next level";
    EXPECT_EQ(test::BytesOf(trle / "script.dat"), test::BytesOf(backup / "script.dat"));
    const std::vector<RescuedSaves> rescued = ListRescuedSaves();
    ASSERT_EQ(rescued.size(), 1U);
    EXPECT_EQ(rescued[0].From, "the level \"City\", whose folder was C:\\Levels\\LEVEL_0001");
    EXPECT_THAT(rescued[0].Files, ElementsAre("C:\\Kelvash\\rescued_saves_1\\savegame.0"));
}

TEST_F(WhoseSaves, OfALevelWhoseFolderIsGoneAreRescuedByARestoreThatTakesItOut) {
    user.MayBeTold("I cann't find level folder");
    fs::remove_all(LevelPath(1));
    EXPECT_TRUE(InstallLevel(0));
    EXPECT_EQ(Rescued(1), "city save");
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "original save");
}

TEST_F(WhoseSaves, AreToldOnceAtTheNextStart) {
    user.MayBeTold("I cann't find level folder");
    fs::remove_all(LevelPath(1));
    ASSERT_TRUE(InstallLevel(0));
    user.Forget();
    TellRescuedSaves();
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: There are savegames, screenshots and notes that had no "
                            "place. They wait in:\r\nC:\\Kelvash\\rescued_saves_1"));
    user.Forget();
    TellRescuedSaves();
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(WhoseSaves, AreTheMarkersWithoutARecordIfTheNameAgrees) {
    fs::remove(NativePath(SwapRecordPath()));
    EXPECT_EQ(CurrentLevelCode(), 1);
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
}

// Nobody knows then what came in with the level, so that the date alone decides.
TEST_F(WhoseSaves, NewerInTheStashStayThereWithoutARecord) {
    fs::remove(NativePath(SwapRecordPath()));
    const auto now = fs::file_time_type::clock::now();
    const auto put = [&](const fs::path& file, const std::string& bytes, std::chrono::hours age) {
        test::MakeFile(file, bytes);
        fs::last_write_time(file, now - age);
    };
    put(trle / "savegame.3", "older, of the root", std::chrono::hours(2));
    put(StashPath(1) / "savegame.3", "newer, of the stash", std::chrono::hours(1));
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.3"), "newer, of the stash");
    EXPECT_EQ(test::BytesOf(home / "rescued_saves_1" / "savegame.3"), "older, of the root");
    EXPECT_FALSE(test::Exists(trle / "savegame.3"));
}

TEST_F(WhoseSaves, AreNobodysWithoutARecordWhenTheNameIsAnothers) {
    user.MayBeTold(
        "Files of the TRLE folder that the backup doesn't hold made way: 2."); // whose, nobody knows
    for (const bool damaged : {false, true}) {
        SCOPED_TRACE(damaged);
        const fs::path record = NativePath(SwapRecordPath());
        if (damaged)
            test::MakeFile(record, "damaged");
        else
            fs::remove(record);
        core::archive.Table.Edit(1)->Name = "Town";
        EXPECT_EQ(CurrentLevelCode(), kNoLevel);
        ASSERT_TRUE(InstallLevel(2));
        EXPECT_EQ(Rescued(damaged ? 2 : 1), "city save");
        EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "old city");
        EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
        core::archive.Table.Edit(1)->Name = "City";
        ASSERT_TRUE(InstallLevel(1));
        test::MakeFile(trle / "savegame.0", "city save");
    }
}

TEST_F(WhoseSaves, AreNobodysWhenRecordAndMarkerAreDamaged) {
    test::MakeFile(NativePath(SwapRecordPath()), "damaged");
    fs::remove(trle / "Kelvash.txt");
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(Rescued(1), "city save");
    EXPECT_EQ(test::BytesOf(StashPath(0) / "savegame.0"), "original save");
}

TEST_F(WhoseSaves, OnlyWhatTheRecordBroughtInIsEmptied) {
    test::MakeFile(StashPath(1) / "savegame.7", "put there meanwhile");
    test::MakeFile(StashPath(1) / "savegame.0", "this too");
    fs::last_write_time(StashPath(1) / "savegame.0",
                        fs::last_write_time(trle / "savegame.0") - std::chrono::hours(1));
    fs::remove(trle / "savegame.0");
    test::MakeFile(trle / "savegame.0", "city save");
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.7"), "put there meanwhile");
    EXPECT_EQ(Rescued(1), "this too");
}

TEST_F(WhoseSaves, ThatThePlayerDeletedDoNotComeBack) {
    fs::remove(trle / "savegame.0");
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_THAT(NamesIn(StashPath(1)), IsEmpty());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(WhoseSaves, GoHomeWhenTheLevelsMoved) {
    fs::copy(drive / "Levels", drive / "New", fs::copy_options::recursive);
    ASSERT_TRUE(core::NoteLevelsMoved("C:\\Levels", "C:\\New"));
    fs::remove_all(drive / "Levels");
    levels = drive / "New";
    core::archive.Header.SecondaryFolder = "C:\\New";
    EXPECT_EQ(CurrentLevelCode(), 1);
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
}

// A disk that is full lets a move neither finish nor take its note of the new place back.
TEST_F(WhoseSaves, GoHomeWhereAMoveDidNotEnd) {
    fs::remove(LevelPath(1) / "tr4.inf");
    ASSERT_TRUE(InstallLevel(2));
    ASSERT_TRUE(InstallLevel(1));
    fs::copy(drive / "Levels", drive / "New", fs::copy_options::recursive);
    ASSERT_TRUE(core::NoteLevelsMoved("C:\\Levels", "C:\\New"));
    fs::remove_all(drive / "New");
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(WhoseSaves, DoNotGoToTheFormerPlaceAfterAMove) {
    fs::remove(LevelPath(1) / "tr4.inf");
    ASSERT_TRUE(InstallLevel(2));
    ASSERT_TRUE(InstallLevel(1));
    fs::copy(drive / "Levels", drive / "New", fs::copy_options::recursive);
    ASSERT_TRUE(core::NoteLevelsMoved("C:\\Levels", "C:\\New"));
    core::NoteMoveEnded();
    fs::remove_all(drive / "New");
    user.MayBeTold("I cann't find level folder");
    user.MayBeTold("Savegames, screenshots and notes");
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(Rescued(1), "city save");
}

TEST_F(WhoseSaves, StayWhereTheyAreWhileTrleCannotBeRead) {
    fs::rename(trle, drive / "unplugged");
    EXPECT_FALSE(InstallLevel(2));
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: The TRLE folder can't be read now. Nothing has been changed: C:\\trle"));
    EXPECT_EQ(CurrentLevelCode(), 1);
    fs::rename(drive / "unplugged", trle);
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
}

TEST_F(WhoseSaves, OfALevelThatCannotBeTakenOutKeepTheirLevel) {
    user.MayBeTold("I cann't find level folder");
    core::RefreshLevelList();
    core::SelectLevel(1);
    fs::remove_all(LevelPath(1));
    user.WillAnswer("Are you sure to want remove level", "yes");
    EXPECT_FALSE(program::RemoveLevel());
    EXPECT_EQ(
        user.Told().back(),
        "exclamation: The level is still in Tomb Raider Level Editor folder, so it has not been removed");
    EXPECT_EQ(core::LevelIndex(1), 1);
    EXPECT_EQ(Rescued(1), "city save");
}

TEST_F(WhoseSaves, AreNotLostByAFullRestoreWhoseSwapFailed) {
    user.MayBeTold("I cann't find level folder");
    fs::remove_all(LevelPath(1));
    test::MakeFile(trle / "data" / "city.tr4.bak", "x");
    fs::remove(trle / "data" / "city.tr4");
    fs::create_directory(trle / "data" / "city.tr4"); // can't be deleted as a file
    user.MayBeTold("I cann't delete file: C:\\trle\\data\\city.tr4");
    user.MayBeTold("Files of the TRLE folder that the backup doesn't hold made way");
    Bar bar;
    FullRestore(bar, false);
    EXPECT_EQ(Rescued(1), "city save");
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_EQ(CurrentLevelCode(), 0);
}

TEST_F(WhoseSaves, GoHomeThoughTheBackupIsGoneAndTheLevelStays) {
    fs::remove_all(backup);
    EXPECT_FALSE(InstallLevel(2));
    EXPECT_THAT(
        user.Told(),
        Contains("critical: The level can't leave the TRLE folder: the backup of the original files is "
                 "gone or damaged\r\nIts savegames have been copied into its own folder"));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "city save");
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "city save");
    EXPECT_EQ(CurrentLevelCode(), 1);
    EXPECT_EQ(test::BytesOf(trle / "script.dat"), "city script");
}

} // namespace
} // namespace kelvash::swap
