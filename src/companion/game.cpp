#include "companion/game.h"

#include <string>

#include "core/profile.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "foundation/waiting.h"

namespace kelvash::companion {

GameState game;

bool StartGame(const Arguments& arguments, bool suspended) {
    const std::string program = core::TrleFolder() + LoadMessage(MessageId::kGameProgram, {});
    game = GameState();
    if (!RunFull(program, arguments, Window::Normal, game.GameProcess, suspended)) {
        game = GameState();
        return false;
    }
    if (suspended) ResumeProcess(game.GameProcess);
    return true;
}

bool GameRuns() {
    if (game.GameProcess.id == 0) return false;
    if (!WaitForProcess(game.GameProcess, 0)) return true;
    game = GameState();
    return false;
}

void WaitForGameEnd(bool (*given_up)()) {
    constexpr int kPollTenths = 1;
    while (GameRuns() && !given_up()) {
        WaitTenths(kPollTenths, Wait::Sleep);
        TheUser().PumpEvents();
    }
}

} // namespace kelvash::companion
