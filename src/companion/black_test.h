// Whether a capture shows anything: the game's fades are frames that are black all over.
#pragma once

#include "swap/picture_codec.h"

namespace kelvash::companion {

// True if a pixel of the middle row or the middle column isn't black. The rest isn't looked at, which is
// meant.
bool IsImageNotBlack(const swap::Picture& picture);

} // namespace kelvash::companion
