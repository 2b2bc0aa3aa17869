// A TRLE folder that has no backup yet.
#pragma once

#include <algorithm>

#include "core/profile.h"
#include "support/swap_home.h"
#include "swap/backup.h"

namespace kelvash::swap {

inline constexpr const char* kOriginal =
    "Kelvash needs the original Tomb Raider Level Editor files to handle swapping custom levels with "
    "intermediate "
    "restore of original file.\r\nCurrent installed configuration of Tomb Raider Level Editor in C:\\trle is "
    "original?\r\n(Note: If you played custom level after last setup you should select NO button)";

class Backup : public test::SwapHome {
  protected:
    Backup() {
        std::filesystem::remove_all(backup);
        core::profile.FullBackup = false;
        test::MakeFile(trle / "graphics" / "wads" / "deep.wad", "WAD");
        test::MakeFile(trle / "box.log", "log");
        test::MakeFile(trle / "notes.doc", "of the user");
    }
    // What lies in the application's folder under the backup's name, sorted.
    std::vector<std::string> Backups() const {
        std::vector<std::string> names;
        for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(home))
            if (entry.path().filename().string().starts_with("backup_trle"))
                names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    void PutNote(const std::string& folder, const std::string& game, const std::string& kind) {
        test::MakeFile(home / "backup_trle.txt",
                       "#TRLE_FOLDER=" + folder + "\r\n#TOMB4=" + game + "\r\n#KIND=" + kind + "\r\n");
    }
};

} // namespace kelvash::swap
