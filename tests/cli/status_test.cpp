#include <gmock/gmock.h>

#include "cli/cli_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;

namespace fs = std::filesystem;

class Status : public CliHome {};

TEST_F(Status, OfAnEmptyHomeIsBlank) {
    const CliRun run = Json({"status"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"result","ok":true,"trle":"","archive":"","levels":0,"installed":0,"owner":"","fullBackup":false,"backupValid":false,"cutShort":null})"));
    EXPECT_FALSE(Exists(home / "Kelvash.prf"));
}

TEST_F(Status, DoesNotMakeAMissingHome) {
    fs::remove_all(home);
    const CliRun run = Json({"status"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"message","id":2901,"style":"critical","text":"The application's folder doesn't exist: )" +
                home.string() +
                R"(\r\nBegin with: kelvash-cli init --trle DIR --archive-folder DIR\r\nOr look around in a sandbox: kelvash-cli demo DIR"})",
            R"({"event":"result","ok":false,"trle":"","archive":"","levels":0,"installed":0,"owner":"","fullBackup":false,"backupValid":false,"cutShort":null})"));
    EXPECT_THAT(Json({"levels"}).lines.at(0), testing::HasSubstr("Begin with: kelvash-cli init"));
    for (const char* command : {"levels", "profile", "save"})
        EXPECT_EQ(Json({command}).status, 1) << command;
    EXPECT_EQ(Json({"install", "1"}).status, 1);
    EXPECT_FALSE(Exists(home));
}

TEST_F(Status, TellsOfAnArchiveThatIsGone) {
    SetUpHome();
    fs::remove(home / "LevelArchive.kva");
    const CliRun run = Json({"status"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"message","id":288,"style":"critical","text":"Last archive not found: C:\\Kelvash\\LevelArchive.kva"})",
            R"({"event":"result","ok":false,"trle":"C:\\trle","archive":"C:\\Kelvash\\LevelArchive.kva","levels":0,"installed":0,"owner":"","fullBackup":true,"backupValid":true,"cutShort":null})"));
}

TEST_F(Status, TellsOfAnArchiveThatCannotBeRead) {
    SetUpHome();
    fs::permissions(home / "LevelArchive.kva", fs::perms::none);
    const OrdinaryUser ordinary;
    const CliRun run = Json({"status"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        run.lines.at(0),
        R"({"event":"message","id":289,"style":"critical","text":"Error loading last archive: C:\\Kelvash\\LevelArchive.kva"})");
}

TEST_F(Status, OfAnArchiveThatEndsEarlyCountsWhatIsThere) {
    SetUpHome();
    fs::resize_file(home / "LevelArchive.kva", 600);
    const CliRun run = Json({"status"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(
        run.lines.at(0),
        testing::HasSubstr("The file of the Archive 'LevelArchive.kva' has been cut off: 0 of its 1 levels"));
    EXPECT_EQ(
        run.lines.at(1),
        R"({"event":"result","ok":true,"trle":"C:\\trle","archive":"C:\\Kelvash\\LevelArchive.kva","levels":1,"installed":0,"owner":"","fullBackup":true,"backupValid":true,"cutShort":null})");
}

TEST_F(Status, AsksForALevelFolderThatHasMoved) {
    SetUpHome();
    fs::rename(drive / "Levels", drive / "Moved");
    const CliRun refused = Json({"status"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(
        refused.lines.at(0),
        R"({"event":"message","id":220,"style":"exclamation","text":"Warning: not found main folder of current archive: \r\nC:\\LevelsIf you have moved folder or there is a change of unit letters, select new correct folder"})");
    EXPECT_EQ(
        refused.lines.at(1),
        R"({"event":"folder","id":222,"title":"Select folder: Levels","filter":"","start":"C:\\Levels","name":"","answer":null})");

    const CliRun found =
        Json({"status", "--answers", Answers(R"([{"when":"Select folder","answer":"C:\\Moved"}])")});
    EXPECT_EQ(found.status, 0);
    EXPECT_EQ(
        found.lines.at(1),
        R"({"event":"folder","id":222,"title":"Select folder: Levels","filter":"","start":"C:\\Levels","name":"","answer":"C:\\Moved"})");
    EXPECT_EQ(Json({"status"}).lines.size(), 1U) << "the pick was not kept";
}

TEST_F(Status, OffersToSaveWhatAPickHasChanged) {
    SetUpHome();
    ASSERT_EQ(Json({"profile", "AutoSave", "false"}).status, 0);
    fs::rename(drive / "Levels", drive / "Moved");
    const std::string question =
        R"({"event":"ask","id":202,"buttons":"yesno","style":"question","text":"Current archive 'LevelArchive.kva' has been changed.\r\nDo you want save it?","answer":)";
    const std::string pick = R"({"when":"Select folder","answer":"C:\\Moved"})";
    const CliRun left = Json({"status", "--answers", Answers("[" + pick + "]")});
    EXPECT_EQ(left.status, 3) << "either answer can lose something, and nobody gave one";
    EXPECT_EQ(left.lines.at(2), question + R"(null})");
    EXPECT_EQ(left.lines.at(3).substr(0, 28), R"({"event":"result","ok":false)");
    EXPECT_EQ(Json({"--yes", "status", "--answers", Answers("[" + pick + "]")}).status, 3);
    const CliRun saved =
        Json({"status", "--answers", Answers("[" + pick + R"(,{"when":"save it?","answer":"yes"}])")});
    EXPECT_EQ(saved.lines.at(2), question + R"("yes"})");
    EXPECT_EQ(Json({"status"}).lines.size(), 1U) << "the answer was not heeded";
}

} // namespace
} // namespace kelvash::test
