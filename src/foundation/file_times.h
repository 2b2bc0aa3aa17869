// Dates of many files at once. A path text is looked up without regard to case, name by name; for files of
// one folder that was listed just now the folder is looked up once.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelvash {

// Modification times in seconds since 1970, UTC, in the order of the paths, whose last names are spelt as a
// listing gave them; nothing for a file that isn't there.
std::vector<std::optional<std::int64_t>> FileTimes(const std::vector<std::string>& paths);

} // namespace kelvash
