#include "foundation/process.h"

#include <gmock/gmock.h>

#include <chrono>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "support/built.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;
using test::Exists;
using test::MakeFile;
using testing::ElementsAre;
using testing::SizeIs;
using testing::StartsWith;

double SecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The console stand-in runs from the application's folder, under the name of a tool.
class Programs : public test::FoundationHome {
  protected:
    Programs() { fs::copy_file(test::Built("tests/standin_console"), home / "tool.exe"); }

    // All lines that a reader is told.
    Captured Capture(const Arguments& arguments, LineMode mode) {
        return CaptureOutput(
            kTool, arguments,
            [this](const std::string& line) {
                told.push_back(line);
                return false;
            },
            mode);
    }

    static constexpr std::string_view kTool = "C:\\Kelvash\\tool.exe";
    std::vector<std::string> told;
};

TEST_F(Programs, RunAndWaitWaitsForTheEnd) {
    EXPECT_TRUE(RunAndWait(kTool, {"sleep", "50", "write", "done.txt", "x"}, Window::Hidden));
    EXPECT_TRUE(Exists(home / "done.txt")); // in its own folder, too
}

TEST_F(Programs, WhatCannotBeStartedIsAFailure) {
    MakeFile(home / "text.exe", "no program");
    MakeFile(home / "empty.exe", "");
    for (const char* program : {"C:\\Kelvash\\none.exe", "C:\\Kelvash\\text.exe", "C:\\Kelvash\\empty.exe",
                                "C:\\Kelvash", "Q:\\x.exe", "tool.exe", ""}) {
        Process process;
        process.id = 5;
        EXPECT_FALSE(RunAndWait(program, {}, Window::Hidden)) << program;
        EXPECT_EQ(RunNoWait(program, {}, process, Window::Hidden), -1) << program;
        EXPECT_FALSE(RunFull(program, {}, Window::Hidden, process, false)) << program;
        EXPECT_EQ(process.id, 0) << program;
    }
}

TEST_F(Programs, RunNoWaitGivesTheProcess) {
    Process process;
    const std::int64_t id = RunNoWait(kTool, {"sleep", "300", "exit", "7"}, process, Window::Hidden);
    EXPECT_GT(id, 0);
    EXPECT_EQ(process.id, id);
    EXPECT_NE(process.handle, 0U);
    int exit_code = -5;
    EXPECT_FALSE(WaitForProcess(process, 0, &exit_code));
    EXPECT_EQ(exit_code, -5);
    EXPECT_FALSE(WaitForProcess(process, 0.02));
    EXPECT_TRUE(WaitForProcess(process, 20, &exit_code));
    EXPECT_EQ(exit_code, 7);
    exit_code = -5;
    EXPECT_TRUE(WaitForProcess(process, 0, &exit_code)); // it can be asked again
    EXPECT_EQ(exit_code, 7);
    ReleaseProcess(process);
}

TEST_F(Programs, KillProcessEndsItAtOnce) {
    Process process;
    ASSERT_TRUE(RunFull(kTool, {"sleep", "60000"}, Window::Hidden, process, false));
    const auto start = std::chrono::steady_clock::now();
    KillProcess(process);
    int exit_code = 0;
    EXPECT_TRUE(WaitForProcess(process, 20, &exit_code));
    EXPECT_LT(SecondsSince(start), 20);
    KillProcess(process); // once more is harmless
    ReleaseProcess(process);
}

TEST_F(Programs, ASuspendedProcessWaitsForItsResumption) {
    Process process;
    ASSERT_TRUE(RunFull(kTool, {"write", "done.txt", "x"}, Window::Hidden, process, true));
    EXPECT_FALSE(WaitForProcess(process, 0.2));
    EXPECT_FALSE(Exists(home / "done.txt"));
    ResumeProcess(process);
    EXPECT_TRUE(WaitForProcess(process, 20));
    EXPECT_TRUE(Exists(home / "done.txt"));
    ReleaseProcess(process);
}

TEST_F(Programs, ASuspendedProcessCanBeKilled) {
    Process process;
    ASSERT_TRUE(RunFull(kTool, {"write", "done.txt", "x"}, Window::Hidden, process, true));
    KillProcess(process);
    EXPECT_TRUE(WaitForProcess(process, 20));
    EXPECT_FALSE(Exists(home / "done.txt"));
    ReleaseProcess(process);
}

TEST_F(Programs, NoProcessHasEndedLongAgo) {
    const Process none;
    EXPECT_TRUE(WaitForProcess(none, 0));
    KillProcess(none);
    ResumeProcess(none);
}

TEST_F(Programs, ArgumentsArriveAsTheyAre) {
    const Captured captured =
        Capture({"arguments", "plain", "two words", "", "a\"b", "back\\slash", "C:\\folder with blank\\",
                 "\\\"", "tail\\\\", "'single'", "*", "$HOME", "caffè", " -b 24 "},
                LineMode::WholeLines);
    EXPECT_TRUE(captured.ok) << captured.error;
    EXPECT_EQ(captured.output,
              "[plain]\r\n[two words]\r\n[]\r\n[a\"b]\r\n[back\\slash]\r\n"
              "[C:\\folder with blank\\]\r\n[\\\"]\r\n[tail\\\\]\r\n['single']\r\n[*]\r\n"
              "[$HOME]\r\n[caffè]\r\n[ -b 24 ]\r\n");
}

TEST_F(Programs, RunInTheirOwnFolderWithNothingToRead) {
    EXPECT_EQ(Capture({"folder"}, LineMode::WholeLines).output, home.string() + "\r\n");
    EXPECT_EQ(Capture({"input"}, LineMode::WholeLines).output, "0\r\n");
}

TEST_F(Programs, RunInTheLocaleOfAllTools) {
    EXPECT_EQ(Capture({"variable", "LC_ALL"}, LineMode::WholeLines).output, "C.UTF-8\r\n");
}

TEST_F(Programs, AMissingUtilityIsTold) {
    const auto reader = [](const std::string&) -> bool {
        ADD_FAILURE();
        return false;
    };
    const Captured captured = CaptureOutput("C:\\Kelvash\\none.exe", {"-x"}, reader, LineMode::WholeLines);
    EXPECT_FALSE(captured.ok);
    EXPECT_EQ(captured.error, "Utility \"C:\\Kelvash\\none.exe\" doesn't exist");
    EXPECT_EQ(captured.output, "");
}

TEST_F(Programs, AUtilityThatCannotBeStartedIsTold) {
    MakeFile(home / "text.exe", "no program");
    const auto reader = [](const std::string&) { return false; };
    const Captured captured =
        CaptureOutput("C:\\Kelvash\\text.exe", {"-b", "24"}, reader, LineMode::WholeLines);
    EXPECT_FALSE(captured.ok);
    EXPECT_EQ(captured.error,
              "Error creating subprocess: \"C:\\Kelvash\\text.exe\"\r\n"
              "With command line: \"-b 24\"");
}

TEST_F(Programs, TheReaderIsToldTheStartAndThenWholeLines) {
    const Captured captured = Capture({"say", "one\\ntwo\\n"}, LineMode::WholeLines);
    EXPECT_TRUE(captured.ok);
    EXPECT_EQ(captured.error, "");
    EXPECT_EQ(captured.output, "one\r\ntwo\r\n");
    EXPECT_THAT(told, ElementsAre("", "one", "two"));
}

TEST_F(Programs, BothStreamsAreReadInTheirOrder) {
    const Captured captured =
        Capture({"say", "out\\n", "complain", "error\\n", "say", "out again\\n"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, "out\r\nerror\r\nout again\r\n");
}

TEST_F(Programs, ReturnsAndLineFeedsEndALineAndAPairIsOneEnd) {
    const Captured captured =
        Capture({"say", "a\\r\\nb\\rc\\nd\\n\\ne\\r\\r\\nf\\n\\rg\\r"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, "a\r\nb\r\nc\r\nd\r\n\r\ne\r\n\r\nf\r\n\r\ng\r\n");
    EXPECT_THAT(told, ElementsAre("", "a", "b", "c", "d", "", "e", "", "f", "", "g"));
}

TEST_F(Programs, APairIsOneEndAlsoWhenItComesInTwoPieces) {
    const Captured captured =
        Capture({"say", "a\\r", "sleep", "150", "say", "\\nb\\n"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, "a\r\nb\r\n");
}

TEST_F(Programs, TheLastLineNeedsNoEnd) {
    const Captured captured = Capture({"say", "one\\nunfinished"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, "one\r\nunfinished\r\n");
    EXPECT_THAT(told, ElementsAre("", "one", "unfinished"));
    EXPECT_EQ(Capture({"exit", "3"}, LineMode::WholeLines).output, "");
}

TEST_F(Programs, BackspaceStepsBack) {
    EXPECT_EQ(Capture({"say", "\\b10%\\b\\b\\b20%\\n"}, LineMode::WholeLines).output, "20%\r\n");
}

TEST_F(Programs, TabGoesToTheNextFourthColumn) {
    EXPECT_EQ(Capture({"say", "\\ta\\tbcd\\te\\tabcd\\tx\\n"}, LineMode::WholeLines).output,
              "    a   bcd e   abcd    x\r\n");
}

TEST_F(Programs, ANulShowsItsMessage) {
    const Captured captured = Capture({"say", "a\\0b\\0\\n"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, "ab\r\n");
    EXPECT_THAT(user.Told(), ElementsAre("plain: Valore 0", "plain: Valore 0"));
}

TEST_F(Programs, ALineIsCutAtItsBuffer) {
    const Captured captured = Capture({"say", std::string(1000, 'x') + "\\nnext\\n"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, std::string(257, 'x') + "\r\nnext\r\n");
    const Captured tabs = Capture({"say", std::string(255, 'x') + "\\t\\ty\\n"}, LineMode::WholeLines);
    EXPECT_EQ(tabs.output, std::string(255, 'x') + "  \r\n");
}

TEST_F(Programs, PartialLinesAreToldAtEveryChange) {
    const Captured captured = Capture({"say", "ab\\rac\\b\\n"}, LineMode::PartialLines);
    EXPECT_THAT(told, ElementsAre("", "a", "ab", "a", "ac", "a"));
    EXPECT_EQ(captured.output, "ab\r\na\r\n");
}

TEST_F(Programs, TheSameLineIsToldAnewAfterALineEnd) {
    Capture({"say", "a\\ra\\r"}, LineMode::PartialLines);
    EXPECT_THAT(told, ElementsAre("", "a", "a"));
}

TEST_F(Programs, PartialLinesComeWhileTheProgramRuns) {
    const auto start = std::chrono::steady_clock::now();
    double first = 0;
    const auto reader = [&](const std::string& line) {
        if (line == "5%" && first == 0) first = SecondsSince(start);
        return false;
    };
    EXPECT_TRUE(CaptureOutput(kTool, {"say", "5%", "sleep", "700"}, reader, LineMode::PartialLines).ok);
    EXPECT_GT(first, 0);
    EXPECT_GE(SecondsSince(start) - first, 0.5);
}

TEST_F(Programs, AStopEndsTheProgram) {
    const auto start = std::chrono::steady_clock::now();
    const auto reader = [](const std::string& line) { return line == "two"; };
    const Captured captured =
        CaptureOutput(kTool, {"say", "one\\ntwo\\nthree\\n", "sleep", "60000"}, reader, LineMode::WholeLines);
    EXPECT_FALSE(captured.ok);
    EXPECT_EQ(captured.error, "Break user");
    EXPECT_EQ(captured.output, "one\r\ntwo\r\n");
    EXPECT_LT(SecondsSince(start), 30);
}

TEST_F(Programs, AStopCanComeWithTheStart) {
    const auto reader = [](const std::string&) { return true; };
    const Captured captured =
        CaptureOutput(kTool, {"sleep", "60000", "write", "done.txt", "x"}, reader, LineMode::WholeLines);
    EXPECT_FALSE(captured.ok);
    EXPECT_EQ(captured.error, "Break user");
    EXPECT_FALSE(Exists(home / "done.txt"));
}

TEST_F(Programs, ManyLinesAreReadSoon) {
    std::string lines;
    for (int i = 0; i < 1500; ++i)
        lines += std::to_string(i) + "\\n";
    const Captured captured = Capture({"say", lines, "say", lines}, LineMode::WholeLines);
    EXPECT_TRUE(captured.ok);
    EXPECT_THAT(told, SizeIs(3001));
    EXPECT_THAT(captured.output, StartsWith("0\r\n1\r\n2\r\n"));
    EXPECT_TRUE(captured.output.ends_with("1498\r\n1499\r\n"));
}

TEST_F(Programs, AToolInTheApplicationsFolderComesFirst) {
    MakeFile(home / "LAME.EXE", "x");
    EXPECT_EQ(FindTool("lame.exe"), "C:\\Kelvash\\lame.exe");
    EXPECT_EQ(FindTool("no such tool.exe"), "");
    EXPECT_EQ(FindTool(""), "");
}

TEST_F(Programs, ADocumentThatIsMissingCannotBeOpened) {
    EXPECT_FALSE(OpenDocument("C:\\Kelvash\\none.txt", "open", Window::Normal, ""));
    EXPECT_FALSE(OpenDocument("", "open", Window::Normal, ""));
    EXPECT_FALSE(OpenDocument("   ", "", Window::Normal, ""));
}

} // namespace
} // namespace kelvash
