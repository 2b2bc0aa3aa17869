// A world for tests of the Archive: an open Archive at C:\Levels with level 0000.
#pragma once

#include <string>
#include <vector>

#include "support/test_home.h"

namespace kelvash::test {

class CoreHome : public TestHome {
  protected:
    CoreHome();

    // Adds a record; its folders are the test's own business.
    void AddRecord(std::int32_t code, const std::string& name, std::int32_t cd_number = 0);
    // Names of the entries of a folder, sorted, a "\" behind those of folders.
    static std::vector<std::string> Entries(const std::filesystem::path& folder);

    std::filesystem::path levels; // C:\Levels
    std::filesystem::path kva;    // C:\Kelvash\test.kva, not yet written
};

} // namespace kelvash::test
