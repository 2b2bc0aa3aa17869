#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "support/core_home.h"
#include "support/record_bytes.h"

namespace kelvash::core {
namespace {

using test::Exists;
using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

constexpr const char* kCaption = "Select main folder for new archive";

class NewArchiveTest : public test::CoreHome {};

TEST_F(NewArchiveTest, HoldsLevelZeroAlone) {
    AddRecord(5, "Five");
    archive.Header.CdCount = 4;
    archive.Header.CompressFiles = true;
    archive.Header.EncodeWavInMp3 = true;
    archive.Header.CdInstallPending = true;
    archive.Header.MainFolderSize = 77;
    archive.Header.SecondaryFolderSize = 77;
    user.WillAnswer(kCaption, "C:\\Levels");
    EXPECT_TRUE(NewArchive());
    const ArchiveHeader& header = archive.Header;
    EXPECT_EQ(header.Version, 1);
    EXPECT_EQ(header.MainFolder, "C:\\Levels");
    EXPECT_EQ(header.SecondaryFolder, "C:\\Levels");
    EXPECT_EQ(archive.Table.Size(), 1);
    EXPECT_EQ(header.CdCount, 0);
    EXPECT_FALSE(header.CompressFiles);
    EXPECT_FALSE(header.EncodeWavInMp3);
    EXPECT_FALSE(header.CdInstallPending);
    EXPECT_EQ(header.MainFolderSize, 0);
    EXPECT_EQ(header.SecondaryFolderSize, 0);
    const LevelRecord& level = archive.Table[0];
    EXPECT_EQ(level.Code, 0);
    EXPECT_EQ(level.CdNumber, 0);
    EXPECT_EQ(level.Name, "- TRLE: Original configuration -");
    EXPECT_EQ(level.Note, "Original configuration Tomb Raider Level Editor");
    EXPECT_EQ(level.Author, "Eidos Interactive (TM) & Core Design LTD");
    EXPECT_EQ(level.Emails, "");
    EXPECT_EQ(level.Sites, test::Literal("http://www.eidos.com\0http://www.core-design.com"));
    EXPECT_EQ(level.MoreInfoFile, "");
    EXPECT_FALSE(level.RecountSaves);
}

TEST_F(NewArchiveTest, IsSavedThoughTheCountingIsStopped) {
    user.stop = true;
    user.WillAnswer(kCaption, "C:\\Levels");
    EXPECT_TRUE(NewArchive());
    EXPECT_EQ(fs::file_size(home / "LevelArchive.kva"), 2180U);
    EXPECT_FALSE(archive.ArchiveChanged);
}

TEST_F(NewArchiveTest, IsSavedUnderTheFirstFreeNameAndListed) {
    MakeFile(home / "LevelArchive.kva", "");
    user.WillAnswer(kCaption, "C:\\Levels");
    EXPECT_TRUE(NewArchive());
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\LevelArchive2.kva");
    EXPECT_EQ(fs::file_size(home / "LevelArchive2.kva"), 2180U);
    EXPECT_EQ(fs::file_size(home / "LevelArchive.kva"), 0U);
    ASSERT_EQ(level_list.Items.size(), 1U);
    EXPECT_EQ(level_list.Selected, 0);
}

TEST_F(NewArchiveTest, CountsTheSizeOfLevelZero) {
    MakeFile(home / "LEVEL_0000" / "FILES" / "manual.pdf", std::string(1000, 'x'));
    MakeFile(home / "LEVEL_0000" / "SAVEGAMES" / "savegame.0", std::string(30, 'x'));
    user.WillAnswer(kCaption, "C:\\Levels");
    EXPECT_TRUE(NewArchive());
    EXPECT_EQ(archive.Table[0].FilesSize, 1000);
    EXPECT_EQ(archive.Table[0].SavesSize, 30);
    EXPECT_EQ(archive.Header.MainFolderSize, 1000);
    EXPECT_EQ(archive.Header.SecondaryFolderSize, 30);
    EXPECT_EQ(archive.Table[0].MoreInfoFile, "manual.pdf");
}

TEST_F(NewArchiveTest, PrefersPdfThenHtmThenHtmlAsDocument) {
    const fs::path files = home / "LEVEL_0000" / "FILES";
    const auto document = [this] {
        user.WillAnswer(kCaption, "C:\\Levels");
        EXPECT_TRUE(NewArchive());
        return archive.Table[0].MoreInfoFile;
    };
    MakeFile(files / "a.html", "");
    MakeFile(files / "readme.txt", "");
    EXPECT_EQ(document(), "a.html");
    MakeFile(files / "z.htm", "");
    EXPECT_EQ(document(), "z.htm");
    MakeFile(files / "a\xC4\x99.pdf", ""); // a name that no record holds
    MakeFile(files / "second.pdf", "");
    MakeFile(files / "First.PDF", "");
    EXPECT_EQ(document(), "First.PDF");
}

TEST_F(NewArchiveTest, AsksToSaveTheOldOneFirst) {
    profile.AutoSave = false;
    archive.ArchiveChanged = true;
    user.WillAnswer("has been changed", "yes");
    user.WillAnswer(kCaption, "C:\\Levels");
    EXPECT_TRUE(NewArchive());
    EXPECT_EQ(fs::file_size(kva), 2180U);
    EXPECT_FALSE(Exists(home / "LevelArchive.kva")) << "without AutoSave it waits";
    EXPECT_TRUE(archive.ArchiveChanged);
}

TEST_F(NewArchiveTest, GivesUpWhenTheFolderIsCancelled) {
    AddRecord(5, "Five");
    user.WillAnswer(kCaption, "cancel");
    EXPECT_FALSE(NewArchive());
    EXPECT_EQ(archive.Table.Size(), 1);
    EXPECT_EQ(archive.Table[0].Name, "- TRLE: Original configuration -");
    EXPECT_EQ(profile.LastArchive, "") << "the one record must not be saved over the old file";
    EXPECT_FALSE(Exists(home / "LevelArchive.kva"));
}

TEST_F(NewArchiveTest, RefusesAFolderThatItsFileCannotHold) {
    fs::create_directories(drive / "\xCE\xBB");
    const std::string longest = "C:\\" + std::string(253, 'x');
    for (const std::string& folder : {std::string("C:\\\xCE\xBB"), longest + "x"}) {
        user.WillAnswer(kCaption, folder);
        EXPECT_FALSE(NewArchive());
        EXPECT_EQ(profile.LastArchive, "");
    }
    EXPECT_EQ(user.Told(),
              (std::vector<std::string>{
                  "critical: This path has characters that the files of Kelvash can not hold (only those of "
                  "Windows-1252): C:\\\xCE\xBB",
                  "critical: This path is too long for the files of Kelvash (at most 256 characters): " +
                      longest + "x"}));
}

TEST_F(NewArchiveTest, TellsAFolderThatCannotBeMade) {
    user.WillAnswer(kCaption, "C:\\missing\\deeper");
    EXPECT_FALSE(NewArchive());
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Error: I can not write in main archive folder: C:\\missing\\deeper"));
    EXPECT_FALSE(Exists(home / "LevelArchive.kva"));
}

TEST_F(NewArchiveTest, MakesAChosenFolderThatDoesNotExist) {
    user.WillAnswer(kCaption, "C:\\Brand new");
    EXPECT_TRUE(NewArchive());
    EXPECT_TRUE(fs::is_directory(drive / "Brand new"));
}

// --- names ---

TEST_F(NewArchiveTest, GetsTheFirstFreeFileName) {
    EXPECT_EQ(DefaultArchivePath(), "C:\\Kelvash\\LevelArchive.kva");
    MakeFile(home / "levelarchive.KVA", "");
    EXPECT_EQ(DefaultArchivePath(), "C:\\Kelvash\\LevelArchive2.kva");
    fs::create_directory(home / "LevelArchive2.kva");
    EXPECT_EQ(DefaultArchivePath(), "C:\\Kelvash\\LevelArchive3.kva");
}

TEST_F(NewArchiveTest, GetsTheHundredthFileNameWhenAllAreTaken) {
    MakeFile(home / "LevelArchive.kva", "");
    for (int n = 2; n < 100; ++n)
        MakeFile(home / ("LevelArchive" + std::to_string(n) + ".kva"), "");
    EXPECT_EQ(DefaultArchivePath(), "C:\\Kelvash\\LevelArchive100.kva");
    MakeFile(home / "LevelArchive100.kva", "");
    EXPECT_EQ(DefaultArchivePath(), "C:\\Kelvash\\LevelArchive100.kva");
}

// --- the folder ---

TEST_F(NewArchiveTest, ProposesAFolderThatIsMade) {
    user.WillAnswer(kCaption, "C:\\LevelFolder");
    EXPECT_EQ(SelectNewArchiveFolder(), "C:\\LevelFolder");
    EXPECT_EQ(user.last_start, "C:\\LevelFolder");
    EXPECT_TRUE(fs::is_directory(drive / "LevelFolder"));
    user.WillAnswer(kCaption, "C:\\levelfolder2");
    EXPECT_EQ(SelectNewArchiveFolder(), "C:\\levelfolder2");
    EXPECT_EQ(user.last_start, "C:\\LevelFolder2");
    EXPECT_TRUE(fs::is_directory(drive / "LevelFolder2"));
}

TEST_F(NewArchiveTest, AProposedFolderThatIsNotChosenGoesAgain) {
    user.WillAnswer(kCaption, "cancel");
    EXPECT_EQ(SelectNewArchiveFolder(), "");
    EXPECT_FALSE(Exists(drive / "LevelFolder"));
    user.WillAnswer(kCaption, "C:\\Mine");
    EXPECT_EQ(SelectNewArchiveFolder(), "C:\\Mine");
    EXPECT_FALSE(Exists(drive / "LevelFolder"));
}

TEST_F(NewArchiveTest, AFolderThatWasThereBeforeStays) {
    fs::create_directory(drive / "LevelFolder");
    for (int n = 2; n <= 100; ++n)
        fs::create_directory(drive / ("LevelFolder" + std::to_string(n)));
    user.WillAnswer(kCaption, "cancel");
    EXPECT_EQ(SelectNewArchiveFolder(), "");
    EXPECT_TRUE(Exists(drive / "LevelFolder100"));
}

TEST_F(NewArchiveTest, DoesNotProposeAFile) {
    MakeFile(drive / "LevelFolder", "");
    user.WillAnswer(kCaption, "cancel");
    EXPECT_EQ(SelectNewArchiveFolder(), "");
    EXPECT_EQ(user.last_start, "C:\\LevelFolder2");
}

TEST_F(NewArchiveTest, ProposesTheHundredthFolderWhenAllAreTaken) {
    fs::create_directory(drive / "LevelFolder");
    for (int n = 2; n <= 100; ++n)
        fs::create_directory(drive / ("LevelFolder" + std::to_string(n)));
    user.WillAnswer(kCaption, "cancel");
    EXPECT_EQ(SelectNewArchiveFolder(), "");
    EXPECT_EQ(user.last_start, "C:\\LevelFolder100");
    EXPECT_FALSE(Exists(drive / "LevelFolder101"));
}

TEST_F(NewArchiveTest, TakesAnEmptyFolderAsItIs) {
    user.WillAnswer(kCaption, "C:\\Levels");
    EXPECT_EQ(SelectNewArchiveFolder(), "C:\\Levels");
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(NewArchiveTest, ChangesAFolderThatHoldsAFile) {
    MakeFile(levels / "no extension", "");
    user.WillAnswer(kCaption, "C:\\Levels");
    EXPECT_EQ(SelectNewArchiveFolder(), "C:\\Levels\\LevelFolder");
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: Warning. Folder for new archive must be empty. Folder has been changed "
                    "in: C:\\Levels\\LevelFolder"));
    EXPECT_FALSE(Exists(levels / "LevelFolder")) << "it is made later";
}

TEST_F(NewArchiveTest, ChangesAFolderThatHoldsAFolder) {
    user.MayBeTold("Folder has been changed in: C:\\Levels\\LevelFolder2");
    fs::create_directory(levels / "LevelFolder");
    user.WillAnswer(kCaption, "C:\\Levels");
    EXPECT_EQ(SelectNewArchiveFolder(), "C:\\Levels\\LevelFolder2");
}

TEST_F(NewArchiveTest, CountsOnWithoutALimit) {
    user.MayBeTold("Folder has been changed in: C:\\Levels\\LevelFolder121");
    fs::create_directory(levels / "LevelFolder");
    for (int n = 2; n <= 120; ++n)
        fs::create_directory(levels / ("LevelFolder" + std::to_string(n)));
    user.WillAnswer(kCaption, "C:\\Levels");
    EXPECT_EQ(SelectNewArchiveFolder(), "C:\\Levels\\LevelFolder121");
}

TEST_F(NewArchiveTest, UsesTheChangedFolder) {
    user.MayBeTold("Folder has been changed in: C:\\Levels\\LevelFolder");
    MakeFile(levels / "mine.txt", "");
    user.WillAnswer(kCaption, "C:\\Levels");
    EXPECT_TRUE(NewArchive());
    EXPECT_EQ(archive.Header.MainFolder, "C:\\Levels\\LevelFolder");
    EXPECT_TRUE(fs::is_directory(levels / "LevelFolder"));
}

} // namespace
} // namespace kelvash::core
