// The pictures of a level, in its SCREENSHOTS folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kelvash::companion {

// Full paths of a level's .jpg and .bmp files, in alphabetical order.
std::vector<std::string> Screenshots(std::int32_t code);
// The one that was written last; empty if there is none.
std::string NewestScreenshot(std::int32_t code);
// The picture that stands for a level without any.
std::string DefaultScreenshot();

} // namespace kelvash::companion
