// Taking a level out of the Archive.
#pragma once

namespace kelvash::program {

// Takes the selected level out of the Archive, and out of TRLE if it is there; its folder only if the user
// wants that. Asks and tells through the user port; true if it was carried out.
bool RemoveLevel();

} // namespace kelvash::program
