// The marker file Kelvash.txt of the TRLE folder: the whole record of a swap. It says which level is in and
// which files were copied and overwritten; without it the original configuration is in. docs/formats.md has
// its lines.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::swap {

// A marker's fields; the paths are relative to the TRLE folder, each with a leading back-slash.
struct Marker {
    std::int32_t Code = 0;
    std::string Name;
    std::vector<std::string> Overwritten;
    std::vector<std::string> Copied;
};

// The text of a marker, in UTF-8 with CR LF line ends. Without `with_lists` only its first six lines.
std::string MarkerText(const Marker& marker, bool with_lists);

// The field behind a tag: up to the next "#" or the end of the text, trimmed. Empty if the tag isn't there;
// its case doesn't matter.
std::string MarkerField(std::string_view tag, std::string_view text);
// The pieces of a field that is a list.
std::vector<std::string> MarkerList(std::string_view tag, std::string_view text);

std::string MarkerPath();
// The marker's text in UTF-8; empty if it is missing, empty or unreadable. A text longer than any that an
// install writes is cut.
std::string ReadMarker();
[[nodiscard]] bool WriteMarker(const Marker& marker, bool with_lists);

// Code of the level that is in the TRLE folder; 0 for the original configuration.
std::int32_t CurrentLevelCode();

} // namespace kelvash::swap
