// The test whether a folder can be a TRLE folder.
#pragma once

#include <string_view>

namespace kelvash::trle {

// Waves of the original audio set.
inline constexpr int kAudioTracks = 54;

// True if the folder holds the game, a level, a .dat file and the whole audio set. With `show_messages` the
// first thing missing is told.
[[nodiscard]] bool CheckTrleFolder(std::string_view folder, bool show_messages);

// False after a message if the TRLE folder in use can't be read: its drive isn't there, say. Nothing may be
// decided or changed then.
[[nodiscard]] bool TrleIsThere();

} // namespace kelvash::trle
