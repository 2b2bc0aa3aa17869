#include <gmock/gmock.h>

#include "cli/cli_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

namespace fs = std::filesystem;

class Init : public CliHome {
  protected:
    CliRun RunInit(std::vector<std::string> more = {}) {
        std::vector<std::string> words = {"init", "--trle", "C:\\trle", "--archive-folder", "C:\\Levels"};
        words.insert(words.end(), more.begin(), more.end());
        return Json(words);
    }
};

TEST_F(Init, AnswersTheQuestionsOfAFirstStart) {
    MakeTrle(drive / "trle");
    const CliRun run = RunInit();
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"form","name":"Dialog_TrovaTrle","answer":"C:\\trle"})",
            R"json({"event":"ask","id":440,"buttons":"yesno","style":"question","text":"Kelvash needs the original Tomb Raider Level Editor files to handle swapping custom levels with intermediate restore of original file.\r\nCurrent installed configuration of Tomb Raider Level Editor in C:\\trle is original?\r\n(Note: If you played custom level after last setup you should select NO button)","answer":"yes"})json",
            R"({"event":"ask","id":445,"buttons":"yesno","style":"question","text":"Do you want a full backup? (About 240 MB) \r\nNote: if you select NO will be done a compact backup with files of following folder of trle: main, data and graphics\\wads. (about 90 MB))\r\nWarning: Compact backup does not allow to handle correctly backup and restore for .wav files","answer":"yes"})",
            R"({"event":"progress","caption":"Creation full backup"})",
            R"({"event":"form","name":"Dialog_NewArc","answer":"Pul_New"})",
            R"({"event":"folder","id":250,"title":"Select main folder for new archive","filter":"","start":"C:\\LevelFolder","name":"","answer":"C:\\Levels"})",
            R"({"event":"progress","caption":"Computing size of archive 'LevelArchive.kva' in progress..."})",
            R"({"event":"result","ok":true,"trle":"C:\\trle","archive":"C:\\Kelvash\\LevelArchive.kva","fullBackup":true})"));
    EXPECT_EQ(fs::file_size(home / "LevelArchive.kva"), 2180U);
    EXPECT_EQ(fs::file_size(home / "Kelvash.prf"), 1588U);
    EXPECT_TRUE(Exists(home / "backup_trle" / "tomb4.exe"));
}

TEST_F(Init, TakesNativePathsAndMakesTheHome) {
    MakeTrle(drive / "trle");
    fs::remove_all(home);
    const CliRun run = Json(
        {"init", "--archive-folder", (drive / "My Levels").string(), "--trle", (drive / "trle").string()});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_THAT(run.Output(), HasSubstr(R"("answer":"C:\\My Levels"})"));
    EXPECT_TRUE(Exists(drive / "My Levels"));
    EXPECT_TRUE(Exists(home / "LevelArchive.kva"));
}

TEST_F(Init, MakesACompactBackupOnDemand) {
    MakeTrle(drive / "trle");
    const CliRun run = RunInit({"--backup", "compact"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.lines.at(2), EndsWith(R"("answer":"no"})"));
    EXPECT_EQ(run.lines.at(3), R"({"event":"progress","caption":"Creation compact backup"})");
    EXPECT_THAT(run.lines.back(), EndsWith(R"("fullBackup":false})"));
    EXPECT_FALSE(Exists(home / "backup_trle" / "tomb4.exe"));
    EXPECT_TRUE(Exists(home / "backup_trle" / "script.dat"));
}

TEST_F(Init, TellsWhatTheTrleFolderLacks) {
    fs::create_directories(drive / "trle");
    const CliRun run = RunInit();
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"form","name":"Dialog_TrovaTrle","answer":"C:\\trle"})",
            R"({"event":"message","id":323,"style":"critical","text":"Not right folder: Missing file 'tomb4.exe' in folder: C:\\trle"})",
            R"({"event":"form","name":"Dialog_TrovaTrle","answer":null})",
            R"({"event":"message","id":322,"style":"critical","text":"This program cann't run without Tomb Raider Level Editor\r\nNow, Kelvash ends"})",
            R"({"event":"result","ok":false,"trle":"","archive":"","fullBackup":false})"));
    EXPECT_FALSE(Exists(home / "backup_trle"));
}

TEST_F(Init, RefusesAHomeThatHasAnArchive) {
    SetUpHome();
    const std::string before = BytesOf(home / "LevelArchive.kva");
    const CliRun run = RunInit();
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"message","id":2902,"style":"critical","text":"This home is set up already. Its Archive is: C:\\Kelvash\\LevelArchive.kva"})",
            R"({"event":"result","ok":false,"trle":"C:\\trle","archive":"C:\\Kelvash\\LevelArchive.kva","fullBackup":true})"));
    EXPECT_EQ(BytesOf(home / "LevelArchive.kva"), before);
}

TEST_F(Init, RefusesAnotherTrleFolderThanTheHomes) {
    SetUpHome();
    MakeTrle(drive / "other");
    fs::remove(home / "LevelArchive.kva");
    const CliRun run = Json({"init", "--trle", "C:\\other", "--archive-folder", "C:\\Levels2"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        run.lines.at(0),
        R"({"event":"message","id":2903,"style":"critical","text":"This home belongs already to another TRLE folder: C:\\trle"})");
}

TEST_F(Init, NeverTakesAFolderWithAMarkerForOriginal) {
    MakeTrle(drive / "trle");
    MakeFile(drive / "trle" / "Kelvash.txt", "#LEVEL_CODE=0012#\r\n");
    const CliRun run = RunInit({});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.Output(), HasSubstr("so it can not be taken for the original configuration"));
    EXPECT_FALSE(Exists(home / "backup_trle"));
}

TEST_F(Init, RefusesFoldersThatItsFilesCannotHold) {
    MakeTrle(drive / "\xCE\xBB");
    const CliRun greek = Json({"init", "--trle", "C:\\\xCE\xBB", "--archive-folder", "C:\\Levels"});
    EXPECT_EQ(greek.status, 1);
    EXPECT_THAT(greek.Output(), HasSubstr("This path has characters that the files of Kelvash can not hold"));
    EXPECT_FALSE(Exists(home / "backup_trle"));
    MakeTrle(drive / "trle");
    const CliRun folder = Json({"init", "--trle", "C:\\trle", "--archive-folder", "C:\\\xCE\xBC"});
    EXPECT_EQ(folder.status, 1);
    EXPECT_THAT(folder.Output(),
                HasSubstr("This path has characters that the files of Kelvash can not hold"));
    EXPECT_FALSE(Exists(home / "LevelArchive.kva"));
}

TEST_F(Init, AnswersOfAFileServeWhatTheOptionsLeaveOpen) {
    MakeTrle(drive / "trle");
    fs::remove(drive / "trle" / "tomb4.exe");
    MakeTrle(drive / "second");
    const CliRun run = RunInit({"--answers", Answers(R"([{"when":"Dialog_TrovaTrle","answer":"C:\\second"},
                                          {"when":"is original?","answer":"yes"}])")});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(run.lines.at(2), R"({"event":"form","name":"Dialog_TrovaTrle","answer":"C:\\second"})");
    EXPECT_THAT(run.lines.back(), HasSubstr(R"("trle":"C:\\second")"));
}

} // namespace
} // namespace kelvash::test
