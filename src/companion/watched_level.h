// The level on which the watcher acts: that in TRLE, whatever is selected.
#pragma once

#include <optional>

#include "core/archive.h"

namespace kelvash::companion {

// That of another Archive, which isn't listed and has no code (core::kNoLevel), where its folder is known.
// Nothing for a level that nobody knows.
std::optional<core::LevelPlace> LevelInTrle();

} // namespace kelvash::companion
