// What tests need of the platform itself. One file per platform (platform_posix.cpp, platform_windows.cpp).
#pragma once

#include <filesystem>
#include <string>

namespace kelvash::test {

// A new folder of its own for temporary files.
std::filesystem::path MakeTemporaryFolder();
void SetEnvironment(const std::string& name, const std::string& value);

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
