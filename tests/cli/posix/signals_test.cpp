// Signals and closed pipes: a command ends cleanly, and no swap is torn.
#include <gmock/gmock.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>

#include "cli/cli_home.h"
#include "support/built.h"

namespace kelvash::test {
namespace {

using testing::HasSubstr;

namespace fs = std::filesystem;

class Signals : public CliHome {
  protected:
    Signals() {
        const CliRun run = Bare({"demo", (root / "demo").string()});
        EXPECT_EQ(run.status, 0) << run.Output() << run.errors;
        trle = root / "demo" / "drive_c" / "Program Files" / "Core Design" / "trle";
    }

    // Runs a script of the shell in which $cli is the program in the sandbox; gives its exit status.
    int Shell(const std::string& script) {
        MakeFile(root / "script.sh", "cli=\"" + Built("bin/kelvash-cli").string() + " --json --home " +
                                         (root / "demo" / "drive_c" / "Kelvash").string() + "\"\ncd " +
                                         root.string() + "\n" + script);
        const int status = std::system(("bash " + (root / "script.sh").string()).c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    // The process that runs a program file; 0 for none.
    static pid_t ProcessOf(const fs::path& program) {
        std::error_code error;
        for (const fs::directory_entry& entry : fs::directory_iterator("/proc", error))
            if (fs::read_symlink(entry.path() / "exe", error) == program)
                return static_cast<pid_t>(std::stol(entry.path().filename().string()));
        return 0;
    }
    static bool WithinSeconds(int seconds, const std::function<bool()>& comes) {
        for (int i = 0; i < seconds * 50; ++i) {
            if (comes()) return true;
            usleep(20'000);
        }
        return false;
    }
    std::string Marker() const { return BytesOf(trle / "Kelvash.txt"); }

    fs::path trle;
};

TEST_F(Signals, EndACommandThatWaitsAndLeaveTheLevelIn) {
    for (const char* signal : {"TERM", "HUP"}) {
        const std::string script =
            "export KELVASH_GAME_MS=5000\n"
            "rm -f out\n"
            "$cli play 3 >out &\n"
            "for i in $(seq 200); do pgrep -P $! >/dev/null && break; sleep 0.05; done\n"
            "game=$(pgrep -P $!)\n"
            "sleep 0.2; kill -" +
            std::string(signal) +
            " $!\n"
            "wait $!; status=$?\n"
            "kill $game\n" // it plays on, and would keep the next round out
            "for i in $(seq 200); do readlink /proc/$game/exe >/dev/null || break; sleep 0.05; done\n"
            "exit $status\n";
        EXPECT_EQ(Shell(script), 130) << signal;
        EXPECT_THAT(BytesOf(root / "out"), HasSubstr(R"({"event":"result","ok":true,"installed":3})"));
        EXPECT_THAT(Marker(), HasSubstr("#LEVEL_CODE=0003#"));
    }
}

// Ctrl+C goes to all programs of the terminal's foreground group.
TEST_F(Signals, OfATerminalLeaveTheGameToItself) {
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        setenv("KELVASH_GAME_MS", "60000", 1);
        unsetenv("DISPLAY");
        const std::string cli = Built("bin/kelvash-cli"), home_folder = root / "demo" / "drive_c" / "Kelvash";
        execl(cli.c_str(), cli.c_str(), "--home", home_folder.c_str(), "play", "3", nullptr);
        _exit(127);
    }
    const fs::path game = trle / "tomb4.exe";
    ASSERT_TRUE(WithinSeconds(20, [&] { return ProcessOf(game) != 0; }));
    const pid_t playing = ProcessOf(game);
    ASSERT_EQ(write(terminal, "\x03", 1), 1);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 130);
    close(terminal); // which hangs up the programs of its session
    EXPECT_FALSE(WithinSeconds(1, [&] { return ProcessOf(game) != playing; })) << "the game has ended";
    if (playing > 0) kill(playing, SIGKILL);
}

TEST_F(Signals, EndAQuestionAtTheTerminal) {
    const std::string script =
        "cli=${cli/--json/}\n"
        "rm demo/drive_c/Kelvash/LevelArchive.kva\n"
        "mkfifo typed; sleep 20 >typed & typist=$!\n"
        "$cli save <typed >out 2>errors &\n"
        "for i in $(seq 200); do grep -q different out && break; sleep 0.05; done\n"
        "kill -TERM $!\n"
        "wait $!; status=$?\n"
        "kill $typist\n"
        "exit $status\n";
    EXPECT_EQ(Shell(script), 130);
    EXPECT_THAT(BytesOf(root / "out"), HasSubstr("Do you want load a different archive?"));
}

TEST_F(Signals, AReaderWhoIsGoneTearsNoSwap) {
    EXPECT_EQ(Shell("$cli install 1 2>errors | true\nexit ${PIPESTATUS[0]}\n"), 1);
    EXPECT_EQ(BytesOf(root / "errors"), "kelvash-cli: the output can't be written\n");
    EXPECT_THAT(Marker(), HasSubstr("#LEVEL_CODE=0001#"));
    EXPECT_FALSE(Exists(root / "demo" / "drive_c" / "Kelvash" / "Kelvash.jrn"));
}

} // namespace
} // namespace kelvash::test
