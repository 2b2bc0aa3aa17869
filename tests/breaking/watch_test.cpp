// The watch beside a game: the terminal of `play` and its death, and a window that stands open.
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "breaking/breaking_home.h"
#include "foundation/text.h"
#include "support/built.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class Watch : public BreakingHome {
  protected:
    ~Watch() override {
        if (const pid_t game = Game(); game != 0) kill(game, SIGKILL);
    }
    // `play`, with a game that runs for long; begins a group of processes, as a shell's commands do.
    ProgramStart PlayStart() {
        ProgramStart start = Command({"play", "2"}, Answers::Yes);
        start.environment["KELVASH_GAME_MS"] = "60000";
        start.prepare = [this] {
            MakeFile(place / "group", std::to_string(getpid()));
            return setpgid(0, 0) == 0 && signal(SIGINT, SIG_DFL) != SIG_ERR;
        };
        return start;
    }
    pid_t Group() const { return static_cast<pid_t>(WholeNumber(BytesOf(place / "group")).value_or(0)); }
    // 0 while none runs.
    pid_t Game() const {
        const std::string game = (trle / "tomb4.exe").string();
        std::error_code error;
        for (const fs::directory_entry& entry : fs::directory_iterator("/proc", error))
            if (fs::read_symlink(entry.path() / "exe", error).string().starts_with(game))
                return static_cast<pid_t>(WholeNumber(entry.path().filename().string()).value_or(0));
        return 0;
    }
    // The program that watches, as its lock names it; empty for none.
    std::string Watcher() const {
        std::error_code error;
        for (const fs::directory_entry& entry : fs::directory_iterator(runtime / "kelvash", error))
            if (entry.path().filename().string().ends_with(".watch.lock")) {
                const std::string text = BytesOf(entry.path());
                return text.substr(0, text.find('\n'));
            }
        return {};
    }
    static bool Becomes(const std::function<bool()>& state, int seconds = 30) {
        for (int i = 0; i < seconds * 50; ++i) {
            if (state()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return false;
    }
};

// It ended the game, unsaved.
TEST_F(Watch, CtrlCLeavesTheGameToItself) {
    RunningProgram play(PlayStart());
    ASSERT_TRUE(Becomes([this] { return Game() != 0; }));
    const pid_t game = Game();
    ASSERT_EQ(kill(-Group(), SIGINT), 0);
    EXPECT_EQ(play.Wait().status, 130);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(Game(), game);
    EXPECT_EQ(Watcher(), "") << "the watch is given back";
}

TEST_F(Watch, AnOpenWindowTakesItOverWhenPlayDies) {
    ProgramStart start = Command({}, Answers::None, "window");
    start.program = Built("bin/kelvash");
    start.words = {"--home", home.string()};
    const fs::path ready = place / "ready";
    start.environment.insert({{"QT_QPA_PLATFORM", "offscreen"},
                              {"QT_QPA_GENERIC_PLUGINS", "hand"},
                              {"QT_PLUGIN_PATH", Built("tests/plugins").string()},
                              {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
                              {"HAND_READY", ready.string()},
                              {"HAND_GO", (place / "never").string()},
                              {"HAND_DOES", "1 Pul_Play"}});
    const RunningProgram window(start);
    ASSERT_TRUE(Becomes([&] { return Exists(ready); })) << "no window";
    {
        const RunningProgram play(PlayStart());
        ASSERT_TRUE(Becomes([this] { return Game() != 0; }));
        std::this_thread::sleep_for(std::chrono::seconds(4)); // time for two looks of the window
        EXPECT_EQ(Watcher(), "kelvash-cli") << "it acts as long as it lives";
    }
    const auto watches = [this] { return Watcher() == "kelvash"; };
    EXPECT_TRUE(Becomes([&] { // for more than the instant in which it looks whether anybody watches
        if (!watches()) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        return watches();
    }));
    EXPECT_NE(Game(), 0);
}

} // namespace
} // namespace kelvash::test
