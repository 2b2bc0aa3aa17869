// Taking the level that is in the TRLE folder out again.
#pragma once

#include <cstdint>

namespace kelvash::swap {

// The result when the saves of the previous level can't be put away: nothing has been changed then, and no
// other level may go in over them.
inline constexpr std::int32_t kRemovalRefused = -2;

// Brings the TRLE folder back to its original state before the level `code` goes in, or is removed from the
// Archive
// (-1 always removes). Gives the code of the previous level; `code` itself when it is in already and nothing
// was done; 0 when none was in or a step failed after its message; -1 for a marker without a code;
// kRemovalRefused.
[[nodiscard]] std::int32_t RemovePreviousLevel(std::int32_t code);

} // namespace kelvash::swap
