// What this folder is told: it looks neither for the TRLE folder nor for levels. Defined above, where the
// profile and the open Archive are at hand.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "trle_state/level_place.h"

namespace kelvash::trle_state {

// The TRLE folder in use.
std::string TrleFolder();

// The level of that code in the open Archive, or what it would be.
LevelPlace PlaceOfLevel(std::int32_t code);
// Folders of the levels of the open Archive.
std::vector<std::string> ListedFolders();
// Where a level's folder keeps the level's files.
std::string FilesOfLevel(std::string_view folder);

// A .tr4 file as the tr4.inf of a level's folder lists it.
struct ListedTr4 {
    std::string Name;
    std::int64_t Size = 0;
};
std::vector<ListedTr4> ListedTr4s(std::string_view folder);

} // namespace kelvash::trle_state
