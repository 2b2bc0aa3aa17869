// An Archive whose levels are removed, recovered or moved.
#pragma once

#include <string>
#include <vector>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "support/swap_home.h"

namespace kelvash::test {

class MaintenanceHome : public SwapHome {
  protected:
    MaintenanceHome() { core::profile.AutoSave = true; }
    void AddSized(std::int32_t code, const std::string& name) {
        AddLevel(code, name, {{"maze.tr4", "level " + name}}, {{"savegame.0", "saved"}});
        const core::LevelEdit level = core::archive.Table.Edit(core::LevelIndex(code));
        level->FilesSize = 100;
        level->SavesSize = 10;
        core::archive.Header.MainFolderSize += 100;
        core::archive.Header.SecondaryFolderSize += 10;
    }
    // Level 1, as its marker says, is in TRLE.
    void AddMarked() {
        AddSized(1, "In");
        MakeFile(trle / "Kelvash.txt",
                 "#LEVEL_CODE=1#\r\n#LEVEL_NAME=In#\r\n#OVERWROTEN_FILES=#\r\n"
                 "#COPIED_FILES=\\data\\maze.tr4#\r\n");
    }
    // The same with its file, which no backup holds, and a save.
    void AddPlayed() {
        AddMarked();
        user.MayBeTold("Files of the TRLE folder that the backup doesn't hold made way: 1.");
        MakeFile(trle / "data/maze.tr4", "in play");
        MakeFile(trle / "savegame.0", "in play");
    }
    void Select(std::int32_t code) {
        core::RefreshLevelList();
        core::SelectLevel(code);
    }
    std::vector<std::int32_t> Codes() const {
        std::vector<std::int32_t> codes;
        for (std::int32_t i = 0; i < core::archive.Table.Size(); ++i)
            codes.push_back(core::archive.Table[i].Code);
        return codes;
    }
};

} // namespace kelvash::test
