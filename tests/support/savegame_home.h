// A world for tests of savegames: level 1 "City", which is not in TRLE, so that its slots are its stash.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "companion/slots_outcome.h"
#include "core/archive.h"
#include "foundation/native_text.h"
#include "support/savegame_bytes.h"
#include "support/swap_home.h"

namespace kelvash::test {

class SavegameHome : public SwapHome {
  protected:
    SavegameHome() { AddLevel(1, "City", {{"city.tr4", "city"}}); }

    // Names below a folder with "/" between them, and for savegames their number and what is behind it
    // ("7", "7b"), for other files their bytes.
    static std::map<std::string, std::string> Contents(const std::filesystem::path& folder) {
        std::map<std::string, std::string> found;
        if (!Exists(folder)) return found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            if (!entry.is_regular_file()) continue;
            const std::string bytes = BytesOf(entry.path());
            const bool is_save = entry.path().filename().string().find("avegame.") != std::string::npos;
            found[GenericTextOf(entry.path().lexically_relative(folder))] =
                is_save && bytes.size() >= 77
                    ? std::to_string(static_cast<unsigned char>(bytes[75])) + bytes.substr(77)
                    : bytes;
        }
        return found;
    }

    void PutSlot(int slot, int number, const std::string& more = {}) {
        MakeFile(Slots() / ("savegame." + std::to_string(slot)), SaveBytes("City", number, more));
    }
    void PutNote(const std::filesystem::path& folder, int slot, const std::string& text) {
        MakeFile(folder / ("note" + std::to_string(slot) + ".txt"), text);
    }
    void PutArchived(int folder, int slot, int number, const std::string& more = {}) {
        MakeFile(Archived() / ("slot" + std::to_string(folder)) / ("savegame." + std::to_string(slot)),
                 SaveBytes("City", number, more));
    }
    std::filesystem::path Slots() const { return StashPath(1); }
    std::filesystem::path Archived() const { return LevelPath(1) / "SAVEGAMES"; }
    std::filesystem::path Repeated() const { return LevelPath(1) / "REPEATED"; }

    // Nothing is left of an operation in the application's folder.
    void ExpectNothingMoving() const {
        EXPECT_FALSE(Exists(home / "_temp_savegame"));
        EXPECT_FALSE(Exists(home / "moved_saves.rec"));
    }
};

using SaveMap = std::map<std::string, std::string>;

} // namespace kelvash::test
