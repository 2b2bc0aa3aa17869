#include "swap/install.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "support/swap_home.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::CurrentLevelCode;
using trle_state::LevelIsWhole;
using trle_state::OwnerOf;
using trle_state::SwapRecord;
using trle_state::SwapStep;
using trle_state::WriteSwapRecord;
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace fs = std::filesystem;

class Install : public test::SwapHome {
  protected:
    static std::vector<std::string> Targets(const InstallPlan& plan) {
        std::vector<std::string> targets;
        for (const WorkItem& item : plan.Items)
            targets.push_back(item.Target);
        return targets;
    }
};

TEST_F(Install, PlacesFilesByKindInTheOrderOfTheTable) {
    AddLevel(1, "All",
             {{"b.wav", ""},
              {"a.PAK", ""},
              {"z.tr4", ""},
              {"EDGEPTR.pcx", ""},
              {"error.log", ""},
              {"Load.bmp", ""},
              {"objects.h", ""},
              {"italian.dat", ""},
              {"script.dat", ""},
              {"readme.txt", ""},
              {"picture.jpg", ""},
              {"x.mcf", std::string(20, '\0')}});
    EXPECT_THAT(Targets(PlanInstall("C:\\Levels\\LEVEL_0001\\files", "C:\\trle")),
                ElementsAre("\\italian.dat", "\\script.dat", "\\objects.h", "\\load.bmp", "\\error.log",
                            "\\edgeptr.pcx", "\\x.mcf", "\\data\\z.tr4", "\\data\\a.PAK", "\\audio\\b.wav"));
}

TEST_F(Install, CopiesTheFilesOfTheMediaConfiguration) {
    std::string config(20 + 1356, ' ');
    config.replace(0, 4, std::string("\1\0\0\0", 4));
    config.replace(20, 9, "movie.wmv");
    config.replace(20 + 266, 4, std::string("\4\0\0\0", 4)); // plays a movie
    AddLevel(1, "Movie", {{"a.tr4", ""}, {"movie.wmv", "film"}, {"other.wmv", ""}, {"m.mcf", config}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(trle / "movie.wmv"), "film");
    EXPECT_FALSE(test::Exists(trle / "other.wmv"));
    EXPECT_THAT(Marker(), HasSubstr("#COPIED_FILES=\\movie.wmv|\\m.mcf|\\data\\a.tr4#\r\n"));
}

TEST_F(Install, WritesTheMarkerToTheLetter) {
    AddLevel(5, "City", {{"city.tr4", "CITY"}, {"script.dat", "S"}, {"099.wav", "W"}, {"000.wav", "W0"}});
    ASSERT_TRUE(InstallLevel(5));
    EXPECT_EQ(Marker(),
              ": Don't remove this file!\r\n: It is necessary at Kelvash \r\n"
              ": to know current configuration in TRLE\r\n \r\n#LEVEL_CODE=0005#\r\n#LEVEL_NAME=City#\r\n"
              "#OVERWROTEN_FILES=\\script.dat|\\audio\\000.wav#\r\n"
              "#COPIED_FILES=\\script.dat|\\data\\city.tr4|\\audio\\000.wav|\\audio\\099.wav#\r\n");
    EXPECT_EQ(test::BytesOf(trle / "data" / "city.tr4"), "CITY");
    EXPECT_EQ(test::BytesOf(trle / "audio" / "000.wav"), "W0");
    EXPECT_EQ(CurrentLevelCode(), 5);
    EXPECT_THAT(user.Shown(), ElementsAre("Copying files to play new custom level"));
    EXPECT_FALSE(test::Exists(home / "Kelvash.jrn"));
}

TEST_F(Install, OfALevelWithOneFileOverwritesNothing) {
    AddLevel(1, "Lone", {{"lone.tr4", "L"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_THAT(Marker(), HasSubstr("#OVERWROTEN_FILES=#\r\n#COPIED_FILES=\\data\\lone.tr4#\r\n"));
}

TEST_F(Install, RecordsANameThatOccursTwiceTwice) {
    std::string config(20 + 1356, ' ');
    config.replace(0, 4, std::string("\1\0\0\0", 4));
    config.replace(20 + 530, 9, "title.dat");
    config.replace(20 + 266, 4, std::string("\x80\0\0\0", 4)); // a title with this text
    AddLevel(1, "Twice", {{"a.tr4", ""}, {"title.dat", ""}, {"m.mcf", config}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_THAT(Marker(), HasSubstr("#COPIED_FILES=\\title.dat|\\title.dat|\\m.mcf|\\data\\a.tr4#\r\n"));
    EXPECT_THAT(Marker(), HasSubstr("#OVERWROTEN_FILES=\\title.dat|\\english.dat#\r\n"));
}

// A media configuration puts files beside the game's own: neither the marker nor a save can be one.
TEST_F(Install, TakesNoMarkerAndNoSaveForAMediaFile) {
    std::string config(20 + 4 * 1356, ' ');
    config.replace(0, 4, std::string("\4\0\0\0", 4));
    int event = 0;
    for (const std::string name : {"kelvash.txt", "..\\Savegame.0", "../../up.txt", "aux.txt"}) {
        const std::size_t at = 20 + 1356 * static_cast<std::size_t>(event++);
        config.replace(at + 530, name.size(), name);
        config.replace(at + 266, 4, std::string("\x80\0\0\0", 4));
    }
    AddLevel(1, "Media",
             {{"a.tr4", ""}, {"Kelvash.txt", "#LEVEL_CODE=7#"}, {"savegame.0", "foreign"}, {"m.mcf", config}},
             {{"savegame.0", "own"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_THAT(Marker(), HasSubstr("#COPIED_FILES=\\m.mcf|\\data\\a.tr4#\r\n"));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "own");
    EXPECT_EQ(CurrentLevelCode(), 1);
}

TEST_F(Install, BringsTheLevelsSavesBack) {
    AddLevel(1, "City", {{"c.tr4", ""}}, {{"savegame.2", "s"}, {"shot1.jpg", "j"}, {"note1.txt", "n"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(trle / "savegame.2"), "s");
    EXPECT_EQ(test::BytesOf(trle / "shot1.jpg"), "j");
    EXPECT_EQ(test::BytesOf(trle / "note1.txt"), "n");
}

TEST_F(Install, OfTheLevelThatIsInCopiesNothing) {
    AddLevel(1, "City", {{"c.tr4", "old"}});
    ASSERT_TRUE(InstallLevel(1));
    test::MakeFile(LevelPath(1) / "FILES" / "c.tr4", "new");
    EXPECT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(trle / "data" / "c.tr4"), "old");
}

TEST_F(Install, OfLevelZeroTakesTheLevelOutAndBringsItsSavesBack) {
    AddLevel(1, "City", {{"c.tr4", ""}, {"099.wav", ""}});
    test::MakeFile(trle / "savegame.0", "original");
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_FALSE(test::Exists(trle / "savegame.0"));
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "original");
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_FALSE(test::Exists(trle / "data" / "c.tr4"));
    EXPECT_FALSE(test::Exists(trle / "audio" / "099.wav"));
    EXPECT_FALSE(test::Exists(home / "Kelvash.jrn"));
}

TEST_F(Install, OfLevelZeroWhereItIsInGivesTheSavesBack) {
    test::MakeFile(trle / "savegame.0", "original");
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "original");
}

TEST_F(Install, OverwritesALanguageFileOfTheSameName) {
    AddLevel(1, "City", {{"c.tr4", ""}, {"ENGLISH.DAT", "level english"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_THAT(Marker(), HasSubstr("#OVERWROTEN_FILES=\\ENGLISH.DAT#\r\n"));
    EXPECT_EQ(test::BytesOf(trle / "english.dat"), "level english");
}

TEST_F(Install, DisplacesALanguageFileOfAnotherNameAndRemovalBringsItBack) {
    AddLevel(1, "Citta", {{"c.tr4", ""}, {"italian.dat", "it"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_FALSE(test::Exists(trle / "english.dat"));
    EXPECT_THAT(Marker(), HasSubstr("#OVERWROTEN_FILES=\\english.dat#\r\n"));
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "english.dat"), test::BytesOf(backup / "english.dat"));
    EXPECT_FALSE(test::Exists(trle / "italian.dat"));
}

TEST_F(Install, OfALevelWithAScriptOnlyLeavesTheLanguageFile) {
    AddLevel(1, "Script", {{"c.tr4", ""}, {"SCRIPT.DAT", "s"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_TRUE(test::Exists(trle / "english.dat"));
}

TEST_F(Install, OfALevelWithAScriptOnlyListsItAndNothingElse) {
    AddLevel(1, "Script", {{"c.tr4", ""}, {"script.dat", "s"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(Marker(),
              ": Don't remove this file!\r\n: It is necessary at Kelvash \r\n"
              ": to know current configuration in TRLE\r\n \r\n#LEVEL_CODE=0001#\r\n#LEVEL_NAME=Script#\r\n"
              "#OVERWROTEN_FILES=\\script.dat#\r\n#COPIED_FILES=\\script.dat|\\data\\c.tr4#\r\n");
}

TEST_F(Install, DisplacesTheFirstOfTwoLanguageFiles) {
    user.MayBeTold("made way: 1.");
    test::MakeFile(trle / "french.dat", "fr");
    AddLevel(1, "Citta", {{"c.tr4", ""}, {"italian.dat", "it"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_FALSE(test::Exists(trle / "english.dat"));
    EXPECT_EQ(test::BytesOf(trle / "french.dat"), "fr");
    ASSERT_TRUE(InstallLevel(0));
    AddLevel(2, "Ville", {{"v.tr4", ""}, {"french.dat", "of the level"}});
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_FALSE(test::Exists(trle / "english.dat"));
    EXPECT_EQ(test::BytesOf(trle / "french.dat"), "of the level");
    EXPECT_THAT(Marker(), HasSubstr("#OVERWROTEN_FILES=\\french.dat|\\english.dat#\r\n"));
}

TEST_F(Install, LeavesSubFoldersInTheArchive) {
    AddLevel(1, "Deep", {{"c.tr4", ""}, {"sub/deep.tr4", ""}, {"sub/deep.dat", ""}, {"data/d.tr4", ""}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_THAT(Marker(), HasSubstr("#COPIED_FILES=\\data\\c.tr4#\r\n"));
    EXPECT_FALSE(test::Exists(trle / "sub"));
    EXPECT_FALSE(test::Exists(trle / "deep.dat"));
    EXPECT_FALSE(test::Exists(trle / "data" / "deep.tr4"));
    EXPECT_FALSE(test::Exists(trle / "data" / "d.tr4"));
}

TEST_F(Install, ThatCannotDecompressLeavesNoMarker) {
    AddLevel(1, "City", {{"c.tr4", ""}});
    AddLevel(2, "Broken", {{"b.tr4.zl", "no stream"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_FALSE(InstallLevel(2));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Errore decompressing file 'b.tr4.zl",
                                         "critical: Error decompressing files"));
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_FALSE(test::Exists(trle / "data" / "c.tr4"));
}

TEST_F(Install, WithoutATr4AsksAndTakesNoForAnAnswer) {
    AddLevel(1, "City", {{"c.tr4", ""}});
    AddLevel(2, "Empty", {{"readme.txt", ""}});
    ASSERT_TRUE(InstallLevel(1));
    user.WillAnswer(
        "Warning: this level has NO .tr4 file.\r\nProbably there has been an error in creation CD archive "
        "phase.\r\n Do you want correct now this error?",
        "no");
    EXPECT_FALSE(InstallLevel(2));
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
    EXPECT_FALSE(test::Exists(trle / "data" / "c.tr4"));
}

TEST_F(Install, OfALevelOnAMissingCdLeavesTheOriginal) {
    AddLevel(1, "City", {{"c.tr4", ""}});
    AddLevel(2, "Disc", {});
    core::archive.Table.Edit(2)->CdNumber = 1;
    core::archive.Header.CdCount = 1;
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_FALSE(InstallLevel(2));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error: no cd reader available in this pc",
                                         "critical: Cd not available"));
    EXPECT_EQ(CurrentLevelCode(), 0);
    EXPECT_FALSE(test::Exists(trle / "data" / "c.tr4"));
}

TEST_F(Install, TakesTheFilesOfALevelOnCdFromItsDisc) {
    AddLevel(2, "Disc", {}, {{"savegame.0", "saved on disk"}});
    core::archive.Table.Edit(1)->CdNumber = 1;
    test::MakeFile(root / "disc" / "Kelvash" / "LEVEL_0002" / "files" / "d.tr4", "DISC");
    ASSERT_TRUE(SetDrive('E', root / "disc", DriveType::CdRom));
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(test::BytesOf(trle / "data" / "d.tr4"), "DISC");
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "saved on disk");
    EXPECT_EQ(core::archive.Header.MainFolder, "E:\\Levels");
}

TEST_F(Install, TellsAMarkerThatCannotBeWritten) {
    AddLevel(1, "City", {{"c.tr4", ""}}, {{"savegame.0", "s"}});
    fs::create_directory(trle / "Kelvash.txt");
    EXPECT_FALSE(InstallLevel(1));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Error: I can't overwrite (or create) file: C:\\trle\\Kelvash.txt"));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "s");
    EXPECT_FALSE(test::Exists(trle / "data" / "c.tr4"));
}

TEST_F(Install, ListsAFileWhoseCopyFailed) {
    AddLevel(1, "City", {{"c.tr4", ""}, {"x.h", ""}});
    fs::create_directory(trle / "x.h");
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_THAT(Marker(), HasSubstr("#COPIED_FILES=\\x.h|\\data\\c.tr4#\r\n"));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: These files of the level could not be copied into the TRLE "
                            "folder:\r\n\\x.h"));
    EXPECT_FALSE(LevelIsWhole());
}

TEST_F(Install, AfterOneCutShortInstallsTheLevelAnew) {
    AddLevel(1, "City", {{"c.tr4", "CITY"}});
    SwapRecord record;
    record.Step = SwapStep::Entering;
    record.Owner = OwnerOf(core::PlaceOf(1));
    record.Copied = {{"\\data\\c.tr4"}};
    ASSERT_TRUE(WriteSwapRecord(record));
    test::MakeFile(trle / "Kelvash.txt", "#LEVEL_CODE=0001#\r\n#LEVEL_NAME=City#\r\n");
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(trle / "data" / "c.tr4"), "CITY");
    EXPECT_THAT(Marker(), HasSubstr("#COPIED_FILES=\\data\\c.tr4#\r\n"));
    EXPECT_THAT(user.Told(),
                ElementsAre("plain: A change of the TRLE folder had been cut short. The original "
                            "configuration has been brought back"));
}

TEST_F(Install, WithMp3FilesThatCannotBeDecodedLeavesTheLevelUntouched) {
    AddLevel(1, "Song", {{"s.tr4", "S"}, {"005.mp3", "mp3"}});
    user.WillAnswer("Would you like continue audio conversion?", "no");
    EXPECT_FALSE(InstallLevel(1));
    EXPECT_THAT(user.Told(),
                ElementsAre(StartsWith("critical: Failed conversion: Error decoding '005.mp3' : "),
                            "critical: Error decompressing files"));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("005.mp3", "s.tr4"));
    EXPECT_FALSE(test::Exists(home / "_temp_Dec"));
}

TEST_F(Install, KeepsLevelZerosSavesWhenTheNextLevelCannotGoIn) {
    user.MayBeTold("Error decompressing files");
    user.MayBeTold("Failed conversion: Error decoding '005.mp3' : ");
    user.MayAnswer("Would you like continue audio conversion?", "no");
    AddLevel(1, "Song", {{"s.tr4", "S"}, {"005.mp3", "mp3"}});
    AddLevel(2, "City", {{"c.tr4", ""}});
    test::MakeFile(trle / "savegame.0", "original");
    EXPECT_FALSE(InstallLevel(1));
    ASSERT_TRUE(InstallLevel(2));
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "original");
}

} // namespace
} // namespace kelvash::swap
