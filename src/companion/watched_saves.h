// The savegames in the TRLE folder while the game runs: when they may be touched, and the work that F9, F11
// and full slots ask for.
#pragma once

#include "companion/watched_keys.h"

namespace kelvash::companion {

void ForgetSaves();
// Does what the keys ask for, and archives by itself when the slots are full. What can't be done now, because
// the game is saving, or another program or job is at work, stays remembered.
void HeedSaves(const WatchedKeys& keys);
// The game has ended: does what is still remembered, and what the last keys ask for.
void EndSaves(const WatchedKeys& keys);
// The program is about to end before the game: the same, as soon as the saves are still; tells what can't be.
void LeaveSaves(const WatchedKeys& keys);

} // namespace kelvash::companion
