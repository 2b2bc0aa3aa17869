// An Archive with one level, for tests of the level folders that no record names.
#pragma once

#include "core/kept_folders.h"
#include "support/swap_home.h"

namespace kelvash::core {

class KeptFolders : public test::SwapHome {
  protected:
    KeptFolders() { AddLevel(3, "Maze", {{"maze.tr4", "maze"}}); }
    std::filesystem::path Kept(const std::string& name) const { return levels / "KEPT" / name; }
    std::string OnlyKept() const {
        const std::vector<KeptLevel> kept = ListKept();
        EXPECT_EQ(kept.size(), 1U);
        return kept.empty() ? std::string() : kept.front().Folder;
    }
};

} // namespace kelvash::core
