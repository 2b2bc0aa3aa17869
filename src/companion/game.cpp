#include "companion/game.h"

#include <utility>
#include <vector>

#include "companion/fragments.h"
#include "companion/messages.h"
#include "companion/watch_calls.h"
#include "companion/watcher.h"
#include "core/ports.h"
#include "core/profile.h"
#include "foundation/desktop.h"
#include "foundation/messages.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "trle_state/fragments.h"

namespace kelvash::companion {

constinit GameState& game = State<GameState>::Get();

namespace {

std::string GameProgram() {
    return core::TrleFolder() + LoadFragment(fragment::kGameProgram);
}

// Where a container or a desktop of Wine's own stands around the game, no window has its process; what a
// window says of its program has to do then.
bool IsOfGame(const DesktopWindow& window) {
    if (window.process_id == game.GameProcess.id) return true;
    return game.GameWindow == 0 && (EqualNoCase(window.program, LoadFragment(fragment::kGameFile)) ||
                                    EqualNoCase(window.program, LoadFragment(fragment::kWineDesktop)));
}

bool IsCover(std::uintptr_t window) {
    return watch_calls.CoverWindow && window == watch_calls.CoverWindow();
}

std::uintptr_t FindGameWindow() {
    const std::vector<DesktopWindow> own = ListThreadWindows(game.GameProcess.id);
    return own.empty() ? 0 : own.front().handle;
}

// Once a run, and not now: a message would lie over the game.
void TellUnreachable() {
    struct Unreachable {
        bool IsTold = false;
    };
    if (TheDesktop().Reach() == DesktopReach::OnlyWayland &&
        !std::exchange(State<Unreachable>::Get().IsTold, true))
        TellAfterGame(LoadMessage(msg::kWatchOnlyWayland, {kLineBreak}));
}

// A window manager may have left the new window behind the cover.
void RaiseGame() {
    if (game.GameWindow != 0 && IsCover(TheDesktop().FocusedWindow().handle))
        TheDesktop().Activate(game.GameWindow);
}

void AwaitGameWindow() {
    constexpr double kLookSeconds = 0.2;
    if (TheDesktop().Reach() != DesktopReach::Full) return TellUnreachable();
    const double end = watch_calls.Now() + kWindowSeconds;
    while (game.GameWindow == 0 && watch_calls.Now() < end && !WaitForProcess(game.GameProcess, 0)) {
        watch_calls.Wait(kLookSeconds);
        game.GameWindow = FindGameWindow();
    }
    game.LookedAt = watch_calls.Now();
    RaiseGame();
}

// A process that has got the game's number meanwhile isn't the game.
bool HoldGame(std::int64_t id) {
    if (id == 0 || !TakeProcess(id, game.GameProcess)) return false;
    if (core::FindGame() == id) return true;
    ForgetGame();
    return false;
}

} // namespace

bool StartGame(const Arguments& arguments, bool suspended) {
    ForgetGame();
    if (watch_calls.ShowCover) watch_calls.ShowCover();
    if (!RunFull(GameProgram(), arguments, Window::Normal, game.GameProcess, suspended)) {
        ForgetGame();
        if (watch_calls.CloseCover) watch_calls.CloseCover();
        return false;
    }
    game.IsOurs = true;
    if (suspended) ResumeProcess(game.GameProcess);
    BeginWatch();
    AwaitGameWindow();
    return true;
}

bool AdoptGame() {
    if (game.GameProcess.id != 0) return GameRuns(); // the end of one that is watched is its tick's
    if (!HoldGame(core::FindGame())) return false;
    game.WatcherActive = true;
    game.GameWindow = FindGameWindow();
    game.LookedAt = watch_calls.Now();
    BeginWatch();
    TellUnreachable();
    return true;
}

bool TakeOverGame() {
    struct Unwatched {
        std::int64_t Game = 0; // that nobody watched at the last look
    };
    std::int64_t& last = State<Unwatched>::Get().Game;
    const bool is_for_us = game.GameProcess.id == 0 && NobodyWatches();
    const std::int64_t found = is_for_us ? core::FindGame() : 0;
    const std::int64_t before = std::exchange(last, found);
    return found != 0 && found == before && AdoptGame();
}

bool GameRuns() {
    return game.GameProcess.id != 0 && !WaitForProcess(game.GameProcess, 0);
}

void ForgetGame() {
    ReleaseProcess(game.GameProcess);
    game = GameState();
}

void LookForGameWindow() {
    constexpr double kSecondsBetween = 5; // a game in a desktop of Wine's own never gets one
    const double now = watch_calls.Now();
    if (game.GameWindow != 0 || now - game.LookedAt < kSecondsBetween ||
        TheDesktop().Reach() != DesktopReach::Full)
        return;
    game.LookedAt = now;
    game.GameWindow = FindGameWindow();
    RaiseGame();
}

// The number of a process that isn't a child may belong to another by now.
void EndGameProcess() {
    if (game.GameProcess.id != 0 && (game.IsOurs || core::FindGame() == game.GameProcess.id))
        KillProcess(game.GameProcess);
}

std::uintptr_t FocusOfGame() {
    const DesktopWindow focused = TheDesktop().FocusedWindow();
    if (focused.handle == 0 || game.GameProcess.id == 0) return 0;
    return IsCover(focused.handle) || IsOfGame(focused) ? focused.handle : 0;
}

std::uintptr_t ShownGameWindow() {
    const std::uintptr_t focus = FocusOfGame();
    return focus == 0 || IsCover(focus) ? game.GameWindow : focus;
}

} // namespace kelvash::companion

std::int64_t kelvash::core::FindGame() {
    return TrleFolder().empty() ? 0 : FindProcessOf(companion::GameProgram());
}
