// A fresh, private world for a test of the foundation: an application's folder and a drive C: in a temporary
// folder, nothing else mapped, the foundation's state as at the program's start. All is removed at the end.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "support/fake_desktop.h"
#include "support/platform.h"
#include "support/scripted_user.h"

namespace kelvash::test {

class FoundationHome : public testing::Test {
  protected:
    FoundationHome();
    ~FoundationHome() override;

    // Drive C: and the application's folder, for who has put the program's state back.
    void MapDrives();

    std::filesystem::path root;  // the temporary folder
    std::filesystem::path drive; // native folder of C:
    std::filesystem::path home;  // native application's folder, C:\Kelvash
    FakeDesktop desktop;
    ScriptedUser user;
};

// Makes a file with all its folders; `path` is a native path.
void MakeFile(const std::filesystem::path& path, std::string_view bytes);
// All bytes of a file; fails the test if it isn't there.
std::string BytesOf(const std::filesystem::path& path);
bool Exists(const std::filesystem::path& path);

} // namespace kelvash::test
