// The pictures that the player takes beside the game: what comes onto the clipboard, and what Print Screen
// took of the game's window where the system puts nothing there by itself.
#pragma once

#include <string>
#include <vector>

namespace kelvash::companion {

// What is on the clipboard now is nobody's picture.
void ForgetPictures();
// Takes what is new, `prints` being the presses of Print Screen since the last tick (WatchedKeys::Prints).
// What can't be stored now, because a job is at work, is taken later.
void HeedPictures(std::vector<std::string> prints);
// The game has ended: stores what was taken and not stored yet, and counts what can't be as lost.
void EndPictures(std::vector<std::string> prints);
// Tells after the game how many pictures were lost.
void TellLostPictures();

} // namespace kelvash::companion
