// A fresh, private world for a test: an application's folder and a drive C: in a temporary folder, nothing else
// mapped, the program's whole state as at its start. All is removed at the end.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "support/fake_desktop.h"
#include "support/scripted_user.h"

namespace kelvash::test {

class TestHome : public testing::Test {
  protected:
    TestHome();
    ~TestHome() override;

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

// While it lives a test that runs as root obeys file permissions like anybody else.
class OrdinaryUser {
  public:
    OrdinaryUser();
    ~OrdinaryUser();
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
};

} // namespace kelvash::test
