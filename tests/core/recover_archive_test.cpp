#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/maintenance.h"
#include "core/profile.h"
#include "support/maintenance_home.h"

namespace kelvash::core {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class Recovery : public test::MaintenanceHome {
  protected:
    void Put(const std::string& path, const std::string& bytes) {
        test::MakeFile(drive / "old" / path, bytes);
    }
    bool Recover(const std::string& folder = "C:\\old") {
        user.WillAnswer("Choose HD main folder of archive to recover", folder);
        user.WillAnswer("Is archive to restore also on CD?", "no");
        return RecoverArchive();
    }
};

TEST_F(Recovery, LevelsComeFromTheFolders) {
    Put("LEVEL_0002/FILES/a.tr4", "12345");
    Put("level_0010/FILES/b.tr4.zl", "123");
    Put("level_0010/SAVEGAMES/savegame.0", "1");
    Put("LEVEL_03/FILES/c.tr4", "too short a number");
    Put("LEVEL_00004/FILES/c.tr4", "too long a number");
    Put("LEVEL_abcd/FILES/c.tr4", "none");
    Put("LEVEL_0000/FILES/c.tr4", "none");
    EXPECT_TRUE(Recover());
    EXPECT_THAT(Codes(), ElementsAre(0, 2, 10));
    EXPECT_EQ(archive.Table[0].Name, "- TRLE: Original configuration -");
    EXPECT_EQ(archive.Table[1].Name, "Level Name 2");
    EXPECT_EQ(archive.Table[2].Name, "Level Name 10");
    EXPECT_EQ(archive.Table[1].FilesSize, 5);
    EXPECT_EQ(archive.Header.MainFolder, "C:\\old");
    EXPECT_EQ(archive.Header.SecondaryFolder, "C:\\old");
    EXPECT_EQ(archive.Header.CdCount, 0);
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\LevelArchive.kva");
    EXPECT_TRUE(test::Exists(home / "LevelArchive.kva"));
    EXPECT_EQ(
        user.Told().front(),
        "plain: If you have lost or damaged archive.kva but You have all files folder you could recover "
        "archive but then you'll have insert manually infos about: Level name and [more info] file, using "
        "command [Menu->Level->Properties of current level]");
    EXPECT_EQ(user.Told().size(), 1U);
}

TEST_F(Recovery, WithoutLevelsTheOpenArchiveStays) {
    AddSized(1, "One");
    std::filesystem::create_directories(drive / "old");
    EXPECT_FALSE(Recover());
    EXPECT_EQ(user.Told().back(), "exclamation: I've not found any 'LEVEL_###' subfolder in folder: C:\\old");
    EXPECT_THAT(Codes(), ElementsAre(0, 1));
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\test.kva");
    user.WillAnswer("Choose HD main folder", "cancel");
    EXPECT_FALSE(RecoverArchive());
}

TEST_F(Recovery, FoldersWithoutALevelAreTold) {
    Put("LEVEL_0001/FILES/readme.txt", "x");
    EXPECT_TRUE(Recover());
    EXPECT_EQ(user.Told().back(),
              "exclamation: Warning: this recovered level has no .tr4 files: \r\n"
              "C:\\old\\LEVEL_0001\\files");
}

TEST_F(Recovery, CdsAreToldToBeLeftOut) {
    Put("LEVEL_0001/FILES/a.tr4", "x");
    user.WillAnswer("Choose HD main folder of archive to recover", "C:\\old");
    user.WillAnswer("Is archive to restore also on CD?", "yes");
    EXPECT_TRUE(RecoverArchive());
    EXPECT_THAT(user.Told(),
                Contains("exclamation: Kelvash can't recover levels on CD yet: only those on disk "
                         "will be recovered"));
}

TEST_F(Recovery, AFolderThatTheFileCannotHoldIsRefused) {
    test::MakeFile(drive / "\xCE\xBB/LEVEL_0001/FILES/a.tr4", "x");
    user.WillAnswer("Choose HD main folder", "C:\\\xCE\xBB");
    EXPECT_FALSE(RecoverArchive());
    EXPECT_THAT(user.Told().back(), testing::StartsWith("critical: This path has characters"));
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\test.kva");
}

} // namespace
} // namespace kelvash::core
