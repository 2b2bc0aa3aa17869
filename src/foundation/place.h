// Where a path text leads on the disk: several drives, links and spellings may reach the same folder.
#pragma once

#include <filesystem>
#include <string_view>

namespace kelvash {

// The native path with its links followed, as far as it exists.
std::filesystem::path PlaceOf(std::string_view path);
// True if both paths lead to the same file or folder; none of them needs to exist.
bool IsSamePlace(std::string_view path, std::string_view other);
// True if a path leads to a folder or to something below it.
bool LiesIn(std::string_view path, std::string_view folder);

} // namespace kelvash
