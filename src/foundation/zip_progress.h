// Progress read from the lines that zip and audio tools print, and that the zip classes give alike.
//
// Each procedure takes a line; with `reset` it empties the caption and the bar instead and forgets what it
// counted. `stop` comes out true once the user has asked to stop.
#pragma once

#include <string>

#include "foundation/user.h"

namespace kelvash {

struct LineProgress {
    Bar bar;
    double total = 0; // lines to come, or the track's length in seconds
    double done = 0;
    bool only_count = false; // lines are counted, the bar is moved by whoever tells them
};

// Count the lines that hold "inflating" and "adding:".
void GestioneUnzip(LineProgress& progress, const std::string& line, bool reset, bool& stop);
void GestioneZip(LineProgress& progress, const std::string& line, bool reset, bool& stop);
// madplay's " 00:01:23": minutes and seconds against the track's length.
void GestioneMadPlay(LineProgress& progress, const std::string& line, bool reset, bool& stop);
// lame's "(33%)".
void GestioneLame(LineProgress& progress, const std::string& line, bool reset, bool& stop);

} // namespace kelvash
