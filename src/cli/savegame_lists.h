// The savegames of a level as the command line lists and names them.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "core/archive.h"

namespace kelvash::cli {

struct SavegameLists {
    nlohmann::ordered_json slots = nlohmann::ordered_json::array();
    nlohmann::ordered_json archived = nlohmann::ordered_json::array();
    nlohmann::ordered_json kept = nlohmann::ordered_json::array();
};
SavegameLists ListSavegames(const core::LevelPlace& level);
// Lines for a person.
std::string SavegameLines(const SavegameLists& lists);

// The full path of what a list calls `file`, in any case and with any slashes; empty if none is called so.
std::string SavegameCalled(const core::LevelPlace& level, const std::string& file);

} // namespace kelvash::cli
