// Level folders that no record names.
#include "core/kept_folders.h"

#include <gmock/gmock.h>

#include <regex>

#include "core/archive.h"
#include "core/kept_folders_home.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/lock.h"
#include "support/record_bytes.h"
#include "support/swap_home.h"

namespace kelvash::core {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

TEST_F(KeptFolders, TakeWhatStandsInTheWayOfANewLevel) {
    test::MakeFile(levels / "LEVEL_0004/BACKUP_SAVEGAMES/savegame.0", "saved");
    ASSERT_TRUE(MakeWay("C:\\Levels\\LEVEL_0004"));
    EXPECT_FALSE(test::Exists(levels / "LEVEL_0004"));
    const std::string name = OnlyKept();
    EXPECT_TRUE(std::regex_match(name, std::regex("LEVEL_0004_[0-9]{4}-[0-9]{2}-[0-9]{2}_[0-9]{6}"))) << name;
    EXPECT_EQ(test::BytesOf(Kept(name) / "BACKUP_SAVEGAMES/savegame.0"), "saved");
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: The folder C:\\Levels\\LEVEL_0004 belongs to no level of this "
                            "archive. It has been moved to C:\\Levels\\KEPT\\" +
                            name +
                            "\r\nWith the command [Tools->Archive maintenance->Take back a kept level "
                            "folder] it becomes a level again."));
}

TEST_F(KeptFolders, TakeTwoOfOneSecond) {
    user.MayBeTold("belongs to no level of this archive");
    for (int i = 0; i < 3; ++i) {
        test::MakeFile(levels / "LEVEL_0004/FILES/a.tr4", std::to_string(i));
        ASSERT_TRUE(MakeWay("C:\\Levels\\LEVEL_0004"));
    }
    EXPECT_EQ(ListKept().size(), 3U);
}

TEST_F(KeptFolders, LeaveEmptyFoldersToTheNewLevel) {
    fs::create_directories(levels / "LEVEL_0004/FILES/DOC");
    EXPECT_TRUE(HoldsNoFile("C:\\Levels\\LEVEL_0004"));
    ASSERT_TRUE(MakeWay("C:\\Levels\\LEVEL_0004"));
    EXPECT_FALSE(test::Exists(levels / "LEVEL_0004"));
    EXPECT_TRUE(MakeWay("C:\\Levels\\LEVEL_0005"));
    EXPECT_THAT(ListKept(), IsEmpty());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(KeptFolders, ThatCannotBeMadeStopTheNewLevel) {
    test::MakeFile(levels / "LEVEL_0004/FILES/a.tr4", "a");
    test::MakeFile(levels / "KEPT", "a file in the way");
    EXPECT_FALSE(MakeWay("C:\\Levels\\LEVEL_0004"));
    EXPECT_EQ(test::BytesOf(levels / "LEVEL_0004/FILES/a.tr4"), "a");
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: I can not put aside this folder, which belongs to no level "
                            "of this archive: C:\\Levels\\LEVEL_0004"));
}

TEST_F(KeptFolders, BecomeLevelsAgain) {
    test::MakeFile(Kept("LEVEL_0009_x") / "FILES/Cave of Bats.tr4.zl", "12345");
    test::MakeFile(Kept("LEVEL_0009_x") / "BACKUP_SAVEGAMES/savegame.0", "saved");
    ASSERT_EQ(ListKept().size(), 1U);
    EXPECT_EQ(ListKept()[0].Name, "Cave of Bats");
    EXPECT_EQ(ListKept()[0].Bytes, 10);
    EXPECT_EQ(TakeKept("level_0009_X"), 4);
    EXPECT_THAT(ListKept(), IsEmpty());
    EXPECT_EQ(test::BytesOf(levels / "LEVEL_0004/BACKUP_SAVEGAMES/savegame.0"), "saved");
    EXPECT_TRUE(fs::is_directory(levels / "LEVEL_0004/SCREENSHOTS"));
    const LevelRecord& level = archive.Table.ByCode(4);
    EXPECT_EQ(level.Name, "Cave of Bats");
    EXPECT_EQ(level.FilesSize, 5);
    EXPECT_EQ(level.SavesSize, 5);
    EXPECT_EQ(SelectedLevel(), 4);
    EXPECT_THAT(user.Told(), ElementsAre("plain: The kept folder is now the level: Cave of Bats"));
    ArchiveContents written;
    ASSERT_TRUE(ReadArchiveFile("C:\\Kelvash\\test.kva", written));
    EXPECT_EQ(written.Table.Size(), 3);
}

TEST_F(KeptFolders, AreNamedByTheirInfoFileThenByTheFolder) {
    std::string info("\1\0\0\0", 4);
    info += "Deep.TR4" + std::string(72, ' ') + std::string(12, '\0');
    test::MakeFile(Kept("a") / "tr4.inf", info);
    test::MakeFile(Kept("b") / "tr4.inf", "cut");
    test::MakeFile(Kept("c") / "FILES/readme.txt", "x");
    const std::vector<KeptLevel> kept = ListKept();
    ASSERT_EQ(kept.size(), 3U);
    EXPECT_EQ(kept[0].Name, "Deep");
    EXPECT_EQ(kept[1].Name, "b");
    EXPECT_EQ(kept[2].Name, "c");
}

TEST_F(KeptFolders, GiveWayThemselvesToWhatLiesUnderTheNewCode) {
    user.MayBeTold("belongs to no level of this archive");
    test::MakeFile(Kept("old") / "FILES/a.tr4", "a");
    test::MakeFile(levels / "LEVEL_0004/FILES/b.tr4", "b");
    EXPECT_EQ(TakeKept("old"), 4);
    EXPECT_EQ(test::BytesOf(levels / "LEVEL_0004/FILES/a.tr4"), "a");
    EXPECT_EQ(test::BytesOf(Kept(OnlyKept()) / "FILES/b.tr4"), "b");
}

TEST_F(KeptFolders, AreTheOnlyOnesThatCanBeTaken) {
    test::MakeFile(Kept("old") / "FILES/a.tr4", "a");
    for (const char* name : {"", ".", "..", "..\\LEVEL_0003", "old\\FILES", "nothing"}) {
        EXPECT_EQ(TakeKept(name), -1) << name;
        EXPECT_EQ(user.Told().back(),
                  std::string("critical: This is no kept level folder of the archive: ") + name);
    }
    user.WillAnswer("Choose the kept folder to take back as a level", "C:\\Levels\\LEVEL_0003");
    EXPECT_FALSE(TakeKeptLevel());
    EXPECT_EQ(user.Told().back(),
              "critical: This is no kept level folder of the archive: C:\\Levels\\LEVEL_0003");
    user.WillAnswer("Choose the kept folder", "cancel");
    EXPECT_FALSE(TakeKeptLevel());
    user.WillAnswer("Choose the kept folder", "C:\\Levels\\KEPT\\old");
    EXPECT_TRUE(TakeKeptLevel());
    EXPECT_EQ(user.last_start, "C:\\Levels\\KEPT");
    EXPECT_FALSE(TakeKeptLevel());
    EXPECT_EQ(user.Told().back(), "exclamation: There are no kept level folders in: C:\\Levels\\KEPT");
}

TEST_F(KeptFolders, HoldALevelThatWasRemovedWithoutItsFolder) {
    user.MayBeTold("belongs to no level of this archive");
    test::MakeFile(levels / "LEVEL_0003/SAVEGAMES/savegame.0", "precious");
    while (archive.Table.Size() > 1) // as an older Archive file has it
        archive.Table.Remove(1);
    EXPECT_EQ(archive.Table.NextCode(), 1);
    AddLevel(2, "Other", {});
    ASSERT_TRUE(MakeWay(LevelFolder(archive.Table.NextCode(), false)));
    EXPECT_EQ(test::BytesOf(Kept(OnlyKept()) / "SAVEGAMES/savegame.0"), "precious");
}

// --- the door ---

TEST_F(KeptFolders, StayWhileAnotherProgramIsAtWork) {
    test::MakeFile(Kept("old") / "FILES/a.tr4", "a");
    test::MakeFile(levels / "LEVEL_0004/FILES/b.tr4", "b");
    fs::create_directory(RuntimeFolder() / (FolderIdentity("C:\\Levels") + ".lock"));
    EXPECT_EQ(TakeKept("old"), -1);
    EXPECT_FALSE(TakeKeptLevel()) << "and nothing is asked";
    EXPECT_EQ(test::BytesOf(Kept("old") / "FILES/a.tr4"), "a");
    EXPECT_EQ(test::BytesOf(levels / "LEVEL_0004/FILES/b.tr4"), "b");
    EXPECT_EQ(archive.Table.Size(), 2);
    EXPECT_EQ(user.Told().size(), 2U);
}

TEST_F(KeptFolders, BecomeLevelsBesideThoseThatAnotherProgramAdded) {
    ASSERT_TRUE(WriteArchive("C:\\Kelvash\\test.kva"));
    ArchiveContents newer = archive;
    LevelRecord level;
    level.Code = 4;
    level.Name = "Coast";
    newer.Table.Append(level);
    ASSERT_TRUE(WriteArchiveFile("C:\\Kelvash\\test.kva", newer));
    test::MakeFile(levels / "LEVEL_0004/FILES/coast.tr4", "coast");
    test::MakeFile(Kept("old") / "FILES/a.tr4", "a");
    EXPECT_EQ(TakeKept("old"), 5);
    EXPECT_EQ(test::BytesOf(levels / "LEVEL_0004/FILES/coast.tr4"), "coast");
    EXPECT_EQ(test::BytesOf(levels / "LEVEL_0005/FILES/a.tr4"), "a");
    EXPECT_EQ(archive.Table.ByCode(4).Name, "Coast");
}

TEST_F(KeptFolders, AreGivenBackWhenTheArchiveCannotBeSaved) {
    ASSERT_TRUE(WriteArchive("C:\\Kelvash\\test.kva"));
    test::MakeFile(Kept("old") / "FILES/a.tr4", "a");
    fs::create_directory(home / "test.kva.new"); // in the way of every save
    EXPECT_EQ(TakeKept("old"), -1);
    EXPECT_EQ(test::BytesOf(Kept("old") / "FILES/a.tr4"), "a");
    EXPECT_FALSE(test::Exists(levels / "LEVEL_0004"));
    EXPECT_EQ(archive.Table.Size(), 2);
    EXPECT_FALSE(archive.ArchiveChanged);
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while saving archive: C:\\Kelvash\\test.kva",
                                         "critical: I can not take back the kept folder: "
                                         "C:\\Levels\\KEPT\\old"));
}

TEST_F(KeptFolders, AreGivenBackWhenTheyCannotBeALevelsFolder) {
    test::MakeFile(Kept("old") / "SAVEGAMES", "a file in the way");
    EXPECT_EQ(TakeKept("old"), -1);
    EXPECT_EQ(test::BytesOf(Kept("old") / "SAVEGAMES"), "a file in the way");
    EXPECT_FALSE(test::Exists(levels / "LEVEL_0004"));
    EXPECT_THAT(user.Told(), ElementsAre("critical: I can not take back the kept folder: "
                                         "C:\\Levels\\KEPT\\old"));
}

} // namespace
} // namespace kelvash::core
