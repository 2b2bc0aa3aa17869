// Whose the saves in the TRLE root are: the level's folder, whatever Archive names it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "swap/swap_record.h"

namespace kelvash::swap {

// A code that no level of an Archive has.
inline constexpr std::int32_t kNoLevel = -1;

// A level of the open Archive as the record names it.
LevelOwner OwnerOf(std::int32_t code);
// The folder of an owner: where it was, or from the application's folder on where it was, or that of a level
// of the open Archive which has its tr4.inf. Empty if it is gone, or another level has taken its place.
std::string FindOwnerFolder(const LevelOwner& owner);
// The code of the level of the open Archive that has this folder; kNoLevel if none has.
std::int32_t CodeOfFolder(std::string_view folder);

// To be called once the folders of levels stand in a new place and before the old ones go: the record of a
// level that is in, or half in, names its new folder from then on. `old_parent` and `new_parent` hold the
// LEVEL_NNNN folders. False after a message.
[[nodiscard]] bool NoteLevelsMoved(std::string_view old_parent, std::string_view new_parent);
// The same for one folder, which may have got another name.
[[nodiscard]] bool NoteLevelMoved(std::string_view old_folder, std::string_view new_folder);
// To be called after a level's tr4.inf has changed.
void NoteLevelChanged(std::string_view folder);

} // namespace kelvash::swap
