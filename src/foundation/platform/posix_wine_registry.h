// The registry file of a Wine prefix (system.reg, the local machine's hive): a text of sections
//
//   [Software\\Microsoft\\Windows] 1700000000
//   #time=1da1234567890ab
//   @="default value"
//   "Name"="text"
//   "Other"=dword:00000001
//
// with back-slash escapes, also \xHHHH for characters outside ASCII, and long binary values continued behind
// a back-slash. The file is read line by line: it may be huge, cut off or no registry at all.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

// The first text value of a key, its twin below Wow6432Node looked at second; keys compare without case.
// Nothing if there is none.
std::optional<std::string> ReadWineValue(const NativeFile& file, std::string_view key);

struct WineValues {
    std::string_view default_value;
    std::string_view name;
    std::string_view value;
};
// True if the key itself (not its twin) holds both values.
bool HasWineValues(const NativeFile& file, std::string_view key, const WineValues& values);
// Puts both values into the key, which is made if it is missing; everything else stays. The file is replaced
// whole. No server of the prefix may run: it would write its own state over it.
bool WriteWineValues(const NativeFile& file, std::string_view key, const WineValues& values);

// True if Wine's server runs for a prefix.
bool WineServerRuns(const NativeFile& prefix);

} // namespace kelvash::platform
