// The level on which the watcher acts: that in TRLE.
#pragma once

#include <optional>

#include "core/archive.h"

namespace kelvash::companion {

// Nothing while that of another Archive is in, or one that nobody knows.
std::optional<core::LevelPlace> LevelInTrle();

} // namespace kelvash::companion
