// The demo's level zips.
#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace kelvash::cli {

// Makes a zip of files given by their names, which may hold "/", and contents. False if it can't be written.
[[nodiscard]] bool WriteZip(const std::filesystem::path& zip,
                            const std::vector<std::pair<std::string, std::string>>& files);

} // namespace kelvash::cli
