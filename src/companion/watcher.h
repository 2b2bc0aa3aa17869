// The watcher beside the running game.
//
// A program calls PollKeys every kPollMillis and Tick at the profile's interval, from StartGame or AdoptGame
// on until Tick says that there is nothing more to watch. The watcher acts on the level that is in TRLE,
// whatever is selected. Of several programs that watch the game of one TRLE folder only one acts, the others
// wait for its end. Nothing is told while the game runs: what went wrong comes after it.
#pragma once

#include "foundation/message_text.h"

namespace kelvash::companion {

inline constexpr int kPollMillis = 20;

// What is remembered of an earlier game is forgotten, and what is on the clipboard now is nobody's picture.
// To be called once the game has been started or found.
void BeginWatch();
// True where no program, this one included, watches the game of the TRLE folder or has still to do what
// follows from its end.
bool NobodyWatches();
// True from the start of a game to its end, a tick at work included.
bool IsWatching();
// Takes note of the keys that are held now, if the game or its cover has the focus: a tap between two ticks
// acts at the next one.
void PollKeys();
// One look at everything, in the specified order. False once there is nothing left to watch, the lists shown
// after the game included. A tick within a tick sees no more than the game's end.
bool Tick();
// Keeps a text for after the game; one and the same is told once.
void TellAfterGame(const MessageText& text);
// Tells it: for who leaves before the game.
void TellRemembered();
// Does at once what follows from the end of a game, if it has ended: before another one is started, whose
// level would take the place of its own.
void FinishWatch();
// For who leaves, perhaps, before the game: does what the keys have asked for and stores the pictures that
// wait, within seconds; what can't be done is told by TellRemembered. The watch may go on after it.
void LeaveWatch();
// Polls and ticks, every `interval` milliseconds, until the game has ended or `given_up` says so; then leaves
// it.
void WatchUntilEnd(int interval, bool (*given_up)());

} // namespace kelvash::companion
