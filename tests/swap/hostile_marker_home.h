// Markers of strangers, and what lies outside the TRLE folder.
#pragma once

#include "support/swap_home.h"
#include "support/swap_world.h"
#include "swap/install.h"
#include "swap/remove.h"

namespace kelvash::swap {

class HostileMarker : public test::SwapHome {
  protected:
    HostileMarker() {
        user.MayBeTold("have been saved in: C:\\Kelvash\\rescued_saves_");
        user.MayBeTold("Files of the TRLE folder that the backup doesn't hold made way");
        AddLevel(1, "City", {{"city.tr4", "CITY"}}, {{"savegame.0", "city save"}});
        AddLevel(2, "Coast", {{"coast.tr4", "COAST"}});
        for (const char* name : {"x", "b.dat", "data/x", "etc", "Windows/x"})
            test::MakeFile(drive / name, "outside");
        test::MakeFile(root / "x", "far outside");
    }
    void WriteMarker(std::string_view text) { test::MakeFile(trle / "Kelvash.txt", text); }
    void MarkWith(const std::string& copied, const std::string& overwritten) {
        WriteMarker("#LEVEL_CODE=0001#\r\n#LEVEL_NAME=City#\r\n#OVERWROTEN_FILES=" + overwritten +
                    "#\r\n#COPIED_FILES=" + copied + "#\r\n");
    }
    // Everything but the TRLE folder, the record and the stashes that a swap fills.
    test::FileMap Outside() const {
        test::FileMap files = test::TreeOf(root);
        std::erase_if(files, [](const auto& file) {
            return file.first.starts_with("c/trle/") || file.first.starts_with("run/") ||
                   file.first.ends_with(".rec") || file.first.starts_with("c/kelvash/rescued_saves_") ||
                   file.first.find("backup_savegames") != std::string::npos;
        });
        return files;
    }
};

} // namespace kelvash::swap
