// The window of the stand-in game. One file per platform (game_window_posix.cpp, game_window_windows.cpp).
#pragma once

#include <functional>
#include <string>

namespace standin {

struct WindowPlan {
    std::string title;             // in its frame
    std::string level;             // in the picture
    int milliseconds = -1;         // how long it stands; below 0: until the player closes it
    std::function<bool()> on_save; // the key S
};

// Shows the window until Escape, its frame's button or the end of its time. False, at once, without a
// display.
bool RunWindow(const WindowPlan& plan);

} // namespace standin
