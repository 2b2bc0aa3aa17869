// Bringing archived savegames back into the slots of a level.
#pragma once

#include <cstdint>
#include <string>

#include "companion/slots_outcome.h"

namespace kelvash::companion {

// Brings the newest savegames of the last slot folder back into the free slots, and puts all slots in the
// order of their running numbers. One whose number a savegame in the slots has is taken out of the folder: it
// is deleted if both hold the same bytes, else it goes with its note to the level's REPEATED. Nothing for
// full slots or without an archived savegame. Writes savegames.trs. May run beside the game, as ArchiveSlots.
[[nodiscard]] SlotsOutcome RestoreLastSlot(std::int32_t code, Asker asker);

// Copies one savegame, with its note, into the lowest free slot and puts the slots in order; it may come from
// anywhere, and stays where it is. With full slots asks whether they are to be archived first; Nothing if
// not. The user's alone: it may show boxes.
[[nodiscard]] SlotsOutcome RestoreToSlots(std::int32_t code, const std::string& path);

} // namespace kelvash::companion
