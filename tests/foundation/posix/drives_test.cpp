// Drives of a Wine prefix, and those of a system without one.
#include "foundation/drives.h"

#include <gmock/gmock.h>

#include "support/foundation_home.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class PosixDrives : public test::FoundationHome {
  protected:
    PosixDrives() : prefix(root / "prefix") { ResetDrives(); }

    void MakePrefix() {
        fs::create_directories(prefix / "dosdevices");
        fs::create_directories(prefix / "drive_c");
        fs::create_directory_symlink("../drive_c", prefix / "dosdevices" / "c:");
        fs::create_directory_symlink("/", prefix / "dosdevices" / "z:");
        test::SetEnvironment("WINEPREFIX", prefix.string());
    }

    fs::path prefix;
};

TEST_F(PosixDrives, DrivesAreThoseOfTheWinePrefix) {
    MakePrefix();
    fs::create_directories(root / "trle");
    fs::create_directory_symlink(root / "trle", prefix / "dosdevices" / "t:");
    ASSERT_TRUE(SetAppFolder(home));
    EXPECT_EQ(NativePath("C:\\windows"), prefix / "drive_c" / "windows");
    EXPECT_EQ(NativePath("T:\\data"), root / "trle" / "data");
    EXPECT_EQ(NativePath("Z:\\tmp"), "/tmp");
    EXPECT_EQ(DosPath(root / "trle" / "data"), "T:\\data");
    EXPECT_EQ(DosPath("/usr/bin"), "Z:\\usr\\bin");
    EXPECT_EQ(DosPath("/"), "Z:");
    EXPECT_THAT(FixedDrives(), ElementsAre("C:", "T:"));
}

TEST_F(PosixDrives, OtherLinksOfThePrefixAreNoDrives) {
    MakePrefix();
    fs::create_symlink("/dev/null", prefix / "dosdevices" / "c::");
    fs::create_symlink("/dev/null", prefix / "dosdevices" / "com1");
    fs::create_directory_symlink(root / "gone", prefix / "dosdevices" / "d:");
    fs::create_symlink("/dev/null", prefix / "dosdevices" / "e:");
    ASSERT_TRUE(SetAppFolder(home));
    DriveRecord record;
    EXPECT_FALSE(DriveInfo("D", record));
    EXPECT_FALSE(DriveInfo("E", record));
    EXPECT_EQ(NativePath("C:\\"), prefix / "drive_c");
}

TEST_F(PosixDrives, TheDefaultPrefixIsInTheUsersFolder) {
    MakePrefix();
    test::SetEnvironment("WINEPREFIX", "");
    fs::rename(prefix, root / ".wine");
    ASSERT_TRUE(SetAppFolder(home));
    EXPECT_EQ(NativePath("C:\\x"), root / ".wine" / "drive_c" / "x");
}

TEST_F(PosixDrives, WithoutAPrefixTheApplicationsFolderHoldsDriveC) {
    ASSERT_TRUE(SetAppFolder(home));
    EXPECT_EQ(NativePath("C:\\x"), home / "drive_c" / "x");
    EXPECT_TRUE(fs::is_directory(home / "drive_c"));
    EXPECT_EQ(NativePath("Z:\\etc"), "/etc");
    EXPECT_THAT(FixedDrives(), ElementsAre("C:"));
}

TEST_F(PosixDrives, TheWholeFileSystemIsNotADriveToPutThingsOn) {
    ASSERT_TRUE(SetAppFolder(home));
    DriveRecord record;
    ASSERT_TRUE(DriveInfo("Z:", record));
    EXPECT_EQ(record.type, DriveType::Network);
    EXPECT_TRUE(record.ready);
}

TEST_F(PosixDrives, AnEmptyPrefixIsNone) {
    fs::create_directories(prefix / "dosdevices");
    test::SetEnvironment("WINEPREFIX", prefix.string());
    ASSERT_TRUE(SetAppFolder(home));
    EXPECT_EQ(NativePath("C:\\x"), home / "drive_c" / "x");
}

TEST_F(PosixDrives, DrivesOfTheFileComeOverThoseOfThePrefix) {
    MakePrefix();
    fs::create_directories(root / "games");
    test::MakeFile(home / "drives.txt", "C=" + (root / "games").string() + "\n");
    ASSERT_TRUE(SetAppFolder(home));
    EXPECT_EQ(NativePath("C:\\x"), root / "games" / "x");
}

TEST_F(PosixDrives, ANativePathThatWasTypedBecomesAPathText) {
    ASSERT_TRUE(SetDrive('C', drive, DriveType::Fixed));
    ASSERT_TRUE(SetAppFolder(home));
    EXPECT_EQ(PathFromUser((home / "x").string()), "C:\\Kelvash\\x");
    EXPECT_EQ(PathFromUser((home / "").string()), "C:\\Kelvash");
    fs::create_directory_symlink(drive, root / "link");
    EXPECT_EQ(PathFromUser((root / "link" / "new").string()), "C:\\new");
    EXPECT_EQ(PathFromUser("/usr/../etc"), "Z:\\etc");
}

TEST_F(PosixDrives, ANameWithABackSlashHasNoPathText) {
    EXPECT_EQ(DosPath(drive / "a\\b.zip"), "");
    EXPECT_EQ(DosPath(drive / "a\\b" / "c.zip"), "");
}

TEST_F(PosixDrives, SpecialFoldersAreTheUsersOwn) {
    ASSERT_TRUE(SetDrive('H', root, DriveType::Fixed));
    ASSERT_TRUE(SetDrive('C', drive, DriveType::Fixed));
    ASSERT_TRUE(SetAppFolder(home));
    EXPECT_EQ(SpecialFolder(SpecialFolderId::Programs), "H:\\data\\applications");
    EXPECT_EQ(SpecialFolder(SpecialFolderId::Desktop), "H:\\Desktop");
    EXPECT_EQ(SpecialFolder(SpecialFolderId::Documents), "H:\\Documents");
    EXPECT_EQ(SpecialFolder(SpecialFolderId::ProgramFiles), "C:\\Program Files");
    EXPECT_EQ(SpecialFolder(SpecialFolderId::System), "C:\\windows\\system32");
}

TEST_F(PosixDrives, TheDefaultApplicationsFolderIsAmongTheUsersData) {
    unsetenv("KELVASH_HOME");
    EXPECT_EQ(DefaultAppFolder(), root / "data" / "kelvash");
}

} // namespace
} // namespace kelvash
