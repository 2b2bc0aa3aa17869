// Progress of the outside audio tools, read from their lines: see foundation/line_progress.h.
#pragma once

#include <string>

#include "foundation/line_progress.h"

namespace kelvash::audio {

// madplay's " 00:01:23": minutes and seconds against the track's length.
void GestioneMadPlay(LineProgress& progress, const std::string& line, bool reset, bool& stop);
// lame's "(33%)".
void GestioneLame(LineProgress& progress, const std::string& line, bool reset, bool& stop);

} // namespace kelvash::audio
