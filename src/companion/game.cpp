#include "companion/game.h"

#include <string>

#include "core/ports.h"
#include "core/profile.h"
#include "foundation/messages.h"
#include "foundation/pumping.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "trle_state/fragments.h"

namespace kelvash::companion {

constinit GameState& game = State<GameState>::Get();

namespace {

std::string GameProgram() {
    return core::TrleFolder() + LoadFragment(fragment::kGameProgram);
}

} // namespace

bool StartGame(const Arguments& arguments, bool suspended) {
    game = GameState();
    if (!RunFull(GameProgram(), arguments, Window::Normal, game.GameProcess, suspended)) {
        game = GameState();
        return false;
    }
    if (suspended) ResumeProcess(game.GameProcess);
    return true;
}

bool AdoptGame() {
    if (GameRuns()) return true;
    game.GameProcess.id = core::FindGame();
    game.WatcherActive = game.GameProcess.id != 0;
    return game.WatcherActive;
}

bool GameRuns() {
    if (game.GameProcess.id == 0) return false;
    if (!WaitForProcess(game.GameProcess, 0)) return true;
    game = GameState();
    return false;
}

void WaitForGameEnd(bool (*given_up)()) {
    constexpr double kPollSeconds = 0.1;
    while (GameRuns() && !given_up())
        WaitPumping(kPollSeconds);
}

} // namespace kelvash::companion

std::int64_t kelvash::core::FindGame() {
    return TrleFolder().empty() ? 0 : FindProcessOf(companion::GameProgram());
}
