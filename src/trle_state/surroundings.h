// What this folder is told: it looks neither for the TRLE folder nor for levels. Defined above, where the
// profile and the open Archive are at hand.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::trle_state {

// The TRLE folder in use.
std::string TrleFolder();

// Where the open Archive has a level of that code, or would have it.
std::string FolderOfLevel(std::int32_t code);
// Where a level's folder keeps the level's files.
std::string FilesOfLevel(std::string_view folder);
// Its name; empty for a code that no level has.
std::string NameOfLevel(std::int32_t code);
// Codes of the levels of the open Archive.
std::vector<std::int32_t> ListedCodes();
bool IsListed(std::int32_t code);

// A .tr4 file as a level's tr4.inf lists it.
struct ListedTr4 {
    std::string Name;
    std::int64_t Size = 0;
};
std::vector<ListedTr4> ListedTr4s(std::int32_t code);

} // namespace kelvash::trle_state
