// Progress read from the lines that outside tools print, and that the zip classes give alike.
#pragma once

#include "foundation/user.h"

namespace kelvash {

// What a reader of lines knows. Each reader takes a line; with `reset` it empties the caption and the bar
// instead and forgets what it counted. `stop` comes out true once the user has asked to stop.
struct LineProgress {
    Bar bar;
    double total = 0; // lines to come, or the track's length in seconds
    double done = 0;
    bool only_count = false; // lines are counted, the bar is moved by whoever tells them
    double from = 0;         // where this run's part of the bar begins, 0 to 1
    double share = 1;        // and how much of the bar that is
};

// What all readers do before they look at the line. True if that was all there is to do with this call.
bool ResetLines(LineProgress& progress, bool reset, bool& stop);

} // namespace kelvash
