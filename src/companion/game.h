// The running game.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/process.h"

namespace kelvash::companion {

struct GameState {
    Process GameProcess;           // id 0 when no game runs
    bool WatcherActive = false;    // the watcher's ticks do their work; not within one
    std::uintptr_t GameWindow = 0; // the first that was found; 0 if none was
    double LookedAt = 0;           // for a window, by the watcher's clock
    bool IsOurs = false;           // started by this program
};
extern GameState& game;

// Starts tomb4.exe in the TRLE folder behind the cover, and waits for its window: until one is there, the
// game has ended, or kWindowSeconds are over, as with a game in a desktop of Wine's own. A suspended start
// begins stopped and is resumed at once. True if the game started.
[[nodiscard]] bool StartGame(const Arguments& arguments, bool suspended);
inline constexpr double kWindowSeconds = 10;

// Takes a game that runs already, started by an earlier run or by hand, for this run's own. True if one runs.
bool AdoptGame();
// The same for a game that nobody watches any more, because the program that did has ended. To be asked now
// and then: a game that has just been started is left to who has started it, so the first time says no.
bool TakeOverGame();

// One look at the game: true while it runs. Changes nothing: its end is the watcher's.
bool GameRuns();
// The state is that of no game, and the system's handles are given back.
void ForgetGame();
// One look for the window of a game that had none so far; every few seconds at most.
void LookForGameWindow();
// Ends the game at once, if it is still the process that was found.
void EndGameProcess();

// The window that gets the keys now, if it is the game's or the cover; 0 else.
std::uintptr_t FocusOfGame();
// The window that shows the game: the one with the keys, which a game may have made anew, else the first.
std::uintptr_t ShownGameWindow();

} // namespace kelvash::companion
