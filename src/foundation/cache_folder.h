// Where the program keeps what it can make anew.
#pragma once

#include <filesystem>

namespace kelvash {

// The user's folder for that, of all application's folders together. It may be missing, full, or not to be
// written; what is in it may be gone or damaged at any time.
std::filesystem::path CacheFolder();

} // namespace kelvash
