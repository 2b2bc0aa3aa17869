#include <gmock/gmock.h>

#include "cli/cli_home.h"
#include "core/archive_file.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class LevelsCommand : public CliHome {
  protected:
    // Puts levels behind level 0000 of the home's Archive.
    void AddLevels(const std::vector<core::LevelRecord>& levels) {
        core::ArchiveContents contents;
        ASSERT_TRUE(core::ReadArchiveFile("C:\\Kelvash\\LevelArchive.kva", contents));
        for (const core::LevelRecord& level : levels)
            contents.Table.Append(level);
        ASSERT_TRUE(core::WriteArchiveFile("C:\\Kelvash\\LevelArchive.kva", contents));
    }
};

core::LevelRecord FullRecord() {
    core::LevelRecord record;
    record.Name = "Éclair \"blue\"";
    record.Note = "Back\\slash";
    record.Author = "A. Uthor";
    record.Emails = std::string(" a@example.com \0\0b@example.com", 30);
    record.Sites = "http://example.com/x";
    record.AuthorNote = "tab\there";
    record.Code = 12;
    record.CdNumber = 3;
    record.MoreInfoFile = "Read me.txt";
    record.FilesSize = 2097152;
    record.SavesSize = 1024;
    return record;
}

TEST_F(LevelsCommand, GivesEveryFieldOfEveryLevel) {
    SetUpHome();
    AddLevels({FullRecord()});
    const CliRun run = Json({"levels"});
    EXPECT_EQ(run.status, 0);
    ASSERT_EQ(run.lines.size(), 1U);
    EXPECT_THAT(
        run.lines.at(0),
        testing::StartsWith(
            R"({"event":"result","ok":true,"levels":[{"code":0,"name":"- TRLE: Original configuration -","note":"Original configuration Tomb Raider Level Editor","author":"Eidos Interactive (TM) & Core Design LTD","emails":[],"sites":["http://www.eidos.com","http://www.core-design.com"],"authorNote":"","cd":0,)"));
    EXPECT_THAT(
        run.lines.at(0),
        testing::EndsWith(
            R"(,{"code":12,"name":"Éclair \"blue\"","note":"Back\\slash","author":"A. Uthor","emails":["a@example.com","b@example.com"],"sites":["http://example.com/x"],"authorNote":"tab\there","cd":3,"moreInfo":"Read me.txt","filesSize":2097152,"savesSize":1024,"installed":false,"folder":"C:\\Levels\\LEVEL_0012"}]})"));
}

TEST_F(LevelsCommand, MarksTheLevelThatIsInstalled) {
    SetUpHome();
    AddLevels({FullRecord()});
    MakeFile(drive / "trle" / "Kelvash.txt",
             "#LEVEL_CODE=0012#\r\n#LEVEL_NAME=\xC9"
             "clair \"blue\"#\r\n");
    EXPECT_THAT(Json({"levels"}).lines.at(0),
                HasSubstr(R"("savesSize":1024,"installed":true,"folder":"C:\\Levels\\LEVEL_0012"})"));
    EXPECT_THAT(Plain({"levels"}).lines.at(1), "0012 * Éclair \"blue\", A. Uthor (2.0 Mb + 1 Kb, CD 3)");
}

TEST_F(LevelsCommand, KeepsTheOrderOfTheArchive) {
    SetUpHome();
    core::LevelRecord first;
    first.Name = "Z";
    first.Code = 2;
    core::LevelRecord second;
    second.Name = "A";
    second.Code = 1;
    AddLevels({first, second});
    const std::vector<std::string> lines = Plain({"levels"}).lines;
    EXPECT_EQ(lines.at(1), "0002   Z (0 + 0)");
    EXPECT_EQ(lines.at(2), "0001   A (0 + 0)");
}

TEST_F(LevelsCommand, TellsThatNoArchiveIsOpen) {
    const CliRun run = Json({"levels"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.lines,
                ElementsAre(R"({"event":"message","id":2900,"style":"critical","text":"No Archive is open"})",
                            R"({"event":"result","ok":false,"levels":[]})"));
}

TEST_F(LevelsCommand, WritesTenThousandLevels) {
    SetUpHome();
    std::vector<core::LevelRecord> levels(10'000);
    for (std::size_t i = 0; i < levels.size(); ++i) {
        levels[i].Code = static_cast<std::int32_t>(i + 1);
        levels[i].Name = "Level " + std::to_string(i + 1);
    }
    AddLevels(levels);
    const CliRun run = Json({"levels"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(
        run.lines.at(0),
        testing::EndsWith(
            R"({"code":10000,"name":"Level 10000","note":"","author":"","emails":[],"sites":[],"authorNote":"","cd":0,"moreInfo":"","filesSize":0,"savesSize":0,"installed":false,"folder":"C:\\Levels\\LEVEL_10000"}]})"));
}

// What a level is called neither works on the terminal nor passes for a line of the program.
TEST_F(LevelsCommand, ShowsNothingOfAStrangerButLetters) {
    SetUpHome();
    core::LevelRecord record;
    record.Code = 7;
    record.Name = std::string("\x1B]0;owned\aMa\x1B[2Jze\r\nFailed\0!", 28) + "\u009D1;t\a";
    record.Author = "A\nda\x7F";
    AddLevels({record});
    const CliRun run = Plain({"levels"});
    EXPECT_THAT(run.lines, testing::Contains("0007   Maze Failed !, A da (0 + 0)"));
    for (const std::string& line : run.lines)
        EXPECT_EQ(line.find_first_of("\x1B\a\x7F\r"), std::string::npos) << line;
    const std::string json = Json({"levels"}).lines.at(0);
    EXPECT_EQ(json.find_first_of("\x1B\a\x7F"), std::string::npos);
    EXPECT_THAT(json, HasSubstr(R"(\u001b]0;owned\u0007Ma\u001b[2Jze\r\nFailed)"));
}

} // namespace
} // namespace kelvash::test
