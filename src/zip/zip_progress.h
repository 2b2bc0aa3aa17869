// Progress of zip work, read from lines: see foundation/line_progress.h.
#pragma once

#include <string>

#include "foundation/line_progress.h"

namespace kelvash::zip {

// Count the lines that hold "inflating" and "adding:".
void GestioneUnzip(LineProgress& progress, const std::string& line, bool reset, bool& stop);
void GestioneZip(LineProgress& progress, const std::string& line, bool reset, bool& stop);

} // namespace kelvash::zip
