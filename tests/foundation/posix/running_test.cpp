// Finding a program that runs, whoever has started it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <utility>

#include "foundation/process.h"
#include "support/foundation_home.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class Running : public FoundationHome {
  protected:
    Running() {
        fs::create_directories(drive / "trle");
        fs::create_directories(drive / "other");
        fs::copy_file("/bin/sleep", drive / "trle" / "tomb4.exe");
    }
    ~Running() override {
        if (started_ <= 0) return;
        kill(started_, SIGKILL);
        waitpid(started_, nullptr, 0);
    }
    // Runs a program in a folder under these words, and waits till it is that program.
    void Start(const fs::path& program, const fs::path& folder, std::vector<std::string> words) {
        started_ = fork();
        if (started_ == 0) {
            std::vector<char*> pointers;
            for (std::string& word : words)
                pointers.push_back(word.data());
            pointers.push_back(nullptr);
            if (chdir(folder.c_str()) == 0) execv(program.c_str(), pointers.data());
            _exit(127);
        }
        std::error_code error;
        const fs::path exe = "/proc/" + std::to_string(started_) + "/exe";
        for (int i = 0; i < 500 && !fs::equivalent(exe, program, error); ++i)
            usleep(10000);
        ASSERT_TRUE(fs::equivalent(exe, program, error));
    }

    const std::string game_ = "C:\\trle\\tomb4.exe";
    pid_t started_ = 0;
};

TEST_F(Running, FindsNothingWhereNothingRuns) {
    EXPECT_EQ(FindProcessOf(game_), 0);
}

TEST_F(Running, KnowsWhichFilesAProcessHoldsOpen) {
    MakeFile(drive / "trle" / "savegame.0", "a");
    MakeFile(drive / "trle" / "savegame.1", "b");
    const std::vector<std::string> both = {"C:\\trle\\savegame.0", "C:\\trle\\SAVEGAME.1"};
    EXPECT_FALSE(HoldsOpen(getpid(), both));
    {
        const std::ifstream open(drive / "trle" / "savegame.1");
        EXPECT_TRUE(HoldsOpen(getpid(), both));
        EXPECT_FALSE(HoldsOpen(getpid(), {both[0]}));
        EXPECT_FALSE(HoldsOpen(getpid(), {"C:\\trle\\savegame.2"})) << "one that isn't there";
        EXPECT_FALSE(HoldsOpen(getpid(), {}));
        EXPECT_FALSE(HoldsOpen(0, both)) << "no process";
    }
    EXPECT_FALSE(HoldsOpen(getpid(), both));
}

TEST_F(Running, FindsANativeProgramWhereverItWorks) {
    Start(drive / "trle" / "tomb4.exe", "/", {"anything", "30"});
    EXPECT_EQ(FindProcessOf(game_), started_);
    EXPECT_EQ(FindProcessOf("C:\\TRLE\\Tomb4.exe"), started_);
}

TEST_F(Running, FindsOneThatHasEndedNoMore) {
    Start(drive / "trle" / "tomb4.exe", drive / "trle", {"tomb4.exe", "30"});
    ASSERT_EQ(FindProcessOf(game_), started_);
    kill(started_, SIGKILL);
    siginfo_t information{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(started_), &information, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(FindProcessOf(game_), 0) << "a process that nobody has reaped yet counts as running";
}

TEST_F(Running, IsHeldToItsEndAndNotBeyond) {
    Start(drive / "trle" / "tomb4.exe", drive / "trle", {"tomb4.exe", "30"});
    Process process;
    ASSERT_TRUE(TakeProcess(started_, process));
    EXPECT_EQ(process.id, started_);
    EXPECT_FALSE(WaitForProcess(process, 0));
    KillProcess(process);
    EXPECT_TRUE(WaitForProcess(process, 10)) << "nobody has reaped it";
    ASSERT_EQ(waitpid(std::exchange(started_, 0), nullptr, 0), process.id);
    // Its number may be another's by now: as if it were this test's.
    Process reused = process;
    reused.id = getpid();
    EXPECT_TRUE(WaitForProcess(reused, 0));
    KillProcess(reused);
    ReleaseProcess(process);
    EXPECT_FALSE(TakeProcess(process.id, process));
    EXPECT_FALSE(TakeProcess(0, process));
}

TEST_F(Running, LeavesAGameOfAnotherFolderAlone) {
    fs::copy_file("/bin/sleep", drive / "other" / "tomb4.exe");
    Start(drive / "other" / "tomb4.exe", drive / "other", {"tomb4.exe", "30"});
    EXPECT_EQ(FindProcessOf(game_), 0);
    EXPECT_EQ(FindProcessOf("C:\\other\\tomb4.exe"), started_);
}

// Wine's loader goes by the program's name and works in its folder, or names it by a drive.
TEST_F(Running, FindsAProgramUnderAnotherLoader) {
    fs::copy_file("/bin/sleep", drive / "loader");
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_NAME, "tomb4.exe");
        if (chdir((drive / "trle").c_str()) == 0) pause();
        _exit(1);
    }
    started_ = child;
    for (int i = 0; i < 500 && FindProcessOf(game_) == 0; ++i)
        usleep(10000);
    EXPECT_EQ(FindProcessOf(game_), child);
    EXPECT_EQ(FindProcessOf("C:\\other\\tomb4.exe"), 0);
}

TEST_F(Running, FindsAProgramThatWineIsStarting) {
    fs::copy_file("/bin/sh", drive / "wine");
    // A folder of its own: the path text means the same to every program that has such a drive.
    fs::create_directories(drive / "wine_game");
    fs::copy_file("/bin/sleep", drive / "wine_game" / "tomb4.exe");
    Start(drive / "wine", drive / "other", {"wine", "-c", "sleep 30 & wait", "C:\\wine_game\\TOMB4.EXE"});
    // Its words can be read a moment later than its program.
    const std::string game = "C:\\wine_game\\tomb4.exe";
    for (int i = 0; i < 500 && FindProcessOf(game) == 0; ++i)
        usleep(10000);
    EXPECT_EQ(FindProcessOf(game), started_);
}

TEST_F(Running, LeavesWineWithAnotherProgramAlone) {
    fs::copy_file("/bin/sh", drive / "wine");
    Start(drive / "wine", drive / "trle", {"wine", "-c", "sleep 30 & wait", "C:\\other\\tomb3.exe"});
    EXPECT_EQ(FindProcessOf(game_), 0);
}

} // namespace
} // namespace kelvash::test
