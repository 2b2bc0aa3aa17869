// What several posix_*.cpp share: Wine, and what is on PATH.
#pragma once

#include <string_view>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

// $WINEPREFIX or ~/.wine; it need not exist.
NativeFile WinePrefix();

// True for a file that begins with "MZ": Wine runs it.
bool IsWindowsProgram(const NativeFile& file);
// The executable of that name in an absolute folder of PATH; empty if there is none.
NativeFile FindOnPath(std::string_view name);

} // namespace kelvash::platform
