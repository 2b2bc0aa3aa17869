// A world for tests of the swap: a TRLE folder at C:\trle, its backup, level 0000 and an Archive at C:\Levels
// whose levels a test adds.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/test_home.h"

namespace kelvash::test {

class SwapHome : public TestHome {
  protected:
    SwapHome();

    using Files = std::map<std::string, std::string>; // name, bytes
    // Adds a level with these files in FILES and in its stash.
    void AddLevel(std::int32_t code, const std::string& name, const Files& files, const Files& stash = {});
    std::filesystem::path LevelPath(std::int32_t code) const;
    std::filesystem::path StashPath(std::int32_t code) const { return LevelPath(code) / "BACKUP_SAVEGAMES"; }
    // Names of the files of a folder, sorted.
    static std::vector<std::string> NamesIn(const std::filesystem::path& folder);
    std::string Marker() const { return BytesOf(trle / "Kelvash.txt"); }

    std::filesystem::path trle;
    std::filesystem::path backup;
    std::filesystem::path levels;
};

} // namespace kelvash::test
