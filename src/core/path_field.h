// Paths and other texts that are to stand in the Archive's file or in the profile: fields of Windows-1252,
// those of paths 256 characters wide.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "foundation/message_text.h"

namespace kelvash::core {

// Width of every path field.
inline constexpr std::size_t kPathWidth = 256;
// That of a level's name and of its note.
inline constexpr std::size_t kLineWidth = 256;

// True if a field gives the path back as it is.
[[nodiscard]] bool CanKeepPath(std::string_view path);
// What is wrong with a path, for the user; empty if nothing is.
MessageText FaultOfPath(std::string_view path);
// The same as CanKeepPath; tells the fault.
[[nodiscard]] bool CheckPath(std::string_view path);
// True if a field of that width gives a trimmed text back as it is.
[[nodiscard]] bool CanKeepText(std::string_view text, std::size_t width);
// The same; tells the fault.
[[nodiscard]] bool CheckText(std::string_view text, std::size_t width);

} // namespace kelvash::core
