// Properties of a level that exists: its own files stay as they are until OK.
#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/profile.h"
#include "core/tr4_info.h"
#include "foundation/files.h"
#include "intake/work_folder.h"
#include "support/intake_home.h"

namespace kelvash::intake {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class PropertiesTest : public test::IntakeHome {
  protected:
    const Files kGood = {{"maze.tr4", "level data"}, {"script.dat", "script"}, {"english.dat", "words"}};
    void OpenGood(const Files& more = {}) {
        Files files = kGood;
        files.insert(more.begin(), more.end());
        AddLevel(1, "The Maze", files);
        AddLevel(2, "Last", {});
        OpenProperties(1);
    }
    std::filesystem::path Stored(const std::string& name) const { return LevelPath(1) / "FILES" / name; }
};

TEST_F(PropertiesTest, CancelBringsBackWhatWasRemovedAndReplaced) {
    OpenGood();
    RemoveAllFiles(level);
    EXPECT_THAT(WorkNames(), IsEmpty());
    MakeFile(drive / "in/maze.tr4", "another level");
    EXPECT_TRUE(AddSource(level, "C:\\in\\maze.tr4"));
    MakeFile(drive / "in/more.txt", "x");
    EXPECT_TRUE(AddSource(level, "C:\\in\\more.txt"));
    CancelLevel(level);
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4", "script.dat"));
    EXPECT_EQ(BytesOf(Stored("maze.tr4")), "level data");
    EXPECT_FALSE(Exists(LevelPath(1) / "FILES_NEW"));
}

TEST_F(PropertiesTest, OkTakesWhatWasRemovedAddedAndReplaced) {
    OpenGood({{"old.txt", "x"}});
    MakeFile(drive / "in/Maze.tr4", "another level");
    EXPECT_TRUE(AddSource(level, "C:\\in\\Maze.tr4"));
    EXPECT_TRUE(DeleteFile(level.WorkFolder + "\\old.txt"));
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(StoredNames().size(), 3U);
    EXPECT_EQ(ReadWholeFile("C:\\Levels\\LEVEL_0001\\FILES\\maze.tr4"), "another level");
    EXPECT_FALSE(Exists(LevelPath(1) / "FILES_NEW"));
    EXPECT_EQ(Record().FilesSize, 24); // 13 + 6 + 5
}

TEST_F(PropertiesTest, AFileThatIsPutIntoTheLevelByHandIsTaken) {
    OpenGood();
    MakeFile(Stored("by hand.txt"), "hand");
    MakeFile(LevelPath(1) / "aside", "other words");
    std::filesystem::rename(LevelPath(1) / "aside", Stored("english.dat"));
    Refresh(level);
    EXPECT_THAT(WorkNames(), ElementsAre("by hand.txt", "english.dat", "maze.tr4", "script.dat"));
    MakeFile(Stored("later.txt"), "later");
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_THAT(StoredNames(),
                ElementsAre("by hand.txt", "english.dat", "later.txt", "maze.tr4", "script.dat"));
    EXPECT_EQ(BytesOf(Stored("english.dat")), "other words");
}

// An editor that writes in place reaches one of the two only.
TEST_F(PropertiesTest, AFileThatWasPutInByHandIsNoSecondNameOfTheLevelsOwn) {
    OpenGood();
    MakeFile(Stored("by hand.txt"), "hand");
    SetFileDate("C:\\Levels\\LEVEL_0001\\FILES\\by hand.txt", 1000000000);
    Refresh(level);
    EXPECT_EQ(FileTime("C:\\Levels\\LEVEL_0001\\FILES_NEW\\by hand.txt"), 1000000000);
    EXPECT_EQ(test::LinksOf(Stored("by hand.txt")), 1U);
    MakeFile(Work() / "by hand.txt", "written in place");
    EXPECT_EQ(BytesOf(Stored("by hand.txt")), "hand");
    CancelLevel(level);
    EXPECT_EQ(BytesOf(Stored("by hand.txt")), "hand");
}

TEST_F(PropertiesTest, AZipPutInByHandIsUnpackedOnce) {
    OpenGood();
    std::filesystem::rename(MakeZip("in/a.zip", {{"005.wav", "wave"}}), Stored("a.zip"));
    Refresh(level);
    Refresh(level);
    EXPECT_THAT(WorkNames(), ElementsAre("005.wav", "english.dat", "maze.tr4", "script.dat"));
    Store();
    EXPECT_THAT(StoredNames(), ElementsAre("005.wav", "english.dat", "maze.tr4", "script.dat"));
}

TEST_F(PropertiesTest, ANewPlainFileDropsItsOldStoredForm) {
    OpenGood({{"005.wav.zl", "packed"}});
    MakeFile(drive / "in/005.wav", "wave");
    EXPECT_TRUE(AddSource(level, "C:\\in\\005.wav"));
    Store();
    EXPECT_THAT(StoredNames(), ElementsAre("005.wav", "english.dat", "maze.tr4", "script.dat"));
}

TEST_F(PropertiesTest, ANewStoredFormDropsTheOldPlainFile) {
    OpenGood({{"005.wav", "wave"}});
    MakeFile(drive / "in/005.wav.ZL", "packed");
    EXPECT_TRUE(AddSource(level, "C:\\in\\005.wav.ZL"));
    Store();
    EXPECT_THAT(StoredNames(), ElementsAre("005.wav.ZL", "english.dat", "maze.tr4", "script.dat"));
}

TEST_F(PropertiesTest, BothFormsThatWereThereStay) {
    OpenGood({{"005.wav", "wave"}, {"005.wav.zl", "packed"}});
    level.Name = "Renamed";
    Store();
    EXPECT_THAT(StoredNames(), Contains("005.wav"));
    EXPECT_THAT(StoredNames(), Contains("005.wav.zl"));
}

TEST_F(PropertiesTest, OfTheLastLevelLoseNoEditThroughTheQuestionOfNewLevels) {
    for (std::int32_t code : {1, 2}) {
        AddLevel(code, "Twin", kGood);
        core::ListTr4("C:\\Levels\\LEVEL_000" + std::to_string(code) + "\\FILES");
        ASSERT_TRUE(core::WriteTr4Info(core::PlaceAt(code)));
    }
    OpenProperties(2);
    EXPECT_TRUE(level.IsNewLevel);
    level.Name = "Renamed";
    Store(); // a question would fail the test
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(Record().Name, "Renamed");
    // Another level file may well be one that the Archive has; but a No isn't the end of the edit.
    OpenProperties(2);
    ASSERT_TRUE(SetFileDate(level.WorkFolder + "\\maze.tr4", 1000000000));
    level.Note = "noted";
    user.WillAnswer("would you like add this (not too) new level?", "no");
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    user.WillAnswer("would you like add this (not too) new level?", "yes");
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(Record().Note, "noted");
}

TEST_F(PropertiesTest, AudioIsCheckedForEveryLevel) {
    OpenGood({{"105.mp3", "ID3"}});
    EXPECT_FALSE(level.IsNewLevel);
    user.WillAnswer("Would you like continue audio conversion?", "no");
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_EQ(user.Told().size(), 1U);
    core::archive.Header.EncodeWavInMp3 = true;
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
}

TEST_F(PropertiesTest, GivingUpAsksWhereSomethingWouldBeLost) {
    OpenGood();
    GiveUpLevel(level);
    EXPECT_EQ(level.State, FormState::Cancelled);
    OpenProperties(1);
    level.Note = "typed";
    user.WillAnswer("Do you want give up the changes of this level?", "no");
    GiveUpLevel(level);
    EXPECT_EQ(level.State, FormState::Open);
    level.Note = "";
    MakeFile(Work() / "more.txt", "x");
    user.WillAnswer("Do you want give up the changes of this level?", "yes");
    GiveUpLevel(level);
    EXPECT_EQ(level.State, FormState::Cancelled);
    EXPECT_FALSE(Exists(Stored("more.txt")));
}

TEST_F(PropertiesTest, GivingUpANewLevelAsksUnlessItIsEmpty) {
    OpenNew();
    GiveUpLevel(level);
    EXPECT_EQ(level.State, FormState::Cancelled);
    OpenNew(kGood);
    user.WillAnswer("Do you want give up the new level? The files added until now will be removed.", "no");
    GiveUpLevel(level);
    EXPECT_EQ(level.State, FormState::Open);
}

// Programs that write in place change the draft alone.
TEST_F(PropertiesTest, AFileThatIsOpenedIsNoLongerTheLevelsOwn) {
    OpenGood({{"readme.txt", "old"}});
    EXPECT_EQ(test::LinksOf(Work() / "readme.txt"), 2U);
    EXPECT_TRUE(PartFromLevel(level, level.FileList[2]));
    EXPECT_EQ(test::LinksOf(Work() / "readme.txt"), 1U);
    MakeFile(Work() / "readme.txt", "written in place");
    CancelLevel(level);
    EXPECT_EQ(BytesOf(Stored("readme.txt")), "old");
}

TEST_F(PropertiesTest, WhatWasOpenedForAViewGoesAtTheEnd) {
    OpenGood();
    MakeFile(home / "_temp_/city.tr4", "unpacked for a view");
    CancelLevel(level);
    EXPECT_FALSE(Exists(home / "_temp_"));
}

} // namespace
} // namespace kelvash::intake
