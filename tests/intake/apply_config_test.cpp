// What a package file asks for while its level is added.
#include "intake/apply_config.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "foundation/drives.h"
#include "foundation/text.h"
#include "support/intake_home.h"

namespace kelvash::intake {
namespace {

using namespace std::string_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class ApplyConfig : public test::IntakeHome {
  protected:
    ApplyConfig() { LevelConfig = {}; }
    // Writes LevelConfig into the work folder and has it applied.
    void Apply() {
        LevelConfig.FileCount = static_cast<std::int32_t>(LevelConfig.FileNames.size());
        test::MakeFile(Work() / "kelvash.cfg", ConfigBytes());
        RefreshFileList(level);
        ApplyLevelConfig(level);
    }
    void Put(const std::string& name, const std::string& bytes = "x") {
        test::MakeFile(Work() / name, bytes);
    }
    std::string Bytes(const std::string& name) const { return test::BytesOf(Work() / name); }
    bool Has(const std::string& name) const { return test::Exists(Work() / name); }
    void PutCdFile(const std::string& name, const std::string& bytes) {
        test::MakeFile(root / "cd/audio" / name, bytes);
    }
    // A NUL list.
    static std::string List(const std::vector<std::string>& items) { return Join(items, "\0"s); }
    void InsertReader() {
        std::filesystem::create_directories(root / "cd/audio");
        ASSERT_TRUE(SetDrive('E', root / "cd", DriveType::CdRom));
    }
};

TEST_F(ApplyConfig, FillsTheFormAndTheRecordAndDeletesTheFile) {
    OpenNew({{"a.tr4", "x"}, {"Story.TXT", "y"}});
    LevelConfig.LevelName = "The Maze";
    LevelConfig.LevelNote = "Choose the maze";
    LevelConfig.AuthorName = "Ada";
    LevelConfig.AuthorEmails = "a@x.org\0b@x.org"s;
    LevelConfig.AuthorSites = "http://x.org\0"s;
    LevelConfig.AuthorMessage = "Hello";
    LevelConfig.MoreInfoFile = "story.txt";
    Apply();
    EXPECT_EQ(level.Name, "The Maze");
    EXPECT_EQ(level.Note, "Choose the maze");
    EXPECT_EQ(Record().Author, "Ada");
    EXPECT_EQ(Record().Emails, "a@x.org\0b@x.org"s);
    EXPECT_EQ(Record().Sites, "http://x.org\0"s);
    EXPECT_EQ(Record().AuthorNote, "Hello");
    EXPECT_EQ(Record().MoreInfoFile, "story.txt");
    EXPECT_EQ(level.MoreInfoChoices[static_cast<std::size_t>(level.MoreInfo)], "Story.TXT");
    EXPECT_TRUE(level.ConfigFound);
    EXPECT_TRUE(ConfigApplied);
    EXPECT_FALSE(level.ConfigFromDatabase);
    EXPECT_THAT(WorkNames(), ElementsAre("Story.TXT", "a.tr4"));
    EXPECT_EQ(level.FileList.size(), 2U);
}

TEST_F(ApplyConfig, ASecondOneIsDeletedUnread) {
    OpenNew({{"a.tr4", "x"}});
    LevelConfig.LevelName = "First";
    Apply();
    LevelConfig.LevelName = "Second";
    test::MakeFile(Work() / "KELVASH.CFG", "not a package file at all");
    RefreshFileList(level);
    ApplyLevelConfig(level);
    EXPECT_EQ(level.Name, "First");
    EXPECT_THAT(WorkNames(), ElementsAre("a.tr4"));
    EXPECT_EQ(level.FileList.size(), 1U);
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(ApplyConfig, OneThatCannotBeReadIsToldAndStaysUnapplied) {
    OpenNew({{"a.tr4", "x"}});
    test::MakeFile(Work() / "kelvash.cfg", "short");
    ApplyLevelConfig(level);
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Error reading config file: C:\\Levels\\LEVEL_0001\\files\\"
                            "kelvash.cfg"));
    EXPECT_FALSE(ConfigApplied);
    EXPECT_FALSE(level.ConfigFound);
}

TEST_F(ApplyConfig, DuplicationsMakeCopiesUnderAnotherName) {
    OpenNew({{"castle.wad", "wad"}, {"castle.swd", "swd"}, {"tower.swd", "its own"}});
    LevelConfig.Duplications = "castle.*\0C:\\x\\tower.zzz"s;
    Apply();
    EXPECT_EQ(Bytes("tower.wad"), "wad");
    EXPECT_EQ(Bytes("tower.swd"), "its own"); // an existing target is left alone
    EXPECT_THAT(user.Shown(), Contains("Duplication source: castle.*"));
    EXPECT_THAT(WorkNames(), ElementsAre("castle.swd", "castle.wad", "tower.swd", "tower.wad"));
}

TEST_F(ApplyConfig, UseWadsTakesTheLevelEditorsWadsFirst) {
    OpenNew(
        {{"maze.tom", "tom"}, {"city.wad", "of the level"}, {"own.wad", "own wad"}, {"own.swd", "own swd"}});
    test::MakeFile(trle / "graphics/wads/city.wad", "of the editor");
    test::MakeFile(trle / "graphics/wads/city.sfx", "sounds");
    LevelConfig.UseWads = "maze.tom\0city.*\0gate\0own.*"s;
    Apply();
    EXPECT_EQ(Bytes("maze.wad"), "of the editor");
    EXPECT_EQ(Bytes("maze.sfx"), "sounds");
    EXPECT_EQ(Bytes("gate.wad"), "own wad");
    EXPECT_EQ(Bytes("gate.swd"), "own swd");
    EXPECT_EQ(Bytes("maze.tom"), "tom");
}

TEST_F(ApplyConfig, WadsThatAreInstalledAskNothing) {
    OpenNew({{"a.tr4", "x"}});
    LevelConfig.ImportWads = "tut1.wad\0http://x.org/wads.zip"s;
    Apply();
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(ApplyConfig, MissingWadsAreToldAndCancelTheDialog) {
    OpenNew({{"a.tr4", "x"}});
    LevelConfig.ImportWads = "desert.wad\0http://x.org/desert.zip"s;
    LevelConfig.ImportNotes = "The desert set";
    Apply();
    EXPECT_EQ(level.State, FormState::Cancelled);
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: This level needs wad files that are not in your Tomb Raider Level "
                    "Editor: The desert set\r\nThey can be downloaded from: http://x.org/desert.zip\r\n"
                    "Kelvash can't import them by itself yet. Put the files of that zip in the folder "
                    "graphics\\wads of the Level Editor, then add this level again.",
                    "exclamation: Without importing wads it's not possible convert this level"));
    EXPECT_FALSE(ConfigApplied);
}

TEST_F(ApplyConfig, RevisedWadsAreKnownByTheSizeOfOneFile) {
    test::MakeFile(backup / "graphics/wads/city.wad", std::string(3000000, 'w'));
    EXPECT_FALSE(WadsInstalled("tut1.wad", "http://x.org/ReVised_wads.zip"));
    test::MakeFile(backup / "graphics/wads/city.wad", std::string(3000001, 'w'));
    EXPECT_TRUE(WadsInstalled("tut1.wad", "http://x.org/ReVised_wads.zip"));
    EXPECT_TRUE(WadsInstalled("none.wad", "x\\revised.zip"));
    // Only the file's name counts, not the address before it.
    EXPECT_FALSE(WadsInstalled("none.wad", "http://revised.org/wads.zip"));
    EXPECT_TRUE(WadsInstalled("TUT1.WAD", "http://revised.org/wads.zip"));
}

TEST_F(ApplyConfig, ALevelInExeFormatIsTold) {
    OpenNew({{"setup.exe", "x"}});
    LevelConfig.ExeKind = "MIRROR";
    Apply();
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: This level is published in exe format (MIRROR). Kelvash can't install "
                    "such levels yet; its files stay as they are."));
    EXPECT_EQ(level.State, FormState::Open);
    EXPECT_THAT(WorkNames(), ElementsAre("setup.exe"));
}

TEST_F(ApplyConfig, AFileOfTheListThatIsMissingOrOfAnotherSizeAsks) {
    OpenNew({{"a.tr4", "four"}, {"b.wav", "12345"}});
    LevelConfig.FileNames = {"a.tr4", "gone.dat", "B.WAV"};
    LevelConfig.FileSizes = {4, 10, 6};
    user.WillAnswer(
        "Warning: File 'gone.dat in internal file list of configuration file, it's not present in "
        "current level files\r\nDo you want continue?",
        "yes");
    user.WillAnswer(
        "Warning: Size of file 'B.WAV in internal file list of configuration file, it's different "
        "than current file in level files of current level\r\nDo you want continue?",
        "yes");
    Apply();
    EXPECT_TRUE(ConfigApplied);
    EXPECT_FALSE(CheckLevelConfigFiles(level, Loudness::Quiet));
    user.WillAnswer("gone.dat", "no");
    EXPECT_FALSE(CheckLevelConfigFiles(level, Loudness::Loud));
    level.ConfigFromDatabase = true;
    EXPECT_TRUE(CheckLevelConfigFiles(level, Loudness::Quiet));
}

TEST_F(ApplyConfig, AWaveComesFromItsCdAndCorrectsTheListedSize) {
    OpenNew({{"a.tr4", "x"}});
    InsertReader();
    PutCdFile("098.wav", "from the disc");
    LevelConfig.ExternWaves = List({"tr4", "098.wav", "105.wav", "002.wav"});
    LevelConfig.FileNames = {"105.WAV"};
    LevelConfig.FileSizes = {3};
    Apply(); // asks nothing: the list has been corrected
    EXPECT_EQ(Bytes("105.wav"), "from the disc");
    EXPECT_EQ(LevelConfig.FileSizes.front(), 13);
    EXPECT_THAT(user.Shown(), Contains("Request extern wave files: 098.wav"));
    EXPECT_THAT(user.Shown(), Contains("Import extern wave file: 098.wav"));
}

TEST_F(ApplyConfig, AMissingCdIsAskedForUntilTheUserGivesUp) {
    OpenNew({{"002.wav", "the replacement"}});
    InsertReader();
    LevelConfig.ExternWaves = List({"TR5", "098.wav", "105.wav", "002.wav"});
    user.WillAnswer(
        "Current level require an extern wav file that you can find in Tr5 Chronicles CD\r\nHave you "
        "this CD?",
        "yes");
    user.WillAnswer("Please insert Tr5 Chronicles CD in unit E:", "ok");
    user.WillAnswer("File '098.wav' not found\r\nDo you want retry?", "yes");
    user.WillAnswer("Please insert Tr5 Chronicles CD in unit E:", "ok");
    user.WillAnswer("File '098.wav' not found\r\nDo you want retry?", "no");
    Apply();
    EXPECT_EQ(Bytes("105.wav"), "the replacement");
}

TEST_F(ApplyConfig, CancelEndsTheRequestForTheCd) {
    OpenNew();
    InsertReader();
    test::MakeFile(trle / "audio/002.wav", "of the editor");
    LevelConfig.ExternWaves = List({"TR4", "098.wav", "105.wav", "002.wav"});
    user.WillAnswer("Have you this CD?", "yes");
    user.WillAnswer("Please insert Tr4 The Last Revelation CD", "cancel");
    Apply();
    EXPECT_EQ(Bytes("105.wav"), "of the editor");
}

TEST_F(ApplyConfig, AReplacementOfTheSameNameIsLeftWhereItIs) {
    OpenNew({{"105.wav", "in the level"}});
    InsertReader();
    LevelConfig.ExternWaves =
        List({"TR4", "098.wav", "105.wav", "105.WAV", "TR4", "099.wav", "005.wav", "005.wav"});
    user.WillAnswer("Have you this CD?", "no");
    user.WillAnswer("Have you this CD?", "no");
    Apply();
    EXPECT_EQ(Bytes("105.wav"), "in the level");
    EXPECT_FALSE(Has("005.wav")); // the editor's own track of that name is played
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(ApplyConfig, AWaveThatNobodyHasIsTold) {
    OpenNew();
    InsertReader();
    LevelConfig.ExternWaves = List({"TR4", "098.wav", "105.wav", "none.wav"});
    user.WillAnswer("Have you this CD?", "no");
    Apply();
    EXPECT_THAT(user.Told(), ElementsAre("critical: Kelvash.cfg error: request extern wave file is missing "
                                         "(098.wav)"));
    EXPECT_FALSE(Has("105.wav"));
}

TEST_F(ApplyConfig, AnUnknownCdKeepsTheSourceOfTheGroupBefore) {
    OpenNew();
    InsertReader();
    PutCdFile("098.wav", "from the disc");
    LevelConfig.ExternWaves = List({"TR4", "098.wav", "105.wav", "", "TR9", "099.wav", "106.wav", ""});
    Apply();
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Kelvash.cfg error: original cd for extern wave unknown (TR9)"));
    EXPECT_EQ(Bytes("106.wav"), "from the disc");
}

TEST_F(ApplyConfig, AnUnknownCdKeepsThatTheGroupBeforeFoundNothing) {
    OpenNew({{"002.wav", "the replacement"}});
    InsertReader();
    LevelConfig.ExternWaves =
        List({"TR4", "098.wav", "105.wav", "002.wav", "TR9", "099.wav", "106.wav", "none.wav"});
    user.WillAnswer("Have you this CD?", "no");
    Apply();
    EXPECT_EQ(Bytes("105.wav"), "the replacement");
    EXPECT_FALSE(Has("106.wav"));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Kelvash.cfg error: original cd for extern wave unknown (TR9)",
                            "critical: Kelvash.cfg error: request extern wave file is missing (099.wav)"));
}

TEST_F(ApplyConfig, NoCdIsACdOfTheTableToo) {
    OpenNew();
    InsertReader();
    LevelConfig.ExternWaves = List({"<none>", "098.wav", "105.wav", ""});
    user.WillAnswer(
        "Current level require an extern wav file that you can find in <NONE> CD\r\nHave you this "
        "CD?",
        "no");
    Apply();
    EXPECT_THAT(user.Told(), ElementsAre("critical: Kelvash.cfg error: request extern wave file is missing "
                                         "(098.wav)"));
}

TEST_F(ApplyConfig, AWaveWithoutAUsableNameIsRequestedAndTold) {
    OpenNew({{"002.wav", "the replacement"}});
    LevelConfig.ExternWaves = List({"TR4", "098.wav", "con.wav", "002.wav", "TR4", "099.wav", "", "002.wav"});
    Apply();
    EXPECT_THAT(user.Shown(), Contains("Request extern wave files: 098.wav"));
    EXPECT_THAT(user.Shown(), Contains("Request extern wave files: 099.wav"));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Kelvash.cfg error: request extern wave file is missing (099.wav)",
                            "exclamation: Warning: config file of this level holds following names, that can "
                            "not be names of level files. They have been ignored:\r\ncon.wav"));
    EXPECT_THAT(WorkNames(), ElementsAre("002.wav"));
}

TEST_F(ApplyConfig, TheFirstDuplicationIsShownAsItStands) {
    OpenNew({{"castle.wad", "wad"}});
    LevelConfig.Duplications = List({"", "", "castle.*", "tower"});
    Apply();
    EXPECT_THAT(user.Shown(), Contains("Duplication source: "));
    EXPECT_THAT(user.Shown(), testing::Not(Contains("Duplication source: castle.*")));
    EXPECT_EQ(Bytes("tower.wad"), "wad");
}

TEST_F(ApplyConfig, AnUnknownCdInTheFirstGroupHasNoSource) {
    OpenNew();
    LevelConfig.ExternWaves = List({"TR9", "099.wav", "106.wav", ""});
    Apply();
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Kelvash.cfg error: original cd for extern wave unknown (TR9)",
                            "critical: Kelvash.cfg error: request extern wave file is missing (099.wav)"));
}

TEST_F(ApplyConfig, WithoutAReaderTheReplacementIsTaken) {
    OpenNew({{"002.wav", "the replacement"}});
    LevelConfig.ExternWaves = List({"TR4", "098.wav", "105.wav", "002.wav"});
    Apply();
    EXPECT_EQ(Bytes("105.wav"), "the replacement");
    EXPECT_THAT(user.Asked(), IsEmpty());
}

TEST_F(ApplyConfig, GroupsThatWereNeverFilledInAskForNothing) {
    OpenNew();
    LevelConfig.ExternWaves = List({"", "", "", ""});
    LevelConfig.ImportWads = "\0"s;
    LevelConfig.Duplications = "\0"s;
    LevelConfig.UseWads = "\0"s;
    Apply();
    EXPECT_TRUE(ConfigApplied);
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_THAT(WorkNames(), IsEmpty());
}

TEST_F(ApplyConfig, NamesThatClimbStayInTheWorkFolder) {
    user.MayBeTold("that can not be names of level files");
    OpenNew({{"a.wad", "wad"}, {"002.wav", "wave"}});
    LevelConfig.Duplications = "a.wad\0..\\..\\evil"s;
    LevelConfig.ExternWaves = List({"TR4", "..\\..\\trle\\script.dat", "..\\..\\evil.wav", "..\\002.wav"});
    LevelConfig.UseWads = "..\\..\\worse.tom\0a.*"s;
    InsertReader();
    Apply();
    EXPECT_THAT(WorkNames(), ElementsAre("002.wav", "a.wad", "evil.wad", "evil.wav", "worse.wad"));
    EXPECT_FALSE(test::Exists(levels / "evil.wad"));
    EXPECT_FALSE(test::Exists(levels / "evil.wav"));
    EXPECT_FALSE(test::Exists(levels / "worse.wad"));
}

} // namespace
} // namespace kelvash::intake
