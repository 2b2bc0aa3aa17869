#include "core/archive.h"

#include <gmock/gmock.h>

#include "cd/cd_access.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "support/core_home.h"

namespace kelvash::core {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class ArchiveTest : public test::CoreHome {
  protected:
    // A folder in place of the Archive's file, so that no write works.
    void BlockWrites() { fs::create_directory(kva); }
    // A one-level Archive of these folders at C:\Kelvash\other.kva, in bytes of its own.
    void MakeOther(const std::string& main, const std::string& secondary, int cd_count = 0,
                   std::int32_t level_count = 1) {
        std::string bytes(546, '\0');
        bytes.replace(4, 512, std::string(512, ' '));
        bytes.replace(4, main.size(), main);
        bytes.replace(260, secondary.size(), secondary);
        bytes[0] = 1;
        bytes[516] = static_cast<char>(level_count);
        bytes[520] = static_cast<char>(cd_count);
        for (std::int32_t i = 0; i < level_count; ++i) {
            std::string level(1634, ' ');
            const std::string name = "Other " + std::to_string(i);
            level.replace(0, name.size(), name);
            level.replace(1360, 8, std::string(8, '\0'));
            level[1360] = static_cast<char>(i * 5);
            level.replace(1624, 10, std::string(10, '\0'));
            bytes += level;
        }
        MakeFile(home / "other.kva", bytes);
    }

    static constexpr const char* kOther = "C:\\Kelvash\\other.kva";
};

// --- codes and folders ---

TEST_F(ArchiveTest, FindsALevelByItsCode) {
    AddRecord(7, "Seven");
    AddRecord(3, "Three");
    EXPECT_EQ(LevelIndex(0), 0);
    EXPECT_EQ(LevelIndex(7), 1);
    EXPECT_EQ(LevelIndex(3), 2);
    EXPECT_EQ(LevelIndex(4), -1);
    EXPECT_EQ(LevelIndex(-1), -1);
}

TEST_F(ArchiveTest, TakesTheFirstOfTwoLevelsWithOneCode) {
    AddRecord(7, "First");
    AddRecord(7, "Second");
    EXPECT_EQ(LevelIndex(7), 1);
    EXPECT_EQ(archive.Table.ByCode(7).Name, "First");
}

TEST_F(ArchiveTest, FallsBackToABlankRecordThatIsNoLevel) {
    EXPECT_EQ(LevelIndex(5), -1);
    EXPECT_EQ(archive.Table.ByCode(5).Name, "");
    EXPECT_EQ(archive.Table.ByCode(5).CdNumber, 0);
}

TEST_F(ArchiveTest, GivesTheHighestCodePlusOne) {
    EXPECT_EQ(archive.Table.NextCode(), 1);
    AddRecord(9, "Nine");
    AddRecord(4, "Four");
    EXPECT_EQ(archive.Table.NextCode(), 10) << "gaps are never filled";
    archive.Table.Remove(1);
    EXPECT_EQ(archive.Table.NextCode(), 5) << "the removed code is handed out again";
}

TEST_F(ArchiveTest, GivesZeroAsTheFirstCodeOfAnEmptyTable) {
    archive = ArchiveState();
    EXPECT_EQ(archive.Table.NextCode(), 0);
}

TEST_F(ArchiveTest, NamesALevelFolderWithAtLeastFourDigits) {
    EXPECT_EQ(LevelFolderName(0), "\\LEVEL_0000");
    EXPECT_EQ(LevelFolderName(12), "\\LEVEL_0012");
    EXPECT_EQ(LevelFolderName(9999), "\\LEVEL_9999");
    EXPECT_EQ(LevelFolderName(10000), "\\LEVEL_10000");
}

TEST_F(ArchiveTest, HasLevelZeroInTheApplicationsFolder) {
    archive.CdMissing = true;
    archive.Table.Edit(0)->CdNumber = 3;
    EXPECT_EQ(LevelFolder(0, false), "C:\\Kelvash\\LEVEL_0000");
    EXPECT_FALSE(archive.CdMissing);
    EXPECT_EQ(LevelFolder(0, true), "C:\\Kelvash\\LEVEL_0000");
    EXPECT_FALSE(archive.CdMissing);
}

TEST_F(ArchiveTest, HasOtherLevelsInTheSecondaryFolder) {
    AddRecord(12, "Twelve");
    archive.Header.MainFolder = "C:\\Main";
    archive.Header.SecondaryFolder = "  C:\\Levels ";
    EXPECT_EQ(LevelFolder(12, false), "C:\\Levels\\LEVEL_0012");
    EXPECT_EQ(LevelFolder(12, true), "C:\\Levels\\LEVEL_0012") << "it is on disk";
}

TEST_F(ArchiveTest, BuildsAFolderForAnUnknownCode) {
    EXPECT_EQ(LevelFolder(77, false), "C:\\Levels\\LEVEL_0077");
    EXPECT_EQ(LevelFolder(77, true), "C:\\Levels\\LEVEL_0077");
    EXPECT_FALSE(archive.CdMissing);
}

TEST_F(ArchiveTest, SaysOnceWhatACodeStandsFor) {
    AddRecord(12, "  Twelve ", 3);
    for (const LevelPlace& level : {PlaceOf(12), PlaceAt(1)}) {
        EXPECT_TRUE(level.IsListed());
        EXPECT_EQ(level.Code, 12);
        EXPECT_EQ(level.Index, 1);
        EXPECT_EQ(level.CdNumber, 3);
        EXPECT_EQ(level.Name, "Twelve");
        EXPECT_EQ(level.Folder, "C:\\Levels\\LEVEL_0012");
    }
    EXPECT_EQ(PlaceOf(0).Folder, "C:\\Kelvash\\LEVEL_0000");
}

TEST_F(ArchiveTest, SaysWhereALevelOfAnUnknownCodeWouldBe) {
    const LevelPlace level = PlaceOf(77);
    EXPECT_FALSE(level.IsListed());
    EXPECT_EQ(level.Code, 77);
    EXPECT_EQ(level.Name, "");
    EXPECT_EQ(level.Folder, "C:\\Levels\\LEVEL_0077");
    EXPECT_EQ(ReachFolder(level), "C:\\Levels\\LEVEL_0077");
}

TEST_F(ArchiveTest, GivesALevelOnCdItsTwoFolders) {
    AddRecord(12, "Twelve", 2);
    archive.Header.CdCount = 2;
    const fs::path disc = root / "disc";
    MakeFile(disc / "Tomb_2" / "LEVEL_0012" / "FILES" / "a.tr4", "");
    ASSERT_TRUE(SetDrive('E', disc, DriveType::CdRom));
    EXPECT_EQ(LevelFolder(12, false), "C:\\Levels\\LEVEL_0012");
    archive.CdMissing = true;
    EXPECT_EQ(LevelFolder(12, true), "E:\\Tomb_2\\LEVEL_0012");
    EXPECT_FALSE(archive.CdMissing);
    EXPECT_EQ(archive.Header.MainFolder, "E:\\Levels");
}

TEST_F(ArchiveTest, GivesNoFolderForARefusedCd) {
    AddRecord(12, "Twelve", 2);
    fs::create_directories(root / "disc");
    ASSERT_TRUE(SetDrive('E', root / "disc", DriveType::CdRom));
    user.WillFill<cd::CdDriveChoice>([](cd::CdDriveChoice& choice) {
        EXPECT_EQ(choice.Text, "Please, insert CD # 2");
        return false;
    });
    EXPECT_EQ(LevelFolder(12, true), "");
    EXPECT_TRUE(archive.CdMissing);
    EXPECT_EQ(archive.Header.MainFolder, "C:\\Levels");
    EXPECT_EQ(LevelFolder(12, false), "C:\\Levels\\LEVEL_0012");
    EXPECT_FALSE(archive.CdMissing) << "each call sets it anew";
}

TEST_F(ArchiveTest, NamesTheSubFoldersOfALevel) {
    EXPECT_EQ(FilesFolder("C:\\x"), "C:\\x\\files");
    EXPECT_EQ(SavegamesFolder("C:\\x"), "C:\\x\\savegames");
    EXPECT_EQ(StashFolder("C:\\x"), "C:\\x\\backup_savegames");
    EXPECT_EQ(ScreenshotsFolder("C:\\x"), "C:\\x\\screenshots");
}

TEST_F(ArchiveTest, MakesTheFourFoldersOfALevel) {
    EXPECT_TRUE(CreateLevelFolders("C:\\Levels\\LEVEL_0001"));
    const std::vector<std::string> made = {"BACKUP_SAVEGAMES\\", "FILES\\", "SAVEGAMES\\", "SCREENSHOTS\\"};
    EXPECT_EQ(Entries(levels / "LEVEL_0001"), made);
    EXPECT_TRUE(CreateLevelFolders("C:\\Levels\\LEVEL_0001")) << "existing folders count as made";
}

TEST_F(ArchiveTest, MakesTheFoldersInOrderUpToTheFirstThatFails) {
    const fs::path folder = levels / "LEVEL_0001";
    MakeFile(folder / "FILES", "a file in the way");
    EXPECT_FALSE(CreateLevelFolders("C:\\Levels\\LEVEL_0001"));
    EXPECT_THAT(Entries(folder), ElementsAre("BACKUP_SAVEGAMES\\", "FILES", "SAVEGAMES\\"));
    fs::remove_all(folder);
    MakeFile(folder / "SAVEGAMES", "a file in the way");
    EXPECT_FALSE(CreateLevelFolders("C:\\Levels\\LEVEL_0001"));
    EXPECT_THAT(Entries(folder), ElementsAre("SAVEGAMES"));
    EXPECT_FALSE(CreateLevelFolders("C:\\missing\\LEVEL_0001"));
}

// --- saving ---

TEST_F(ArchiveTest, IsSavedAtEachChangeWithAutoSave) {
    archive.ArchiveChanged = true;
    ArchiveTouched();
    EXPECT_EQ(fs::file_size(kva), 2180U);
    EXPECT_FALSE(archive.ArchiveChanged);
}

TEST_F(ArchiveTest, OnlyRemembersAChangeWithoutAutoSave) {
    profile.AutoSave = false;
    ArchiveTouched();
    EXPECT_FALSE(Exists(kva));
    EXPECT_TRUE(archive.ArchiveChanged);
}

TEST_F(ArchiveTest, TellsAFailedAutomaticSave) {
    BlockWrites();
    ArchiveTouched();
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while saving archive: C:\\Kelvash\\test.kva"));
    EXPECT_TRUE(archive.ArchiveChanged);
}

TEST_F(ArchiveTest, AsksNothingWhenNothingHasChanged) {
    profile.AutoSave = false;
    AskSaveArchive();
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_FALSE(Exists(kva));
}

TEST_F(ArchiveTest, IsSavedOnAYes) {
    profile.AutoSave = false;
    archive.ArchiveChanged = true;
    user.WillAnswer("Current archive 'test.kva' has been changed.\r\nDo you want save it?", "yes");
    AskSaveArchive();
    EXPECT_TRUE(Exists(kva));
    EXPECT_FALSE(archive.ArchiveChanged);
    EXPECT_FALSE(profile.AutoSave) << "set back";
}

TEST_F(ArchiveTest, ForgetsItsChangesOnANo) {
    profile.AutoSave = false;
    archive.ArchiveChanged = true;
    user.WillAnswer("Do you want save it?", "no");
    AskSaveArchive();
    EXPECT_THAT(user.Asked(),
                ElementsAre("Current archive 'test.kva' has been changed.\r\nDo you want save it?"));
    EXPECT_FALSE(Exists(kva));
    EXPECT_FALSE(archive.ArchiveChanged);
}

TEST_F(ArchiveTest, KeepsItsChangesWhenNobodyAnswers) {
    ASSERT_TRUE(WriteArchive("C:\\Kelvash\\test.kva"));
    profile.AutoSave = false;
    archive.ArchiveChanged = true;
    for (int i = 0; i < 3; ++i)
        user.WillAnswer("Do you want save it?", "nobody");
    EXPECT_FALSE(AskSaveArchive());
    EXPECT_FALSE(LoadArchive("C:\\Kelvash\\test.kva"));
    EXPECT_FALSE(NewArchive());
    EXPECT_TRUE(archive.ArchiveChanged);
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\test.kva");
}

TEST_F(ArchiveTest, IsSavedWithoutAQuestionWithAutoSave) {
    archive.ArchiveChanged = true;
    AskSaveArchive();
    EXPECT_TRUE(Exists(kva));
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_FALSE(archive.ArchiveChanged);
    EXPECT_TRUE(profile.AutoSave);
}

TEST_F(ArchiveTest, StaysChangedWhenTheWishedSaveFails) {
    profile.AutoSave = false;
    archive.ArchiveChanged = true;
    BlockWrites();
    user.WillAnswer("Do you want save it?", "yes");
    AskSaveArchive();
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while saving archive: C:\\Kelvash\\test.kva"));
    EXPECT_TRUE(archive.ArchiveChanged);
    EXPECT_FALSE(profile.AutoSave);
}

TEST_F(ArchiveTest, TakesThePathItIsWrittenTo) {
    archive.ArchiveChanged = true;
    EXPECT_TRUE(WriteArchive("C:\\Kelvash\\new.kva"));
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\new.kva");
    EXPECT_FALSE(archive.ArchiveChanged);
    EXPECT_EQ(fs::file_size(home / "new.kva"), 2180U);
}

TEST_F(ArchiveTest, ChangesNothingWhenItCannotBeWritten) {
    archive.ArchiveChanged = true;
    EXPECT_FALSE(WriteArchive("C:\\missing\\new.kva"));
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\test.kva");
    EXPECT_TRUE(archive.ArchiveChanged);
    EXPECT_THAT(user.Told(), IsEmpty()) << "the callers report";
}

TEST_F(ArchiveTest, IsSavedByTheMenuThoughNothingHasChanged) {
    EXPECT_TRUE(SaveArchive());
    EXPECT_EQ(fs::file_size(kva), 2180U);
}

TEST_F(ArchiveTest, TellsAFailedSaveOfTheMenu) {
    BlockWrites();
    EXPECT_FALSE(SaveArchive());
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while saving archive: C:\\Kelvash\\test.kva"));
}

TEST_F(ArchiveTest, IsSavedUnderAnotherName) {
    user.WillAnswer("Save current archive as ...", "C:\\Levels\\copy.kva");
    EXPECT_EQ(SaveArchiveAs(), SavedAs::Saved);
    EXPECT_EQ(user.last_start, "C:\\Kelvash\\test.kva") << "the application's folder and the file's name";
    EXPECT_EQ(profile.LastArchive, "C:\\Levels\\copy.kva");
    EXPECT_EQ(fs::file_size(levels / "copy.kva"), 2180U);
    EXPECT_FALSE(Exists(kva));
    EXPECT_EQ(user.list_changes, 1) << "the title is refreshed";
}

// The open Archive's file, which another program has written meanwhile.
TEST_F(ArchiveTest, IsNotSavedOverAnothersWorkAndCallsThatNoError) {
    ASSERT_TRUE(WriteArchive("C:\\Kelvash\\test.kva"));
    archive.ArchiveChanged = true; // else it is only read again
    ArchiveContents other = archive;
    other.Table.Edit(0)->Note = "of another program";
    ASSERT_TRUE(WriteArchiveFile("C:\\Kelvash\\test.kva", other));
    const std::string theirs = BytesOf(kva);
    user.WillAnswer("Save current archive as ...", "C:\\Kelvash\\test.kva");
    user.WillAnswer("Do you want to overwrite the file with what is here?", "no");
    EXPECT_EQ(SaveArchiveAs(), SavedAs::Failed);
    user.WillAnswer("Do you want to overwrite the file with what is here?", "no");
    EXPECT_FALSE(SaveArchive());
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_EQ(BytesOf(kva), theirs);
    EXPECT_TRUE(archive.ArchiveChanged);
}

TEST_F(ArchiveTest, KeepsItsNameWhenSaveAsIsCancelled) {
    archive.ArchiveChanged = true;
    user.WillAnswer("Save current archive as ...", "cancel");
    EXPECT_EQ(SaveArchiveAs(), SavedAs::GivenUp);
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\test.kva");
    EXPECT_TRUE(archive.ArchiveChanged);
}

TEST_F(ArchiveTest, TellsAFailedSaveAs) {
    user.WillAnswer("Save current archive as ...", "C:\\missing\\copy.kva");
    EXPECT_EQ(SaveArchiveAs(), SavedAs::Failed);
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while saving archive: C:\\missing\\copy.kva"));
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\test.kva");
}

// --- sizes of one level ---

TEST_F(ArchiveTest, AddsToALevelsSizeAndToTheSum) {
    AddRecord(4, "Four");
    AddLevelSize(1, 1000, SizeKind::Files);
    AddLevelSize(1, 300, SizeKind::Saves);
    AddLevelSize(1, -100, SizeKind::Saves);
    EXPECT_EQ(archive.Table[1].FilesSize, 1000);
    EXPECT_EQ(archive.Table[1].SavesSize, 200);
    EXPECT_EQ(archive.Header.MainFolderSize, 1000);
    EXPECT_EQ(archive.Header.SecondaryFolderSize, 200);
    EXPECT_EQ(fs::file_size(kva), 3814U) << "saved";
}

TEST_F(ArchiveTest, LeavesTheSumsAloneForIndexZero) {
    AddLevelSize(0, 1000, SizeKind::Files);
    AddLevelSize(0, 300, SizeKind::Saves);
    EXPECT_EQ(archive.Table[0].FilesSize, 1000);
    EXPECT_EQ(archive.Table[0].SavesSize, 300);
    EXPECT_EQ(archive.Header.MainFolderSize, 0);
    EXPECT_EQ(archive.Header.SecondaryFolderSize, 0);
}

TEST_F(ArchiveTest, StopsALevelsSizeAtWhatItsFieldHolds) {
    AddRecord(4, "Four");
    AddLevelSize(1, 5e9, SizeKind::Files);
    EXPECT_EQ(archive.Table[1].FilesSize, 2147483647);
    EXPECT_EQ(archive.Header.MainFolderSize, 5e9);
}

// --- loading ---

TEST_F(ArchiveTest, TakesTheLoadedOnesPlace) {
    MakeOther("C:\\Levels", "C:\\Levels", 0, 3);
    archive.Table.Edit(0)->Name = "unsaved";
    EXPECT_TRUE(LoadArchive(kOther));
    EXPECT_EQ(archive.Table.Size(), 3);
    EXPECT_EQ(archive.Table[2].Name, "Other 2");
    EXPECT_EQ(archive.Table[2].Code, 10);
    EXPECT_EQ(profile.LastArchive, kOther);
    EXPECT_FALSE(archive.ArchiveChanged);
    EXPECT_EQ(level_list.Items.size(), 3U);
}

TEST_F(ArchiveTest, SelectsTheLevelThatIsInTrle) {
    MakeOther("C:\\Levels", "C:\\Levels", 0, 3);
    profile.TrleFolder = "C:\\trle";
    MakeFile(drive / "trle" / "Kelvash.txt", "#LEVEL_CODE=0010#\r\n#LEVEL_NAME=Other 2#\r\n");
    EXPECT_TRUE(LoadArchive(kOther));
    EXPECT_EQ(SelectedLevel(), 10);
    EXPECT_EQ(level_list.Items[static_cast<std::size_t>(level_list.Selected)].Text, "Other 2 (*)");
}

TEST_F(ArchiveTest, StaysOpenWhenAnotherCannotBeOpened) {
    archive.Table.Edit(0)->Name = "mine";
    EXPECT_FALSE(LoadArchive("C:\\Kelvash\\missing.kva"));
    EXPECT_EQ(archive.Table[0].Name, "mine");
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\test.kva");
    EXPECT_FALSE(archive.ArchiveLoadRefused);
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(ArchiveTest, AsksToSaveBeforeALoad) {
    MakeOther("C:\\Levels", "C:\\Levels");
    profile.AutoSave = false;
    archive.ArchiveChanged = true;
    user.WillAnswer("Current archive 'test.kva' has been changed.", "yes");
    EXPECT_TRUE(LoadArchive(kOther));
    EXPECT_EQ(fs::file_size(kva), 2180U) << "the old one, under its own name";
}

TEST_F(ArchiveTest, LoadsAnotherThatTheUserChooses) {
    MakeOther("C:\\Levels", "C:\\Levels");
    user.WillAnswer("Load Tomb Raider Level Archive", kOther);
    EXPECT_TRUE(LoadArchiveDialog());
    EXPECT_EQ(user.last_start, "C:\\Kelvash");
    EXPECT_EQ(profile.LastArchive, kOther);
}

TEST_F(ArchiveTest, StaysWhenTheLoadDialogIsCancelled) {
    user.WillAnswer("Load Tomb Raider Level Archive", "cancel");
    EXPECT_FALSE(LoadArchiveDialog());
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\test.kva");
}

TEST_F(ArchiveTest, AsksToSaveBeforeTheLoadDialog) {
    profile.AutoSave = false;
    archive.ArchiveChanged = true;
    user.WillAnswer("has been changed", "no");
    user.WillAnswer("Load Tomb Raider Level Archive", "cancel");
    EXPECT_FALSE(LoadArchiveDialog());
    EXPECT_THAT(user.Asked(),
                ElementsAre("Current archive 'test.kva' has been changed.\r\nDo you want save it?",
                            "Load Tomb Raider Level Archive"));
}

TEST_F(ArchiveTest, RecountsTheSavesOfALevelThatWantsIt) {
    MakeOther("C:\\Levels", "C:\\Levels", 0, 2);
    std::string bytes = BytesOf(home / "other.kva");
    bytes[2180 + 1628] = 100;    // SavesSize of level 5
    bytes[2180 + 1632] = '\xFF'; // RecountSaves
    bytes[2180 + 1633] = '\xFF';
    MakeFile(home / "other.kva", bytes);
    MakeFile(levels / "LEVEL_0005" / "SAVEGAMES" / "a", std::string(10, 'x'));
    MakeFile(levels / "LEVEL_0005" / "SAVEGAMES" / "deep" / "b", std::string(20, 'x'));
    MakeFile(levels / "LEVEL_0005" / "BACKUP_SAVEGAMES" / "c", std::string(30, 'x'));
    MakeFile(levels / "LEVEL_0005" / "SCREENSHOTS" / "d", std::string(4, 'x'));
    MakeFile(levels / "LEVEL_0005" / "FILES" / "e", std::string(5000, 'x'));
    EXPECT_TRUE(LoadArchive(kOther));
    EXPECT_EQ(archive.Table[1].SavesSize, 64);
    EXPECT_EQ(archive.Header.SecondaryFolderSize, -36) << "64 less the 100 that stood there";
    EXPECT_FALSE(archive.Table[1].RecountSaves);
    const std::string saved = BytesOf(home / "other.kva");
    EXPECT_EQ(saved[2180 + 1628], 64);
    EXPECT_EQ(saved[2180 + 1632], '\0');
}

// --- the check of the folders ---

constexpr const char* kMainMissing =
    "exclamation: Warning: not found main folder of current archive: \r\nX:\\OldIf you have moved folder or "
    "there is "
    "a change of unit letters, select new correct folder";
constexpr const char* kSecondaryMissing =
    "exclamation: Warning: not found secondary folder of current archive: \r\nX:\\SecondIf you have moved "
    "folder "
    "or "
    "there is a change of unit letters, select new correct folder";

TEST_F(ArchiveTest, WithoutLevelsNeedsNoFolders) {
    archive.Header.MainFolder = archive.Header.SecondaryFolder = "X:\\Old";
    archive.Table = {};
    EXPECT_TRUE(CheckArchiveFolders());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(ArchiveTest, ACutFileIsToldOfAndKeptBeforeItsLossIsSaved) {
    MakeOther("C:\\Levels", "C:\\Levels", 0, 3);
    const std::string cut = BytesOf(home / "other.kva").substr(0, 546 + 1634 + 1400);
    MakeFile(home / "other.kva", cut);
    for (int start = 0; start < 2; ++start) { // the second finds the copy of the first
        ASSERT_TRUE(LoadArchive(kOther));
        EXPECT_THAT(
            user.Told(),
            ElementsAre("exclamation: The file of the Archive 'other.kva' has been cut off: 1 of its 3 "
                        "levels are whole in it. It has been kept as 'other.kva.cut'.\r\n\r\nThe levels "
                        "themselves are in their folders: [Tools->Archive maintenance->Recover archive "
                        "from HD folder] takes those up that are missing in the list."));
        user.Forget();
    }
    EXPECT_EQ(archive.Table.Size(), 2) << "as far as the file goes";
    EXPECT_TRUE(WriteArchive(kOther));
    EXPECT_EQ(BytesOf(home / "other.kva.cut"), cut);
    EXPECT_FALSE(Exists(home / "other.kva.cut2"));
    ASSERT_TRUE(LoadArchive(kOther));
    EXPECT_THAT(user.Told(), IsEmpty()) << "whole again";
}

TEST_F(ArchiveTest, ACutFileTakesNoOthersCopy) {
    MakeOther("C:\\Levels", "C:\\Levels", 0, 2);
    const std::string cut = BytesOf(home / "other.kva").substr(0, 546 + 1634);
    MakeFile(home / "other.kva", cut);
    MakeFile(home / "other.kva.cut", "an older one");
    ASSERT_TRUE(LoadArchive(kOther));
    EXPECT_THAT(user.Told(), ElementsAre(testing::HasSubstr("kept as 'other.kva.cut2'")));
    EXPECT_EQ(BytesOf(home / "other.kva.cut"), "an older one");
    EXPECT_EQ(BytesOf(home / "other.kva.cut2"), cut);
}

TEST_F(ArchiveTest, AFileWithoutLevelZeroHasLostItsContents) {
    const std::string open = profile.LastArchive;
    MakeOther("C:\\Levels", "C:\\Levels", 0, 0);
    EXPECT_FALSE(LoadArchive(kOther));
    EXPECT_EQ(profile.LastArchive, open);
}

TEST_F(ArchiveTest, TakesOnePickForBothFoldersWhenTheyWereTheSame) {
    MakeOther("X:\\Old", "x:\\OLD");
    user.WillAnswer("Select folder: Old", "C:\\Levels");
    EXPECT_TRUE(LoadArchive(kOther));
    EXPECT_THAT(user.Told(), ElementsAre(kMainMissing));
    EXPECT_EQ(archive.Header.MainFolder, "C:\\Levels");
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\Levels");
    EXPECT_EQ(BytesOf(home / "other.kva").substr(260, 12), "C:\\Levels   ") << "saved at once";
}

TEST_F(ArchiveTest, IsRefusedWhenThePickOfTheMainFolderIsCancelled) {
    MakeOther("X:\\Old", "X:\\Second");
    user.WillAnswer("Select folder: Old", "cancel");
    EXPECT_FALSE(LoadArchive(kOther));
    EXPECT_THAT(user.Told(), ElementsAre(kMainMissing)) << "the secondary folder isn't asked for";
    EXPECT_TRUE(archive.ArchiveLoadRefused);
    EXPECT_EQ(archive.Table[0].Name, "Other 0") << "the table stays loaded";
    EXPECT_EQ(profile.LastArchive, kOther);
}

TEST_F(ArchiveTest, KeepsAPickOfADifferentMainFolderOut) {
    user.MayBeTold("not found main folder of current archive");
    MakeOther("X:\\Old", "C:\\Levels");
    user.WillAnswer("Select folder: Old", "C:\\Kelvash");
    EXPECT_TRUE(LoadArchive(kOther));
    EXPECT_EQ(archive.Header.MainFolder, "X:\\Old");
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\Levels");
}

TEST_F(ArchiveTest, AsksForTheSecondaryFolderBehindTheMainOne) {
    MakeOther("X:\\Old", "X:\\Second");
    user.WillAnswer("Select folder: Old", "C:\\Kelvash");
    user.WillAnswer("Select folder: Second", "C:\\Levels");
    EXPECT_TRUE(LoadArchive(kOther));
    EXPECT_THAT(user.Told(), ElementsAre(kMainMissing, kSecondaryMissing));
    EXPECT_EQ(archive.Header.MainFolder, "X:\\Old");
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\Levels");
    EXPECT_EQ(BytesOf(home / "other.kva").substr(260, 12), "C:\\Levels   ");
}

TEST_F(ArchiveTest, IsRefusedWhenThePickOfTheSecondaryFolderIsCancelled) {
    MakeOther("C:\\Levels", "X:\\Second");
    user.WillAnswer("Select folder: Second", "cancel");
    EXPECT_FALSE(LoadArchive(kOther));
    EXPECT_THAT(user.Told(), ElementsAre(kSecondaryMissing));
    EXPECT_TRUE(archive.ArchiveLoadRefused);
    EXPECT_EQ(archive.Header.SecondaryFolder, "X:\\Second");
}

TEST_F(ArchiveTest, OnCdsNeedsOnlyItsSecondaryFolder) {
    MakeOther("X:\\Old", "C:\\Levels", 2);
    EXPECT_TRUE(LoadArchive(kOther));
    EXPECT_THAT(user.Told(), IsEmpty());
    MakeOther("X:\\Old", "X:\\Second", 2);
    user.WillAnswer("Select folder: Second", "C:\\Levels");
    EXPECT_TRUE(LoadArchive(kOther));
    EXPECT_THAT(user.Told(), ElementsAre(kSecondaryMissing));
}

TEST_F(ArchiveTest, RemembersAPickWithoutAutoSave) {
    user.MayBeTold("not found main folder of current archive");
    MakeOther("X:\\Old", "X:\\Old");
    profile.AutoSave = false;
    user.WillAnswer("Select folder: Old", "C:\\Levels");
    EXPECT_TRUE(LoadArchive(kOther));
    EXPECT_TRUE(archive.ArchiveChanged);
    EXPECT_EQ(BytesOf(home / "other.kva").substr(260, 8), "X:\\Old  ");
}

// --- the title ---

TEST_F(ArchiveTest, ShowsItsCountAndNameInTheTitle) {
    for (std::int32_t code = 1; code < 12; ++code)
        AddRecord(code, "x");
    profile.LastArchive = "C:\\Kelvash\\LevelArchive.kva";
    EXPECT_EQ(ArchiveTitle(), "Kelvash: 12 (LevelArchive.kva levels)");
}

} // namespace
} // namespace kelvash::core
