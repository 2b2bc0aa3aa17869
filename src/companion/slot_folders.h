// The folders slot1, slot2, ... below a level's SAVEGAMES, one for each archiving.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/archive.h"
#include "foundation/message_text.h"

namespace kelvash::companion {

std::string SlotFolderPath(const core::LevelPlace& level, std::int32_t number);
// The first of them that isn't there yet; a file of that name counts as none.
std::string FreeSlotFolder(const core::LevelPlace& level);

// An empty folder beside them in which the next one is filled; what a killed run has left in it is settled
// first. Empty, with why, if it can't be made.
std::string NewSlotFolder(const core::LevelPlace& level, MessageText& why);
// Takes away a folder of copies: what the slots still hold goes, all else stays where it is.
void RemoveCopies(const std::string& staging, std::string_view slots);

// The last slot folder that holds a savegame; truly empty ones above it are deleted. Empty if there is none.
std::string LastSlotFolder(const core::LevelPlace& level);

} // namespace kelvash::companion
