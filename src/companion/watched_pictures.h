// The pictures that the player takes beside the game: what comes onto the clipboard, and what Print Screen
// took of the game's window where the system puts nothing there by itself.
#pragma once

#include "companion/watched_keys.h"

namespace kelvash::companion {

// What is on the clipboard now is nobody's picture, offered again later neither.
void ForgetPictures();
// Takes what is new, `keys` being those since the last tick. What can't be stored now, because a job is at
// work, is stored later.
void HeedPictures(WatchedKeys keys);
// The game has ended, or the program is about to: takes what the last presses bring, stores what isn't stored
// yet, without a question, and counts what can't be as lost.
void EndPictures(WatchedKeys keys);
// Tells after the game how many pictures were lost.
void TellLostPictures();

} // namespace kelvash::companion
