#include "swap/backup.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <regex>

#include "core/archive.h"
#include "core/ports.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "support/swap_home.h"
#include "swap/backup_home.h"
#include "swap/install.h"
#include "trle_state/swap_record.h"

namespace kelvash::swap {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

constexpr const char* kKind =
    "Do you want a full backup? (About 240 MB) \r\nNote: if you select NO will be done a compact backup with "
    "files of "
    "following folder of trle: main, data and graphics\\wads. (about 90 MB))\r\nWarning: Compact backup does "
    "not allow "
    "to handle correctly backup and restore for .wav files";

TEST_F(Backup, IsValidWithADatABitmapAndALevel) {
    EXPECT_FALSE(BackupIsValid());
    test::MakeFile(backup / "english.dat", "");
    test::MakeFile(backup / "data" / "title.tr4", "");
    EXPECT_FALSE(BackupIsValid()) << "no bitmap in the root";
    test::MakeFile(backup / "graphics" / "x.bmp", "");
    EXPECT_FALSE(BackupIsValid()) << "a bitmap elsewhere is none in the root";
    test::MakeFile(backup / "LOAD.BMP", "");
    EXPECT_TRUE(BackupIsValid());
}

TEST_F(Backup, ThatIsValidIsLeftAlone) {
    fs::copy(trle, backup, fs::copy_options::recursive);
    EXPECT_TRUE(CreateBackup(false));
    EXPECT_THAT(user.Asked(), IsEmpty());
}

TEST_F(Backup, OfAFolderThatHasGoneIsNotCalledMade) {
    user.WillAnswer(kOriginal, "yes");
    user.WillAnswer(kKind, "yes");
    fs::rename(trle, trle.parent_path() / "gone");
    EXPECT_FALSE(CreateBackup(false));
    EXPECT_THAT(user.Told(), Contains("critical: The TRLE folder isn't there any more: C:\\trle"));
    EXPECT_FALSE(test::Exists(backup));
}

TEST_F(Backup, FullHoldsTheWholeTree) {
    user.WillAnswer(kOriginal, "yes");
    user.WillAnswer(kKind, "yes");
    ASSERT_TRUE(CreateBackup(false));
    EXPECT_TRUE(core::profile.FullBackup);
    EXPECT_EQ(test::BytesOf(backup / "notes.doc"), "of the user");
    EXPECT_EQ(test::BytesOf(backup / "audio" / "053.wav"), test::BytesOf(trle / "audio" / "053.wav"));
    EXPECT_EQ(test::BytesOf(backup / "graphics" / "wads" / "deep.wad"), "WAD");
    EXPECT_TRUE(BackupIsValid());
}

TEST_F(Backup, CompactHoldsTheRootsKindsAndTwoTrees) {
    user.WillAnswer(kOriginal, "yes");
    user.WillAnswer(kKind, "no");
    ASSERT_TRUE(CreateBackup(false));
    EXPECT_FALSE(core::profile.FullBackup);
    EXPECT_EQ(test::BytesOf(backup / "box.log"), "log");
    EXPECT_FALSE(test::Exists(backup / "notes.doc"));
    EXPECT_FALSE(test::Exists(backup / "tomb4.exe"));
    EXPECT_EQ(test::BytesOf(backup / "GRAPHICS" / "WADS" / "deep.wad"), "WAD");
    for (const char* folder : {"AUDIO", "EXTRA TEXTURE", "LOGO", "MANUAL", "MAPS", "SCRIPT",
                               "SOUND/LEVELSFX CREATOR", "SOUND/SAMPLES"}) {
        EXPECT_TRUE(fs::is_directory(backup / folder)) << folder;
        EXPECT_TRUE(fs::is_empty(backup / folder)) << folder;
    }
    EXPECT_THAT(user.Shown(),
                ElementsAre("Creation compact backup", "Creation folder structure in progress...",
                            "Copy files from TRLE folder ...", "Copy files from DATA folder ...",
                            "Copy files from GRAPHICS folder ..."));
    EXPECT_TRUE(BackupIsValid());
}

TEST_F(Backup, OfAFolderThatIsNotOriginalTellsWhatToDo) {
    user.WillAnswer(kOriginal, "no");
    EXPECT_FALSE(CreateBackup(false));
    EXPECT_THAT(
        user.Told(),
        ElementsAre(
            "critical: Tips: \r\n* If there are savegames of custom level you played in trle forlder, save "
            "them "
            "in new folder and then, when you add that level to archive, add also that savegames folder in "
            "'about file' for that level",
            "critical: You must perform a new setup of Tomb Raider Level Editor overwritting current "
            "files.\r\nKelvash should start with an original configuration of Tomb Raider Level "
            "Editor.\r\nNow press [OK] to terminate program and repeat setup of TRLE, then you could start "
            "newly Kelvash"));
    EXPECT_FALSE(test::Exists(backup));
}

TEST_F(Backup, ForcedAsksNeitherKindNorRoom) {
    fs::copy(trle, backup, fs::copy_options::recursive);
    test::MakeFile(trle / "script.dat", "newer");
    user.WillAnswer(kOriginal, "yes");
    ASSERT_TRUE(CreateBackup(true));
    EXPECT_THAT(user.Asked(), ElementsAre(kOriginal));
    EXPECT_EQ(test::BytesOf(backup / "script.dat"), "newer");
    EXPECT_TRUE(core::profile.FullBackup);
}

TEST_F(Backup, FullWithoutWavesCountsAsCompact) {
    fs::remove_all(trle / "audio");
    user.WillAnswer(kOriginal, "yes");
    ASSERT_TRUE(CreateBackup(true));
    EXPECT_FALSE(core::profile.FullBackup);
}

TEST_F(Backup, FullWithoutScriptsCountsAsCompact) {
    fs::remove_all(trle / "script");
    user.WillAnswer(kOriginal, "yes");
    ASSERT_TRUE(CreateBackup(true));
    EXPECT_FALSE(core::profile.FullBackup);
}

TEST_F(Backup, CompactThatCannotBeMadeNamesTheArchivesFolder) {
    test::MakeFile(backup, "a file where the folder should be");
    user.WillAnswer(kOriginal, "yes");
    user.WillAnswer(kKind, "no");
    EXPECT_FALSE(CreateBackup(false));
    EXPECT_THAT(user.Told(), ElementsAre("critical: I cannot write in folder: C:\\Levels"));
}

TEST_F(Backup, FullThatCannotBeMadeTellsTheFolder) {
    test::MakeFile(backup, "a file where the folder should be");
    user.WillAnswer(kOriginal, "yes");
    EXPECT_FALSE(CreateBackup(true));
    EXPECT_THAT(user.Told(), ElementsAre("critical: I can not create 'C:\\Kelvash\\backup_trle' folder"));
}

TEST_F(Backup, RefreshOfAFullOneAsksFirst) {
    core::profile.FullBackup = true;
    user.WillAnswer(
        "Current backup is already FULL\r\nDo you want to refresh backup_trle folder copying all files of "
        "[C:\\trle] folder",
        "no");
    RefreshFullBackup();
    EXPECT_FALSE(test::Exists(backup));
}

TEST_F(Backup, RefreshRemovesTheOldFiles) {
    test::MakeFile(backup / "data" / "old.tr4", "");
    core::profile.FullBackup = true;
    user.WillAnswer("Current backup is already FULL", "yes");
    user.WillAnswer(kOriginal, "yes");
    RefreshFullBackup();
    EXPECT_FALSE(test::Exists(backup / "data" / "old.tr4"));
    EXPECT_TRUE(test::Exists(backup / "tomb4.exe"));
    EXPECT_THAT(user.Shown(),
                ElementsAre("Copying files in progress...", "Removing old backup files in progress...", ""));
    EXPECT_THAT(Backups(), ElementsAre("backup_trle", "backup_trle.txt"));
}

TEST_F(Backup, RefreshOfACompactOneMayKeepTheOldFiles) {
    test::MakeFile(backup / "data" / "old.tr4", "");
    user.WillAnswer("Remove old backup files before creating new backup?", "no");
    user.WillAnswer(kOriginal, "yes");
    RefreshFullBackup();
    EXPECT_TRUE(test::Exists(backup / "data" / "old.tr4"));
    EXPECT_TRUE(core::profile.FullBackup);
}

TEST_F(Backup, RefreshEndsWhereNobodySaysWhetherTheOldFilesStay) {
    test::MakeFile(backup / "data" / "old.tr4", "old");
    user.WillAnswer("Remove old backup files before creating new backup?", "cancel");
    RefreshFullBackup();
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_THAT(NamesIn(backup / "data"), ElementsAre("old.tr4"));
    EXPECT_THAT(Backups(), ElementsAre("backup_trle"));
}

TEST_F(Backup, RefreshNeverRunsWhileALevelIsIn) {
    core::profile.FullBackup = true;
    test::MakeFile(trle / "Kelvash.txt", "#LEVEL_CODE=0003#\r\n");
    RefreshFullBackup();
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: A custom level is in the Tomb Raider Level Editor folder "
                            "C:\\trle\r\nSet the original configuration before you refresh the backup"));
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_FALSE(test::Exists(backup));
}

TEST_F(Backup, OfAFolderWithAMarkerIsRefusedWhateverItSays) {
    for (const char* marker : {"", "#LEVEL_CODE=0012#\r\n"}) {
        test::MakeFile(trle / "Kelvash.txt", marker);
        EXPECT_FALSE(CreateBackup(false));
        EXPECT_FALSE(CreateBackup(true));
    }
    EXPECT_THAT(user.Told(),
                testing::Each("critical: In the Tomb Raider Level Editor folder C:\\trle there is a custom "
                              "level (file Kelvash.txt), so it can not be taken for the original "
                              "configuration.\r\nTake the level out or perform a new setup of TRLE, then the "
                              "backup can be made."));
    EXPECT_EQ(user.Told().size(), 4U);
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_THAT(Backups(), IsEmpty());
}

// A level's files are there, and whoever could tell so is damaged.
class BackupOfWhoKnows : public Backup {
  protected:
    BackupOfWhoKnows() {
        AddLevel(1, "Gate", {{"gate.tr4", "GATE"}});
        AddLevel(2, "Maze", {{"maze.tr4", "MAZE"}});
        fs::copy(trle, backup, fs::copy_options::recursive);
        EXPECT_TRUE(InstallLevel(1));
        fs::remove_all(backup);
        test::MakeFile(NativePath(trle_state::SwapRecordPath()), "cut");
        fs::remove(trle / "Kelvash.txt");
        user.Forget();
    }
    static constexpr const char* kUnknown =
        "critical: Nothing says whether a custom level is in the Tomb Raider Level Editor folder C:\\trle: "
        "what "
        "told of it is damaged. So it can not be taken for the original configuration.\r\nIf there is a "
        "level in "
        "it perform a new setup of TRLE. Then set the original configuration, and the backup can be made.";
};

TEST_F(BackupOfWhoKnows, IsRefusedBeforeAnybodyIsAsked) {
    EXPECT_FALSE(CreateBackup(false));
    EXPECT_FALSE(CreateBackup(true));
    RefreshFullBackup();
    EXPECT_THAT(user.Told(), ElementsAre(kUnknown, kUnknown, kUnknown));
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_THAT(Backups(), IsEmpty());
}

TEST_F(BackupOfWhoKnows, IsNotMadeAtTheDoorOfAnInstall) {
    for (const char* marker : {static_cast<const char*>(nullptr), ": cut"}) {
        if (marker != nullptr) test::MakeFile(trle / "Kelvash.txt", marker);
        EXPECT_FALSE(InstallLevel(2));
        EXPECT_THAT(user.Told(), ElementsAre(kUnknown));
        user.Forget();
    }
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_THAT(Backups(), IsEmpty());
    EXPECT_EQ(trle_state::ReadSwapRecord().State, trle_state::RecordState::Damaged) << "nothing is claimed";
}

TEST_F(BackupOfWhoKnows, IsMadeOnceTheOriginalConfigurationIsSet) {
    ASSERT_TRUE(InstallLevel(0));
    user.WillAnswer(kOriginal, "yes");
    EXPECT_TRUE(CreateBackup(true));
    EXPECT_TRUE(BackupIsValid());
}

TEST_F(Backup, ThatIsStoppedLeavesNothing) {
    user.stop = true;
    user.WillAnswer(kOriginal, "yes");
    user.WillAnswer(kKind, "yes");
    EXPECT_FALSE(CreateBackup(false));
    EXPECT_FALSE(BackupIsValid());
    EXPECT_THAT(Backups(), IsEmpty());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Backup, RefreshThatIsStoppedIsNoError) {
    fs::copy(trle, backup, fs::copy_options::recursive);
    user.stop = true;
    user.WillAnswer("Remove old backup files", "yes");
    user.WillAnswer(kOriginal, "yes");
    RefreshFullBackup();
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_TRUE(BackupIsValid());
    EXPECT_THAT(Backups(), ElementsAre("backup_trle"));
}

TEST_F(Backup, LeftByAKilledRunIsMadeAnew) {
    test::MakeFile(home / "backup_trle_new" / "half.dat", "half");
    test::MakeFile(home / "backup_trle_new" / "half.bmp", "half");
    test::MakeFile(home / "backup_trle_new" / "data" / "half.tr4", "half");
    user.WillAnswer(kOriginal, "yes");
    user.WillAnswer(kKind, "yes");
    ASSERT_TRUE(CreateBackup(false));
    EXPECT_THAT(Backups(), ElementsAre("backup_trle", "backup_trle.txt"));
    EXPECT_FALSE(test::Exists(backup / "half.dat"));
}

TEST_F(Backup, ThatIsWholeIsPutInItsPlaceByTheNextStart) {
    fs::copy(trle, home / "backup_trle_new", fs::copy_options::recursive);
    test::MakeFile(home / "backup_trle_new.txt", "#TRLE_FOLDER=C:\\trle\r\n#KIND=full\r\n");
    test::MakeFile(home / "backup_trle_old" / "data" / "old.tr4", "old");
    EXPECT_TRUE(CreateBackup(false));
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_THAT(Backups(), ElementsAre("backup_trle", "backup_trle.txt"));
    EXPECT_TRUE(BackupIsValid());
}

TEST_F(Backup, ThatWasPutAsideComesBackWhereNoneTookItsPlace) {
    fs::copy(trle, home / "backup_trle_old", fs::copy_options::recursive);
    EXPECT_TRUE(CreateBackup(false));
    EXPECT_THAT(Backups(), ElementsAre("backup_trle"));
}

TEST_F(Backup, LeavesTheProgramsOwnFolderInsideTrleOut) {
    fs::create_directories(drive / "trle/tools/Kelvash");
    ASSERT_TRUE(SetAppFolder(drive / "trle/tools/Kelvash"));
    test::MakeFile(drive / "trle/tools/other.txt", "other");
    for (int run = 0; run < 2; ++run) {
        user.WillAnswer(kOriginal, "yes");
        ASSERT_TRUE(CreateBackup(true));
    }
    const fs::path own = drive / "trle/tools/Kelvash/backup_trle";
    EXPECT_EQ(test::BytesOf(own / "tools/other.txt"), "other");
    EXPECT_EQ(test::BytesOf(own / "data/title.tr4"), test::BytesOf(trle / "data/title.tr4"));
    EXPECT_FALSE(test::Exists(own / "tools/Kelvash"));
}

TEST_F(Backup, TellsItsFolderAndKindInANote) {
    test::MakeFile(trle / "tomb4.exe", "123456789");
    user.WillAnswer(kOriginal, "yes");
    user.WillAnswer(kKind, "no");
    ASSERT_TRUE(CreateBackup(false));
    const std::string note = test::BytesOf(home / "backup_trle.txt");
    EXPECT_THAT(note, testing::StartsWith(": Don't remove this file! It tells which folder the backup beside "
                                          "it is of.\r\n#TRLE_FOLDER=C:\\trle\r\n#TOMB4=CBF43926 "
                                          "9\r\n#KIND=compact\r\n#DATE="));
    EXPECT_EQ(core::BackupIsFull(), false);
}

TEST_F(Backup, OfAKindThatACrashHasLostIsKnownByTheNote) {
    user.WillAnswer(kOriginal, "yes");
    ASSERT_TRUE(CreateBackup(true));
    core::profile = {};
    EXPECT_EQ(core::LoadProfile(), core::ProfileState::FirstRun);
    EXPECT_TRUE(core::profile.FullBackup);
}

// --- the door of install and restore ---

constexpr const char* kChoices =
    "\r\nWithout it no level can be installed and nothing can be restored.\r\n[Yes] makes the backup "
    "now\r\n[No] chooses the TRLE folder anew\r\n[Cancel] leaves everything as it is";

TEST_F(Backup, OfThisFolderOpensTheDoor) {
    fs::copy(trle, backup, fs::copy_options::recursive);
    PutNote("c:\\TRLE", "other", "full");
    EXPECT_EQ(StateOfBackup(), BackupState::Valid);
    EXPECT_EQ(RequireBackup(), Door::Open);
    EXPECT_THAT(user.Asked(), IsEmpty());
}

TEST_F(Backup, ThatIsMissingClosesTheDoor) {
    const std::string missing =
        std::string(
            "There is no valid backup of the original files of the Tomb Raider Level Editor folder "
            "C:\\trle") +
        kChoices;
    EXPECT_EQ(StateOfBackup(), BackupState::Missing);
    user.WillAnswer("There is no valid backup", "cancel");
    EXPECT_EQ(RequireBackup(), Door::Closed);
    EXPECT_THAT(user.Asked(), ElementsAre(missing));
    user.WillAnswer("There is no valid backup", "yes");
    user.WillAnswer(kOriginal, "yes");
    user.WillAnswer(kKind, "yes");
    EXPECT_EQ(RequireBackup(), Door::Open);
    EXPECT_EQ(StateOfBackup(), BackupState::Valid);
    user.Forget();
    EXPECT_EQ(RequireBackup(), Door::Open);
    EXPECT_THAT(user.Asked(), IsEmpty());
}

TEST_F(Backup, ThatIsMissingStaysSoAfterANoAtTheOriginalQuestion) {
    user.MayBeTold("Tips: ");
    user.MayBeTold("You must perform a new setup");
    user.WillAnswer("There is no valid backup", "yes");
    user.WillAnswer(kOriginal, "no");
    EXPECT_EQ(RequireBackup(), Door::Closed);
    EXPECT_FALSE(test::Exists(backup));
}

TEST_F(Backup, ThatIsMissingMayBeAMatterOfTheFolder) {
    fs::copy(trle, drive / "other", fs::copy_options::recursive);
    fs::copy(trle, backup, fs::copy_options::recursive);
    test::MakeFile(trle / "tomb4.exe", "another game");
    PutNote("C:\\other", "", "full");
    test::MakeFile(backup / "tomb4.exe", "another game");
    PutNote("C:\\other", "00000000 1", "full");
    const std::string foreign = std::string(
                                    "The backup of original files is not of the Tomb Raider Level "
                                    "Editor folder C:\\trle but of C:\\other") +
                                kChoices;
    EXPECT_EQ(StateOfBackup(), BackupState::Foreign);
    user.WillAnswer("not of the Tomb Raider Level Editor folder C:\\trle", "no");
    EXPECT_EQ(RequireBackup(), Door::Elsewhere);
    EXPECT_THAT(user.Asked(), ElementsAre(foreign));
    EXPECT_EQ(core::profile.TrleFolder, "C:\\trle") << "its operation has to be ended first";
}

TEST_F(Backup, OfAnotherFolderIsKeptWhenANewOneIsMade) {
    test::MakeFile(backup / "theirs.dat", "theirs");
    test::MakeFile(backup / "theirs.bmp", "theirs");
    test::MakeFile(backup / "data" / "theirs.tr4", "theirs");
    PutNote("C:\\other", "00000000 1", "compact");
    user.WillAnswer("not of the Tomb Raider Level Editor folder C:\\trle", "yes");
    user.WillAnswer(kOriginal, "yes");
    user.WillAnswer(kKind, "yes");
    ASSERT_EQ(RequireBackup(), Door::Open);
    EXPECT_FALSE(test::Exists(backup / "theirs.dat"));
    const std::vector<std::string> names = Backups();
    ASSERT_EQ(names.size(), 4U);
    EXPECT_TRUE(std::regex_match(names[2], std::regex("backup_trle_[0-9]{4}-[0-9]{2}-[0-9]{2}_[0-9]{6}")))
        << names[2];
    EXPECT_EQ(names[3], names[2] + ".txt");
    EXPECT_EQ(test::BytesOf(home / names[2] / "data/theirs.tr4"), "theirs");
    EXPECT_THAT(test::BytesOf(home / names[3]), testing::HasSubstr("#TRLE_FOLDER=C:\\other\r\n"));
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: The former backup is of another Tomb Raider Level Editor folder. It "
                    "is kept in: C:\\Kelvash\\" +
                    names[2]));
}

TEST_F(Backup, OfAMovedFolderIsAskedForOnce) {
    user.WillAnswer(kOriginal, "yes");
    ASSERT_TRUE(CreateBackup(true));
    fs::rename(trle, drive / "moved");
    core::profile.TrleFolder = "C:\\moved";
    user.Forget();
    EXPECT_EQ(StateOfBackup(), BackupState::Unsure);
    user.WillAnswer(
        "The backup of original files was made of the folder C:\\trle\r\nHas that folder been "
        "moved, so that it is now C:\\moved ?",
        "yes");
    EXPECT_EQ(RequireBackup(), Door::Open);
    EXPECT_EQ(RequireBackup(), Door::Open);
    EXPECT_EQ(user.Asked().size(), 1U);
    EXPECT_TRUE(core::profile.FullBackup);
}

TEST_F(Backup, WithoutANoteIsKnownByItsGame) {
    fs::copy(trle, backup, fs::copy_options::recursive);
    EXPECT_EQ(StateOfBackup(), BackupState::Valid);
    test::MakeFile(trle / "tomb4.exe", "another game");
    EXPECT_EQ(StateOfBackup(), BackupState::Foreign);
    user.WillAnswer("The backup of original files is of another folder than C:\\trle", "cancel");
    EXPECT_EQ(RequireBackup(), Door::Closed);
}

TEST_F(Backup, WithoutNoteAndGameIsAskedForOnce) {
    fs::copy(trle, backup, fs::copy_options::recursive);
    fs::remove(backup / "tomb4.exe");
    const char* const question =
        "Is the backup of original files in C:\\Kelvash\\backup_trle that of the "
        "Tomb Raider Level Editor folder C:\\trle ?";
    user.WillAnswer(question, "no");
    user.WillAnswer("is of another folder than C:\\trle", "cancel");
    EXPECT_EQ(RequireBackup(), Door::Closed);
    user.WillAnswer(question, "yes");
    EXPECT_EQ(RequireBackup(), Door::Open);
    EXPECT_EQ(RequireBackup(), Door::Open);
    EXPECT_EQ(user.Asked().size(), 3U);
}

TEST_F(Backup, ThatTheUserCallsForeignIsNeverMixedIntoTheNewOne) {
    user.MayBeTold("The former backup is of another");
    fs::copy(trle, backup, fs::copy_options::recursive);
    fs::remove(backup / "tomb4.exe");
    test::MakeFile(backup / "data" / "theirs.tr4", "theirs");
    user.WillAnswer("Is the backup of original files in", "no");
    user.WillAnswer("is of another folder than C:\\trle", "yes");
    user.WillAnswer(kOriginal, "yes");
    user.WillAnswer(kKind, "no");
    ASSERT_EQ(RequireBackup(), Door::Open);
    EXPECT_FALSE(test::Exists(backup / "data" / "theirs.tr4"));
    EXPECT_EQ(Backups().size(), 3U); // with its note, and the former one that never had one
}

TEST_F(Backup, NoteThatMakesNoSenseCountsForNothing) {
    fs::copy(trle, backup, fs::copy_options::recursive);
    fs::remove(backup / "tomb4.exe");
    for (const std::string& note :
         {std::string(), std::string("#TRLE_FOLDER=C:\\trle\r\n"), std::string("#KIND=full\r\n"),
          std::string("#TRLE_FOLDER=C:\\trle\r\n#KIND=half\r\n"), std::string(100000, '#'),
          std::string("\0\xFF\r\n#KIND", 9)}) {
        test::MakeFile(home / "backup_trle.txt", note);
        EXPECT_EQ(StateOfBackup(), BackupState::Unsure) << note.substr(0, 40);
    }
}

TEST_F(Backup, RefreshThatFailsIsTold) {
    user.WillAnswer("Remove old backup files", "no");
    user.WillAnswer(kOriginal, "no");
    RefreshFullBackup();
    EXPECT_THAT(user.Told(), Contains("critical: Error creating full backup in : C:\\Kelvash\\backup_trle"));
}

TEST_F(Backup, LiesInTheApplicationsFolder) {
    EXPECT_EQ(BackupFolder(), "C:\\Kelvash\\backup_trle");
}

} // namespace
} // namespace kelvash::swap
