#include "foundation/guarded_folders.h"

#include <gtest/gtest.h>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;
using test::Exists;
using test::MakeFile;

// What the upper layers would tell.
std::vector<GuardedFolder>& Told() {
    static std::vector<GuardedFolder> told;
    return told;
}
[[maybe_unused]] const bool added = AddGuardedFolders([] { return Told(); });

class Guarded : public test::FoundationHome {
  protected:
    Guarded() {
        for (const char* folder : {"games/trle/data", "games/Levels/LEVEL_0001/FILES", "Kelvash/out_files"})
            MakeFile(drive / folder / "file.txt", "x");
        MakeFile(drive / "games/trle/tomb4.exe", "x");
        Told() = {{"C:\\games\\trle", Guard::AllButFiles},
                  {"C:\\games\\Levels ", Guard::Whole},
                  {"", Guard::Whole}};
    }
    ~Guarded() override { Told().clear(); }

    // That every procedure which deletes more than one named file leaves the folder as it is.
    void ExpectKept(const std::string& folder) {
        const std::size_t count = Count();
        Bar bar{BarPlace::CallerForm, -1};
        EXPECT_FALSE(MayDeleteTree(folder)) << folder;
        EXPECT_FALSE(RemoveFolderTree(folder, bar)) << folder;
        EXPECT_FALSE(RemoveFolder(folder)) << folder;
        EXPECT_EQ(Count(), count) << folder;
    }
    std::size_t Count() const {
        std::size_t count = 0;
        for (fs::recursive_directory_iterator at(root), end; at != end; ++at)
            ++count;
        return count;
    }
};

TEST_F(Guarded, TheFoldersOfTheProgramAreKept) {
    fs::create_directories(drive / "empty");
    ExpectKept("C:\\Kelvash");
    ExpectKept("C:\\games\\trle");
    ExpectKept("C:\\games\\Levels");
}

TEST_F(Guarded, WhatHoldsThemIsKept) {
    fs::create_directories(drive / "empty");
    ExpectKept("C:\\games");
}

TEST_F(Guarded, RootsOfDrivesAreKept) {
    fs::create_directories(root / "other/deep");
    fs::create_directories(drive / "empty");
    ASSERT_TRUE(SetDrive('D', root / "other", DriveType::Fixed));
    MakeFile(root / "other/deep/x", "x");
    ExpectKept("C:");
    ExpectKept("C:\\");
    ExpectKept("D:\\");
    ExpectKept("D:\\deep\\..");
    ASSERT_TRUE(SetDrive('E', root / "other/deep", DriveType::Fixed));
    ExpectKept("D:\\deep");
}

TEST_F(Guarded, TheUsersHomeIsKept) {
    ASSERT_TRUE(SetDrive('D', root.parent_path(), DriveType::Fixed)); // the test's home is `root`
    fs::create_directories(drive / "empty");
    ExpectKept("D:\\" + root.filename().string());
}

TEST_F(Guarded, TextsThatAreNoFolderAreRefused) {
    fs::create_directories(drive / "empty");
    for (const char* folder :
         {"", " ", "\\", ".", "..", "games", "\\games", "games\\trle", "/", "C:games", "::\\x"})
        ExpectKept(folder);
}

TEST_F(Guarded, NoSpellingGetsThrough) {
    fs::create_directories(drive / "empty");
    ASSERT_TRUE(SetDrive('G', drive / "games", DriveType::Fixed));
    for (const char* folder :
         {"C:\\KELVASH", "c:\\kelvash\\", "C:\\Kelvash ", "C:\\Kelvash.", "C:\\Kelvash . ", "C:\\\\Kelvash",
          "C:\\games\\..\\Kelvash", "C:\\Kelvash\\out_files\\..", "C:\\Kelvash\\.", "C:\\games\\TRLE",
          "G:\\trle", "g:\\Trle.", "G:\\levels\\LEVEL_0001\\..", "C:\\Kelvash\\..."})
        ExpectKept(folder);
}

TEST_F(Guarded, LinksAreFollowedToWhatTheyMean) {
    std::error_code refused; // links need a right of their own on some systems
    fs::create_directory_symlink(drive / "games/trle", drive / "link", refused);
    if (refused) GTEST_SKIP() << "no links here";
    fs::create_directory_symlink(drive / "games", drive / "links");
    fs::create_directories(drive / "empty");
    ExpectKept("C:\\link");
    ExpectKept("C:\\links");
    ExpectKept("C:\\links\\trle");
    Told() = {{"C:\\links\\Levels", Guard::Whole}}; // the Archive's own path goes through one
    ExpectKept("C:\\games\\Levels");
}

TEST_F(Guarded, WhatLiesBelowThemGoes) {
    Bar bar{BarPlace::CallerForm, -1};
    EXPECT_TRUE(RemoveFolderTree("C:\\games\\Levels\\LEVEL_0001", bar));
    EXPECT_FALSE(Exists(drive / "games/Levels/LEVEL_0001"));
    EXPECT_TRUE(RemoveFolder("C:\\Kelvash\\out_files"));
    EXPECT_TRUE(DeleteFiles("C:\\games\\trle\\data", "*"));
    EXPECT_FALSE(Exists(drive / "games/trle/data/file.txt"));
}

TEST_F(Guarded, FilesGoByAMaskFromTheTrleFolderAlone) {
    MakeFile(drive / "Kelvash/Kelvash.prf", "x");
    MakeFile(drive / "games/Levels/a.kva", "x");
    EXPECT_FALSE(DeleteFiles("C:\\Kelvash", "*"));
    EXPECT_FALSE(DeleteFiles("C:\\games\\levels.", "*"));
    EXPECT_FALSE(DeleteFiles("C:", "*"));
    EXPECT_FALSE(DeleteFiles("", "*"));
    EXPECT_FALSE(DeleteFiles("C:\\games\\trle", ""));
    EXPECT_TRUE(Exists(drive / "Kelvash/Kelvash.prf"));
    EXPECT_TRUE(Exists(drive / "games/Levels/a.kva"));
    EXPECT_TRUE(Exists(drive / "games/trle/tomb4.exe"));
    EXPECT_TRUE(DeleteFiles("C:\\games\\trle", "*.exe"));
    EXPECT_FALSE(Exists(drive / "games/trle/tomb4.exe"));
    // Also where it is the root of a drive.
    ASSERT_TRUE(SetDrive('T', drive / "games/trle", DriveType::Fixed));
    MakeFile(drive / "games/trle/tomb4.exe", "x");
    EXPECT_TRUE(DeleteFiles("T:", "*.exe"));
    EXPECT_FALSE(Exists(drive / "games/trle/tomb4.exe"));
}

TEST_F(Guarded, WhatIsMissingHasNothingToLose) {
    Bar bar{BarPlace::CallerForm, -1};
    EXPECT_TRUE(RemoveFolderTree("C:\\none", bar));
    EXPECT_TRUE(DeleteFiles("C:\\none", "*"));
    Told() = {{"X:\\gone", Guard::Whole}};
    EXPECT_TRUE(RemoveFolderTree("C:\\games", bar));
}

} // namespace
} // namespace kelvash
