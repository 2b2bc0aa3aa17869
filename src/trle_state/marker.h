// The marker file Kelvash.txt of the TRLE folder: which level is in and which files were copied and
// overwritten, for whoever reads it. It is made of the swap record, which knows better;
// docs/formats.md has its lines.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "trle_state/swap_record.h"

namespace kelvash::trle_state {

// A marker's fields; the paths are relative to the TRLE folder, each with a leading back-slash.
struct Marker {
    std::int32_t Code = 0;
    std::string Name;
    std::vector<std::string> Overwritten;
    std::vector<std::string> Copied;
};

// True for the target (relative, with a leading back-slash) of the game's program, which no level replaces or
// takes away.
bool IsGameProgram(std::string_view target);

// What the marker of a level that is in says.
Marker MarkerOf(const SwapRecord& record);

// The text of a marker, in UTF-8 with CR LF line ends. Without `with_lists` only its first six lines. A "#"
// in the name is a blank there; entries that the form can't hold ("#", "|", a sign outside Windows-1252) are
// left out.
std::string MarkerText(const Marker& marker, bool with_lists);
// A level's name as a marker gives it back.
std::string MarkerName(std::string_view name);

// The field behind a tag: up to the next "#" or the end of the text, trimmed. Empty if the tag isn't there;
// its case doesn't matter.
std::string MarkerField(std::string_view tag, std::string_view text);
// The pieces of a field that is a list.
std::vector<std::string> MarkerList(std::string_view tag, std::string_view text);
// Those of them that an install can have written: files in the root, in \data and in \audio, not the game.
// Whatever else a hand or a stranger has put there is passed over.
std::vector<std::string> CleanMarkerList(std::string_view tag, std::string_view text);

std::string MarkerPath();
// The marker's bytes; empty if it is missing, empty or unreadable. A text longer than any that an install
// writes is cut.
std::string ReadMarkerBytes();
// The same as UTF-8.
std::string ReadMarker();
// Replaces the marker; the hash of its bytes is in `hash`, also when it can't be written.
[[nodiscard]] bool WriteMarker(const Marker& marker, bool with_lists, std::string& hash);
// Writes the marker of a record anew if it is missing or another one.
void RepairMarker(SwapRecord record);

} // namespace kelvash::trle_state
