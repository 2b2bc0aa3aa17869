// Zips of sound content, made by another program than the one under test where the platform has one
// (zip_program_posix.cpp, zip_program_windows.cpp).
#pragma once

#include <filesystem>
#include <string>

namespace kelvash::test {

// Makes a zip of all files of a folder, with a password in the traditional way if there is one.
bool MakeZipOf(const std::filesystem::path& folder, const std::filesystem::path& zip,
               const std::string& password = {});

} // namespace kelvash::test
