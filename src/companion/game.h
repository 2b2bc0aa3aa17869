// The running game.
#pragma once

#include "foundation/process.h"

namespace kelvash::companion {

struct GameState {
    Process GameProcess; // id 0 when no game runs
    bool WatcherActive = false;
};
extern GameState& game;

// Starts tomb4.exe in the TRLE folder. A suspended start begins stopped and is resumed at once. True if the
// game started.
[[nodiscard]] bool StartGame(const Arguments& arguments, bool suspended);

// Takes a game that runs already, started by an earlier run or by hand, for this run's own. True if one runs.
bool AdoptGame();

// One look at the game: true while it runs. When it has ended the state goes back to that of no game.
bool GameRuns();
// Waits for the game's end, or until `given_up` says so, with the interface pumped.
void WaitForGameEnd(bool (*given_up)());

} // namespace kelvash::companion
