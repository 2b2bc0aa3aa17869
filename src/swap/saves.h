// What belongs to whichever level is in TRLE and moves with it: savegames, screenshots and notes. They lie in
// the TRLE root while the level is in, and in its stash (BACKUP_SAVEGAMES) while it isn't.
#pragma once

#include <string>
#include <vector>

#include "swap/kept_files.h"
#include "trle_state/swap_record.h"

namespace kelvash::swap {

enum class StashResult {
    Done,
    CannotEmpty, // an old file of the stash can't be deleted, or one of two twins can't be rescued
    CannotCopy,  // a file can't be put away; all of them are still in the TRLE root
    CannotNote,  // all are put away, but the record can't be written; they are still in the TRLE root too
    CannotDelete // all are put away, but one can't be deleted from the TRLE root
};

// Full paths of the saves in the TRLE root, in the order of the patterns savegame.*, shot*.jpg, note*.txt.
std::vector<std::string> ListSaves();

// Moves the saves of the TRLE root into the stash of a level. What the record brought in from there, and only
// that, is emptied or overwritten; of any other file of one name the newer stays in the stash and the older
// is rescued. Without `knows_stash` (a level that a marker alone tells of) what isn't newer than its twin
// counts as brought in, and files that have no twin are rescued. No save leaves the root before all of them
// are whole on the disk and the record, at the step Leaving, says that the stash may hold what the root
// lacks.
[[nodiscard]] StashResult StashLevelFiles(const std::string& level_folder, trle_state::SwapRecord& record,
                                          bool knows_stash);
// The same while the level stays in: its saves stay in the root as well.
[[nodiscard]] bool CopySavesHome(const std::string& level_folder, trle_state::SwapRecord& record);

// Copies all files of a level's stash into the TRLE root and notes them in the record. What stands in the way
// is kept first; originals of TRLE that give way to a level's files are noted too, before they do. False if a
// file couldn't be copied, or the record can't be written; the game's program and the marker never are. Other
// files than saves come too, and stay in TRLE when the level goes.
[[nodiscard]] bool BringBackLevelFiles(const std::string& level_folder, trle_state::SwapRecord& record,
                                       KeptFiles& kept);

// Moves the saves of the TRLE root into a rescue folder: the owner has no folder they could go to, or there
// is no owner. False after a message.
[[nodiscard]] bool RescueSavesOf(const trle_state::LevelOwner& owner);

} // namespace kelvash::swap
