// Pictures in other sizes.
#pragma once

#include <cstdint>

#include "swap/picture_codec.h"

namespace kelvash::companion {

// The picture stretched to a size, whatever its proportions. Smaller ones are means of what they stand for,
// larger ones run from pixel to pixel. Width and height are at least 1.
swap::Picture Stretched(const swap::Picture& picture, std::uint32_t width, std::uint32_t height);

} // namespace kelvash::companion
