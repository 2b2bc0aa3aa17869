// Windows' virtual key codes as X11 key symbols.
#pragma once

#include <X11/X.h>

#include <vector>

namespace kelvash::platform {

// The symbols of the keys that the code stands for ("shift" is either of two); empty for a code without a key
// here.
std::vector<KeySym> KeySymbols(int virtual_key);

} // namespace kelvash::platform
