// What tests need of the platform itself. One file per platform (platform_posix.cpp, platform_windows.cpp).
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace kelvash::test {

// A new folder of its own for temporary files.
std::filesystem::path MakeTemporaryFolder();
void SetEnvironment(const std::string& name, const std::string& value);
// Puts the platform's own places of this user's files and running programs below a folder.
void LiveBelow(const std::filesystem::path& folder);
// Names that the bytes of a file have.
std::uint64_t LinksOf(const std::filesystem::path& file);

// While it lives a test that runs as root obeys file permissions like anybody else, and owns the files of the
// latest temporary folder. Nothing on Windows, where
// tests never run with rights beyond their own files.
class OrdinaryUser {
  public:
    OrdinaryUser();
    ~OrdinaryUser();
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
};

} // namespace kelvash::test
