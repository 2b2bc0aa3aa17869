// What is done with one savegame of a level: deleting it, saving a copy, telling what is known of it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "companion/slots_outcome.h"
#include "foundation/message_text.h"
#include "swap/savegame_files.h"

namespace kelvash::companion {

// Copies a savegame, and its note under the number of the destination; a file there is replaced whole, after
// a question where it is a note. A savegame without a note leaves the destination none. With Placing::Move
// the source and its note go once the copy has been compared. False if a file couldn't be copied, or couldn't
// go.
[[nodiscard]] bool CopySavegame(const std::string& source, const std::string& destination,
                                swap::Placing placing);
// Deletes a savegame, then its note. False if one of them is still there.
[[nodiscard]] bool DeleteSavegame(std::string_view path);

// Asks, then deletes, if it is still the one that was asked for; gaps in the slots are closed. Nothing if the
// user says no. The user's alone.
[[nodiscard]] SlotsOutcome AskDeleteSavegame(std::int32_t code, const std::string& path);
// Saves a copy where the user chooses. False if nothing was saved; a failure is told.
bool SaveSavegameAs(const std::string& path);
// Everything that is known of a savegame, for a box. `image` is its picture; empty without one.
MessageText SavegameProperty(const std::string& path, const std::string& image);

} // namespace kelvash::companion
