// The savegames of a level: those in the game's slots, and the archived ones.
//
// A savegame is the game's own file savegame.N, N being its slot. Two things are read from it: its title at
// offset 0, which ends at the first comma, line end or NUL within 75 bytes, and the running number of the
// save, 16 bits signed at offset 75. Archived ones lie in folders slot1, slot2, ... below the level's
// SAVEGAMES.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/archive.h"

namespace kelvash::companion {

// Running number and title. A file that can't be read has the number 0 and the title "<NOT READABLE>".
std::int32_t ReadSavegameInfo(std::string_view path, std::string& title);
// True for a name as the game gives it: "savegame." and something.
bool IsSavegameName(std::string_view name);
// How a list shows a savegame: "  12 Title  (dd/mm/yyyy  hh:nn:ss) ".
std::string SavegameLine(std::string_view path);

// Where the slots of a level are: the TRLE folder while it is installed there, else the level's
// BACKUP_SAVEGAMES. Empty where that can't be told (swap/moved_saves.h).
std::string SlotFolder(const core::LevelPlace& level);
// Full paths of the savegames in a level's slots, and of those archived at any depth below its SAVEGAMES.
std::vector<std::string> SlotSavegames(const core::LevelPlace& level);
std::vector<std::string> ArchivedSavegames(const core::LevelPlace& level);
// Of those in the level's REPEATED: what had the number of another when it was restored, and notes that lost
// their savegames.
std::vector<std::string> KeptSavegames(const core::LevelPlace& level);

} // namespace kelvash::companion
