// What a list of levels tells of each beyond its name: what the Archive knows, and what only its folder does.
#pragma once

#include <cstdint>
#include <string>

#include "core/records.h"

namespace kelvash::program {

// Found in a level's folder: three looks at the disk.
struct LevelFacts {
    std::string Picture;        // full path of the newest screenshot; empty if there is none
    std::int32_t Savegames = 0; // in the slots and archived
    bool Packed = false;        // some of its files are stored compressed
};
// Of a level on CD the part that is on disk.
LevelFacts FactsOf(std::int32_t code);

// The line below a level's name: author, size, savegames and note, as far as there are any. Without facts it
// says nothing of savegames.
std::string LevelLine(const core::LevelRecord& level, const LevelFacts* facts);

} // namespace kelvash::program
