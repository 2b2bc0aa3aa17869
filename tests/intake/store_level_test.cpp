// Pul_Ok: the checks of a level and its storing.
#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/profile.h"
#include "core/tr4_info.h"
#include "foundation/files.h"
#include "foundation/native_text.h"
#include "intake/apply_config.h"
#include "intake/store_level_home.h"
#include "support/bitmaps.h"

namespace kelvash::intake {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

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

TEST_F(StoreLevelTest, ADocumentGetsANameThatTheRecordHolds) {
    const std::string polish = "mni\xC4\x99.txt"; // e with an ogonek
    OpenGood({{polish, "Hello"}, {"mni_.txt", "another"}});
    const auto& choices = level.MoreInfoChoices;
    level.MoreInfo =
        static_cast<std::int32_t>(std::find(choices.begin(), choices.end(), polish) - choices.begin());
    Store();
    EXPECT_EQ(level.State, FormState::Saved);
    EXPECT_EQ(Record().MoreInfoFile, "mni__2.txt");
    EXPECT_THAT(StoredNames(),
                ElementsAre("english.dat", "maze.tr4", "mni_.txt", "mni__2.txt", "script.dat"));
    EXPECT_EQ(test::BytesOf(LevelPath(1) / "FILES" / "mni__2.txt"), "Hello");
    EXPECT_EQ(test::BytesOf(LevelPath(1) / "FILES" / "mni_.txt"), "another");
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: The Archive can't keep the name of the document 'mni\xC4\x99"
                            ".txt'. The file is called 'mni__2.txt' from now on."));
}

TEST_F(StoreLevelTest, ADocumentOfAnotherAlphabetIsFoundAgainInTheProperties) {
    const std::string russian = "\xD0\xB8\xD0\xBD\xD1\x84\xD0\xBE.txt";
    OpenGood({{russian, "Hello"}});
    ASSERT_EQ(level.MoreInfoChoices.at(4), russian);
    level.MoreInfo = 4;
    Store();
    EXPECT_EQ(Record().MoreInfoFile, "____.txt");
    user.Told();
    OpenProperties(1);
    EXPECT_EQ(level.MoreInfoChoices.at(static_cast<std::size_t>(level.MoreInfo)), "____.txt");
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
    user.WillAnswer("Would you like continue audio conversion?", "no");
    Store();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(user.Told(),
                ElementsAre(StartsWith("critical: Failed conversion: Error decoding '105.mp3' : ")));
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
        test::MakeFile(drive / "in" / NativeFromText("\xC5\x81uk") / name, bytes);
    EXPECT_TRUE(AddLevelOf({"C:\\in\\\xC5\x81uk"}));
    EXPECT_EQ(core::archive.Table[1].Name, "?uk");
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: The files of Kelvash can not hold this name as it is "
                                         "(at most 256 characters of Windows-1252): \xC5\x81uk. The level is "
                                         "called: ?uk"));
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
    core::archive.Header.EncodeWavInMp3 = true; // nothing encodes what is no wave
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
    core::archive.Header.EncodeWavInMp3 = true; // nothing encodes what is no wave
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
