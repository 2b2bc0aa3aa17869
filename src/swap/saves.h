// What belongs to whichever level is in TRLE and moves with it: savegames, screenshots and notes. They lie in
// the TRLE root while the level is in, and in its stash (BACKUP_SAVEGAMES) while it isn't.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kelvash::swap {

enum class StashResult {
    Done,
    CannotEmpty, // an old file of the stash can't be deleted
    CannotCopy,  // a file can't be put away; all of them are still in the TRLE root
    CannotNote,  // all are put away, but the journal can't be written; they are still in the TRLE root too
    CannotDelete // all are put away, but one can't be deleted from the TRLE root
};

// Full paths of the saves in the TRLE root, in the order of the three patterns.
std::vector<std::string> ListSaves();

// Moves the saves of the TRLE root into the stash of a level, which holds just these afterwards; a stash that
// a journal protects keeps its other files, and those that are newer than what comes in. No save leaves the
// root before all of them are whole in the stash and the journal says so.
[[nodiscard]] StashResult StashLevelFiles(std::int32_t code);

// Moves saves that are still in the TRLE root after a failed removal into a new folder of the application's
// folder and tells where they are. False if one is still in the TRLE root: another level's would mix with it.
[[nodiscard]] bool RescueSaves();

// Copies all files of a level's stash into the TRLE root. False if one couldn't be copied.
[[nodiscard]] bool BringBackLevelFiles(std::int32_t code);

} // namespace kelvash::swap
