// What the Archive, the profile and the locks ask of what stands above them, and is defined there.
#pragma once

#include <cstdint>
#include <optional>

#include "trle_state/level_place.h"

namespace kelvash::core {

// Has the CD of a level inserted. A reader that already holds the level's files is taken without a question.
// On success the Archive's main folder begins with the reader's drive. True for a level with no CD; false if
// the user gives up. In cd/.
[[nodiscard]] bool RequestCd(const trle_state::LevelPlace& level);

// Id of the process of a game of the TRLE folder, whoever has started it; 0 if none runs. In companion/.
std::int64_t FindGame();

// Whether the backup is a full one, as its note says; nothing without a note. In swap/.
std::optional<bool> BackupIsFull();

} // namespace kelvash::core
