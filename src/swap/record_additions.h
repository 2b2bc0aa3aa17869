// What is added to the swap record while a level is in.
#pragma once

#include <string>
#include <vector>

namespace kelvash::swap {

// Adds files that came into the TRLE folder while its level is in, given by targets. They leave with it.
// False if no level is in, or after a message.
[[nodiscard]] bool AddToRecord(const std::vector<std::string>& targets);
// Reads the files of the level that is in and notes their hashes, which an install leaves out for speed.
void CompleteHashes();

} // namespace kelvash::swap
