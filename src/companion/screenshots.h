// The pictures of a level, in its SCREENSHOTS folder.
#pragma once

#include <string>
#include <vector>

#include "core/archive.h"

namespace kelvash::companion {

// Full paths of a level's .jpg and .bmp files, in alphabetical order.
std::vector<std::string> Screenshots(const core::LevelPlace& level);
// The one of these files that was written last; empty if there is none.
std::string NewestOf(const std::vector<std::string>& files);
std::string NewestScreenshot(const core::LevelPlace& level);
// The picture that stands for a level without any.
std::string DefaultScreenshot();

} // namespace kelvash::companion
