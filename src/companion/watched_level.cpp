#include "companion/watched_level.h"

#include "trle_state/trle_state.h"

namespace kelvash::companion {

std::optional<core::LevelPlace> LevelInTrle() {
    const std::int32_t code = trle_state::CurrentLevelCode();
    if (code < 0) return std::nullopt;
    const core::LevelPlace level = core::PlaceOf(code);
    if (code != 0 && !level.IsListed()) return std::nullopt;
    return level;
}

} // namespace kelvash::companion
