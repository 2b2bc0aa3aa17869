#include "core/sizes.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/profile.h"
#include "support/core_home.h"

namespace kelvash::core {
namespace {

using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class Sizes : public test::CoreHome {
  protected:
    static void Fill(const fs::path& folder, std::size_t files, std::size_t saves) {
        MakeFile(folder / "FILES" / "a.tr4", std::string(files - 1, 'x'));
        MakeFile(folder / "FILES" / "deep" / "er" / "b", "x");
        MakeFile(folder / "SAVEGAMES" / "s", std::string(saves - 3, 'x'));
        MakeFile(folder / "BACKUP_SAVEGAMES" / "s", "x");
        MakeFile(folder / "SCREENSHOTS" / "s", "x");
        MakeFile(folder / "SCREENSHOTS" / "deep" / "s", "x");
        MakeFile(folder / "tr4.inf", "counts nowhere");
    }
};

TEST_F(Sizes, CountFilesAndSavesOfALevelWithSubFolders) {
    Fill(levels / "LEVEL_0001", 500, 40);
    EXPECT_EQ(FilesBytes("C:\\Levels\\LEVEL_0001"), 500);
    EXPECT_EQ(SavesBytes("C:\\Levels\\LEVEL_0001"), 40);
    EXPECT_EQ(FilesBytes("C:\\Levels\\LEVEL_0002"), 0);
    EXPECT_EQ(SavesBytes("C:\\Levels\\LEVEL_0002"), 0);
}

TEST_F(Sizes, StopAtWhatAFieldHolds) {
    EXPECT_EQ(FieldSize(2147483647.0), 2147483647);
    EXPECT_EQ(FieldSize(2147483648.0), 2147483647);
    EXPECT_EQ(FieldSize(-2147483649.0), -2147483647 - 1);
    EXPECT_EQ(FieldSize(12.0), 12);
}

TEST_F(Sizes, OfTheArchiveAreCountedAnew) {
    AddRecord(1, "One");
    AddRecord(2, "Missing folder");
    Fill(home / "LEVEL_0000", 300, 30);
    Fill(levels / "LEVEL_0001", 500, 40);
    archive.Table.Edit(2)->FilesSize = 999;
    archive.Table.Edit(2)->SavesSize = 999;
    archive.Header.MainFolderSize = 5;
    archive.Header.SecondaryFolderSize = 5;
    ComputeArchiveSize(Report::Silent);
    EXPECT_EQ(archive.Table[0].FilesSize, 300);
    EXPECT_EQ(archive.Table[1].FilesSize, 500);
    EXPECT_EQ(archive.Table[2].FilesSize, 0);
    EXPECT_EQ(archive.Table[0].SavesSize, 30);
    EXPECT_EQ(archive.Table[1].SavesSize, 40);
    EXPECT_EQ(archive.Table[2].SavesSize, 0);
    EXPECT_EQ(archive.Header.MainFolderSize, 800);
    EXPECT_EQ(archive.Header.SecondaryFolderSize, 70);
    EXPECT_EQ(fs::file_size(kva), 546U + 3U * 1634U) << "saved";
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Sizes, OfFilesOnCdStandAsTheyAre) {
    AddRecord(1, "One", 2);
    Fill(levels / "LEVEL_0001", 500, 40);
    archive.Table.Edit(1)->FilesSize = 7777;
    ComputeArchiveSize(Report::Silent);
    EXPECT_EQ(archive.Table[1].FilesSize, 7777);
    EXPECT_EQ(archive.Table[1].SavesSize, 40);
    EXPECT_EQ(archive.Header.MainFolderSize, 7777);
}

TEST_F(Sizes, AreToldInThreeLines) {
    AddRecord(1, "One");
    Fill(levels / "LEVEL_0001", 3000, 40);
    ComputeArchiveSize(Report::Shown);
    EXPECT_THAT(user.Told(), ElementsAre("plain: Primary (only read) folder size = 2 Kb\r\n"
                                         "Seconday (writable) folder size = 40\r\n"
                                         "Total size of archive = 2 Kb"));
    EXPECT_THAT(user.Shown(),
                ElementsAre("Computing size of archive 'test.kva' in progress...",
                            "Scanning folder: C:\\Kelvash\\LEVEL_0000",
                            "Scanning folder: C:\\Levels\\LEVEL_0001", "Size compute terminated"));
    EXPECT_EQ(user.last_percent, 100);
}

TEST_F(Sizes, OfOneLevelMoveTheSumsByTheDifference) {
    AddRecord(1, "One");
    Fill(levels / "LEVEL_0001", 500, 40);
    archive.Table.Edit(1)->FilesSize = 600;
    archive.Table.Edit(1)->SavesSize = 10;
    archive.Header.MainFolderSize = 1000;
    archive.Header.SecondaryFolderSize = 100;
    CountLevelSize(PlaceAt(1));
    EXPECT_EQ(archive.Table[1].FilesSize, 500);
    EXPECT_EQ(archive.Table[1].SavesSize, 40);
    EXPECT_EQ(archive.Header.MainFolderSize, 900);
    EXPECT_EQ(archive.Header.SecondaryFolderSize, 130);
}

TEST_F(Sizes, OfOneLevelMoveTheSumsByMoreThanAFieldHolds) {
    AddRecord(1, "One");
    archive.Table.Edit(1)->FilesSize = -2147483647 - 1;
    fs::create_directories(levels / "LEVEL_0001" / "FILES");
    MakeFile(levels / "LEVEL_0001" / "FILES" / "big", "");
    fs::resize_file(levels / "LEVEL_0001" / "FILES" / "big", 2147483647);
    CountLevelSize(PlaceAt(1));
    EXPECT_EQ(archive.Table[1].FilesSize, 2147483647);
    EXPECT_EQ(archive.Header.MainFolderSize, 4294967295.0);
}

} // namespace
} // namespace kelvash::core
