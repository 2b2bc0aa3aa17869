// Commands that keep the Archive's file true to its folders: removal of a level, recovery of an Archive from
// its folders, moving it.
#pragma once

#include <cstdint>

namespace kelvash::core {

// True, after a message, for a level on CD: its files can't be changed.
[[nodiscard]] bool CheckLevelOnHd(std::int32_t index);

// Each asks and tells through the user port. True if it was carried out.
// Takes the selected level out of the Archive, and out of TRLE if it is there; its folder only if the user
// wants that.
bool RemoveLevel();
// Builds a new Archive of the LEVEL_NNNN folders of a folder that the user chooses.
bool RecoverArchive();
// Moves the level folders into a folder that the user chooses. The old ones go only when all is copied.
bool MoveArchive();
// Tells once of the old level folders that a move left which was killed while it removed them. To be called
// when the Archive has been opened.
void TellCutShortMove();

} // namespace kelvash::core
