// new, load, save, save-as.
#include <gmock/gmock.h>

#include "cli/cli_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

namespace fs = std::filesystem;

class ArchiveCommands : public CliHome {};

TEST_F(ArchiveCommands, NewStartsAnotherArchive) {
    SetUpHome();
    const CliRun run = Json({"new", "C:\\More"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"folder","id":250,"title":"Select main folder for new archive","filter":"","start":"C:\\LevelFolder","name":"","answer":"C:\\More"})",
            R"({"event":"progress","caption":"Computing size of archive 'LevelArchive2.kva' in progress..."})",
            R"({"event":"result","ok":true,"archive":"C:\\Kelvash\\LevelArchive2.kva"})"));
    EXPECT_THAT(Json({"status"}).Output(), HasSubstr("LevelArchive2.kva"));
}

TEST_F(ArchiveCommands, NewMovesBelowAFolderThatIsNotEmpty) {
    SetUpHome();
    MakeFile(drive / "Full" / "x.txt", "x");
    const CliRun run = Json({"new", "C:\\Full"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(
        run.lines.at(1),
        R"({"event":"message","id":251,"style":"exclamation","text":"Warning. Folder for new archive must be empty. Folder has been changed in: C:\\Full\\LevelFolder"})");
    EXPECT_TRUE(Exists(drive / "Full" / "LevelFolder"));
}

TEST_F(ArchiveCommands, NewReplacesAnArchiveThatIsGone) {
    SetUpHome();
    fs::remove(home / "LevelArchive.kva");
    const CliRun run = Json({"new", "C:\\More"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(
        run.lines.at(1),
        R"({"event":"ask","id":290,"buttons":"yesno","style":"question","text":"Do you want load a different archive?","answer":"no"})");
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":true,"archive":"C:\\Kelvash\\LevelArchive.kva"})");
    EXPECT_EQ(fs::file_size(home / "LevelArchive.kva"), 2180U);
}

TEST_F(ArchiveCommands, NewOnAHomeWithoutAnArchiveMakesJustOne) {
    SetUpHome();
    ASSERT_EQ(Json({"profile", "LastArchive", ""}).status, 0);
    const CliRun run = Json({"new", "C:\\More"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(run.lines.at(0), R"({"event":"form","name":"Dialog_NewArc","answer":"Pul_New"})");
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":true,"archive":"C:\\Kelvash\\LevelArchive2.kva"})");
    EXPECT_FALSE(Exists(home / "LevelArchive3.kva"));
}

TEST_F(ArchiveCommands, NewNeedsATrleFolder) {
    const CliRun run = Json({"new", "C:\\More"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"form","name":"Dialog_TrovaTrle","answer":null})",
            R"({"event":"message","id":322,"style":"critical","text":"This program cann't run without Tomb Raider Level Editor\r\nNow, Kelvash ends"})",
            R"({"event":"result","ok":false,"archive":""})"));
    EXPECT_FALSE(Exists(drive / "More"));
}

TEST_F(ArchiveCommands, NewWritesItsFileWithAutoSaveOff) {
    SetUpHome();
    ASSERT_EQ(Json({"profile", "AutoSave", "false"}).status, 0);
    EXPECT_EQ(Json({"new", "C:\\More"}).status, 0);
    EXPECT_TRUE(Exists(home / "LevelArchive2.kva"));
}

TEST_F(ArchiveCommands, LoadOpensAnotherArchiveForThisAndLaterRuns) {
    SetUpHome();
    ASSERT_EQ(Json({"new", "C:\\More"}).status, 0);
    const CliRun run = Json({"load", (home / "LevelArchive.kva").string()});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.lines,
                ElementsAre(R"({"event":"result","ok":true,"archive":"C:\\Kelvash\\LevelArchive.kva"})"));
    EXPECT_THAT(Json({"status"}).Output(), HasSubstr(R"("archive":"C:\\Kelvash\\LevelArchive.kva")"));
}

TEST_F(ArchiveCommands, LoadOfAMissingFileLeavesTheOpenArchive) {
    SetUpHome();
    const CliRun run = Json({"load", "C:\\none.kva"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"message","id":288,"style":"critical","text":"Last archive not found: C:\\none.kva"})",
            R"({"event":"ask","id":290,"buttons":"yesno","style":"question","text":"Do you want load a different archive?","answer":"no"})",
            R"({"event":"result","ok":false,"archive":"C:\\Kelvash\\LevelArchive.kva"})"));
    EXPECT_EQ(Json({"status"}).status, 0);
}

TEST_F(ArchiveCommands, LoadOffersADifferentArchive) {
    SetUpHome();
    fs::copy_file(home / "LevelArchive.kva", drive / "copy.kva");
    const CliRun run = Json({"load", "C:\\none.kva", "--answers", Answers(R"([
        {"when":"different archive","answer":"yes"},
        {"when":"Load Tomb Raider","answer":"C:\\copy.kva"}])")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(
        run.lines.at(2),
        R"({"event":"openfile","id":203,"title":"Load Tomb Raider Level Archive","filter":"Level Archive Files (*.kva)|*.kva","start":"C:\\Kelvash","name":"","answer":"C:\\copy.kva"})");
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":true,"archive":"C:\\copy.kva"})");
}

TEST_F(ArchiveCommands, LoadTakesOnlyFilesNamedAsArchives) {
    SetUpHome();
    MakeFile(drive / "some.bin", "x");
    const CliRun run = Json({"load", "C:\\some.bin"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"message","id":289,"style":"critical","text":"Error loading last archive: C:\\some.bin"})",
            R"({"event":"result","ok":false,"archive":"C:\\Kelvash\\LevelArchive.kva"})"));
}

TEST_F(ArchiveCommands, LoadOfAnEmptyFileOpensNothing) {
    SetUpHome();
    MakeFile(drive / "empty.kva", "");
    const CliRun run = Json({"load", "C:\\empty.kva"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"message","id":289,"style":"critical","text":"Error loading last archive: C:\\empty.kva"})",
            R"({"event":"ask","id":290,"buttons":"yesno","style":"question","text":"Do you want load a different archive?","answer":"no"})",
            R"({"event":"result","ok":false,"archive":"C:\\Kelvash\\LevelArchive.kva"})"));
}

TEST_F(ArchiveCommands, SaveWritesTheFile) {
    SetUpHome();
    const CliRun run = Json({"save"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.lines,
                ElementsAre(R"({"event":"result","ok":true,"archive":"C:\\Kelvash\\LevelArchive.kva"})"));
}

TEST_F(ArchiveCommands, SaveTellsOfAFileThatCannotBeWritten) {
    SetUpHome();
    fs::create_directory(drive / "locked");
    fs::copy_file(home / "LevelArchive.kva", drive / "locked" / "a.kva");
    ASSERT_EQ(Json({"load", "C:\\locked\\a.kva"}).status, 0);
    fs::permissions(drive / "locked", fs::perms::owner_read | fs::perms::owner_exec);
    const OrdinaryUser ordinary;
    const CliRun run = Json({"save"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        run.lines.at(0),
        R"({"event":"message","id":201,"style":"critical","text":"Error while saving archive: C:\\locked\\a.kva"})");
}

TEST_F(ArchiveCommands, SaveAsGoesOnWithTheNewFile) {
    SetUpHome();
    const CliRun run = Json({"save-as", (drive / "copy.kva").string()});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"savefile","id":205,"title":"Save current archive as ...","filter":"Kelvash archives (*.kva)|*.kva","start":"C:\\Kelvash","name":"LevelArchive.kva","answer":"C:\\copy.kva"})",
            R"({"event":"result","ok":true,"archive":"C:\\copy.kva"})"));
    EXPECT_EQ(BytesOf(drive / "copy.kva"), BytesOf(home / "LevelArchive.kva"));
    EXPECT_THAT(Json({"status"}).Output(), HasSubstr(R"("archive":"C:\\copy.kva")"));
}

TEST_F(ArchiveCommands, SaveAsReplacesAFileOnlyByForce) {
    SetUpHome();
    MakeFile(drive / "mine.kva", "mine");
    const CliRun run = Json({"save-as", "C:\\mine.kva"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        run.lines.front(),
        R"({"event":"message","id":3400,"style":"critical","text":"This file exists already; --force replaces it: C:\\mine.kva"})");
    EXPECT_EQ(BytesOf(drive / "mine.kva"), "mine");
    EXPECT_EQ(Json({"save-as", "--force", "C:\\mine.kva"}).status, 0);
    EXPECT_EQ(BytesOf(drive / "mine.kva"), BytesOf(home / "LevelArchive.kva"));
}

TEST_F(ArchiveCommands, SaveAsTellsOfAPathThatCannotBeWritten) {
    SetUpHome();
    const CliRun run = Json({"save-as", "C:\\none\\copy.kva"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        run.lines.at(1),
        R"({"event":"message","id":226,"style":"critical","text":"Error while saving archive: C:\\none\\copy.kva"})");
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":false,"archive":"C:\\Kelvash\\LevelArchive.kva"})");
    EXPECT_EQ(run.lines.size(), 3U) << "a failure is told once";
}

} // namespace
} // namespace kelvash::test
