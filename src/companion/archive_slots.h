// Archiving: the old savegames of a level's slots go to a new folder slotN, the newest stay, renumbered.
#pragma once

#include <cstdint>

#include "companion/slots_outcome.h"

namespace kelvash::companion {

inline constexpr std::int32_t kGameSlots = 15; // the game knows savegame.0 to savegame.14

// Puts the oldest `count` savegames of the level's slots, by their running numbers, with their notes into the
// first folder slotN that is free, as savegame.0 and so on, and closes the gap in the slots. The newest
// always stays in the slots too. Nothing for fewer than two. May run beside the game: a savegame that appears
// or changes meanwhile is left alone. Opens its own core::Change.
[[nodiscard]] SlotsOutcome ArchiveSlots(std::int32_t code, std::int32_t count, Asker asker);
// The same in the middle of an operation that needs room.
class SlotsWork;
[[nodiscard]] SlotsOutcome ArchiveWithin(const SlotsWork& work, std::int32_t count);

} // namespace kelvash::companion
