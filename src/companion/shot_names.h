// Names of pictures that nobody has named: "3) City.jpg".
#pragma once

#include <string>
#include <string_view>

#include "trle_state/level_place.h"

namespace kelvash::companion {

// The first free path in a level's SCREENSHOTS: the counter from 1, ") ", the level's name without what no
// file may have in its name, the extension (".jpg" if it is empty). A name that is too long for the disk is
// cut.
std::string NextShotPath(const trle_state::LevelPlace& level, std::string_view extension);

// Where a picture of a level goes under a name that was typed; empty for one that isn't a plain name, or is
// so long that it couldn't be written anew. What ends in another extension than `extension` gets it behind.
std::string NamedShotPath(const trle_state::LevelPlace& level, std::string_view typed,
                          std::string_view extension);

} // namespace kelvash::companion
