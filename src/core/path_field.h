// Paths that are to stand in the Archive's file or in the profile: fields of 256 characters of Windows-1252.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "foundation/message_text.h"

namespace kelvash::core {

// Width of every path field.
inline constexpr std::size_t kPathWidth = 256;

// True if a field gives the path back as it is.
[[nodiscard]] bool CanKeepPath(std::string_view path);
// What is wrong with a path, for the user; empty if nothing is.
MessageText FaultOfPath(std::string_view path);
// The same as CanKeepPath; tells the fault.
[[nodiscard]] bool CheckPath(std::string_view path);

} // namespace kelvash::core
