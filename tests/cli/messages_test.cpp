// messages export, messages check: translations of the program's texts.
#include <gmock/gmock.h>

#include <algorithm>

#include "cli/cli_home.h"

namespace kelvash::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

class Messages : public CliHome {
  protected:
    Messages() { fs::remove_all(home); }

    // The exported table with one line replaced, or dropped if `by` is empty, as a file of the drive C:.
    void ExportWith(const std::string& line, const std::string& by) {
        const CliRun run = Plain({"messages", "export", "C:\\it.txt"});
        ASSERT_EQ(run.status, 0) << run.errors;
        std::string table = BytesOf(drive / "it.txt");
        const std::size_t at = table.find("\n" + line + "\n");
        ASSERT_NE(at, std::string::npos) << line;
        table.replace(at + 1, line.size() + 1, by.empty() ? "" : by + "\n");
        MakeFile(drive / "it.txt", table);
    }
};

TEST_F(Messages, ExportShowsALineForEachMessage) {
    const CliRun run = Plain({"messages", "export"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.errors, IsEmpty());
    EXPECT_THAT(run.lines, Contains("114\t Gb"));
    EXPECT_THAT(run.lines, Contains("2920\tTRLE folder"));
    EXPECT_THAT(run.lines, Contains("2905\t~1 is true or false"));
    EXPECT_THAT(run.lines, Not(Contains(StartsWith("1000\t")))) << "a fragment";
    EXPECT_TRUE(std::all_of(run.lines.begin(), run.lines.end(),
                            [](const std::string& line) { return line.find('\t') != std::string::npos; }));
    EXPECT_FALSE(Exists(home));
}

TEST_F(Messages, ExportGivesJsonTheTableInTheResult) {
    const CliRun run = Json({"messages", "export"});
    EXPECT_EQ(run.status, 0);
    ASSERT_EQ(run.lines.size(), 1U);
    EXPECT_THAT(run.lines[0], StartsWith(R"({"event":"result","ok":true,"table":")"));
    EXPECT_THAT(run.lines[0], HasSubstr(R"(\n2920\tTRLE folder\n)"));
    EXPECT_THAT(run.lines[0], Not(HasSubstr(R"("file":)")));
}

TEST_F(Messages, ExportWritesAFile) {
    const CliRun run = Json({"messages", "export", "C:\\it.txt"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.lines, ElementsAre(R"({"event":"result","ok":true,"file":"C:\\it.txt"})"));
    EXPECT_EQ(BytesOf(drive / "it.txt"), Plain({"messages", "export"}).Output());
    EXPECT_THAT(Plain({"messages", "export", "C:\\other.txt"}).lines, ElementsAre("File: C:\\other.txt"));
}

TEST_F(Messages, ExportReplacesAFileByForceOnly) {
    MakeFile(drive / "it.txt", "mine");
    const CliRun run = Json({"messages", "export", "C:\\it.txt"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"message","id":3400,"style":"critical","text":"This file exists already; --force replaces it: C:\\it.txt"})",
            R"({"event":"result","ok":false,"file":"C:\\it.txt"})"));
    EXPECT_EQ(BytesOf(drive / "it.txt"), "mine");
    EXPECT_EQ(Json({"messages", "export", "--force", "C:\\it.txt"}).status, 0);
    EXPECT_THAT(BytesOf(drive / "it.txt"), HasSubstr("2920\tTRLE folder\n"));
}

TEST_F(Messages, ExportTellsWhatItCannotWrite) {
    const CliRun run = Json({"messages", "export", "C:\\none\\it.txt"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        run.lines.at(0),
        R"({"event":"message","id":3802,"style":"critical","text":"I cannot write the message table: C:\\none\\it.txt"})");
}

TEST_F(Messages, CheckFindsNothingInWhatWasExported) {
    ASSERT_EQ(Plain({"messages", "export", "C:\\it.txt"}).status, 0);
    const CliRun run = Json({"messages", "check", "C:\\it.txt"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.lines, ElementsAre(R"({"event":"result","ok":true,"refused":[],"missing":[]})"));
    EXPECT_FALSE(Exists(home));
}

TEST_F(Messages, CheckTakesATableThatLacksMessages) {
    ExportWith("2920\tTRLE folder", "");
    const CliRun run = Json({"messages", "check", "C:\\it.txt"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.lines, ElementsAre(R"({"event":"result","ok":true,"refused":[],"missing":[2920]})"));
    EXPECT_THAT(Plain({"messages", "check", "C:\\it.txt"}).lines,
                ElementsAre("Refused lines: []", "Messages without a text: [2920]"));
}

TEST_F(Messages, CheckRefusesALostMarkAndTellsItMissing) {
    ExportWith("2905\t~1 is true or false", "2905\tvero o falso");
    const std::string table = BytesOf(drive / "it.txt");
    const auto line =
        1 + std::count(table.begin(), table.begin() + std::ptrdiff_t(table.find("\n2905\t")) + 1, '\n');
    const CliRun run = Json({"messages", "check", "C:\\it.txt"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.lines, ElementsAre(R"({"event":"result","ok":false,"refused":[)" + std::to_string(line) +
                                       R"(],"missing":[2905]})"));
}

TEST_F(Messages, CheckRefusesAChangedFragment) {
    MakeFile(drive / "it.txt", "2920\tCartella TRLE\n1000\tgonfiando\n");
    const CliRun run = Json({"messages", "check", "C:\\it.txt"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.lines.back(),
                StartsWith(R"({"event":"result","ok":false,"refused":[2],"missing":[102,)"));
    EXPECT_THAT(run.lines.back(), Not(HasSubstr(",2920,")));
}

TEST_F(Messages, CheckNamesALineThatIsNoEntry) {
    MakeFile(drive / "it.txt", "2920\tCartella TRLE\nnonsense\n");
    const CliRun run = Json({"messages", "check", "C:\\it.txt"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"message","id":3801,"style":"critical","text":"Line 2 is no entry of a message table: an id, a tab and the text are needed. No text of this file would be used."})",
            R"({"event":"result","ok":false,"refused":[2],"missing":[]})"));
}

TEST_F(Messages, CheckTellsAFileThatCannotBeRead) {
    const CliRun run = Json({"messages", "check", "C:\\it.txt"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"message","id":3800,"style":"critical","text":"I cannot read a message table in this file: C:\\it.txt"})",
            R"({"event":"result","ok":false,"refused":[],"missing":[]})"));
}

TEST_F(Messages, NativeFilesNeedNoDrive) {
    const std::string file = (root / "it.txt").string();
    std::string on_root = "Z:" + file;
    std::replace(on_root.begin(), on_root.end(), '/', '\\');
    const CliRun exported = Bare({"messages", "export", file});
    EXPECT_EQ(exported.status, 0) << exported.errors;
    EXPECT_THAT(exported.lines, ElementsAre("File: " + on_root));
    EXPECT_EQ(Bare({"messages", "check", file}).status, 0);
    EXPECT_EQ(Bare({"messages", "check", on_root}).status, 0);
}

TEST_F(Messages, AFileOnNoDriveIsTold) {
    const CliRun unknown = Bare({"messages", "check", "Q:\\it.txt"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.errors, HasSubstr("No drive reaches this path: Q:\\it.txt"));
    // The letter that stands for the whole file system has been put elsewhere.
    const CliRun taken =
        Bare({"--drive", "Z=" + drive.string(), "messages", "check", (root / "it.txt").string()});
    EXPECT_EQ(taken.status, 1);
    EXPECT_THAT(taken.errors, HasSubstr("No drive reaches this path: " + (root / "it.txt").string()));
}

TEST_F(Messages, OneOfItsPartsMustBeNamed) {
    EXPECT_EQ(Bare({"messages"}).status, 2);
    EXPECT_EQ(Bare({"messages", "check"}).status, 2);
    const CliRun help = Bare({"messages", "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.Output(), HasSubstr("Usage: kelvash-cli messages"));
    for (const char* part : {"\n  export ", "\n  check "})
        EXPECT_THAT(help.Output(), HasSubstr(part));
}

} // namespace
} // namespace kelvash::test
