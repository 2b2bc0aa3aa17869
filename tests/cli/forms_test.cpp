// The forms that the logic opens, as the command line answers them; Dialog_TrovaTrle is that of answers_test.
#include <gmock/gmock.h>

#include "cli/cli_home.h"
#include "core/archive_file.h"

namespace kelvash::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

constexpr const char* kCdMissing =
    R"({"event":"message","id":411,"style":"critical","text":"Cd not available"})";
constexpr const char* kNotInstalled =
    R"({"event":"message","id":417,"style":"critical","text":"Error while installing files to play new level"})";
constexpr const char* kResult = R"({"event":"result","ok":false,"installed":0})";

class FormsOfTheCommandLine : public CliHome {
  protected:
    // Level 12 of CD 3, and a reader E: with a disc on which it has no files.
    void SetUpDisc() {
        SetUpHome();
        std::filesystem::create_directories(root / "disc" / "Levels" / "LEVEL_0012" / "FILES");
        core::LevelRecord level;
        level.Name = "On a disc";
        level.Code = 12;
        level.CdNumber = 3;
        core::ArchiveContents contents;
        ASSERT_TRUE(core::ReadArchiveFile("C:\\Kelvash\\LevelArchive.kva", contents));
        contents.Table.Append(level);
        ASSERT_TRUE(core::WriteArchiveFile("C:\\Kelvash\\LevelArchive.kva", contents));
    }
    std::vector<std::string> Install(const std::string& answers) {
        return Json({"--drive", "E=" + (root / "disc").string() + ",cdrom", "install", "12", "--answers",
                     Answers(answers)})
            .lines;
    }
};

TEST_F(FormsOfTheCommandLine, InsertCdTakesTheDriveThatIsNamed) {
    SetUpDisc();
    EXPECT_THAT(
        Install(
            R"([{"when":"Dialog_InsertCd","answer":"X:"},{"when":"Dialog_InsertCd","answer":"Pul_Cancel"}])"),
        ElementsAre(
            R"({"event":"form","name":"Dialog_InsertCd","answer":"X:"})",
            R"({"event":"message","id":344,"style":"critical","text":"Error: drive [X:] is not present"})",
            R"({"event":"form","name":"Dialog_InsertCd","answer":"Pul_Cancel"})", kCdMissing, kNotInstalled,
            kResult));
}

TEST_F(FormsOfTheCommandLine, InsertCdTakesTheReaderThatItShows) {
    SetUpDisc();
    constexpr const char* kFound = R"({"event":"ask","id":413,)"; // it has been looked into
    EXPECT_THAT(Install(R"([{"when":"Dialog_InsertCd","answer":"Pul_Ok"}])"),
                ElementsAre(R"({"event":"form","name":"Dialog_InsertCd","answer":"Pul_Ok"})",
                            StartsWith(kFound), kNotInstalled, kResult));
    EXPECT_THAT(Install(R"([{"when":"Dialog_InsertCd","answer":"ok"}])"),
                ElementsAre(R"({"event":"form","name":"Dialog_InsertCd","answer":"E:"})", StartsWith(kFound),
                            kNotInstalled, kResult));
}

TEST_F(FormsOfTheCommandLine, InsertCdIsGivenUpWithoutAnAnswer) {
    SetUpDisc();
    const std::vector<std::string> given_up = {R"({"event":"form","name":"Dialog_InsertCd","answer":null})",
                                               kCdMissing, kNotInstalled, kResult};
    EXPECT_EQ(Install("[]"), given_up);
    EXPECT_EQ(Install(R"([{"when":"Cd Request","answer":"cancel"}])"), given_up);
}

TEST_F(FormsOfTheCommandLine, NewArcLoadsAnArchiveUnlessANewOneIsWanted) {
    SetUpHome();
    std::filesystem::rename(home / "LevelArchive.kva", home / "other.kva");
    for (const char* answer : {"Pul_Load", "cancel"}) {
        ASSERT_EQ(Json({"profile", "LastArchive", ""}).status, 0);
        const CliRun run = Json(
            {"save", "--answers",
             Answers(R"([{"when":"Dialog_NewArc","answer":")" + std::string(answer) +
                     R"("},{"when":"Load Tomb Raider Level Archive","answer":"C:\\Kelvash\\other.kva"}])")});
        EXPECT_EQ(run.status, 0) << run.Output();
        EXPECT_THAT(run.lines, Contains(StartsWith(R"({"event":"openfile","id":203,)"))) << answer;
    }
}

} // namespace
} // namespace kelvash::test
