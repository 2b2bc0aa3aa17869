// The keys and the joystick beside the game, between two ticks of the watcher.
#pragma once

#include <string>
#include <vector>

namespace kelvash::companion {

struct WatchedKeys {
    bool Archive = false; // F9
    bool Restore = false; // F11
    // Print Screen, once a press: what the game's window showed then, as the bytes of a bitmap file; an empty
    // text where the system copies it by itself, or where it couldn't be had.
    std::vector<std::string> Prints;
    int MissedPrints = 0; // more presses, of which nothing was kept
};

void ForgetKeys();
// Looks at the keys that are held now. Those count that are pressed while the game or its cover has the
// focus.
void NoteKeys();
// What was pressed since the last time, or is held now.
WatchedKeys TakeKeys();
// What was pressed since the last time: where nothing that is held counts any more.
WatchedKeys TakeNotedKeys();
// Does what the joystick's buttons stand for: a press of Print Screen, the game's end.
void HeedJoystick();

} // namespace kelvash::companion
