// savegames.trs of a level's SAVEGAMES: a record that is written and never read, as it has always been. Of
// its fields one is in use, a counter that begins at 0 with each run of the program and only falls.
#pragma once

#include <cstdint>
#include <string>

#include "core/archive.h"

namespace kelvash::companion {

// The bytes of the file; docs/formats.md has them.
std::string EncodeSavesCounter(std::int32_t counter);
// Lowers the counter by the savegames that a restore has dealt with, and writes the record.
void LowerSavesCounter(const core::LevelPlace& level, std::int32_t savegames);

} // namespace kelvash::companion
