// Whose the saves in the TRLE root are: the level's folder, whatever Archive names it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "trle_state/level_place.h"
#include "trle_state/swap_record.h"

namespace kelvash::trle_state {

// A level of the open Archive as the record names it.
LevelOwner OwnerOf(const LevelPlace& level);
// What a level's folder tells of it as an owner, without name and code.
LevelOwner OwnerIn(std::string_view folder);
// The folder of an owner: where it was, or from the application's folder on where it was, or where it
// was before a move that didn't end, or that of a level of the open Archive which has its tr4.inf. Empty if
// it is gone, or another level has taken its place.
std::string FindOwnerFolder(const LevelOwner& owner);
// The code of the level of the open Archive that has this folder; kNoLevel if none has.
std::int32_t CodeOfFolder(std::string_view folder);

} // namespace kelvash::trle_state
