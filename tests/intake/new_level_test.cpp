// Opening and cancelling the dialog, and its callers.
#include "intake/new_level.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/kept_folders.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "intake/apply_config.h"
#include "intake/new_level_home.h"
#include "support/intake_home.h"
#include "support/platform.h"

namespace kelvash::intake {
namespace {

using namespace std::string_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(NewLevelTest, AddingMakesRecordAndFoldersAndSelectsTheLevel) {
    core::profile.AutoSave = true;
    WillWork([&](NewLevel& open) {
        EXPECT_EQ(open.Level.Index, 1);
        EXPECT_TRUE(open.IsNewLevel);
        EXPECT_TRUE(open.FilesChanged);
        EXPECT_FALSE(open.UsesTempFolder);
        EXPECT_EQ(open.WorkFolder, "C:\\Levels\\LEVEL_0001\\files");
        EXPECT_EQ(open.LevelFilesFolder, open.WorkFolder);
        EXPECT_EQ(open.SizeText, "Level size: 0 + 0 = 0");
        EXPECT_THAT(open.MoreInfoChoices, ElementsAre("< NONE >"));
        for (const auto& [name, bytes] : kGood)
            test::MakeFile(levels / "LEVEL_0001/FILES" / name, bytes);
        open.Name = "The Maze";
        StoreLevel(open);
    });
    EXPECT_TRUE(intake::AddLevel());
    EXPECT_EQ(Count(), 2);
    EXPECT_EQ(core::archive.Table[1].Name, "The Maze");
    EXPECT_EQ(core::archive.Table[1].Code, 1);
    EXPECT_EQ(core::SelectedLevel(), 1);
    for (const char* folder : {"FILES", "SAVEGAMES", "BACKUP_SAVEGAMES", "SCREENSHOTS"})
        EXPECT_TRUE(std::filesystem::is_directory(levels / "LEVEL_0001" / folder)) << folder;
    EXPECT_TRUE(test::Exists(home / "test.kva"));
}

TEST_F(NewLevelTest, ACancelledLevelGoesWithItsFolder) {
    WillWork([&](NewLevel& open) {
        test::MakeFile(levels / "LEVEL_0001/FILES/maze.tr4", "x");
        CancelIn(open);
    });
    EXPECT_FALSE(intake::AddLevel());
    EXPECT_EQ(Count(), 1);
    EXPECT_FALSE(test::Exists(levels / "LEVEL_0001"));
    EXPECT_THAT(user.Shown(), Contains("Removing level folder in progress"));
    EXPECT_FALSE(test::Exists(home / "test.kva"));
}

TEST_F(NewLevelTest, WhatIsLeftInTheFolderIsKeptAside) {
    test::MakeFile(levels / "LEVEL_0001/FILES/old.tr4", "old");
    test::MakeFile(levels / "LEVEL_0001/SCREENSHOTS/old.jpg", "old");
    WillWork([&](NewLevel& open) {
        EXPECT_THAT(open.FileList, IsEmpty());
        EXPECT_FALSE(test::Exists(levels / "LEVEL_0001/SCREENSHOTS/old.jpg"));
        CancelIn(open);
    });
    EXPECT_FALSE(intake::AddLevel());
    const std::vector<core::KeptLevel> kept = core::ListKept();
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(test::BytesOf(levels / "KEPT" / kept[0].Folder / "SCREENSHOTS/old.jpg"), "old");
    ASSERT_EQ(user.Told().size(), 1U);
    EXPECT_THAT(user.Told()[0], testing::StartsWith("exclamation: The folder C:\\Levels\\LEVEL_0001 belongs "
                                                    "to no level of this archive."));
}

TEST_F(NewLevelTest, WhatAKilledRunHasMadeButNotFilledIsTaken) {
    std::filesystem::create_directories(levels / "LEVEL_0001/FILES");
    std::filesystem::create_directories(levels / "LEVEL_0001/SAVEGAMES");
    WillWork([&](NewLevel& open) { CancelIn(open); });
    EXPECT_FALSE(intake::AddLevel());
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_FALSE(test::Exists(levels / "KEPT"));
}

TEST_F(NewLevelTest, WithoutAnArchiveNothingIsAdded) {
    core::profile.LastArchive = "";
    EXPECT_FALSE(intake::AddLevel());
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Missing archive! Before adding levels you must create new "
                            "(empty) archive"));
}

TEST_F(NewLevelTest, FoldersThatCannotBeMadeAreTold) {
    test::MakeFile(levels / "LEVEL_0001", "a file in the way");
    EXPECT_FALSE(intake::AddLevel());
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error I cannot create new folders in "
                                         "[C:\\Levels\\LEVEL_0001"));
    EXPECT_EQ(Count(), 1);
}

TEST_F(NewLevelTest, AZipIsUnpackedAndNamesTheLevel) {
    MakeZip(
        "in/Maze of Echoes.zip",
        {{"maze.tr4", "level data"}, {"script.dat", "s"}, {"AUDIO/105.wav", "wave"}, {"ReadMe.txt", "Hi"}});
    WillWork([&](NewLevel& open) {
        EXPECT_EQ(open.Name, "Maze of Echoes");
        EXPECT_EQ(open.MoreInfoChoices[static_cast<std::size_t>(open.MoreInfo)], "ReadMe.txt");
        EXPECT_EQ(open.SizeText, "4 files (17)");
        EXPECT_THAT(NamesIn(levels / "LEVEL_0001/FILES"),
                    ElementsAre("105.wav", "ReadMe.txt", "maze.tr4", "script.dat"));
        CancelIn(open);
    });
    EXPECT_FALSE(intake::AddLevel("C:\\in\\Maze of Echoes.zip"));
    EXPECT_THAT(user.Shown(), Contains("Unzipping file 'Maze of Echoes.zip' in progress..."));
}

TEST_F(NewLevelTest, ThePackageFileOfAZipIsApplied) {
    LevelConfig = {};
    LevelConfig.LevelName = "By its author";
    MakeZip("in/x.zip", {{"maze.tr4", "level data"}, {"script.dat", "s"}, {"kelvash.cfg", ConfigBytes()}});
    WillWork([&](NewLevel& open) {
        EXPECT_EQ(open.Name, "By its author");
        EXPECT_TRUE(open.ConfigFound);
        CancelIn(open);
    });
    EXPECT_FALSE(intake::AddLevel("C:\\in\\x.zip"));
}

TEST_F(NewLevelTest, ADamagedZipIsTold) {
    test::MakeFile(drive / "in/bad.zip", "PK but no zip");
    WillWork([&](NewLevel& open) {
        EXPECT_EQ(open.State, FormState::Open);
        EXPECT_EQ(open.Name, "");
        CancelIn(open);
    });
    EXPECT_FALSE(intake::AddLevel("C:\\in\\bad.zip"));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error decompressing file: C:\\in\\bad.zip\r\nI can not "
                                         "open zip file: bad.zip (Not a zip archive)"));
}

TEST_F(NewLevelTest, PropertiesShowTheRecordAndItsSizes) {
    AddLevel(1, " The Maze ", {{"maze.tr4", "x"}, {"Story.txt", "y"}});
    AddLevel(2, "Last", {});
    core::archive.Table.Edit(1)->Note = "a note";
    core::archive.Table.Edit(1)->MoreInfoFile = "STORY.TXT";
    core::archive.Table.Edit(1)->FilesSize = 2097152;
    core::archive.Table.Edit(1)->SavesSize = 1024;
    OpenProperties(1);
    EXPECT_FALSE(level.IsNewLevel);
    EXPECT_FALSE(level.FilesChanged);
    EXPECT_EQ(level.Name, "The Maze");
    EXPECT_EQ(level.Note, "a note");
    EXPECT_EQ(level.MoreInfo, 2);
    EXPECT_EQ(level.SizeText, "Level size: 2.0 Mb + 1 Kb = 2.0 Mb");
    EXPECT_THAT(level.MoreInfoChoices, ElementsAre("< NONE >", "maze.tr4", "Story.txt"));
}

TEST_F(NewLevelTest, CancelOfPropertiesRestoresTheRecordAndLeavesTheFolder) {
    AddLevel(1, "The Maze", kGood);
    OpenProperties(1); // the last one, so treated like a new level
    core::archive.Table.Edit(level.Level.Index)->Name = "changed";
    core::archive.Table.Edit(level.Level.Index)->Author = "changed";
    CancelLevel(level);
    EXPECT_EQ(level.State, FormState::Cancelled);
    EXPECT_EQ(core::archive.Table[1].Name, "The Maze");
    EXPECT_EQ(core::archive.Table[1].Author, "");
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4", "script.dat"));
}

TEST_F(NewLevelTest, StoredFormsAreUndoneForTheDialogUnlessTheUserWantsThemShown) {
    core::archive.Header.CompressFiles = true;
    AddLevel(1, "The Maze", {{"a.txt", "x"}});
    test::MakeFile(levels / "LEVEL_0001/FILES/bad.tr4.zl", "no stream");
    core::profile.NoDecompress = true;
    OpenProperties(1);
    EXPECT_FALSE(level.UsesTempFolder);
    EXPECT_THAT(WorkNames(), ElementsAre("a.txt", "bad.tr4.zl"));
    core::profile.NoDecompress = false;
    OpenProperties(1);
    EXPECT_EQ(level.State, FormState::Cancelled);
    EXPECT_THAT(user.Told(), Contains("critical: Error decompressing files"));
    std::filesystem::remove(levels / "LEVEL_0001/FILES/bad.tr4.zl");
    OpenProperties(1);
    EXPECT_TRUE(level.UsesTempFolder);
    EXPECT_THAT(WorkNames(), ElementsAre("a.txt"));
    CancelLevel(level);
    EXPECT_FALSE(test::Exists(home / "_temp_Dec"));
    EXPECT_THAT(StoredNames(), ElementsAre("a.txt"));
}

TEST_F(NewLevelTest, AFolderIsTakenInBeforeTheFormOpens) {
    for (const auto& [name, bytes] : kGood)
        test::MakeFile(drive / "in/Maze" / name, bytes);
    WillWork([&](NewLevel& open) {
        EXPECT_EQ(open.Name, "") << "a zip alone gives its name";
        EXPECT_THAT(NamesIn(NativePath(open.WorkFolder)),
                    ElementsAre("english.dat", "maze.tr4", "script.dat"));
        open.Name = "The Maze";
        StoreLevel(open);
    });
    EXPECT_TRUE(intake::AddLevel("C:\\in\\Maze"));
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4", "script.dat"));
}

TEST_F(NewLevelTest, AFormThatNobodyEndsGivesTheLevelUp) {
    WillWork([](NewLevel& open) { open.Name = "The Maze"; });
    EXPECT_FALSE(intake::AddLevel());
    EXPECT_EQ(Count(), 1);
    AddLevel(1, "The Maze", kGood);
    core::RefreshLevelList();
    core::SelectLevel(1);
    WillWork([](NewLevel& open) { core::archive.Table.Edit(1)->Name = open.Name = "Renamed"; });
    EXPECT_FALSE(ShowProperty());
    EXPECT_EQ(core::archive.Table[1].Name, "The Maze");
}

TEST_F(NewLevelTest, PropertiesNeedASelection) {
    core::level_list = {};
    EXPECT_FALSE(ShowProperty());
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: No selected level"));
}

TEST_F(NewLevelTest, PropertiesSaveTheArchiveAndRefreshTheList) {
    AddLevel(1, "The Maze", kGood);
    core::profile.AutoSave = true;
    core::RefreshLevelList();
    core::SelectLevel(1);
    WillWork([](NewLevel& open) {
        EXPECT_EQ(open.Level.Index, 1);
        open.Name = "Renamed";
        StoreLevel(open);
    });
    EXPECT_TRUE(ShowProperty());
    EXPECT_TRUE(test::Exists(home / "test.kva"));
    EXPECT_THAT(core::level_list.Items.back().Text, "Renamed");
}

TEST_F(NewLevelTest, SeveralSourcesAreTakenInOneAfterTheOther) {
    MakeZip("in/One.zip", kGood);
    MakeZip("in/Bad.zip", {{"readme.txt", "no level"}});
    for (const auto& [name, bytes] : kGood)
        test::MakeFile(drive / "in/Two" / name, bytes + " of another");
    AddLevels({"C:\\in\\One.zip", "C:\\in\\Bad.zip", "C:\\in\\Two"});
    EXPECT_EQ(Count(), 3);
    EXPECT_EQ(core::archive.Table[1].Name, "One");
    EXPECT_EQ(core::archive.Table[2].Name, "Two");
    EXPECT_EQ(core::archive.Table[2].Code, 2);
    EXPECT_EQ(user.Told().back(), "plain: Added levels: 2 of 3\r\nNot added:\r\nC:\\in\\Bad.zip");
    EXPECT_EQ(test::BytesOf(levels / "LEVEL_0002/FILES/maze.tr4"), "level data of another");
}

TEST_F(NewLevelTest, AStopIsMeantForAllSourcesThatAreLeft) {
    MakeZip("in/One.zip", kGood);
    test::MakeFile(drive / "in/Two/two.tr4", "x");
    user.stop = true;
    AddLevels({"C:\\in\\One.zip", "C:\\in\\Two"});
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: Adding of files has been stopped. The files copied until now are in the "
                    "list.",
                    "plain: Added levels: 0 of 2\r\nNot added:\r\nC:\\in\\One.zip\r\nC:\\in\\Two"));
    EXPECT_EQ(Count(), 1);
}

TEST_F(NewLevelTest, ASourceThatIsMissingIsToldInTheSummary) {
    AddLevels({"C:\\in\\gone.zip"});
    EXPECT_THAT(user.Told(), ElementsAre("critical: I can not find this file or folder: C:\\in\\gone.zip",
                                         "plain: Added levels: 0 of 1\r\nNot added:\r\nC:\\in\\gone.zip"));
    EXPECT_EQ(Count(), 1);
}

} // namespace
} // namespace kelvash::intake
