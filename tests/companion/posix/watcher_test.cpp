// The start of the game, the watcher's tick and the game's end.
#include "companion/watcher.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "companion/posix/watcher_home.h"
#include "core/ports.h"
#include "foundation/lock.h"
#include "foundation/platform/platform.h"

// Behind the others.
#include "support/x_client.h"

namespace kelvash::companion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Watcher = WatcherHome;

constexpr const char* kOriginal = "- TRLE: Original configuration -";

// --- the start ---

TEST_F(Watcher, StartCoversTheScreenAndKeepsTheFirstWindow) {
    desktop.reach = DesktopReach::Full;
    int looks = 0;
    while_waiting = [&] {
        if (++looks == 3)
            desktop.windows = {
                {5, "other", 4711}, {6, "game", game.GameProcess.id}, {7, "more", game.GameProcess.id}};
    };
    ASSERT_TRUE(StartGame({"1000"}, false));
    EXPECT_THAT(TakeDone(), ElementsAre("cover", "wait 200", "wait 200", "wait 200"));
    EXPECT_EQ(game.GameWindow, 6U);
    EXPECT_GT(game.GameProcess.id, 0);
    EXPECT_FALSE(game.WatcherActive) << "that is the caller's, two seconds later";
    EXPECT_THAT(desktop.activated, IsEmpty()) << "the cover hasn't the focus";
}

TEST_F(Watcher, AGameBehindTheCoverComesToTheFront) {
    desktop.reach = DesktopReach::Full;
    desktop.focused = {kCover, "", 1};
    while_waiting = [&] { desktop.windows = {{6, "game", game.GameProcess.id}}; };
    ASSERT_TRUE(StartGame({"1000"}, false));
    EXPECT_THAT(desktop.activated, ElementsAre(6U));
}

TEST_F(Watcher, AGameWithoutAWindowIsWatchedAfterTenSeconds) {
    desktop.reach = DesktopReach::Full;
    ASSERT_TRUE(StartGame({"1000"}, false));
    EXPECT_NEAR(now, 1010, 0.2);
    EXPECT_EQ(game.GameWindow, 0U);
    // A desktop of Wine's own holds it.
    game.WatcherActive = true;
    TickAfter(2);
    desktop.focused = {9, "Wine desktop", 4712, "explorer.exe"};
    Tap(kKeyF9);
    TickAfter(2);
    EXPECT_THAT(desktop.beeps, ElementsAre(std::pair(200, 150)));
}

TEST_F(Watcher, WithoutADisplayNoWindowIsAwaited) {
    ASSERT_TRUE(StartGame({"1000"}, false));
    EXPECT_THAT(TakeDone(), ElementsAre("cover"));
}

TEST_F(Watcher, ASuspendedStartIsResumed) {
    ASSERT_TRUE(StartGame({"0"}, true));
    EXPECT_TRUE(WaitForProcess(game.GameProcess, 10)) << "it has run to its end";
}

TEST_F(Watcher, AGameThatCannotBeStartedTakesTheCoverAway) {
    test::MakeFile(trle / "tomb4.exe", "");
    EXPECT_FALSE(StartGame({}, false));
    EXPECT_THAT(TakeDone(), ElementsAre("cover", "uncover"));
    EXPECT_EQ(game.GameProcess.id, 0);
}

TEST_F(Watcher, AGameThatDiesAtOnceIsTold) {
    desktop.reach = DesktopReach::Full;
    while_waiting = [&] { WaitForProcess(game.GameProcess, 10); };
    ASSERT_TRUE(StartGame({"0.5"}, false));
    EXPECT_THAT(TakeDone(), ElementsAre("cover", "wait 200"));
    game.WatcherActive = true;
    EXPECT_FALSE(Tick());
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: The game has ended without opening a window.\r\nLook whether it starts "
                    "without Kelvash; under Wine the 32-bit part may be missing."));
}

TEST_F(Watcher, AWaylandDesktopWithoutX11IsToldAfterTheGame) {
    desktop.reach = DesktopReach::OnlyWayland;
    ASSERT_TRUE(StartGame({"1000"}, false));
    EXPECT_THAT(user.Told(), IsEmpty()) << "never over the game";
    game.WatcherActive = true;
    EndGame();
    EXPECT_FALSE(Tick());
    ASSERT_EQ(user.Told().size(), 1U);
    EXPECT_THAT(user.Told()[0], testing::HasSubstr("This desktop lets no program see the keys"));
}

TEST_F(Watcher, ARunningGameIsAdopted) {
    EXPECT_FALSE(AdoptGame());
    Process other;
    ASSERT_TRUE(RunFull("C:\\trle\\tomb4.exe", {"1000"}, Window::Normal, other, false));
    desktop.windows = {{6, "game", other.id}};
    EXPECT_TRUE(AdoptGame());
    EXPECT_TRUE(game.WatcherActive);
    EXPECT_EQ(game.GameProcess.id, other.id);
    EXPECT_EQ(game.GameWindow, 6U);
    EXPECT_THAT(TakeDone(), IsEmpty()) << "no cover over a game that runs";
}

// A game that somebody else has started, and whose end nobody heeds.
class StrangersGame {
  public:
    explicit StrangersGame(const std::filesystem::path& folder) : id_(fork()) {
        if (id_ != 0) return;
        if (chdir(folder.c_str()) == 0) execl("./tomb4.exe", "tomb4.exe", "1000", nullptr);
        _exit(127);
    }
    ~StrangersGame() {
        End();
        waitpid(id_, nullptr, 0);
    }
    StrangersGame(const StrangersGame&) = delete;
    StrangersGame& operator=(const StrangersGame&) = delete;
    void End() const {
        kill(id_, SIGKILL);
        siginfo_t information{};
        waitid(P_PID, static_cast<id_t>(id_), &information, WEXITED | WNOWAIT);
    }

  private:
    pid_t id_;
};

TEST_F(Watcher, AnAdoptedGameHasEndedThoughNobodyHasReapedIt) {
    const StrangersGame other(trle);
    ASSERT_TRUE(test::Comes([] { return AdoptGame(); }));
    EXPECT_TRUE(Tick());
    other.End();
    EXPECT_FALSE(Tick());
    EXPECT_THAT(TakeDone(), ElementsAre("uncover", "wait 1000", "show lists", "focus"));
    EXPECT_FALSE(AdoptGame()) << "it is no game any more";
}

TEST_F(Watcher, AnAdoptedGameOnAWaylandDesktopIsToldOf) {
    desktop.reach = DesktopReach::OnlyWayland;
    const StrangersGame other(trle);
    ASSERT_TRUE(test::Comes([] { return AdoptGame(); }));
    other.End();
    Tick();
    ASSERT_EQ(user.Told().size(), 1U);
    EXPECT_THAT(user.Told()[0], testing::HasSubstr("This desktop lets no program see the keys"));
}

TEST_F(Watcher, AWindowThatComesLateIsFound) {
    desktop.reach = DesktopReach::Full;
    ASSERT_TRUE(StartGame({"1000"}, false));
    ASSERT_EQ(game.GameWindow, 0U);
    game.WatcherActive = true;
    desktop.focused = {kCover, "", 1};
    TickAfter(6);
    desktop.windows = {{6, "game", game.GameProcess.id}};
    TickAfter(3);
    EXPECT_EQ(game.GameWindow, 0U) << "not at each tick: it costs";
    TickAfter(3);
    EXPECT_EQ(game.GameWindow, 6U);
    EXPECT_THAT(desktop.activated, ElementsAre(6U)) << "it lay behind the cover";
}

// --- the tick ---

TEST_F(Watcher, DoesNothingWhileItIsInactive) {
    Tap(kKeyF9);
    Offer("picture");
    EXPECT_FALSE(Tick());
    EXPECT_THAT(TakeDone(), IsEmpty());
}

TEST_F(Watcher, WithoutAProcessItClosesTheCoverAndRests) {
    game.WatcherActive = true;
    EXPECT_FALSE(Tick());
    EXPECT_THAT(TakeDone(), ElementsAre("uncover"));
    EXPECT_FALSE(game.WatcherActive);
}

TEST_F(Watcher, AQuietTickDoesNothing) {
    Play();
    EXPECT_TRUE(Tick());
    EXPECT_THAT(TakeDone(), IsEmpty());
    EXPECT_TRUE(game.WatcherActive);
}

TEST_F(Watcher, MediaEventsRunFirstWithTheGuardUp) {
    Play();
    watch_calls.RunMediaEvents = [this] {
        EXPECT_FALSE(game.WatcherActive);
        EXPECT_TRUE(IsWatching());
        EXPECT_TRUE(Tick()) << "a tick within does nothing";
        Did("media");
    };
    desktop.held = {kKeyF9};
    TickAfter(2);
    EXPECT_TRUE(game.WatcherActive);
    EXPECT_THAT(TakeDone(), ElementsAre("media", "beep 200 150", testing::StartsWith("archive 15")));
}

TEST_F(Watcher, ATapAcrossATickActsOnceAndAKeyThatIsHeldAtEachTick) {
    Play();
    desktop.held = {kKeyF9};
    PollKeys();
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre("beep 200 150", testing::StartsWith("archive 15")));
    PollKeys();
    desktop.held.clear();
    PollKeys();
    TickAfter(2);
    EXPECT_THAT(TakeDone(), IsEmpty());
    desktop.held = {kKeyF9};
    for (int tick = 0; tick < 2; ++tick) {
        TickAfter(2);
        EXPECT_THAT(TakeDone(), ElementsAre("beep 200 150", testing::StartsWith("archive 15")));
    }
}

TEST_F(Watcher, EverythingComesInTheSpecifiedOrder) {
    core::profile.ArchiveSavegames = true;
    core::profile.SavegamesToKeep = 5;
    core::profile.JoyButtonA = 2;
    Play();
    for (int slot = 0; slot < 15; ++slot)
        Save("savegame." + std::to_string(slot), "save");
    TickAfter(0.5);
    TakeDone();
    watch_calls.RunMediaEvents = [this] { Did("media"); };
    desktop.held = {kKeyF9, kKeyF11};
    desktop.joysticks[0].buttons = 2;
    Offer("picture");
    TickAfter(2);
    const std::string name = kOriginal;
    EXPECT_THAT(TakeDone(),
                ElementsAre("media", "key 44", "beep 200 150", "archive 15 of " + name, "beep 200 150",
                            "restore of " + name, "archive 5 of " + name, "beep 300 100", "beep 100 150",
                            "beep 100 150", "save picture for " + name,
                            "show pictures of " + name + ", new.jpg", "clear"));
}

// --- the joystick ---

class WatcherJoystick : public Watcher {
  protected:
    WatcherJoystick() {
        core::profile.JoyButtonA = 0b0101;
        core::profile.JoyButtonB = 0b1010;
    }
    // The presses of Print Screen that some buttons make.
    std::size_t PressesBy(std::uint32_t buttons) {
        desktop.joysticks[0].buttons = buttons;
        const std::size_t before = desktop.pressed.size();
        TickAfter(0.5);
        return desktop.pressed.size() - before;
    }
};

TEST_F(WatcherJoystick, OtherButtonsMayBeHeldUnlessTheFlagForbidsIt) {
    Play();
    EXPECT_EQ(PressesBy(0b0101), 1U);
    EXPECT_EQ(PressesBy(0b10101), 1U);
    EXPECT_EQ(PressesBy(0b0001), 0U) << "half of it";
    EXPECT_EQ(PressesBy(0), 0U);
    core::profile.JoyFlagA = true;
    EXPECT_EQ(PressesBy(0b0101), 1U);
    EXPECT_EQ(PressesBy(0b10101), 0U);
}

TEST_F(WatcherJoystick, AHeldButtonPressesAtEveryTick) {
    Play();
    EXPECT_EQ(PressesBy(0b0101), 1U);
    EXPECT_EQ(PressesBy(0b0101), 1U);
    EXPECT_EQ(PressesBy(0b0101), 1U);
    EXPECT_THAT(desktop.pressed, ElementsAre(0x2C, 0x2C, 0x2C));
}

TEST_F(WatcherJoystick, AMaskOfZeroDisablesTheAction) {
    core::profile.JoyButtonA = 0;
    core::profile.JoyButtonB = 0;
    Play();
    for (const bool only : {false, true}) {
        core::profile.JoyFlagA = core::profile.JoyFlagB = only;
        EXPECT_EQ(PressesBy(0), 0U);
        EXPECT_EQ(PressesBy(7), 0U);
    }
    EXPECT_FALSE(WaitForProcess(game.GameProcess, 0));
}

TEST_F(WatcherJoystick, TheCloseButtonEndsTheGame) {
    Play();
    core::profile.JoyFlagB = true;
    PressesBy(0b1110);
    EXPECT_FALSE(WaitForProcess(game.GameProcess, 0)) << "another button is held as well";
    const Process process = game.GameProcess;
    PressesBy(0b1010);
    EXPECT_TRUE(WaitForProcess(process, 10));
}

TEST_F(WatcherJoystick, DisabledOrMissingItIsNotHeeded) {
    Play();
    core::profile.EnableJoystick = false;
    EXPECT_EQ(PressesBy(0b0101), 0U);
    core::profile.EnableJoystick = true;
    core::profile.JoystickId = 1;
    EXPECT_EQ(PressesBy(0b0101), 0U) << "another port";
}

TEST_F(WatcherJoystick, AStrangersProcessIsNotEnded) {
    Process other; // has the number that the adopted game had
    ASSERT_TRUE(RunFull("C:\\trle\\winroomedit.exe", {}, Window::Normal, other, false) ||
                RunFull("C:\\trle\\tomb4.exe", {"1000"}, Window::Normal, other, false));
    game.GameProcess = other;
    game.WatcherActive = true;
    game.IsOurs = false;
    core::profile.TrleFolder = "C:\\Levels"; // where no game runs
    PressesBy(0b1010);
    EXPECT_FALSE(WaitForProcess(other, 0.2));
    KillProcess(other);
}

// --- the end ---

TEST_F(Watcher, TheEndBringsTheWindowBack) {
    Play();
    EndGame();
    EXPECT_FALSE(Tick());
    EXPECT_THAT(TakeDone(), ElementsAre("uncover", "wait 1000", "show lists", "focus"));
    EXPECT_EQ(game.GameProcess.id, 0);
    EXPECT_FALSE(game.WatcherActive);
    EXPECT_FALSE(Tick());
    EXPECT_THAT(TakeDone(), IsEmpty());
}

TEST_F(Watcher, NothingIsDoneForAGameThatHasEnded) {
    Play();
    desktop.held = {kKeyF9};
    Offer("picture");
    EndGame();
    Tick();
    EXPECT_THAT(TakeDone(), ElementsAre("uncover", "wait 1000", "show lists", "focus"));
}

TEST_F(Watcher, AJobDelaysTheListsButNotTheEnd) {
    Play();
    EndGame();
    may_change = false;
    EXPECT_TRUE(Tick()) << "there is still something to do";
    EXPECT_THAT(TakeDone(), ElementsAre("uncover"));
    EXPECT_FALSE(game.WatcherActive);
    EXPECT_TRUE(Tick());
    EXPECT_THAT(TakeDone(), IsEmpty());
    may_change = true;
    EXPECT_FALSE(Tick());
    EXPECT_THAT(TakeDone(), ElementsAre("wait 1000", "show lists", "focus"));
}

TEST_F(Watcher, WhatWentWrongIsToldOnceAndAfterTheGame) {
    Play();
    TellAfterGame(MessageText("one"));
    TellAfterGame(MessageText("two"));
    TellAfterGame(MessageText("one"));
    Tick();
    EXPECT_THAT(user.Told(), IsEmpty());
    EndGame();
    Tick();
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: one", "exclamation: two"));
}

// --- two watchers ---

// Another program that watches this game already.
class OtherWatcher {
  public:
    OtherWatcher()
        : descriptor_(
              platform::OpenLockFile(RuntimeFolder() / (FolderIdentity("C:\\trle") + ".watch.lock"))) {
        EXPECT_EQ(platform::TryLock(descriptor_), LockResult::Taken);
    }
    ~OtherWatcher() { platform::CloseLockFile(descriptor_); }
    OtherWatcher(const OtherWatcher&) = delete;
    OtherWatcher& operator=(const OtherWatcher&) = delete;

  private:
    int descriptor_;
};

TEST_F(Watcher, OnlyOneOfTwoActsAndTheOtherTakesOver) {
    core::profile.JoyButtonA = 1;
    {
        const OtherWatcher other;
        Play();
        desktop.joysticks[0].buttons = 1;
        Tap(kKeyF9);
        Offer("picture");
        TickAfter(2);
        EXPECT_THAT(TakeDone(), IsEmpty());
        desktop.joysticks.clear();
    }
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre("beep 100 150", testing::StartsWith("save picture"),
                                        testing::StartsWith("show pictures"), "clear"))
        << "it is the only one now; the key was the other's";
}

TEST_F(Watcher, AGameThatNobodyWatchesAnyMoreIsTakenOver) {
    const StrangersGame stranger(trle);
    ASSERT_TRUE(test::Comes([] { return core::FindGame() != 0; }));
    {
        const OtherWatcher other;
        EXPECT_FALSE(TakeOverGame());
        EXPECT_FALSE(TakeOverGame());
        EXPECT_FALSE(TakeOverGame());
    }
    EXPECT_FALSE(TakeOverGame()) << "who has just started it has the first word";
    EXPECT_TRUE(TakeOverGame());
    EXPECT_TRUE(game.WatcherActive);
    EXPECT_FALSE(TakeOverGame()) << "it is watched";
    desktop.focused = {kGameWindow, "", game.GameProcess.id};
    Tap(kKeyF9);
    TickAfter(2);
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre("beep 200 150", testing::StartsWith("archive 15")));
}

TEST_F(Watcher, TheSecondWatcherSeesTheEnd) {
    const OtherWatcher other;
    Play();
    EndGame();
    EXPECT_FALSE(Tick());
    EXPECT_THAT(TakeDone(), ElementsAre("uncover", "wait 1000", "show lists", "focus"));
}

TEST_F(Watcher, TheEndLetsOthersWatch) {
    Play();
    EndGame();
    Tick();
    const OtherWatcher other;
}

} // namespace
} // namespace kelvash::companion
