// Commands that keep the Archive's file true to its folders: recovery of an Archive from its folders, moving
// it.
#pragma once

namespace kelvash::core {

// Each asks and tells through the user port. True if it was carried out.
// Builds a new Archive of the LEVEL_NNNN folders of a folder that the user chooses.
bool RecoverArchive();
// Moves the level folders into a folder that the user chooses. The old ones go only when all is copied.
bool MoveArchive();
// Tells once of the old level folders that a move left which was killed while it removed them. To be called
// when the Archive has been opened.
void TellCutShortMove();

} // namespace kelvash::core
