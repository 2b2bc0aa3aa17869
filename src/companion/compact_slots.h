// Closing the gaps in the slots of a level.
#pragma once

#include <cstdint>

#include "companion/slots_outcome.h"

namespace kelvash::companion {

// Numbers the savegames of the level's slots anew from 0, in the order of their running numbers, with their
// notes.
[[nodiscard]] SlotsOutcome CompactSlots(std::int32_t code, Asker asker);

} // namespace kelvash::companion
