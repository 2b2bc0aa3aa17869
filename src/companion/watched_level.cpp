#include "companion/watched_level.h"

#include <cstdint>

#include "trle_state/trle_state.h"

namespace kelvash::companion {

std::optional<core::LevelPlace> LevelInTrle() {
    const std::int32_t code = trle_state::CurrentLevelCode();
    if (code == 0) return core::PlaceOf(0);
    if (const core::LevelPlace level = core::PlaceOf(code); level.IsListed()) return level;
    const trle_state::TrleState state = trle_state::LookAtTrle();
    if (state.Content != trle_state::Holds::Level || state.OwnerFolder.empty()) return std::nullopt;
    core::LevelPlace level;
    level.Name = state.Record.Owner.Name;
    level.Folder = state.OwnerFolder;
    return level;
}

} // namespace kelvash::companion
