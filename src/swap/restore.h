// Giving the TRLE folder back to its original configuration.
#pragma once

#include "foundation/user.h"

namespace kelvash::swap {

// Installs level 0000 and refreshes the list. False after a message of the install.
[[nodiscard]] bool SwapToOriginal();

// The fast restore with its closing message; false after a message.
bool FastRestore();

// Takes the level out, deletes every critical file and copies the backup back. Failures don't stop it, but
// for a swap journal that can't be written: saves would be lost; else only a folder that can't be restored is
// told. Files of the user in the TRLE root go, programs and shortcuts stay. The bar's place takes the labels;
// with `show_progress` the progress dialog opens as well.
void FullRestore(Bar& bar, bool show_progress);

} // namespace kelvash::swap
