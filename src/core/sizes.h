// Sizes of levels and of the Archive, counted on disk.
#pragma once

#include <cstdint>
#include <string_view>

#include "trle_state/level_place.h"

namespace kelvash::core {

// Bytes in a level's FILES folder, sub-folders included; 0 for a missing one.
std::int64_t FilesBytes(std::string_view level_folder);
// Bytes in its three writable folders.
std::int64_t SavesBytes(std::string_view level_folder);
// A count of bytes as the 32-bit fields of a level hold it: the nearest value that fits.
std::int32_t FieldSize(double bytes);

// Recounts every level (the files only of those on disk) and the header's sums, then ArchiveTouched. With
// `show_report` the sums are told. A stop by the user leaves all sizes as they were.
enum class Report { Silent, Shown };
void ComputeArchiveSize(Report report);
// Recounts one level and moves the header's sums by the difference.
void CountLevelSize(const trle_state::LevelPlace& level);

} // namespace kelvash::core
