#include "swap/backup.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/profile.h"
#include "support/swap_home.h"

namespace kelvash::swap {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

constexpr const char* kOriginal =
    "Kelvash needs the original Tomb Raider Level Editor files to handle swapping custom levels with "
    "intermediate "
    "restore of original file.\r\nCurrent installed configuration of Tomb Raider Level Editor in C:\\trle is "
    "original?\r\n(Note: If you played custom level after last setup you should select NO button)";
constexpr const char* kKind =
    "Do you want a full backup? (About 240 MB) \r\nNote: if you select NO will be done a compact backup with "
    "files of "
    "following folder of trle: main, data and graphics\\wads. (about 90 MB))\r\nWarning: Compact backup does "
    "not allow "
    "to handle correctly backup and restore for .wav files";

class Backup : public test::SwapHome {
  protected:
    Backup() {
        fs::remove_all(backup);
        core::profile.FullBackup = false;
        test::MakeFile(trle / "graphics" / "wads" / "deep.wad", "WAD");
        test::MakeFile(trle / "box.log", "log");
        test::MakeFile(trle / "notes.doc", "of the user");
    }
};

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
                ElementsAre("Removing old backup files in progress...", "Copying files in progress...", ""));
}

TEST_F(Backup, RefreshOfACompactOneMayKeepTheOldFiles) {
    test::MakeFile(backup / "data" / "old.tr4", "");
    user.WillAnswer("Remove old backup files before creating new backup?", "no");
    user.WillAnswer(kOriginal, "yes");
    RefreshFullBackup();
    EXPECT_TRUE(test::Exists(backup / "data" / "old.tr4"));
    EXPECT_TRUE(core::profile.FullBackup);
}

TEST_F(Backup, RefreshThatFailsIsTold) {
    user.WillAnswer("Remove old backup files", "no");
    user.WillAnswer(kOriginal, "no");
    RefreshFullBackup();
    EXPECT_THAT(user.Told(), Contains("critical: Error creating full backup in : C:\\Kelvash\\backup_trle"));
}

} // namespace
} // namespace kelvash::swap
