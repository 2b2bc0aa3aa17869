// demo, install, play, restore: the road of a level on the sandbox.
#include <gmock/gmock.h>

#include "cli/cli_home.h"
#include "trle_state/swap_record.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

class Sandbox : public CliHome {
  protected:
    Sandbox() {
        const CliRun run = Bare({"demo", (root / "demo").string()});
        EXPECT_EQ(run.status, 0) << run.Output() << run.errors;
        trle = root / "demo" / "drive_c" / "Program Files" / "Core Design" / "trle";
        levels = root / "demo" / "drive_c" / "Levels";
    }

    // The sandbox's home brings its own drive.
    CliRun InSandbox(std::vector<std::string> words) {
        words.insert(words.begin(), {"--json", "--home", (root / "demo" / "drive_c" / "Kelvash").string()});
        return Bare(words);
    }
    CliRun Install(const std::string& code) { return InSandbox({"install", code}); }
    std::string Marker() { return BytesOf(trle / "Kelvash.txt"); }

    fs::path trle;
    fs::path levels;
};

TEST_F(Sandbox, TheDemoCanLeaveTheFirstStartToTheUser) {
    const CliRun run = Bare({"--json", "demo", "--first-run", (root / "fresh").string()});
    EXPECT_EQ(run.status, 0);
    const fs::path fresh = root / "fresh" / "drive_c";
    EXPECT_FALSE(Exists(fresh / "Kelvash" / "Kelvash.prf"));
    EXPECT_FALSE(Exists(fresh / "Kelvash" / "backup_trle"));
    EXPECT_EQ(fs::file_size(fresh / "Kelvash" / "LevelArchive.kva"), 546U + 5 * 1634U);
    EXPECT_TRUE(Exists(fresh / "Program Files" / "Core Design" / "trle" / "tomb4.exe"));
    EXPECT_TRUE(Exists(fresh / "Levels" / "LEVEL_0001" / "SCREENSHOTS" / "1) The Drowned Gate.bmp"));
}

TEST_F(Sandbox, IsAHomeThatAsksNothing) {
    EXPECT_THAT(
        InSandbox({"status"}).lines,
        ElementsAre(
            R"({"event":"result","ok":true,"trle":"C:\\Program Files\\Core Design\\trle","archive":"C:\\Kelvash\\LevelArchive.kva","levels":5,"installed":0,"owner":"","fullBackup":true,"backupValid":true,"cutShort":null})"));
    EXPECT_THAT(InSandbox({"save"}).lines,
                ElementsAre(R"({"event":"result","ok":true,"archive":"C:\\Kelvash\\LevelArchive.kva"})"));
    EXPECT_FALSE(Exists(root / "data")) << "the sandbox is not to be registered anywhere";
}

TEST_F(Sandbox, SavesThatCannotComeBackMakeAnInstallFail) {
    MakeFile(levels / "LEVEL_0001" / "BACKUP_SAVEGAMES" / "savegame.77", "in the stash");
    fs::create_directory(trle / "savegame.77");
    const CliRun run = Install("1");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.Output(), HasSubstr(R"({"event":"message","id":3026,"style":"critical")"));
    EXPECT_THAT(run.lines.back(), R"({"event":"result","ok":false,"installed":1})");
    EXPECT_THAT(Marker(), HasSubstr("#LEVEL_CODE=0001#"));
    EXPECT_EQ(BytesOf(levels / "LEVEL_0001" / "BACKUP_SAVEGAMES" / "savegame.77"), "in the stash");
}

TEST_F(Sandbox, IsNotMadeInAFolderWithFiles) {
    const CliRun run = Bare({"--json", "demo", (root / "demo").string()});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(R"({"event":"message","id":2910,"style":"critical","text":"The folder must be empty: )" +
                        (root / "demo").string() + R"("})",
                    R"({"event":"result","ok":false,"home":"","trle":"","zips":""})"));
}

TEST_F(Sandbox, GivesPathsThatOtherRunsUnderstand) {
    fs::create_directory(drive / "second");
    const CliRun run = Plain({"--json", "demo", "C:\\second"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(
        run.lines.back(),
        R"({"event":"result","ok":true,"home":"C:\\second\\drive_c\\Kelvash","trle":"C:\\second\\drive_c\\Program Files\\Core Design\\trle","zips":"C:\\second\\drive_c\\zips"})");
    const CliRun status = Bare(
        {"--drive", "C=" + drive.string(), "--json", "--home", "C:\\second\\drive_c\\Kelvash", "status"});
    EXPECT_EQ(
        status.lines.at(0),
        R"({"event":"result","ok":true,"trle":"C:\\second\\drive_c\\Program Files\\Core Design\\trle","archive":"C:\\second\\drive_c\\Kelvash\\LevelArchive.kva","levels":5,"installed":0,"owner":"","fullBackup":true,"backupValid":true,"cutShort":null})");
    EXPECT_THAT(Bare({"--json", "demo", (root / "third").string()}).lines.back(),
                HasSubstr(R"("home":"Z:\\)"));
}

TEST_F(Sandbox, HasWavesAsTheGameReadsThem) {
    int waves = 0;
    for (const auto& entry : fs::directory_iterator(trle / "audio")) {
        ++waves;
        const std::string bytes = BytesOf(entry.path());
        ASSERT_GT(bytes.size(), 90U);
        EXPECT_EQ(bytes.substr(8, 74),
                  std::string(
                      "WAVEfmt \x32\0\0\0\x02\0\x02\0\x44\xAC\0\0\x47\xAD\0\0\0\x08\x04\0\x20\0\xF4\x07\x07\0"
                      "\0\x01\0\0\0\x02\0\xFF\0\0\0\0\xC0\0\x40\0\xF0\0\0\0\xCC\x01\x30\xFF\x88\x01\x18\xFF"
                      "fact\x04\0\0\0\x88\x4F\0\0",
                      74))
            << entry.path();
        EXPECT_EQ(bytes.substr(82, 8), std::string("data\0\x50\0\0", 8)) << entry.path();
        EXPECT_EQ((bytes.size() - 90) % 2048, 0U);
    }
    EXPECT_EQ(waves, 54);
}

TEST_F(Sandbox, HasZipsOfLevelsToAdd) {
    const fs::path zips = root / "demo" / "drive_c" / "zips";
    EXPECT_EQ(BytesOf(zips / "The Lantern Caves.zip").substr(0, 4), "PK\x03\x04");
    EXPECT_EQ(BytesOf(zips / "Clockwork Pass.zip").substr(0, 4), "PK\x03\x04");
}

TEST_F(Sandbox, TakesAPlainLevelIn) {
    const CliRun run = Install("1");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.lines,
                ElementsAre(R"({"event":"progress","caption":"Copying files to play new custom level"})",
                            R"({"event":"result","ok":true,"installed":1})"));
    EXPECT_EQ(Marker(),
              ": Don't remove this file!\r\n"
              ": It is necessary at Kelvash \r\n"
              ": to know current configuration in TRLE\r\n"
              " \r\n"
              "#LEVEL_CODE=0001#\r\n"
              "#LEVEL_NAME=The Drowned Gate#\r\n"
              "#OVERWROTEN_FILES=\\english.dat|\\script.dat|\\objects.h|\\load.bmp#\r\n"
              "#COPIED_FILES=\\english.dat|\\script.dat|\\objects.h|\\load.bmp|\\data\\gate.tr4#\r\n");
    EXPECT_EQ(BytesOf(trle / "data" / "gate.tr4"), BytesOf(levels / "LEVEL_0001" / "FILES" / "gate.tr4"));
    EXPECT_FALSE(Exists(trle / "readme.txt"));
}

TEST_F(Sandbox, TellsOfASwapThatWasCutShortUntilItIsEnded) {
    ASSERT_EQ(Install("1").status, 0);
    fs::path file;
    for (const auto& entry : fs::directory_iterator(root / "demo" / "drive_c" / "Kelvash"))
        if (entry.path().extension() == ".rec") file = entry.path();
    std::optional<trle_state::SwapRecord> record = trle_state::DecodeSwapRecord(BytesOf(file));
    ASSERT_TRUE(record);
    record->Step = trle_state::SwapStep::Entering;
    MakeFile(file, trle_state::EncodeSwapRecord(*record, "C:\\Program Files\\Core Design\\trle"));
    const CliRun cut = InSandbox({"status"});
    EXPECT_EQ(cut.status, 0);
    EXPECT_THAT(cut.lines.back(),
                HasSubstr(R"("cutShort":"The swap of The Drowned Gate has been cut short"})"));
    EXPECT_THAT(InSandbox({"status"}).lines.back(), HasSubstr("has been cut short"))
        << "reading ends nothing";
    EXPECT_EQ(InSandbox({"restore", "fast"}).status, 0);
    EXPECT_THAT(InSandbox({"status"}).lines.back(), HasSubstr(R"("installed":0,)"));
    EXPECT_THAT(InSandbox({"status"}).lines.back(), HasSubstr(R"("cutShort":null})"));
}

TEST_F(Sandbox, TakesACompressedLevelInWithItsSaves) {
    ASSERT_EQ(Install("0001").status, 0);
    const CliRun run = Install("2");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(
        run.lines,
        ElementsAre(R"({"event":"progress","caption":"Removing files of previous custom level"})",
                    R"({"event":"progress","caption":"Restoring files changed by previous custom level"})",
                    R"({"event":"progress","caption":"Decompressing files"})",
                    R"({"event":"progress","caption":"Copying files to play new custom level"})",
                    R"({"event":"result","ok":true,"installed":2})"));
    EXPECT_THAT(Marker(), HasSubstr("#COPIED_FILES=\\english.dat|\\script.dat|\\load.bmp|"
                                    "\\data\\harbour.tr4|\\audio\\021.wav#\r\n"));
    EXPECT_EQ(BytesOf(trle / "data" / "harbour.tr4").substr(0, 4), std::string("TR4\0", 4));
    EXPECT_EQ(BytesOf(trle / "load.bmp").substr(0, 2), "BM");
    EXPECT_EQ(fs::file_size(trle / "savegame.1"), 15954U);
    EXPECT_FALSE(Exists(trle / "data" / "gate.tr4"));
}

TEST_F(Sandbox, ALevelInAnotherLanguageDisplacesTheGamesOwn) {
    ASSERT_EQ(Install("3").status, 0);
    EXPECT_THAT(Marker(),
                HasSubstr("#OVERWROTEN_FILES=\\script.dat|\\load.bmp|\\english.dat#\r\n"
                          "#COPIED_FILES=\\italian.dat|\\script.dat|\\load.bmp|\\data\\torre.tr4#"));
    EXPECT_FALSE(Exists(trle / "english.dat"));
    EXPECT_TRUE(Exists(trle / "italian.dat"));
}

TEST_F(Sandbox, ALevelBringsItsLogoAndTracks) {
    ASSERT_EQ(Install("4").status, 0);
    EXPECT_THAT(Marker(),
                HasSubstr("#OVERWROTEN_FILES=\\english.dat|\\script.dat|\\load.bmp|\\data\\uklogo.pak|"
                          "\\audio\\005.wav#"));
    EXPECT_TRUE(Exists(trle / "audio" / "107.wav"));
}

TEST_F(Sandbox, AnUnknownCodeIsRefused) {
    const CliRun run = Install("9");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"message","id":4600,"style":"critical","text":"The open Archive has no level with this code: 9"})",
            R"({"event":"result","ok":false,"installed":0})"));
    EXPECT_EQ(
        InSandbox({"play", "first"}).lines.at(0),
        R"({"event":"message","id":4600,"style":"critical","text":"The open Archive has no level with this code: first"})");
}

TEST_F(Sandbox, AFailedInstallIsTold) {
    fs::remove(levels / "LEVEL_0001" / "FILES" / "gate.tr4");
    const CliRun run = Install("1");
    EXPECT_EQ(run.status, 1) << "no answer would have helped";
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"ask","id":413,"buttons":"yesno","style":"exclamation","text":"Warning: this level has NO .tr4 file.\r\nProbably there has been an error in creation CD archive phase.\r\n Do you want correct now this error?","answer":"no"})",
            R"({"event":"message","id":417,"style":"critical","text":"Error while installing files to play new level"})",
            R"({"event":"result","ok":false,"installed":0})"));
}

TEST_F(Sandbox, PlayWaitsForTheGameAndKeepsItsSaves) {
    const CliRun run = InSandbox({"play", "3"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":true,"installed":3})");
    const std::string save = BytesOf(trle / "savegame.0");
    EXPECT_EQ(save.size(), 15954U);
    EXPECT_EQ(save.substr(0, 79),
              "La Torre del Vento" + std::string(57, '\0') + std::string("\x01\0\0\0", 4));
    EXPECT_EQ(Install("1").status, 0);
    EXPECT_FALSE(Exists(trle / "savegame.0"));
    EXPECT_EQ(BytesOf(levels / "LEVEL_0003" / "BACKUP_SAVEGAMES" / "savegame.0"), save);
}

TEST_F(Sandbox, PlayTellsOfAGameThatIsGone) {
    ASSERT_EQ(Install("1").status, 0);
    fs::permissions(trle / "tomb4.exe", fs::perms::none);
    const CliRun run = InSandbox({"play", "1"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"message","id":418,"style":"critical","text":"Error attempting to launch program tomb4.exe"})",
            R"({"event":"result","ok":false,"installed":1})"));
}

TEST_F(Sandbox, StatusNamesTheFolderOfTheLevelThatIsIn) {
    ASSERT_EQ(Install("3").status, 0);
    EXPECT_THAT(InSandbox({"status"}).lines.at(0),
                HasSubstr(R"("installed":3,"owner":"C:\\Levels\\LEVEL_0003","fullBackup":true)"));
    EXPECT_THAT(Bare({"--home", (root / "demo" / "drive_c" / "Kelvash").string(), "status"}).lines,
                testing::Contains("Folder of the level in TRLE: C:\\Levels\\LEVEL_0003"));
}

TEST_F(Sandbox, TheFastRestoreTakesTheLevelOut) {
    const std::string script = BytesOf(trle / "script.dat");
    ASSERT_EQ(Install("1").status, 0);
    const CliRun run = InSandbox({"restore", "fast"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"progress","caption":"Removing files of previous custom level"})",
            R"({"event":"progress","caption":"Restoring files changed by previous custom level"})",
            R"({"event":"message","id":460,"style":"plain","text":"Set in Tomb Raider Level Editor, original configuration"})",
            R"({"event":"result","ok":true,"installed":0})"));
    EXPECT_FALSE(Exists(trle / "Kelvash.txt"));
    EXPECT_EQ(BytesOf(trle / "script.dat"), script);
}

TEST_F(Sandbox, TheFullRestoreMendsADamagedFolder) {
    const std::string script = BytesOf(trle / "script.dat");
    ASSERT_EQ(Install("4").status, 0);
    MakeFile(trle / "Kelvash.txt", "");
    MakeFile(trle / "stray.txt", "x");
    const CliRun run = InSandbox({"restore", "full"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"progress","caption":"Removing files of previous custom level"})",
            R"({"event":"progress","caption":"Restoring files changed by previous custom level"})",
            StartsWith(
                R"({"event":"message","id":3014,"style":"exclamation","text":"Files of the TRLE folder that the backup doesn't hold made way: 1.\r\nThey have been kept in: C:\\Kelvash\\kept_files\\)"),
            R"({"event":"message","id":468,"style":"plain","text":"Restored original Tomb Raider Level Editor configuration"})",
            R"({"event":"result","ok":true,"installed":0})"));
    EXPECT_EQ(BytesOf(trle / "script.dat"), script);
    EXPECT_FALSE(Exists(trle / "stray.txt"));
    const fs::path kept = root / "demo" / "drive_c" / "Kelvash" / "kept_files";
    ASSERT_TRUE(Exists(kept));
    EXPECT_EQ(BytesOf(fs::directory_iterator(kept)->path() / "stray.txt"), "x");
    EXPECT_FALSE(Exists(trle / "data" / "quarry.tr4"));
    EXPECT_FALSE(Exists(trle / "audio" / "107.wav"));
}

TEST_F(Sandbox, AProfileNamesWithBytesOutsideUtf8BecomesValidJson) {
    const std::string name = "C:\\\xFF\xFE.kva";
    const CliRun run = InSandbox({"load", name});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.lines.at(0),
              R"({"event":"message","id":288,"style":"critical","text":"Last archive not found: C:\\)"
              "\xEF\xBF\xBD\xEF\xBF\xBD"
              R"(.kva"})");
}

} // namespace
} // namespace kelvash::test
