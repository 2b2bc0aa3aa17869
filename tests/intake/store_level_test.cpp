// Pul_Ok: the checks of a level and its storing.
#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/profile.h"
#include "core/tr4_info.h"
#include "foundation/files.h"
#include "intake/apply_config.h"
#include "support/bitmaps.h"
#include "support/intake_home.h"

namespace kelvash::intake {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class StoreLevelTest : public test::IntakeHome {
  protected:
    // A level that passes all checks.
    const Files kGood = {{"maze.tr4", "level data"}, {"script.dat", "script"}, {"english.dat", "words"}};
    void OpenGood(const Files& more = {}) {
        Files files = kGood;
        files.insert(more.begin(), more.end());
        OpenNew(files);
        level.Name = "The Maze";
    }
    // What is told when a save or a picture has made way.
    const std::string kKept =
        "exclamation: Savegames and screenshots that had the names of those of the level "
        "files are now in: C:\\Kelvash\\rescued_saves_1";
    std::filesystem::path Shots() const { return LevelPath(1) / "SCREENSHOTS"; }
};

TEST_F(StoreLevelTest, StoresNameNoteAndDocument) {
    OpenGood({{"readme.txt", "Hello"}});
    level.Name = "  The Maze ";
    level.Note = " Mind the gap ";
    level.MoreInfo = 3; // "< NONE >", english.dat, maze.tr4, readme.txt
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(Record().Name, "The Maze");
    EXPECT_EQ(Record().Note, "Mind the gap");
    EXPECT_EQ(Record().MoreInfoFile, "readme.txt");
    EXPECT_EQ(Record().FilesSize, 10 + 6 + 5 + 5);
    EXPECT_EQ(Record().SavesSize, 0);
    EXPECT_EQ(core::archive.Header.MainFolderSize, 26);
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4", "readme.txt", "script.dat"));
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(StoreLevelTest, NoneSelectedClearsTheDocument) {
    OpenGood();
    core::archive.Table.Edit(level.Level.Index)->MoreInfoFile = "old.txt";
    level.MoreInfo = 0;
    Store();
    EXPECT_EQ(Record().MoreInfoFile, "");
}

TEST_F(StoreLevelTest, ANameMustBeSet) {
    OpenGood();
    level.Name = "   ";
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(user.Told(), ElementsAre("critical: You must set a name for new level"));
}

TEST_F(StoreLevelTest, SourcesWaitForTheirConversion) {
    OpenGood({{"maze.tom", "source"}});
    user.WillAnswer("There are level files in source .tom format.\r\nStart converting procedure", "cancel");
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(user.Told(), IsEmpty());
    user.WillAnswer("Start converting procedure", "ok");
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_EQ(user.Told().size(), 1U);
    EXPECT_THAT(WorkNames(), Contains("maze.tom"));
}

TEST_F(StoreLevelTest, AudioThatCannotBeDecodedKeepsTheLevelOut) {
    OpenGood({{"105.mp3", "ID3"}});
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_EQ(user.Told().size(), 1U);
    EXPECT_THAT(WorkNames(), Contains("105.mp3"));
}

TEST_F(StoreLevelTest, ALevelFileMustBeThere) {
    OpenNew({{"readme.txt", "x"}});
    level.Name = "Empty";
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: Missing file .tr4 and also file .tom\r\nProbably you have forgotten to "
                    "download or to insert in [Add level window] a zip file containing .tom or .tr4 files "
                    "for this level\r\nPlease, verify if you have other zip files to insert in add level "
                    "window, or come back on site where you've downloaded this level and check to find "
                    "zip file that contains .tom or .tr4 files"));
}

TEST_F(StoreLevelTest, AStoredLevelFileIsEnough) {
    OpenNew({{"maze.tr4.zl", "packed"}, {"script.dat", "s"}, {"english.dat", "e"}});
    level.Name = "Packed";
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
}

TEST_F(StoreLevelTest, TwoLevelFilesWithoutAScriptAreRefused) {
    OpenNew({{"a.tr4", "1"}, {"b.tr4", "2"}});
    level.Name = "Two";
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: Missing .dat file and .tr4 files are not standard level names\r\nPlease, "
                    "verify if you have other zip files to insert in add level window for this level, or "
                    "come back on site where you've downloaded this level and check to find zip file that "
                    "contains .dat file"));
}

TEST_F(StoreLevelTest, AStandardLevelOffersItsNameAsNote) {
    OpenNew({{"city.tr4", "1"}});
    level.Name = "Another city";
    level.Note = "my note";
    user.WillAnswer(
        "To play this level you should choose in [new game] the level named: City of the Dead\r\n"
        "Do you want insert this note in single row note to remember name level to select in future?",
        "yes");
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(Record().Note, "To play this level choose: City of the Dead");
    // A new level without a script gets the original one.
    EXPECT_EQ(test::BytesOf(LevelPath(1) / "FILES/script.dat"), "original script.dat");
}

TEST_F(StoreLevelTest, ARefusedNoteStaysTheUsers) {
    OpenNew({{"city.tr4", "1"}});
    level.Name = "Another city";
    level.Note = "my note";
    user.WillAnswer("Do you want insert this note", "no");
    Store();
    EXPECT_EQ(Record().Note, "my note");
}

TEST_F(StoreLevelTest, OneLanguageIsKept) {
    OpenGood({{"french.dat", "mots"}});
    Store(); // english.dat is the user's language, by the backup
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4", "script.dat"));
}

TEST_F(StoreLevelTest, PropertiesOfTheLastLevelChooseTheLanguageToo) {
    AddLevel(1, "Old", {{"a.tr4", "1"}, {"script.dat", "s"}, {"english.dat", "e"}, {"french.dat", "f"}});
    AddLevel(2, "Last", {{"b.tr4", "1"}, {"script.dat", "s"}, {"english.dat", "e"}, {"french.dat", "f"}});
    OpenProperties(1);
    EXPECT_FALSE(level.IsNewLevel);
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_THAT(StoredNames(1), Contains("french.dat"));
    OpenProperties(2);
    EXPECT_TRUE(level.IsNewLevel);
    Store();
    EXPECT_THAT(StoredNames(2), ElementsAre("b.tr4", "english.dat", "script.dat"));
}

TEST_F(StoreLevelTest, AnEqualLevelAsksAndTheAnswerNoCancels) {
    AddLevel(1, "Older", {{"MAZE.TR4", "level data"}});
    core::ListTr4("C:\\Levels\\LEVEL_0001\\FILES");
    ASSERT_TRUE(core::WriteTr4Info(core::PlaceAt(1)));
    AddLevel(2, "", kGood);
    const std::string question =
        "Warning: current tr4 file \"MAZE.TR4\" has same name and same size of tr4 file "
        "in level \"Older\"\r\nHowever, would you like add this (not too) new level?";
    BeginNewLevel(level, core::PlaceAt(2), {});
    level.Name = "Again";
    user.WillAnswer(question, "no");
    Store();
    EXPECT_EQ(level.State, FormState::Cancelled);
    EXPECT_EQ(Record().Name, "");
    EXPECT_THAT(user.Shown(), Contains("Verify if tr4 files are equal of other archived levels "));
    BeginNewLevel(level, core::PlaceAt(2), {});
    level.Name = "Again";
    user.WillAnswer(question, "yes");
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
}

TEST_F(StoreLevelTest, TheCheckForEqualLevelsCanBeSwitchedOff) {
    core::profile.CheckEqualLevels = false;
    AddLevel(1, "Older", {{"maze.tr4", "level data"}});
    core::ListTr4("C:\\Levels\\LEVEL_0001\\FILES");
    ASSERT_TRUE(core::WriteTr4Info(core::PlaceAt(1)));
    AddLevel(2, "", kGood);
    BeginNewLevel(level, core::PlaceAt(2), {});
    level.Name = "Again";
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
}

TEST_F(StoreLevelTest, TheSameFileIsFoundWithAnotherDateAndNotInTheLevelItself) {
    AddLevel(1, "One", {{"maze.tr4", "level data"}});
    AddLevel(2, "Two", {{"Maze.TR4", "LEVEL DATA"}, {"other.tr4", "x"}});
    for (std::int32_t index : {1, 2}) {
        core::ListTr4(core::FilesFolder(core::LevelFolder(index, false)));
        core::Tr4List.front().FileDate = 1.5 * index;
        ASSERT_TRUE(core::WriteTr4Info(core::PlaceAt(index)));
    }
    std::string name;
    user.percents.clear();
    EXPECT_EQ(FindSameTr4("C:\\Levels\\LEVEL_0001\\FILES", core::PlaceAt(1), name), 2);
    EXPECT_EQ(name, "Maze.TR4");
    EXPECT_THAT(user.percents, ElementsAre(0, 50, 100, 0)); // of three places, then reset
    EXPECT_EQ(FindSameTr4("C:\\Levels\\LEVEL_0002\\FILES", core::PlaceAt(2), name), 1);
    // Without level files in the folder the saved information counts, and without that nothing does.
    EXPECT_EQ(FindSameTr4("C:\\nowhere", core::PlaceAt(1), name), 2);
    std::filesystem::remove(LevelPath(1) / "tr4.inf");
    EXPECT_EQ(FindSameTr4("C:\\nowhere", core::PlaceAt(1), name), -1);
}

TEST_F(StoreLevelTest, NamesAreComparedByTheirFirstEightyCharacters) {
    const std::string longest(80, 'x');
    AddLevel(1, "Long", {{longest + "1.tr4", "level data"}});
    AddLevel(2, "Longer", {{longest + "2.tr4", "LEVEL DATA"}});
    core::ListTr4("C:\\Levels\\LEVEL_0001\\FILES");
    ASSERT_TRUE(core::WriteTr4Info(core::PlaceAt(1)));
    std::string name;
    EXPECT_EQ(FindSameTr4("C:\\Levels\\LEVEL_0002\\FILES", core::PlaceAt(2), name), 1);
    EXPECT_EQ(name, longest);
}

TEST_F(StoreLevelTest, SavegamesGoIntoTheStash) {
    OpenGood({{"savegame.0", "saved"}, {"SAVEGAME.3", "saved too"}});
    Store();
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "saved");
    EXPECT_EQ(test::BytesOf(StashPath(1) / "SAVEGAME.3"), "saved too");
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4", "script.dat"));
    EXPECT_EQ(Record().SavesSize, 14);
    EXPECT_EQ(core::archive.Header.SecondaryFolderSize, 14);
}

TEST_F(StoreLevelTest, SavegamesOfALevelThatIsInTrleGoThere) {
    AddLevel(1, "In", kGood, {{"savegame.0", "swapped in"}});
    AddLevel(2, "Last", {});
    test::MakeFile(trle / "Kelvash.txt", "#LEVEL_CODE=1#\r\n#LEVEL_NAME=In#\r\n");
    test::MakeFile(trle / "savegame.0", "in play");
    OpenProperties(1);
    test::MakeFile(Work() / "savegame.0", "added");
    test::MakeFile(Work() / "savegame.1", "added too");
    Store();
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "added");
    EXPECT_EQ(test::BytesOf(trle / "savegame.1"), "added too");
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "swapped in");
    EXPECT_EQ(test::BytesOf(home / "rescued_saves_1/savegame.0"), "in play");
    EXPECT_EQ(test::BytesOf(home / "rescued_saves_1/rescued_from.txt"), "From: C:\\Levels\\LEVEL_0001\r\n");
    EXPECT_THAT(user.Told(), ElementsAre(kKept));
    EXPECT_THAT(user.Asked(), IsEmpty());
}

// Those that its view shows are of TRLE's root as well.
TEST_F(StoreLevelTest, SavegamesOfTheOriginalConfigurationGoThereToo) {
    AddLevel(2, "Last", {});
    OpenProperties(0);
    test::MakeFile(Work() / "savegame.1", "added");
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(test::BytesOf(trle / "savegame.1"), "added");
    EXPECT_THAT(NamesIn(StashPath(0)), IsEmpty());
}

TEST_F(StoreLevelTest, RefusesWhatTheRecordCannotHoldAsItIs) {
    OpenGood();
    const std::string lodz =
        "\xC5\x81\xC3\xB3"
        "d\xC5\xBA";
    level.Name = lodz;
    Store();
    level.Name = std::string(257, 'x');
    Store();
    level.Name = "The Maze";
    level.Note = lodz;
    Store();
    const std::string characters =
        "critical: This text has characters that the files of Kelvash can not hold (only those of "
        "Windows-1252): " +
        lodz;
    EXPECT_THAT(user.Told(), ElementsAre(characters,
                                         "critical: This text is too long for the files of Kelvash (at most "
                                         "256 characters): " +
                                             std::string(257, 'x'),
                                         characters));
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_EQ(Record().Name, "");
    level.Note = " Spi\xC3\xABl ";
    level.Name = " ";
    for (int i = 0; i < 256; ++i)
        level.Name += "\xC3\xA9";
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
}

TEST_F(StoreLevelTest, AGivenNameThatNoRecordHoldsAddsNothing) {
    EXPECT_FALSE(AddLevelOf({"C:\\in"}, "\xC5\x81"));
    EXPECT_EQ(core::archive.Table.Size(), 1);
    EXPECT_FALSE(test::Exists(LevelPath(1)));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: This text has characters that the files of Kelvash can not hold (only "
                            "those of Windows-1252): \xC5\x81"));
}

TEST_F(StoreLevelTest, ANameThatIsAFilesIsToldWhereItHasToChange) {
    for (const auto& [name, bytes] : kGood)
        test::MakeFile(drive / "in" / "\xC5\x81uk" / name, bytes);
    EXPECT_TRUE(AddLevelOf({"C:\\in\\\xC5\x81uk"}));
    EXPECT_EQ(core::archive.Table[1].Name, "?uk");
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: The files of Kelvash can not hold this name as it is "
                                         "(at most 256 characters of Windows-1252): \xC5\x81uk. The level is "
                                         "called: ?uk"));
}

TEST_F(StoreLevelTest, WhatASaveOrAPictureReplacesIsKeptAndToldOnce) {
    AddLevel(1, "First", kGood, {{"savegame.0", "the player's"}, {"savegame.1", "the same"}});
    AddLevel(2, "Last", {});
    test::MakeFile(Shots() / "shot1.jpg", "the player's shot");
    OpenProperties(1);
    test::MakeFile(Work() / "SAVEGAME.0", "added");
    test::MakeFile(Work() / "savegame.1", "the same");
    test::MakeFile(Work() / "shot1.jpg", "added shot");
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(test::BytesOf(StashPath(1) / "SAVEGAME.0"), "added");
    EXPECT_EQ(test::BytesOf(Shots() / "shot1.jpg"), "added shot");
    EXPECT_THAT(NamesIn(home / "rescued_saves_1"),
                ElementsAre("SAVEGAME.0", "rescued_from.txt", "shot1.jpg"));
    EXPECT_EQ(test::BytesOf(home / "rescued_saves_1/SAVEGAME.0"), "the player's");
    EXPECT_EQ(test::BytesOf(home / "rescued_saves_1/shot1.jpg"), "the player's shot");
    EXPECT_THAT(user.Told(), ElementsAre(kKept));
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4", "script.dat"));
    EXPECT_EQ(Record().SavesSize, 5 + 8 + 10);
}

TEST_F(StoreLevelTest, WhatCannotBeKeptIsNotReplaced) {
    AddLevel(1, "First", kGood, {{"savegame.0", "the player's"}});
    AddLevel(2, "Last", {});
    OpenProperties(1);
    test::MakeFile(Work() / "savegame.0", "added");
    test::MakeFile(home / "rescued_saves_1", "no folder");
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Error copying savegames or screenshots in: C:\\Levels\\LEVEL_0001"));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "the player's");
    EXPECT_EQ(test::BytesOf(Work() / "savegame.0"), "added");
}

TEST_F(StoreLevelTest, PicturesBecomeScreenshotsButForThoseThatTheGameLoads) {
    OpenGood({{"shot.JPG", "a shot"}, {"map.bmp", "a map"}, {"load.bmp", "load screen"}});
    Store();
    EXPECT_THAT(NamesIn(Shots()), ElementsAre("load.bmp", "map.bmp", "shot.JPG"));
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "load.bmp", "maze.tr4", "script.dat"));
    EXPECT_EQ(Record().SavesSize, 6 + 5 + 11);
}

TEST_F(StoreLevelTest, PicturesOfTheMediaConfigurationStay) {
    // One event: image.jpg as title (flag 16).
    std::string config = std::string("\1\0\0\0", 4) + std::string(16, ' ');
    std::string event(1356, '\0');
    event.replace(0, 256, std::string(256, ' '));
    event[266] = 16;
    event.replace(274, 1024, "image.jpg" + std::string(1024 - 9, ' '));
    OpenGood({{"level.mcf", config + event}, {"image.jpg", "title"}, {"other.jpg", "shot"}});
    Store();
    EXPECT_THAT(NamesIn(Shots()), ElementsAre("other.jpg"));
    EXPECT_THAT(StoredNames(), Contains("image.jpg"));
}

TEST_F(StoreLevelTest, ALoadScreenBecomesAScreenshotOnceOnly) {
    OpenGood({{"load.jpg", "load screen"}});
    Store();
    EXPECT_THAT(NamesIn(Shots()), ElementsAre("load.jpg"));
    // Properties of the last level, twice: neither an edited picture nor a deleted one is touched.
    test::MakeFile(Shots() / "load.jpg", "drawn on");
    OpenProperties(1);
    Store();
    EXPECT_EQ(test::BytesOf(Shots() / "load.jpg"), "drawn on");
    std::filesystem::remove(Shots() / "load.jpg");
    OpenProperties(1);
    Store();
    EXPECT_THAT(NamesIn(Shots()), IsEmpty());
    EXPECT_EQ(Record().SavesSize, 0);
    // One that comes in with an edit does.
    OpenProperties(1);
    std::filesystem::remove(Work() / "load.jpg");
    test::MakeFile(Work() / "load.jpg", "another screen");
    Store();
    EXPECT_EQ(test::BytesOf(Shots() / "load.jpg"), "another screen");
    EXPECT_EQ(Record().SavesSize, 14);
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(StoreLevelTest, TheJpegOfACompressedLoadScreenIsNoSecondScreenshot) {
    for (const bool no_decompress : {false, true}) {
        core::archive.Header.CompressFiles = true;
        core::profile.NoDecompress = no_decompress;
        std::filesystem::remove_all(LevelPath(1));
        while (core::archive.Table.Size() > 1)
            core::archive.Table.Remove(1);
        OpenNew();
        for (const auto& [name, bytes] : kGood)
            test::MakeFile(Work() / name, bytes);
        test::MakeFile(Work() / "load.bmp", test::MakeBitmap({}));
        level.Name = "The Maze";
        Store();
        ASSERT_EQ(level.State, FormState::Saved);
        EXPECT_THAT(StoredNames(), Contains("load.jpg"));
        EXPECT_THAT(NamesIn(Shots()), ElementsAre("load.bmp"));
        OpenProperties(1);
        EXPECT_THAT(WorkNames(), Contains(no_decompress ? "load.jpg" : "load.bmp"));
        Store();
        EXPECT_EQ(level.State, FormState::Saved);
        EXPECT_THAT(NamesIn(Shots()), ElementsAre("load.bmp"));
        EXPECT_EQ(test::BytesOf(Shots() / "load.bmp"), test::MakeBitmap({}));
        EXPECT_THAT(StoredNames(), Contains("load.jpg"));
        EXPECT_EQ(Record().SavesSize, static_cast<std::int32_t>(test::MakeBitmap({}).size()));
    }
    EXPECT_THAT(user.Asked(), IsEmpty());
}

// The first OK got as far as the picture.
TEST_F(StoreLevelTest, ALoadScreenThatAFailedOkHasPackedIsNoSecondScreenshot) {
    OpenGood({{"load.jpg", "packed"}});
    test::MakeFile(Shots() / "load.bmp", "load screen");
    Store();
    EXPECT_THAT(NamesIn(Shots()), ElementsAre("load.bmp"));
    EXPECT_THAT(StoredNames(), Contains("load.jpg"));
}

// Nothing of what is compared with the beginning has changed then.
TEST_F(StoreLevelTest, ASaveThatOnlyComesThroughCounts) {
    AddLevel(1, "First", kGood);
    AddLevel(2, "Last", {});
    OpenProperties(1);
    test::MakeFile(Work() / "savegame.0", "saved");
    Store();
    EXPECT_FALSE(level.FilesChanged);
    EXPECT_EQ(Record().SavesSize, 5);
    EXPECT_EQ(core::archive.Header.SecondaryFolderSize, 5);
}

TEST_F(StoreLevelTest, HelpersOfAPackageAndItsFileAreLeftOut) {
    OpenGood(
        {{"madplay.exe", "1"}, {"START_ME.EXE", "2"}, {"kelvash.cfg", "unreadable"}, {"tomb4.exe", "3"}});
    Store();
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4", "script.dat", "tomb4.exe"));
}

TEST_F(StoreLevelTest, UnchangedFilesAreNotStoredAgain) {
    AddLevel(1, "First", kGood);
    AddLevel(2, "Last", {});
    OpenProperties(1);
    level.Name = "Renamed";
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_FALSE(level.FilesChanged);
    EXPECT_EQ(Record().Name, "Renamed");
    EXPECT_FALSE(test::Exists(LevelPath(1) / "tr4.inf"));
    EXPECT_EQ(Record().FilesSize, 0); // not recounted either
}

TEST_F(StoreLevelTest, AFileOfAnotherSizeOrDateOrNumberCountsAsChange) {
    AddLevel(1, "First", kGood);
    AddLevel(2, "Last", {});
    const auto change = [&](const std::function<void()>& edit) {
        OpenProperties(1);
        edit();
        Store();
        return level.FilesChanged;
    };
    EXPECT_TRUE(change([&] { test::MakeFile(Work() / "english.dat", "other words"); }));
    EXPECT_TRUE(change([&] { SetFileDate("C:\\Levels\\LEVEL_0001\\FILES\\maze.tr4", 1000000000); }));
    EXPECT_TRUE(change([&] { test::MakeFile(Work() / "new.txt", ""); }));
    EXPECT_TRUE(change([&] { std::filesystem::remove(Work() / "new.txt"); }));
    EXPECT_FALSE(change([] {}));
}

TEST_F(StoreLevelTest, PlainStoringWritesTr4Info) {
    OpenGood();
    Store();
    const std::string bytes = test::BytesOf(LevelPath(1) / "tr4.inf");
    ASSERT_EQ(bytes.size(), 96U);
    EXPECT_EQ(bytes.substr(0, 12), std::string("\1\0\0\0maze.tr4", 12));
    EXPECT_EQ(bytes.substr(92, 4), std::string("\12\0\0\0", 4));
}

TEST_F(StoreLevelTest, ACompressingArchiveStoresTheSmallerForms) {
    core::archive.Header.CompressFiles = true;
    OpenNew();
    EXPECT_TRUE(level.UsesTempFolder);
    EXPECT_EQ(level.WorkFolder, "C:\\Kelvash\\_temp_Dec");
    for (const auto& [name, bytes] : kGood)
        test::MakeFile(Work() / name, bytes);
    level.Name = "The Maze";
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_THAT(StoredNames(), ElementsAre("english.dat", "maze.tr4.zl", "script.dat"));
    EXPECT_FALSE(test::Exists(home / "_temp_Dec"));
    EXPECT_TRUE(test::Exists(LevelPath(1) / "tr4.inf"));
    EXPECT_THAT(user.Shown(), Contains("Copying and compressing files in progress..."));
    EXPECT_THAT(user.Shown(), Contains("Removing files from temp directory..."));
}

TEST_F(StoreLevelTest, AFailedCompressionStoresThePlainFiles) {
    core::archive.Header.EncodeWavInMp3 = true; // nothing encodes
    core::archive.Header.CompressFiles = true;
    OpenNew();
    for (const auto& [name, bytes] : kGood)
        test::MakeFile(Work() / name, bytes);
    test::MakeFile(Work() / "105.wav", "wave");
    level.Name = "The Maze";
    user.WillAnswer("Do you want continue in file copy?", "no");
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_THAT(user.Told(), Contains("critical: Errore copying/compressing level files"));
    EXPECT_THAT(StoredNames(), ElementsAre("105.wav", "english.dat", "maze.tr4", "script.dat"));
    EXPECT_THAT(user.Shown(), Contains("File copy in progress..."));
    ASSERT_TRUE(core::ReadTr4Info(core::PlaceOf(1)));
    ASSERT_EQ(core::Tr4List.size(), 1U);
    EXPECT_EQ(core::Tr4List[0].FileName, "maze.tr4");
    EXPECT_EQ(core::Tr4List[0].FileSize, 10);
}

TEST_F(StoreLevelTest, FilesThatStayPlainInTheirPlaceAreToldOfInTr4InfoToo) {
    core::archive.Header.EncodeWavInMp3 = true; // nothing encodes
    OpenGood({{"105.wav", "wave"}});
    user.WillAnswer("Do you want continue in file copy?", "no");
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_THAT(user.Told(), Contains("critical: Errore copying/compressing level files"));
    ASSERT_TRUE(core::ReadTr4Info(core::PlaceOf(1)));
    ASSERT_EQ(core::Tr4List.size(), 1U);
    EXPECT_EQ(core::Tr4List[0].FileName, "maze.tr4");
}

TEST_F(StoreLevelTest, ACancelledLanguageLeavesTheDialogOpenAsItWas) {
    std::filesystem::remove(backup / "english.dat");
    OpenGood({{"french.dat", "mots"}, {"savegame.0", "saved"}});
    user.WillAnswer("Choose language for current level", "cancel");
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(WorkNames(),
                ElementsAre("english.dat", "french.dat", "maze.tr4", "savegame.0", "script.dat"));
    EXPECT_FALSE(test::Exists(StashPath(1) / "savegame.0"));
    EXPECT_FALSE(test::Exists(LevelPath(1) / "tr4.inf"));
    CancelLevel(level);
    EXPECT_EQ(Record().Name, "");
}

TEST_F(StoreLevelTest, FilesThatCannotBeStoredLeaveTheDialogOpen) {
    core::archive.Header.CompressFiles = true;
    core::profile.NoDecompress = false;
    AddLevel(1, "First", {{"script.dat", "s"}, {"english.dat", "e"}, {"b.txt", "b"}});
    AddLevel(2, "Last", {});
    OpenProperties(1);
    test::MakeFile(Work() / "a.tr4", "new");
    test::MakeFile(Work() / "savegame.0", "saved");
    std::filesystem::create_directories(LevelPath(1) / "FILES_NEW/a.tr4.zl/in the way");
    test::MakeFile(LevelPath(1) / "FILES/a.tr4.zl", "in the way");
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(user.Told(),
                Contains("critical: Error copying level files in: C:\\Levels\\LEVEL_0001\\files"));
    EXPECT_THAT(WorkNames(), Contains("english.dat"));
    // The dialog can still be cancelled: nothing is counted yet.
    EXPECT_EQ(Record().SavesSize, 0);
    EXPECT_EQ(core::archive.Header.SecondaryFolderSize, 0);
}

TEST_F(StoreLevelTest, ALevelOnCdKeepsItsFiles) {
    AddLevel(1, "On CD", {});
    AddLevel(2, "Last", {});
    core::archive.Table.Edit(1)->CdNumber = 1;
    core::archive.Header.CdCount = 1;
    OpenProperties(1); // no reader
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error: no cd reader available in this pc",
                                         "exclamation: Cd missing. Main files will not be showed"));
    level.Name = "Renamed";
    level.Note = "noted";
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(Record().Name, "Renamed");
    EXPECT_EQ(Record().Note, "noted");
}

TEST_F(StoreLevelTest, LevelZeroNeedsNoLevelFile) {
    OpenProperties(0);
    EXPECT_TRUE(level.IsNewLevel); // the only one
    level.Name = "- Mine -";
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(Record().Name, "- Mine -");
    EXPECT_THAT(NamesIn(home / "LEVEL_0000/FILES"), IsEmpty());
}

} // namespace
} // namespace kelvash::intake
