// The swap journal: what the marker file can't tell while a swap is under way.
//
// The marker says which level is in TRLE only after the last file, and without a marker the saves in the TRLE
// root count as level 0000's. A program killed between would hand a level's saves to another, or empty a
// stash whose files are nowhere else. While the journal stands, no level counts as in, and whatever the
// marker says:
//   - savegames, screenshots and notes in the TRLE root belong to SavesOwner;
//   - the stash of SavesOwner may hold files that the root lacks, so it is merged with, never emptied;
//   - Copied and Overwritten are the lists of an install that hasn't written its marker to the end.
// It is a file of the application's folder, bound to one TRLE folder; a finished swap removes it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelvash::swap {

struct SwapJournal {
    std::int32_t SavesOwner = 0;
    std::vector<std::string> Overwritten = {};
    std::vector<std::string> Copied = {};
};

// Nothing if there is none, or one of another TRLE folder.
std::optional<SwapJournal> ReadJournal();
// False after a message if it can't be written; the old one stands then. A swap must not go on without it.
[[nodiscard]] bool WriteJournal(const SwapJournal& journal);
void DeleteJournal();

} // namespace kelvash::swap
