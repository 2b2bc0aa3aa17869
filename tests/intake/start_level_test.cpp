// How a level without a script is reached, its language file, its documents and sources.
#include <gmock/gmock.h>

#include "intake/new_level.h"
#include "support/intake_home.h"

namespace kelvash::intake {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class StartLevel : public test::IntakeHome {
  protected:
    void Put(const std::string& name, const std::string& bytes = "x") {
        test::MakeFile(drive / "w" / name, bytes);
    }
    bool Resolve() { return ResolveStartLevel("C:\\w", start); }
    bool Has(const std::string& file) const { return test::Exists(drive / "w" / file); }
    std::string start = "not yet set";
};

TEST_F(StartLevel, AnyDatFileIsAScript) {
    Put("odd.tr4");
    Put("other.tr4");
    Put("x.dat");
    EXPECT_TRUE(Resolve());
    EXPECT_EQ(start, "");
}

TEST_F(StartLevel, OneLevelFileOfAnotherNameNeedsNothingBesideAnyDatFile) {
    Put("mylevel.tr4");
    Put("readme.txt", "Rename it to city.tr4");
    Put("french.dat");
    EXPECT_TRUE(Resolve());
    EXPECT_EQ(start, "");
    EXPECT_TRUE(Has("mylevel.tr4"));
    EXPECT_TRUE(user.Asked().empty());
}

TEST_F(StartLevel, NoLevelFileNeedsNoScript) {
    Put("readme.txt");
    EXPECT_TRUE(Resolve());
    EXPECT_EQ(start, "");
}

TEST_F(StartLevel, TwoLevelFilesWithoutAScriptAreRefused) {
    Put("city.tr4");
    Put("karnak.tr4");
    EXPECT_FALSE(Resolve());
    EXPECT_EQ(start, "");
}

TEST_F(StartLevel, AStandardNameGivesItsLevel) {
    const std::vector<std::pair<std::string, std::string>> standard = {
        {"tut1.tr4", "Playable Tutorial Level"}, {"ANGKOR.TR4", "Angkor Wat"},
        {"catacomb.tr4", "Catacombs"},           {"City.tr4", "City of the Dead"},
        {"cleopal.tr4", "Cleopatra's Palaces"},  {"coastal.tr4", "Coastal Ruins"},
        {"karnak.tr4", "Temple of Karnak"},      {"settomb.tr4", "The Tomb of Seth"}};
    for (const auto& [file, level_name] : standard) {
        std::filesystem::remove_all(drive / "w");
        Put(file);
        EXPECT_TRUE(Resolve()) << file;
        EXPECT_EQ(start, level_name) << file;
    }
}

TEST_F(StartLevel, ADocumentThatNamesAStandardLevelLeadsToTheRenameQuestion) {
    Put("mylevel.tr4", "level");
    Put("readme.txt", "Replace CITY.TR4 by this file, keep karnak.tr4");
    user.WillAnswer(
        "It's very probably that tr4 file of current level \"mylevel.tr4\" should be renamed as "
        "standard .tr4 \r\nRename tr4 file from \"mylevel.tr4\" to \"city.tr4\"?",
        "yes");
    EXPECT_TRUE(Resolve());
    EXPECT_EQ(start, ""); // only a level that comes under a standard name has one
    EXPECT_EQ(test::BytesOf(drive / "w/city.tr4"), "level");
    EXPECT_FALSE(Has("mylevel.tr4"));
}

TEST_F(StartLevel, ARefusedRenameLeavesTheLevelWithoutStart) {
    Put("mylevel.tr4");
    Put("readme.txt", "karnak.tr4");
    user.WillAnswer("It's very probably", "no");
    EXPECT_FALSE(Resolve());
    EXPECT_EQ(start, "");
    EXPECT_TRUE(Has("mylevel.tr4"));
}

TEST_F(StartLevel, DocumentsAreReadInTheOrderOfTheirMasksUpToTheFirstHit) {
    Put("mylevel.tr4");
    Put("a.doc", "settomb.tr4");
    Put("z.txt", "coastal.tr4 and tut1.tr4");
    Put("english.txt", "catacomb.tr4");
    user.WillAnswer("to \"tut1.tr4\"?", "yes"); // the table's order, not the text's
    EXPECT_TRUE(Resolve());
    EXPECT_EQ(start, "");
    EXPECT_TRUE(Has("tut1.tr4"));
}

TEST_F(StartLevel, WithoutADocumentTheUserTypesANumber) {
    Put("mylevel.tr4");
    user.WillAnswer(
        "Missing .dat file for current level\r\nYoy have two chances: \r\n- Come back on site where "
        "you've download this level and check to find a zip file that contains .dat file for this "
        "level\r\n- Require to rename tr4 file to use standard .dat file\r\nDo you want rename .tr4 "
        "file of current level?",
        "yes");
    user.WillAnswer(
        "Rename .tr4 file\nNow you must type a number (digit) corresponds to name you wish use to "
        "rename current .tr4 file\r\n1=Playable Tutorial Level, 2=Angkor Wat, 3=Catacombs, 4=City of "
        "the Dead, 5=Cleopatra's Palaces, 6=Coastal Ruins, 7=Temple of Karnak, 8=The Tomb of Seth",
        "8");
    EXPECT_TRUE(Resolve());
    EXPECT_EQ(start, "");
    EXPECT_TRUE(Has("settomb.tr4"));
}

TEST_F(StartLevel, ANumberOutsideTheTableIsRefused) {
    Put("mylevel.tr4");
    for (const char* typed : {"0", "9", "two", "", "1.5", "-1", "cancel"}) {
        user.WillAnswer("Missing .dat file", "yes");
        user.WillAnswer("Rename .tr4 file", typed);
        EXPECT_FALSE(Resolve()) << typed;
        EXPECT_TRUE(Has("mylevel.tr4")) << typed;
    }
}

TEST_F(StartLevel, NoRenamingIsAsked) {
    Put("mylevel.tr4");
    user.WillAnswer("Missing .dat file", "no");
    EXPECT_FALSE(Resolve());
}

TEST_F(StartLevel, DocumentsComeInTheOrderOfTheirMasks) {
    for (const char* file :
         {"b.rtf", "a.html", "c.htm", "d.doc", "z.txt", "m.TXT", "Script.txt", "ENGLISH.TXT", "notes.pdf"})
        Put(file);
    EXPECT_THAT(ListDocumentFiles("C:\\w"), ElementsAre("C:\\w\\m.TXT", "C:\\w\\z.txt", "C:\\w\\d.doc",
                                                        "C:\\w\\c.htm", "C:\\w\\a.html", "C:\\w\\b.rtf"));
}

TEST_F(StartLevel, SourcesAreKnownByTheirExtensionOrByWhatLiesBeside) {
    for (const char* extension :
         {".sam", ".sfx", ".swd", ".tom", ".wad", ".was", ".cd", ".pc", ".raw", ".LAR"})
        EXPECT_TRUE(IsLevelSourceFile("C:\\w\\x" + std::string(extension))) << extension;
    for (const char* extension : {".tr4", ".txt", ".tga", ".wav", ""})
        EXPECT_FALSE(IsLevelSourceFile("C:\\w\\x" + std::string(extension))) << extension;
    Put("a.tom");
    Put("b.WAD");
    EXPECT_TRUE(IsLevelSourceFile("C:\\w\\a.txt"));
    EXPECT_TRUE(IsLevelSourceFile("C:\\w\\A.TGA"));
    EXPECT_TRUE(IsLevelSourceFile("C:\\w\\b.tga"));
    EXPECT_FALSE(IsLevelSourceFile("C:\\w\\a.tr4"));
    EXPECT_FALSE(IsLevelSourceFile("C:\\w\\c.txt"));
}

class LanguageChoice : public StartLevel {
  protected:
    void Choose() { EXPECT_TRUE(ChooseLanguageFile("C:\\w")); }
};

TEST_F(LanguageChoice, AMissingScriptComesFromTheBackup) {
    test::MakeFile(backup / "script.dat", "the original script");
    Put("english.dat");
    Choose();
    EXPECT_EQ(test::BytesOf(drive / "w/script.dat"), "the original script");
    EXPECT_TRUE(Has("english.dat"));
}

TEST_F(LanguageChoice, AScriptOfTheLevelStays) {
    Put("SCRIPT.DAT", "its own");
    Choose();
    EXPECT_EQ(test::BytesOf(drive / "w/SCRIPT.DAT"), "its own");
    EXPECT_THAT(NamesIn(drive / "w"), testing::Not(testing::Contains("script.dat")));
}

TEST_F(LanguageChoice, TheUsersLanguageIsTakenWithoutAQuestion) {
    std::filesystem::remove(backup / "english.dat");
    test::MakeFile(backup / "italian.dat", "");
    for (const char* file : {"script.dat", "english.dat", "Italian.dat", "french.dat"})
        Put(file);
    Choose();
    EXPECT_THAT(NamesIn(drive / "w"), ElementsAre("Italian.dat", "script.dat"));
}

TEST_F(LanguageChoice, AsksUntilANumberOfTheListIsGiven) {
    for (const char* file : {"script.dat", "german.dat", "french.dat", "spanish.dat"})
        Put(file);
    for (const char* typed : {"0", "4", "x"})
        user.WillAnswer(
            "Choose language for current level\nThis level contains 3 language files (.dat). Please "
            "choose only one. (Write number you wish: 1-3)\r\n1=french.dat\r\n2=german.dat\r\n"
            "3=spanish.dat",
            typed);
    user.WillAnswer("Choose language", "2");
    Choose();
    EXPECT_THAT(NamesIn(drive / "w"), ElementsAre("german.dat", "script.dat"));
    EXPECT_EQ(user.Asked().size(), 4U);
}

TEST_F(LanguageChoice, ACancelledChoiceLeavesTheFolderAsItIs) {
    test::MakeFile(backup / "script.dat", "the original script");
    for (const char* file : {"german.dat", "french.dat"})
        Put(file);
    user.WillAnswer("Choose language", "cancel");
    EXPECT_FALSE(ChooseLanguageFile("C:\\w"));
    EXPECT_THAT(NamesIn(drive / "w"), ElementsAre("french.dat", "german.dat"));
    EXPECT_TRUE(user.Told().empty());
}

TEST_F(LanguageChoice, TheSameWrongAnswerForEverEndsIt) {
    for (const char* file : {"script.dat", "german.dat", "french.dat"})
        Put(file);
    user.MayAnswer("Choose language", "3");
    EXPECT_FALSE(ChooseLanguageFile("C:\\w"));
    EXPECT_EQ(user.Asked().size(), 10U);
    EXPECT_THAT(user.Told(), ElementsAre("critical: The level is not stored because no language is chosen: "
                                         "'3' is no number of the list"));
    EXPECT_THAT(NamesIn(drive / "w"), ElementsAre("french.dat", "german.dat", "script.dat"));
}

} // namespace
} // namespace kelvash::intake
