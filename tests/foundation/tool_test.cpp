#include "foundation/tool.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/waiting.h"
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
class Tools : public test::FoundationHome {
  protected:
    Tools() { fs::copy_file(test::Built("tests/standin_console"), home / "tool.exe"); }

    // All lines that a reader is told.
    Captured Capture(const Arguments& arguments, LineMode mode) {
        return CaptureOutput(
            kTool, arguments,
            [this](const std::string& line, bool start) {
                if (start) told.clear();
                told.push_back(line);
                return false;
            },
            mode);
    }

    static constexpr std::string_view kTool = "C:\\Kelvash\\tool.exe";
    std::vector<std::string> told;
};

TEST_F(Tools, RunAndWaitWaitsForTheEnd) {
    EXPECT_TRUE(RunAndWait(kTool, {"sleep", "50", "write", "done.txt", "x"}, Window::Hidden));
    EXPECT_TRUE(Exists(home / "done.txt")); // in its own folder, too
}

TEST_F(Tools, ArgumentsArriveAsTheyAre) {
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

TEST_F(Tools, RunInTheirOwnFolderWithNothingToRead) {
    EXPECT_EQ(Capture({"folder"}, LineMode::WholeLines).output, home.string() + "\r\n");
    EXPECT_EQ(Capture({"input"}, LineMode::WholeLines).output, "0\r\n");
}

TEST_F(Tools, RunInTheLocaleOfAllTools) {
    EXPECT_EQ(Capture({"variable", "LC_ALL"}, LineMode::WholeLines).output, "C.UTF-8\r\n");
}

TEST_F(Tools, AMissingUtilityIsTold) {
    const auto reader = [](const std::string&, bool) -> bool {
        ADD_FAILURE();
        return false;
    };
    const Captured captured = CaptureOutput("C:\\Kelvash\\none.exe", {"-x"}, reader, LineMode::WholeLines);
    EXPECT_FALSE(captured.ok);
    EXPECT_EQ(captured.error, "Utility \"C:\\Kelvash\\none.exe\" doesn't exist");
    EXPECT_EQ(captured.output, "");
}

TEST_F(Tools, AUtilityThatCannotBeStartedIsTold) {
    MakeFile(home / "text.exe", "no program");
    const auto reader = [](const std::string&, bool) { return false; };
    const Captured captured =
        CaptureOutput("C:\\Kelvash\\text.exe", {"-b", "24"}, reader, LineMode::WholeLines);
    EXPECT_FALSE(captured.ok);
    EXPECT_EQ(captured.error,
              "Error creating subprocess: \"C:\\Kelvash\\text.exe\"\r\n"
              "With command line: \"-b 24\"");
}

TEST_F(Tools, TheReaderIsToldTheStartAndThenWholeLines) {
    const Captured captured = Capture({"say", "one\\ntwo\\n"}, LineMode::WholeLines);
    EXPECT_TRUE(captured.ok);
    EXPECT_EQ(captured.error, "");
    EXPECT_EQ(captured.output, "one\r\ntwo\r\n");
    EXPECT_THAT(told, ElementsAre("", "one", "two"));
}

TEST_F(Tools, BothStreamsAreReadInTheirOrder) {
    const Captured captured =
        Capture({"say", "out\\n", "complain", "error\\n", "say", "out again\\n"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, "out\r\nerror\r\nout again\r\n");
}

TEST_F(Tools, ReturnsAndLineFeedsEndALineAndAPairIsOneEnd) {
    const Captured captured =
        Capture({"say", "a\\r\\nb\\rc\\nd\\n\\ne\\r\\r\\nf\\n\\rg\\r"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, "a\r\nb\r\nc\r\nd\r\n\r\ne\r\n\r\nf\r\n\r\ng\r\n");
    EXPECT_THAT(told, ElementsAre("", "a", "b", "c", "d", "", "e", "", "f", "", "g"));
}

TEST_F(Tools, APairIsOneEndAlsoWhenItComesInTwoPieces) {
    const Captured captured =
        Capture({"say", "a\\r", "sleep", "150", "say", "\\nb\\n"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, "a\r\nb\r\n");
}

TEST_F(Tools, TheLastLineNeedsNoEnd) {
    const Captured captured = Capture({"say", "one\\nunfinished"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, "one\r\nunfinished\r\n");
    EXPECT_THAT(told, ElementsAre("", "one", "unfinished"));
    EXPECT_EQ(Capture({"exit", "3"}, LineMode::WholeLines).output, "");
}

TEST_F(Tools, BackspaceStepsBack) {
    EXPECT_EQ(Capture({"say", "\\b10%\\b\\b\\b20%\\n"}, LineMode::WholeLines).output, "20%\r\n");
}

TEST_F(Tools, TabGoesToTheNextFourthColumn) {
    EXPECT_EQ(Capture({"say", "\\ta\\tbcd\\te\\tabcd\\tx\\n"}, LineMode::WholeLines).output,
              "    a   bcd e   abcd    x\r\n");
}

TEST_F(Tools, ANulShowsItsMessage) {
    const Captured captured = Capture({"say", "a\\0b\\0\\n"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, "ab\r\n");
    EXPECT_THAT(user.Told(), ElementsAre("plain: Valore 0", "plain: Valore 0"));
}

TEST_F(Tools, ALineIsCutAtItsBuffer) {
    const Captured captured = Capture({"say", std::string(1000, 'x') + "\\nnext\\n"}, LineMode::WholeLines);
    EXPECT_EQ(captured.output, std::string(257, 'x') + "\r\nnext\r\n");
    const Captured tabs = Capture({"say", std::string(255, 'x') + "\\t\\ty\\n"}, LineMode::WholeLines);
    EXPECT_EQ(tabs.output, std::string(255, 'x') + "  \r\n");
}

TEST_F(Tools, PartialLinesAreToldAtEveryChange) {
    const Captured captured = Capture({"say", "ab\\rac\\b\\n"}, LineMode::PartialLines);
    EXPECT_THAT(told, ElementsAre("", "a", "ab", "a", "ac", "a"));
    EXPECT_EQ(captured.output, "ab\r\na\r\n");
}

TEST_F(Tools, TheSameLineIsToldAnewAfterALineEnd) {
    Capture({"say", "a\\ra\\r"}, LineMode::PartialLines);
    EXPECT_THAT(told, ElementsAre("", "a", "a"));
}

TEST_F(Tools, PartialLinesComeWhileTheProgramRuns) {
    const auto start = std::chrono::steady_clock::now();
    double first = 0;
    const auto reader = [&](const std::string& line, bool) {
        if (line == "5%" && first == 0) first = SecondsSince(start);
        return false;
    };
    EXPECT_TRUE(CaptureOutput(kTool, {"say", "5%", "sleep", "700"}, reader, LineMode::PartialLines).ok);
    EXPECT_GT(first, 0);
    EXPECT_GE(SecondsSince(start) - first, 0.5);
}

TEST_F(Tools, AStopEndsTheProgram) {
    const auto start = std::chrono::steady_clock::now();
    const auto reader = [](const std::string& line, bool) { return line == "two"; };
    const Captured captured =
        CaptureOutput(kTool, {"say", "one\\ntwo\\nthree\\n", "sleep", "60000"}, reader, LineMode::WholeLines);
    EXPECT_FALSE(captured.ok);
    EXPECT_EQ(captured.error, "Break user");
    EXPECT_EQ(captured.output, "one\r\ntwo\r\n");
    EXPECT_LT(SecondsSince(start), 30);
}

TEST_F(Tools, AStopCanComeWithTheStart) {
    const auto reader = [](const std::string&, bool) { return true; };
    const Captured captured =
        CaptureOutput(kTool, {"sleep", "60000", "write", "done.txt", "x"}, reader, LineMode::WholeLines);
    EXPECT_FALSE(captured.ok);
    EXPECT_EQ(captured.error, "Break user");
    EXPECT_FALSE(Exists(home / "done.txt"));
}

TEST_F(Tools, ManyLinesAreReadSoon) {
    std::string lines;
    for (int i = 0; i < 1500; ++i)
        lines += std::to_string(i) + "\\n";
    const Captured captured = Capture({"say", lines, "say", lines}, LineMode::WholeLines);
    EXPECT_TRUE(captured.ok);
    EXPECT_THAT(told, SizeIs(3001));
    EXPECT_THAT(captured.output, StartsWith("0\r\n1\r\n2\r\n"));
    EXPECT_TRUE(captured.output.ends_with("1498\r\n1499\r\n"));
}

TEST_F(Tools, AToolInTheApplicationsFolderComesFirst) {
    MakeFile(home / "LAME.EXE", "x");
    EXPECT_EQ(FindTool("lame.exe"), "C:\\Kelvash\\lame.exe");
    EXPECT_EQ(FindTool("no such tool.exe"), "");
    EXPECT_EQ(FindTool(""), "");
}

TEST_F(Tools, WhatCannotBeStartedIsNotWaitedFor) {
    MakeFile(home / "text.exe", "no program");
    for (const char* program : {"C:\\Kelvash\\none.exe", "C:\\Kelvash\\text.exe", "C:\\Kelvash", ""})
        EXPECT_FALSE(RunAndWait(program, {}, Window::Hidden)) << program;
}

TEST_F(Tools, WhileOneIsSilentTheInterfaceWorks) {
    EXPECT_TRUE(Capture({"sleep", "3000"}, LineMode::WholeLines).ok);
    EXPECT_GE(user.pumps, 30); // 60 on an idle machine
    user.pumps = 0;
    EXPECT_TRUE(RunAndWait(kTool, {"sleep", "1000"}, Window::Hidden));
    EXPECT_GE(user.pumps, 10);
}

TEST_F(Tools, AStopReachesASilentOne) {
    const auto start = std::chrono::steady_clock::now();
    const auto stop_behind_a_line = [this](const std::string&, bool at_start) {
        if (!at_start) user.stop_at_pump = user.pumps + 2;
        return false;
    };
    const Captured captured = CaptureOutput(kTool, {"deaf", "say", "one\\n", "sleep", "60000"},
                                            stop_behind_a_line, LineMode::WholeLines);
    EXPECT_FALSE(captured.ok);
    EXPECT_EQ(captured.error, "Break user");
    EXPECT_EQ(captured.output, "one\r\n");
    EXPECT_LT(SecondsSince(start), 30);
}

TEST_F(Tools, AStopEndsTheWaiting) {
    user.stop_at_pump = 2;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(RunAndWait(kTool, {"sleep", "60000"}, Window::Hidden));
    EXPECT_LT(SecondsSince(start), 30);
}

TEST_F(Tools, AFloodIsReadWholeAndHeedsAStop) {
    const Captured captured = Capture({"flood", "20000"}, LineMode::WholeLines);
    EXPECT_TRUE(captured.ok);
    EXPECT_EQ(std::count(told.begin(), told.end(), "out"), 20000);
    EXPECT_EQ(std::count(told.begin(), told.end(), "error"), 20000);
    user.stop_at_pump = user.pumps + 1;
    EXPECT_EQ(Capture({"flood", "2000000000"}, LineMode::WholeLines).error, "Break user");
}

TEST_F(Tools, AStopEndsWhatTheToolHasLeftBehind) {
    user.stop_at_pump = 10;
    Capture({"child", "sleep 2500 write late.txt x", "sleep", "60000"}, LineMode::WholeLines);
    WaitSeconds(3, Wait::Sleep);
    EXPECT_FALSE(Exists(home / "late.txt"));
}

TEST_F(Tools, AChildThatStaysHoldsNobodyUpAndWorksOn) {
    const auto start = std::chrono::steady_clock::now();
    const Captured captured =
        Capture({"child", "sleep 4000 write late.txt x", "say", "done\\n"}, LineMode::WholeLines);
    EXPECT_TRUE(captured.ok);
    EXPECT_EQ(captured.output, "done\r\n");
    EXPECT_LT(SecondsSince(start), 3.9);
    for (int i = 0; i < 100 && !Exists(home / "late.txt"); ++i)
        WaitMillis(100, Wait::Sleep);
    EXPECT_TRUE(Exists(home / "late.txt"));
}

TEST_F(Tools, WhatIsTypedArrives) {
    const auto reader = [](const std::string&, bool) { return false; };
    const Captured captured = CaptureOutput(kTool, {"echo"}, reader, LineMode::WholeLines, "first\nsecond\n");
    EXPECT_EQ(captured.output, "first\r\nsecond\r\n");
    const std::string much(std::size_t{1} << 20, 'x');
    EXPECT_EQ(CaptureOutput(kTool, {"input"}, reader, LineMode::WholeLines, much).output, "1048576\r\n");
    EXPECT_TRUE(CaptureOutput(kTool, {"sleep", "1"}, reader, LineMode::WholeLines, much).ok); // reads none
}

} // namespace
} // namespace kelvash
