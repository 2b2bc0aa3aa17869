// Taking the level that is in the TRLE folder out again.
#pragma once

#include <cstdint>

namespace kelvash::swap {

// The result when nothing may go on: the saves of the previous level can't be put away, the record can't be
// written, the TRLE folder can't be read. No other level may go in then.
inline constexpr std::int32_t kRemovalRefused = -2;

// Brings the TRLE folder back to its original state before the level `code` goes in, or is removed from the
// Archive (kNoLevel always removes). Gives the code of the previous level; `code` itself when it is in
// already and nothing was done; 0 when none was in or a step failed after its message; -1 for a marker
// without a code, or for a level that the open Archive doesn't have; kRemovalRefused. A swap that was cut
// short is ended first.
[[nodiscard]] std::int32_t RemovePreviousLevel(std::int32_t code);

enum class CutShort {
    Ended,     // nothing is half in or half out (any more)
    FilesLeft, // the saves are home, but a file can't be deleted, which was told
    Refused    // nothing could be done; told, unless the TRLE folder isn't there
};
// Takes a swap that was cut short back to the original configuration, and tells so. `untold`: one at which
// another program is at work isn't cut short, and refuses without a word.
[[nodiscard]] CutShort EndCutShort(bool untold = false);
// True if a swap has been cut short and waits to be ended.
bool IsCutShort();

} // namespace kelvash::swap
