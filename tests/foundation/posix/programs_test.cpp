// What running programs means on this platform: scripts, Wine, descriptors, signals.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <set>

#include "foundation/files.h"
#include "foundation/strangers_files.h"
#include "foundation/tool.h"
#include "foundation/waiting.h"
#include "support/foundation_home.h"
#include "support/scripted_user.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeFile;

class PosixPrograms : public test::FoundationHome {
  protected:
    PosixPrograms() : old_path_(std::getenv("PATH")) { fs::create_directory(root / "bin"); }
    ~PosixPrograms() override { test::SetEnvironment("PATH", old_path_); }

    static void MakeScript(const fs::path& file, const std::string& commands) {
        MakeFile(file, "#!/bin/sh\n" + commands);
        fs::permissions(file, fs::perms::owner_all);
    }
    // Puts the test's own folder of programs before those of the system.
    void UseOwnPath() { test::SetEnvironment("PATH", (root / "bin").string() + ":" + old_path_); }
    void UseOnlyOwnPath() { test::SetEnvironment("PATH", (root / "bin").string()); }

    std::string OutputOf(std::string_view program, const Arguments& arguments) {
        const Captured captured = CaptureOutput(
            program, arguments, [](const std::string&, bool) { return false; }, LineMode::WholeLines);
        EXPECT_TRUE(captured.ok) << captured.error;
        return captured.output;
    }

  private:
    std::string old_path_;
};

TEST_F(PosixPrograms, AScriptRunsDirectly) {
    MakeScript(home / "tool.exe", "echo \"$1-$2\"; echo $PWD\n");
    EXPECT_EQ(OutputOf("C:\\Kelvash\\TOOL.EXE", {"a b", "c"}), "a b-c\r\n" + home.string() + "\r\n");
}

TEST_F(PosixPrograms, AnExitCodeIsThatOfTheProgramOrItsSignal) {
    MakeScript(home / "tool", "kill -TERM $$\n");
    Process process;
    int exit_code = 0;
    ASSERT_TRUE(RunFull("C:\\Kelvash\\tool", {}, Window::Hidden, process, false));
    EXPECT_TRUE(WaitForProcess(process, 20, &exit_code));
    EXPECT_EQ(exit_code, 143);
}

TEST_F(PosixPrograms, AFileThatNobodyMayRunCannotBeStarted) {
    MakeFile(home / "tool", "#!/bin/sh\n");
    fs::permissions(home / "tool", fs::perms::owner_read);
    EXPECT_FALSE(RunAndWait("C:\\Kelvash\\tool", {}, Window::Hidden));
}

TEST_F(PosixPrograms, AMissingInterpreterIsAFailureToStart) {
    MakeFile(home / "tool", "#!/no/such/interpreter\n");
    fs::permissions(home / "tool", fs::perms::owner_all);
    EXPECT_FALSE(RunAndWait("C:\\Kelvash\\tool", {}, Window::Hidden));
    MakeFile(home / "nonsense", "neither script nor program\n");
    fs::permissions(home / "nonsense", fs::perms::owner_all);
    EXPECT_FALSE(RunAndWait("C:\\Kelvash\\nonsense", {}, Window::Hidden));
}

TEST_F(PosixPrograms, AWindowsProgramRunsThroughWine) {
    MakeScript(root / "bin" / "wine",
               "printf '%s\\n' \"wine:$*\"; echo \"$WINEDEBUG $LC_ALL\"; echo \"$PWD\"\n");
    MakeFile(drive / "trle" / "tomb4.exe", "MZ and so on");
    UseOwnPath();
    unsetenv("WINEDEBUG");
    EXPECT_EQ(OutputOf("C:\\trle\\tomb4.exe", {"C:\\a b"}),
              "wine:" + (drive / "trle" / "tomb4.exe").string() + " C:\\a b\r\n-all C.UTF-8\r\n" +
                  (drive / "trle").string() + "\r\n");
}

TEST_F(PosixPrograms, AWindowsProgramWithoutWineCannotBeStarted) {
    MakeFile(drive / "trle" / "tomb4.exe", "MZ and so on");
    UseOnlyOwnPath();
    EXPECT_FALSE(RunAndWait("C:\\trle\\tomb4.exe", {}, Window::Normal));
}

TEST_F(PosixPrograms, TheProcessIsTheProgramsFromStartToEnd) {
    MakeScript(root / "bin" / "wine", "exec sleep 60\n");
    MakeFile(drive / "trle" / "tomb4.exe", "MZ");
    UseOwnPath();
    Process process;
    ASSERT_TRUE(RunFull("C:\\trle\\tomb4.exe", {}, Window::Normal, process, true));
    EXPECT_EQ(::kill(static_cast<pid_t>(process.id), 0), 0);
    ResumeProcess(process);
    EXPECT_FALSE(WaitForProcess(process, 0.1));
    KillProcess(process);
    int exit_code = 0;
    EXPECT_TRUE(WaitForProcess(process, 20, &exit_code));
    EXPECT_EQ(exit_code, 137);
    EXPECT_NE(::kill(static_cast<pid_t>(process.id), 0), 0); // no zombie is left
}

TEST_F(PosixPrograms, ASuspendedProgramThatCannotRunEndsOnItsResumption) {
    MakeFile(home / "tool", "#!/no/such/interpreter\n");
    fs::permissions(home / "tool", fs::perms::owner_all);
    Process process;
    ASSERT_TRUE(RunFull("C:\\Kelvash\\tool", {}, Window::Hidden, process, true));
    ResumeProcess(process);
    int exit_code = 0;
    EXPECT_TRUE(WaitForProcess(process, 20, &exit_code));
    EXPECT_EQ(exit_code, 127);
}

TEST_F(PosixPrograms, ChildrenInheritNoDescriptors) {
    fs::copy_file("/bin/sleep", home / "tool");
    const int open_file = ::open("/dev/null", O_RDONLY); // without close-on-exec
    ASSERT_GE(open_file, 3);
    Process process;
    ASSERT_TRUE(RunFull("C:\\Kelvash\\tool", {"60"}, Window::Hidden, process, false));
    ::close(open_file);
    // While the program is being loaded it has its own libraries open for an instant; what it inherited
    // stays.
    const std::set<std::string> standard = {"0", "1", "2"};
    std::set<std::string> descriptors;
    for (int attempt = 0; attempt < 200 && descriptors != standard; ++attempt) {
        if (attempt > 0) WaitMillis(20, Wait::Sleep);
        descriptors.clear();
        for (const auto& entry : fs::directory_iterator("/proc/" + std::to_string(process.id) + "/fd"))
            descriptors.insert(entry.path().filename().string());
    }
    KillProcess(process);
    EXPECT_TRUE(WaitForProcess(process, 20));
    EXPECT_THAT(descriptors, testing::ElementsAre("0", "1", "2"));
}

TEST_F(PosixPrograms, ChildrenHaveTheUsualSignals) {
    const auto old = ::signal(SIGPIPE, SIG_IGN);
    MakeScript(home / "tool", "grep SigIgn /proc/$$/status\n");
    const std::string output = OutputOf("C:\\Kelvash\\tool", {});
    ::signal(SIGPIPE, old);
    const unsigned long long ignored = std::strtoull(output.substr(8).c_str(), nullptr, 16);
    EXPECT_EQ(ignored >> (SIGPIPE - 1) & 1, 0U) << output;
}

TEST_F(PosixPrograms, AServantThatKeepsThePipeDoesNotHoldTheReaderUp) {
    MakeScript(home / "tool", "sleep 60 & echo $! > servant; echo done\n");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(OutputOf("C:\\Kelvash\\tool", {}), "done\r\n");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    ::kill(static_cast<pid_t>(std::atoi(BytesOf(home / "servant").c_str())), SIGKILL);
}

TEST_F(PosixPrograms, AnotherProgramsProcessCanBeAwaitedAndEnded) {
    MakeScript(home / "tool", "sleep 60 & echo $!\n");
    const Captured captured = CaptureOutput(
        "C:\\Kelvash\\tool", {}, [](const std::string&, bool) { return false; }, LineMode::WholeLines);
    Process grandchild;
    grandchild.id = std::atoll(captured.output.c_str());
    ASSERT_GT(grandchild.id, 0);
    EXPECT_FALSE(WaitForProcess(grandchild, 0.1));
    KillProcess(grandchild);
    EXPECT_TRUE(WaitForProcess(grandchild, 20));
}

TEST_F(PosixPrograms, AKilledProcessIsNotKilledTwice) {
    MakeScript(home / "tool", "exit 0\n");
    Process process;
    ASSERT_TRUE(RunFull("C:\\Kelvash\\tool", {}, Window::Hidden, process, false));
    EXPECT_TRUE(WaitForProcess(process, 20));
    // Its id may belong to anybody by now; -1 would be every process there is.
    KillProcess(process);
    Process all;
    all.id = -1;
    KillProcess(all);
    EXPECT_TRUE(WaitForProcess(all, 0));
}

TEST_F(PosixPrograms, ToolsOfTheSystemStandInForTheirTwins) {
    MakeScript(root / "bin" / "lame", "");
    MakeScript(root / "bin" / "genisoimage", "");
    MakeScript(root / "bin" / "wodim", "");
    MakeFile(root / "bin" / "isoinfo", "not executable");
    UseOnlyOwnPath();
    std::string bin = "Z:" + (root / "bin").string();
    std::replace(bin.begin(), bin.end(), '/', '\\');
    EXPECT_EQ(FindTool("lame.exe"), bin + "\\lame");
    EXPECT_EQ(FindTool("MKISOFS.EXE"), bin + "\\genisoimage");
    EXPECT_EQ(FindTool("cdrecord.exe"), bin + "\\wodim");
    EXPECT_EQ(FindTool("isoinfo.exe"), "");
    EXPECT_EQ(FindTool("madplay.exe"), "");
    EXPECT_EQ(FindTool("tomb4.exe"), "");
    MakeScript(root / "bin" / "mkisofs", "");
    EXPECT_EQ(FindTool("mkisofs.exe"), bin + "\\mkisofs");
}

TEST_F(PosixPrograms, OnlyWholeFoldersOfThePathCount) {
    MakeScript(root / "bin" / "lame", "");
    const fs::path old = fs::current_path();
    fs::current_path(root / "bin");
    test::SetEnvironment("PATH", ":.:relative");
    const std::string found = FindTool("lame.exe");
    fs::current_path(old);
    EXPECT_EQ(found, "");
}

TEST_F(PosixPrograms, ADocumentIsOpenedByTheDesktop) {
    MakeScript(root / "bin" / "xdg-open", "echo \"$1 $PWD $LC_ALL\" > " + (root / "opened").string() + "\n");
    UseOwnPath();
    test::SetEnvironment("LC_ALL", "xx");
    MakeFile(drive / "manual" / "a b.pdf", "x");
    EXPECT_TRUE(OpenDocument("C:\\manual\\A B.pdf", "open", Window::Normal, ""));
    EXPECT_EQ(BytesOf(root / "opened"),
              (drive / "manual" / "a b.pdf").string() + " " + (drive / "manual").string() + " xx\n");
    EXPECT_TRUE(OpenDocument("C:\\manual", "", Window::Normal, "C:\\Kelvash"));
    EXPECT_EQ(BytesOf(root / "opened"), (drive / "manual").string() + " " + home.string() + " xx\n");
    unsetenv("LC_ALL");
}

TEST_F(PosixPrograms, AnAddressIsOpenedByTheDesktop) {
    MakeScript(root / "bin" / "xdg-open", "echo \"$1\" > " + (root / "opened").string() + "\n");
    UseOwnPath();
    EXPECT_TRUE(OpenDocument(" http://host/a?b=c&d ", "open", Window::Normal, ""));
    EXPECT_EQ(BytesOf(root / "opened"), "http://host/a?b=c&d\n");
    EXPECT_TRUE(OpenDocument("www.host.com", "", Window::Normal, ""));
    EXPECT_EQ(BytesOf(root / "opened"), "http://www.host.com\n");
    EXPECT_FALSE(OpenDocument("--version", "", Window::Normal, ""));
    EXPECT_EQ(BytesOf(root / "opened"), "http://www.host.com\n");
}

TEST_F(PosixPrograms, AnOpenerThatFailsIsAFailure) {
    MakeScript(root / "bin" / "xdg-open", "exit 3\n");
    UseOwnPath();
    EXPECT_FALSE(OpenDocument("http://host", "", Window::Normal, ""));
    fs::remove(root / "bin" / "xdg-open");
    UseOnlyOwnPath();
    EXPECT_FALSE(OpenDocument("http://host", "", Window::Normal, ""));
}

TEST_F(PosixPrograms, AProgramIsADocumentWithParameters) {
    MakeScript(root / "bin" / "wine", "echo \"$*\" > " + (root / "started").string() + "\n");
    MakeFile(drive / "tool.exe", "MZ");
    UseOwnPath();
    EXPECT_TRUE(OpenDocument("C:\\tool.exe", "-a -b", Window::Normal, ""));
    for (int i = 0; i < 500 && (!Exists(root / "started") || BytesOf(root / "started").empty()); ++i)
        ::usleep(10000);
    EXPECT_EQ(BytesOf(root / "started"), (drive / "tool.exe").string() + " -a -b\n");
}

// What strangers made: a wine that must not run, an opener that writes down what it is given.
class PosixStrangers : public PosixPrograms {
  protected:
    PosixStrangers() {
        MakeScript(root / "bin" / "xdg-open", "echo \"$1\" >> " + (root / "opened").string() + "\n");
        MakeScript(root / "bin" / "wine", "echo \"$1\" >> " + (root / "has_run").string() + "\n");
        UseOwnPath();
    }
    std::string Opened() const { return Exists(root / "opened") ? BytesOf(root / "opened") : std::string(); }
    bool Ran() const { return Exists(root / "has_run"); }
    test::ScriptedUser user;
};

TEST_F(PosixStrangers, ADocumentIsNeverRunForItsBytesOrRights) {
    MakeFile(drive / "readme.txt", "MZ\x90 is how programs begin");
    MakeScript(drive / "note.txt", "touch " + (root / "has_run").string() + "\n");
    EXPECT_TRUE(OpenDocument("C:\\readme.txt", "open", Window::Normal, ""));
    EXPECT_TRUE(OpenDocument("C:\\note.txt", "open", Window::Normal, ""));
    EXPECT_EQ(Opened(), (drive / "readme.txt").string() + "\n" + (drive / "note.txt").string() + "\n");
    EXPECT_FALSE(Ran());
}

TEST_F(PosixStrangers, APlainDocumentIsOpenedUnasked) {
    MakeFile(drive / "readme.txt", "Read me");
    EXPECT_EQ(OpenStrangersFile("C:\\readme.txt"), Opening::Opened);
    EXPECT_EQ(Opened(), (drive / "readme.txt").string() + "\n");
    EXPECT_TRUE(user.Asked().empty());
    EXPECT_EQ(OpenStrangersFile("C:\\none.txt"), Opening::Failed);
}

TEST_F(PosixStrangers, AProgramIsAskedAboutWithItsWholePath) {
    MakeFile(drive / "setup.exe", "MZ");
    MakeFile(drive / "readme.txt", "MZ");
    MakeScript(drive / "play", "touch " + (root / "has_run").string() + "\n");
    for (const char* path : {"C:\\setup.exe", "C:\\readme.txt", "C:\\play"}) {
        user.WillAnswer("begins as a program does:\r\n" + std::string(path) + "\r\n", "no");
        EXPECT_EQ(OpenStrangersFile(path), Opening::NotWanted);
    }
    EXPECT_EQ(Opened(), "");
    EXPECT_FALSE(Ran());
}

TEST_F(PosixStrangers, OnlyWhatIsCalledAProgramIsRunAfterAYes) {
    MakeFile(drive / "setup.exe", "MZ");
    MakeFile(drive / "readme.txt", "MZ");
    MakeScript(drive / "script.exe", "touch " + (root / "script_ran").string() + "\n");
    user.WillAnswer("C:\\readme.txt", "yes");
    EXPECT_EQ(OpenStrangersFile("C:\\readme.txt"), Opening::Opened);
    user.WillAnswer("C:\\script.exe", "yes");
    EXPECT_EQ(OpenStrangersFile("C:\\script.exe"), Opening::Opened);
    EXPECT_EQ(Opened(), (drive / "readme.txt").string() + "\n" + (drive / "script.exe").string() + "\n");
    EXPECT_FALSE(Ran());
    user.WillAnswer("C:\\setup.exe", "yes");
    EXPECT_EQ(OpenStrangersFile("C:\\setup.exe"), Opening::Opened);
    for (int i = 0; i < 500 && !Ran(); ++i)
        ::usleep(10000);
    EXPECT_TRUE(Ran());
    EXPECT_FALSE(Exists(root / "script_ran"));
}

TEST_F(PosixStrangers, AnAddressIsShownBeforeItIsOpened) {
    user.WillAnswer("Do you want to open this address?\r\nhttp://www.x.org/a%20b", "yes");
    EXPECT_EQ(OpenStrangersAddress("www.x.org/a b"), Opening::Opened);
    EXPECT_EQ(Opened(), "http://www.x.org/a%20b\n");
    user.WillAnswer("mailto:ann@a.org", "no");
    EXPECT_EQ(OpenStrangersAddress("mailto:ann@a.org"), Opening::NotWanted);
    EXPECT_EQ(Opened(), "http://www.x.org/a%20b\n");
}

TEST_F(PosixStrangers, WhatIsNoAddressIsTold) {
    MakeScript(drive / "evil", "touch " + (root / "has_run").string() + "\n");
    for (const std::string& text :
         {(drive / "evil").string(), std::string("C:\\evil"), std::string("file:///etc/passwd"),
          std::string("mailto:a@b.c?attach=/etc/passwd")}) {
        user.Forget();
        EXPECT_EQ(OpenStrangersAddress(text), Opening::NotWanted);
        EXPECT_THAT(user.Told(),
                    testing::ElementsAre("critical: Only web sites (http, https) and email addresses can be "
                                         "opened, and this is none: " +
                                         text));
    }
    EXPECT_TRUE(user.Asked().empty());
    EXPECT_EQ(Opened(), "");
    EXPECT_FALSE(Ran());
}

} // namespace
} // namespace kelvash
