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

double SecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The console stand-in runs from the application's folder, under the name of a tool.
class Programs : public test::FoundationHome {
  protected:
    Programs() { fs::copy_file(test::Built("tests/standin_console"), home / "tool.exe"); }

    static constexpr std::string_view kTool = "C:\\Kelvash\\tool.exe";
};

TEST_F(Programs, WhatCannotBeStartedIsAFailure) {
    MakeFile(home / "text.exe", "no program");
    MakeFile(home / "empty.exe", "");
    for (const char* program : {"C:\\Kelvash\\none.exe", "C:\\Kelvash\\text.exe", "C:\\Kelvash\\empty.exe",
                                "C:\\Kelvash", "Q:\\x.exe", "tool.exe", ""}) {
        Process process;
        process.id = 5;
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

TEST_F(Programs, ADocumentThatIsMissingCannotBeOpened) {
    EXPECT_FALSE(OpenDocument("C:\\Kelvash\\none.txt", "open", Window::Normal, ""));
    EXPECT_FALSE(OpenDocument("", "open", Window::Normal, ""));
    EXPECT_FALSE(OpenDocument("   ", "", Window::Normal, ""));
}

} // namespace
} // namespace kelvash
