#include "foundation/drives.h"

#include <gmock/gmock.h>

#include "support/foundation_home.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;
using test::MakeFile;
using testing::Contains;
using testing::Not;

class Drives : public test::FoundationHome {
  protected:
    fs::path MakeFolder(const std::string& name) {
        fs::create_directories(root / name);
        return root / name;
    }
};

TEST_F(Drives, TheApplicationsFolderIsAPathText) {
    EXPECT_EQ(AppFolder(), "C:\\Kelvash");
}

TEST_F(Drives, TheApplicationsFolderIsMade) {
    ASSERT_TRUE(SetAppFolder(drive / "x" / "y"));
    EXPECT_TRUE(fs::is_directory(drive / "x" / "y"));
    EXPECT_EQ(AppFolder(), "C:\\x\\y");
    MakeFile(drive / "file", "");
    EXPECT_FALSE(SetAppFolder(drive / "file" / "home"));
    EXPECT_EQ(AppFolder(), "C:\\x\\y");
}

TEST_F(Drives, KelvashHomeNamesTheApplicationsFolder) {
    test::SetEnvironment("KELVASH_HOME", (root / "elsewhere").string());
    EXPECT_EQ(DefaultAppFolder(), root / "elsewhere");
    test::SetEnvironment("KELVASH_HOME", "");
    EXPECT_NE(DefaultAppFolder(), root / "elsewhere");
}

TEST_F(Drives, TheProgramItselfHasAPathText) {
    EXPECT_THAT(ProgramPath(), testing::HasSubstr("foundation_tests"));
}

TEST_F(Drives, PathsAreFoundOnTheirDrive) {
    EXPECT_EQ(NativePath("C:\\Kelvash\\new.txt"), home / "new.txt");
    EXPECT_EQ(NativePath("c:\\Kelvash"), home);
    EXPECT_EQ(NativePath("C:"), drive);
    EXPECT_EQ(NativePath("C:\\"), drive);
}

TEST_F(Drives, TextsWithoutADriveLeadNowhere) {
    for (const std::string_view text : {"", "x", "\\x", "1:\\x", "è:\\x", "Q:\\x", "\\\\server\\share", ":"})
        EXPECT_FALSE(fs::exists(NativePath(text))) << text;
    EXPECT_FALSE(fs::exists(NativePath(std::string_view("C:\\Kelvash\0x", 12))));
}

TEST_F(Drives, ADriveCanBeSetByHand) {
    EXPECT_TRUE(SetDrive('t', MakeFolder("trle"), DriveType::Fixed));
    EXPECT_EQ(NativePath("T:\\data"), root / "trle" / "data");
    EXPECT_TRUE(SetDrive('T', MakeFolder("other"), DriveType::Fixed));
    EXPECT_EQ(NativePath("t:\\data"), root / "other" / "data");
}

TEST_F(Drives, ADriveNeedsALetterAndAFolder) {
    EXPECT_FALSE(SetDrive('1', root, DriveType::Fixed));
    EXPECT_FALSE(SetDrive('[', root, DriveType::Fixed));
    EXPECT_FALSE(SetDrive('\0', root, DriveType::Fixed));
    EXPECT_FALSE(SetDrive('T', root / "missing", DriveType::Fixed));
    MakeFile(root / "file", "");
    EXPECT_FALSE(SetDrive('T', root / "file", DriveType::Fixed));
}

TEST_F(Drives, DrivesSetByHandOutliveAChangeOfTheApplicationsFolder) {
    ASSERT_TRUE(SetDrive('T', MakeFolder("trle"), DriveType::Fixed));
    ASSERT_TRUE(SetAppFolder(drive / "other"));
    EXPECT_EQ(NativePath("T:\\x"), root / "trle" / "x");
    ResetDrives();
    EXPECT_FALSE(fs::exists(NativePath("T:\\")));
    EXPECT_FALSE(fs::exists(NativePath("C:\\")));
}

TEST_F(Drives, TheDrivesFileMapsLetters) {
    MakeFolder("games");
    MakeFolder("disc");
    MakeFile(home / "drives.txt",
             "# drives\r\n"
             "  g=" +
                 (root / "games").string() +
                 "\r\n"
                 "K=" +
                 (root / "disc").string() +
                 ",cdrom\n"
                 "nonsense\nL:" +
                 root.string() + "\nM=\n1=" + root.string() + "\n");
    ASSERT_TRUE(SetAppFolder(home));
    EXPECT_EQ(NativePath("G:\\a"), root / "games" / "a");
    EXPECT_EQ(NativePath("K:\\a"), root / "disc" / "a");
    EXPECT_THAT(CdDrives(), Contains("K:"));
    EXPECT_THAT(FixedDrives(), Contains("G:"));
    EXPECT_THAT(FixedDrives(), Not(Contains("K:")));
}

TEST_F(Drives, ADriveSetByHandWinsOverTheFile) {
    MakeFile(home / "drives.txt", "C=" + MakeFolder("other").string() + "\n");
    ASSERT_TRUE(SetAppFolder(home));
    EXPECT_EQ(NativePath("C:\\x"), drive / "x");
}

TEST_F(Drives, ADosPathIsTheShortestText) {
    EXPECT_EQ(DosPath(home / "a" / "b.txt"), "C:\\Kelvash\\a\\b.txt");
    EXPECT_EQ(DosPath(drive), "C:");
    ASSERT_TRUE(SetDrive('T', home, DriveType::Fixed));
    EXPECT_EQ(DosPath(home / "a" / "b.txt"), "T:\\a\\b.txt");
    EXPECT_EQ(DosPath(home), "T:");
    EXPECT_EQ(DosPath(home / "x" / ".." / "." / "b.txt"), "T:\\b.txt");
    EXPECT_EQ(DosPath(home / ""), "T:");
}

TEST_F(Drives, ADosPathTakesWholeComponents) {
    MakeFolder("c2");
    EXPECT_NE(DosPath(root / "c2").substr(0, 2), "C:");
}

TEST_F(Drives, WhatAPersonTypedBecomesAPathText) {
    EXPECT_EQ(PathFromUser("C:\\a\\b"), "C:\\a\\b");
    EXPECT_EQ(PathFromUser("c:/a/b/"), "c:\\a\\b");
    EXPECT_EQ(PathFromUser("C:\\"), "C:");
}

TEST_F(Drives, TheRecordOfADriveIsFilled) {
    DriveRecord record;
    EXPECT_TRUE(DriveInfo("C:\\anything", record));
    EXPECT_EQ(record.letter, 'C');
    EXPECT_TRUE(record.ready);
    EXPECT_EQ(record.type, DriveType::Fixed);
    EXPECT_GT(record.total_bytes, 0);
    EXPECT_GE(record.free_bytes, 0);
    EXPECT_LE(record.free_bytes, record.total_bytes);
    EXPECT_LE(record.volume_name.size(), 64U);
}

TEST_F(Drives, AMissingDriveGivesAnEmptyRecord) {
    DriveRecord record;
    record.letter = 'X';
    record.ready = true;
    record.free_bytes = 5;
    EXPECT_FALSE(DriveInfo("Q:", record));
    EXPECT_EQ(record.letter, ' ');
    EXPECT_FALSE(record.ready);
    EXPECT_EQ(record.free_bytes, 0);
    EXPECT_FALSE(DriveInfo("", record));
    EXPECT_FALSE(DriveInfo("5", record));
}

TEST_F(Drives, ADriveWhoseFolderHasGoneIsNotReady) {
    ASSERT_TRUE(SetDrive('T', MakeFolder("gone"), DriveType::CdRom));
    fs::remove(root / "gone");
    DriveRecord record;
    EXPECT_TRUE(DriveInfo("T", record));
    EXPECT_FALSE(record.ready);
    EXPECT_EQ(record.type, DriveType::CdRom);
    EXPECT_THAT(CdDrives(), Contains("T:"));
}

TEST_F(Drives, ListsLeaveOutTheFloppies) {
    ASSERT_TRUE(SetDrive('A', MakeFolder("a"), DriveType::Fixed));
    ASSERT_TRUE(SetDrive('B', MakeFolder("b"), DriveType::CdRom));
    EXPECT_THAT(FixedDrives(), Not(Contains("A:")));
    EXPECT_THAT(CdDrives(), Not(Contains("B:")));
}

TEST_F(Drives, TheBestFixedDriveHasTheMostFreeSpace) {
    std::int64_t free = -1;
    const std::string best = BestFixedDrive(free);
    ASSERT_THAT(FixedDrives(), Contains(best));
    EXPECT_GT(free, 0);
    ResetDrives();
    EXPECT_EQ(BestFixedDrive(free), "");
    EXPECT_EQ(free, 0);
}

TEST_F(Drives, FreeSpaceIsThatOfThePathsDrive) {
    EXPECT_GT(FreeSpace("C:\\Kelvash"), 0);
    EXPECT_EQ(FreeSpace("Q:\\x"), -1);
}

TEST_F(Drives, SpecialFoldersHaveNoBackSlashAtTheirEnd) {
    ResetDrives();
    ASSERT_TRUE(SetAppFolder(home)); // with the system's own drives
    for (const SpecialFolderId id : {SpecialFolderId::Temporary, SpecialFolderId::Programs,
                                     SpecialFolderId::Desktop, SpecialFolderId::Documents}) {
        const std::string folder = SpecialFolder(id);
        EXPECT_FALSE(folder.empty()) << static_cast<int>(id);
        EXPECT_FALSE(folder.ends_with('\\')) << folder;
    }
    EXPECT_TRUE(fs::is_directory(NativePath(SpecialFolder(SpecialFolderId::Temporary))));
}

} // namespace
} // namespace kelvash
