// PNG files, as desktops put their captures on the clipboard.
#pragma once

#include <optional>
#include <string_view>

#include "swap/picture_codec.h"

namespace kelvash::swap {

// Grey, coloured and palette pictures of 8 bits a channel, not interlaced; what shines through is left out.
// Nothing for any other, for one that is cut short or damaged, and for one out of the bounds of
// bitmap_file.h.
std::optional<Picture> PictureFromPng(std::string_view bytes);

} // namespace kelvash::swap
