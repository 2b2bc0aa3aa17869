// The files of the open dialog.
#include <gmock/gmock.h>

#include "core/profile.h"
#include "foundation/user.h"
#include "intake/apply_config.h"
#include "intake/new_level.h"
#include "intake/new_level_files_home.h"
#include "intake/work_folder.h"
#include "support/intake_home.h"

namespace kelvash::intake {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(LevelFiles, AZipInTheWorkFolderIsUnpackedAndVanishes) {
    OpenNew();
    std::filesystem::rename(MakeZip("in/a.zip", {{"DATA/maze.tr4", "level"}}), Work() / "A.ZIP");
    RefreshFileList(level);
    EXPECT_THAT(WorkNames(), ElementsAre("maze.tr4"));
    EXPECT_THAT(level.FileList, ElementsAre("C:\\Levels\\LEVEL_0001\\files\\maze.tr4"));
    EXPECT_EQ(level.SizeText, "1 files (5)");
    EXPECT_THAT(user.Shown(), Contains("Unzipping 'A.ZIP' in progress"));
}

TEST_F(LevelFiles, ZipsInsideZipsAreUnpackedToo) {
    OpenNew();
    const std::string inner = test::BytesOf(MakeZip("in/inner.zip", {{"maze.tr4", "level"}}));
    const std::string middle =
        test::BytesOf(MakeZip("in/middle.zip", {{"x/inner.zip", inner}, {"m.txt", "m"}}));
    std::filesystem::rename(MakeZip("in/outer.zip", {{"middle.zip", middle}}), Work() / "outer.zip");
    RefreshFileList(level);
    EXPECT_THAT(WorkNames(), ElementsAre("m.txt", "maze.tr4"));
}

TEST_F(LevelFiles, ADamagedZipIsToldOnceAndTheOthersAreUnpacked) {
    OpenNew();
    Put("a.zip", "no zip");
    std::filesystem::rename(MakeZip("in/b.zip", {{"maze.tr4", "level"}}), Work() / "b.zip");
    RefreshFileList(level);
    EXPECT_THAT(WorkNames(), ElementsAre("a.zip", "maze.tr4"));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error decompressing file: a.zip\r\nI can not open zip "
                                         "file: a.zip (Not a zip archive)"));
}

TEST_F(LevelFiles, OnceAPackageFileIsAppliedZipsAreLevelFiles) {
    OpenNew();
    ConfigApplied = true;
    Put("extra.zip", "anything");
    RefreshFileList(level);
    EXPECT_THAT(WorkNames(), ElementsAre("extra.zip"));
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(LevelFiles, TheListKeepsTheSelectedDocument) {
    OpenNew({{"b.txt", "1"}});
    level.MoreInfo = 1;
    Put("a.txt");
    RefreshFileList(level);
    EXPECT_THAT(level.MoreInfoChoices, ElementsAre("< NONE >", "a.txt", "b.txt"));
    EXPECT_EQ(Selected(), "b.txt");
    std::filesystem::remove(Work() / "b.txt");
    RefreshFileList(level);
    EXPECT_EQ(Selected(), "< NONE >");
}

TEST_F(LevelFiles, TheDocumentIsPickedByTheWordsInTheirOrder) {
    OpenNew({{"Installation.txt", ""}, {"my NOTEs.txt", ""}, {"walkthrough.doc", ""}});
    Pick();
    EXPECT_EQ(Selected(), "my NOTEs.txt");
    Put("!README.TXT");
    level.MoreInfo = 0;
    Pick();
    EXPECT_EQ(Selected(), "!README.TXT");
    Put("Walkthrough.txt");
    Pick(); // a selection stays
    EXPECT_EQ(Selected(), "!README.TXT");
    level.MoreInfo = 0;
    Pick();
    EXPECT_EQ(Selected(), "Walkthrough.txt");
}

TEST_F(LevelFiles, WithoutATextAnyNameCounts) {
    OpenNew({{"solution.htm", ""}, {"maze.tr4", ""}});
    Pick();
    EXPECT_EQ(Selected(), "solution.htm");
}

TEST_F(LevelFiles, ATextWithoutAWordPicksNothingElse) {
    OpenNew({{"story.txt", ""}, {"readme.htm", ""}});
    Pick();
    EXPECT_EQ(Selected(), "< NONE >");
}

TEST_F(LevelFiles, NothingIsPickedAfterAPackageFile) {
    OpenNew({{"readme.txt", ""}});
    level.LastZip = "C:\\in\\x.zip";
    ConfigApplied = true;
    Pick();
    EXPECT_EQ(Selected(), "< NONE >");
    EXPECT_EQ(level.Name, "");
}

TEST_F(LevelFiles, AddFileAsksCopiesAndRemembersTheFolder) {
    OpenNew();
    test::MakeFile(drive / "in/maze.tr4", "level");
    core::profile.DownloadFolder = "C:\\start";
    user.WillAnswer("Select source file (zip or other)", "C:\\in\\maze.tr4");
    AddFile(level);
    EXPECT_EQ(user.last_start, "C:\\start");
    EXPECT_EQ(user.last_filter, "Zip files (*.zip)|*.zip|All files (*.*)|*.*");
    EXPECT_EQ(core::profile.DownloadFolder, "C:\\in");
    EXPECT_THAT(WorkNames(), ElementsAre("maze.tr4"));
    EXPECT_THAT(user.Shown(), Contains("Copy file in progress..."));
    user.WillAnswer("Select source file", "cancel");
    AddFile(level);
    EXPECT_EQ(core::profile.DownloadFolder, "C:\\in");
}

TEST_F(LevelFiles, AnAddedZipNamesALevelWithoutAName) {
    OpenNew();
    MakeZip("in/The Maze.zip", {{"DATA/maze.tr4", "level"}});
    EXPECT_TRUE(AddSource(level, "C:\\in\\The Maze.zip"));
    EXPECT_EQ(level.Name, "The Maze");
    MakeZip("in/Music.zip", {{"audio/005.wav", "wave"}});
    EXPECT_TRUE(AddSource(level, "C:\\in\\Music.zip"));
    EXPECT_EQ(level.Name, "The Maze");
    EXPECT_THAT(WorkNames(), ElementsAre("005.wav", "maze.tr4"));
}

TEST_F(LevelFiles, AFolderIsCopiedFlatWithItsTreeOnRequest) {
    OpenNew();
    test::MakeFile(drive / "in/maze.tr4", "level");
    test::MakeFile(drive / "in/AUDIO/005.wav", "wave");
    test::MakeFile(drive / "in/AUDIO/more/006.wav", "wave 6");
    const std::string question =
        "In folder C:\\in there are also sub folders.\r\nWould you like copy files also from all subfolders?";
    user.WillAnswer("Select source folder", "C:\\in");
    user.WillAnswer(question, "no");
    AddFolder(level);
    EXPECT_EQ(core::profile.DownloadFolder, "C:\\in");
    EXPECT_THAT(WorkNames(), ElementsAre("maze.tr4"));
    EXPECT_THAT(user.Shown(), Contains("Copying files in progress..."));
    user.WillAnswer("Select source folder", "C:\\in");
    user.WillAnswer(question, "yes");
    AddFolder(level);
    EXPECT_THAT(WorkNames(), ElementsAre("005.wav", "006.wav", "maze.tr4"));
}

TEST_F(LevelFiles, OfTwoFilesOfOneNameInATreeTheUserChooses) {
    OpenNew();
    test::MakeFile(drive / "in/readme.txt", "the level's");
    test::MakeFile(drive / "in/doc/README.TXT", "another one");
    test::MakeFile(drive / "in/same/readme.txt", "the level's");
    user.WillAnswer("there are also sub folders", "yes");
    user.WillAnswer("Replace file", "no");
    EXPECT_TRUE(AddSource(level, "C:\\in"));
    EXPECT_EQ(Bytes("readme.txt"), "the level's");
}

TEST_F(LevelFiles, AFileThatIsAddedAgainIsReplaced) {
    OpenNew({{"maze.tr4", "old"}});
    test::MakeFile(drive / "in/Maze.TR4", "new");
    EXPECT_TRUE(AddSource(level, "C:\\in\\Maze.TR4"));
    ASSERT_EQ(level.FileList.size(), 1U);
    EXPECT_EQ(test::BytesOf(Work() / WorkNames().front()), "new");
}

TEST_F(LevelFiles, WhatCannotBeHadIsTold) {
    OpenNew({{"kept.txt", "x"}});
    test::MakeFile(drive / "in/bad.zip", "no zip");
    EXPECT_FALSE(AddSource(level, "C:\\in\\bad.zip"));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while copying or unzipping file: bad.zip\r\nI can "
                                         "not open zip file: bad.zip (Not a zip archive)"));
    EXPECT_FALSE(AddSource(level, "C:\\in\\gone"));
    EXPECT_EQ(user.Told().back(), "critical: I can not find this file or folder: C:\\in\\gone");
    std::filesystem::create_directories(Work() / "a.txt/in the way");
    test::MakeFile(drive / "in/folder/a.txt", "a");
    EXPECT_FALSE(AddSource(level, "C:\\in\\folder"));
    EXPECT_EQ(user.Told().back(),
              "critical: Error in copying file [C:\\in\\folder\\a.txt] in folder "
              "[C:\\Levels\\LEVEL_0001\\files");
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(WorkNames(), ElementsAre("kept.txt"));
}

TEST_F(LevelFiles, AStopLeavesWhatHasArrived) {
    OpenNew();
    test::MakeFile(drive / "in/a.txt", "a");
    user.stop = true;
    EXPECT_FALSE(AddSource(level, "C:\\in"));
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: Adding of files has been stopped. The files copied until "
                            "now are in the list."));
}

TEST_F(LevelFiles, AZipGoesThroughATemporaryFolderOnRequest) {
    user.MayBeTold("I can not open zip file: bad.zip");
    OpenNew();
    MakeZip("in/x.zip", {{"maze.tr4", "level"}, {"AUDIO/005.wav", "wave"}});
    EXPECT_EQ(AddFileOrZip(level, "C:\\in\\x.zip", level.WorkFolder, Through::TempFolder).How,
              Arrival::Whole);
    EXPECT_THAT(WorkNames(), ElementsAre("005.wav", "maze.tr4"));
    EXPECT_FALSE(test::Exists(home / "_temp_zip"));
    test::MakeFile(drive / "in/bad.zip", "no zip");
    EXPECT_EQ(AddFileOrZip(level, "C:\\in\\bad.zip", level.WorkFolder, Through::TempFolder).How,
              Arrival::Failed);
    EXPECT_FALSE(test::Exists(home / "_temp_zip"));
}

TEST_F(LevelFiles, RemovingAFileTellsAndAsks) {
    OpenNew({{"a.txt", ""}, {"b.txt", ""}});
    RemoveFile(level, -1);
    RemoveFile(level, 2);
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: No file selected", "exclamation: No file selected"));
    user.WillAnswer("Are you sure to remove file: a.txt", "no");
    RemoveFile(level, 0);
    EXPECT_THAT(WorkNames(), ElementsAre("a.txt", "b.txt"));
    user.WillAnswer("Are you sure to remove file: a.txt", "yes");
    RemoveFile(level, 0);
    EXPECT_THAT(WorkNames(), ElementsAre("b.txt"));
    EXPECT_EQ(level.FileList.size(), 1U);
    RemoveAllFiles(level);
    EXPECT_THAT(WorkNames(), IsEmpty());
    EXPECT_EQ(level.SizeText, "0 files (0)");
}

TEST_F(LevelFiles, RefreshAppliesThePackageFileOfANewLevelOnly) {
    LevelConfig = {};
    LevelConfig.LevelName = "By its author";
    AddLevel(1, "First", {{"kelvash.cfg", ConfigBytes()}});
    AddLevel(2, "Last", {{"kelvash.cfg", ConfigBytes()}});
    OpenProperties(1);
    Refresh(level);
    EXPECT_EQ(level.Name, "First");
    OpenProperties(2);
    Refresh(level);
    EXPECT_EQ(level.Name, "By its author");
}

TEST_F(LevelFiles, AStoredFileIsDecompressedBeforeItIsOpened) {
    OpenNew({{"bad.txt.zl", "no stream"}});
    OpenLevelFile(level, 0);
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error decompressing file 'bad.txt.zl"));
    OpenLevelFile(level, 5); // nothing to open
    EXPECT_EQ(user.Told().size(), 1U);
}

TEST_F(LevelFiles, AProgramAmongTheFilesIsNotRunWithoutAYes) {
    OpenNew({{"start_me.exe", "MZ"}});
    user.WillAnswer("program does:\r\n" + level.FileList.at(0) + "\r\n", "no");
    OpenLevelFile(level, 0);
    EXPECT_THAT(user.Told(), IsEmpty());
}

} // namespace
} // namespace kelvash::intake
