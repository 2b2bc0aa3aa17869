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

void AwaitGameWindow() {
    constexpr double kLookSeconds = 0.2;
    if (TheDesktop().Reach() != DesktopReach::Full) return TellUnreachable();
    const double end = watch_calls.Now() + kWindowSeconds;
    while (game.GameWindow == 0 && watch_calls.Now() < end && !WaitForProcess(game.GameProcess, 0)) {
        watch_calls.Wait(kLookSeconds);
        game.GameWindow = FindGameWindow();
    }
    // A window manager may have left the new window behind the cover.
    if (game.GameWindow != 0 && IsCover(TheDesktop().FocusedWindow().handle))
        TheDesktop().Activate(game.GameWindow);
}

} // namespace

bool StartGame(const Arguments& arguments, bool suspended) {
    game = GameState();
    if (watch_calls.ShowCover) watch_calls.ShowCover();
    if (!RunFull(GameProgram(), arguments, Window::Normal, game.GameProcess, suspended)) {
        game = GameState();
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
    if (GameRuns()) return true;
    game.GameProcess.id = core::FindGame();
    game.WatcherActive = game.GameProcess.id != 0;
    if (!game.WatcherActive) return false;
    game.GameWindow = FindGameWindow();
    BeginWatch();
    return true;
}

bool GameRuns() {
    if (game.GameProcess.id == 0) return false;
    if (!WaitForProcess(game.GameProcess, 0)) return true;
    game = GameState();
    return false;
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
