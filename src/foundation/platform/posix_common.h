// What several posix_*.cpp share: Wine, what is on PATH, what /proc tells.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

// $WINEPREFIX or ~/.wine; it need not exist.
NativeFile WinePrefix();

// True for a file that begins with "MZ": Wine runs it.
bool IsWindowsProgram(const NativeFile& file);
// The executable of that name in an absolute folder of PATH; empty if there is none.
NativeFile FindOnPath(std::string_view name);

// The ids of all processes.
std::vector<std::string> ProcessIds();
// A file of a process's folder; empty for a process that has ended or is another user's.
std::string BytesOfProcess(const std::string& id, const char* file);

} // namespace kelvash::platform
