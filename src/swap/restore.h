// Giving the TRLE folder back to its original configuration.
#pragma once

#include "foundation/user.h"

namespace kelvash::swap {

// Installs level 0000 and refreshes the list. False after a message of the install.
[[nodiscard]] bool SwapToOriginal();

// The fast restore with its closing message; false after a message.
bool FastRestore();

// Refused without a valid backup of this folder, or where the folder can't be read. Takes the level out,
// deletes every critical file and copies the backup back. Failures don't stop it, but for saves that can't be
// put away and a record that can't be written; files and folders that couldn't come are told. Files of the
// user that the backup doesn't hold leave the TRLE root and the restored folders and are kept; programs and
// shortcuts stay. The bar's place takes the labels; with `show_progress` the progress dialog opens as well.
// True if every file of the backup is in its place.
bool FullRestore(Bar& bar, bool show_progress);
// The rest of a full restore that was cut short, without questions. False, after a message, if it couldn't be
// begun.
[[nodiscard]] bool EndFullRestore();

} // namespace kelvash::swap
