// A level's media configuration (.mcf): movies, titles and programs that its author ties to audio tracks.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvash::media {

// Longest configuration that is read; a longer file is none.
inline constexpr std::size_t kLongestMediaConfig = std::size_t{8} << 20;

// Names of the files that the events of a configuration use by their flags, in the order of events and
// fields, without folders. Nothing for bytes that state more events than they hold.
std::vector<std::string> MediaFileNames(std::string_view bytes);

// Of those of the first *.mcf of a folder: the names whose files are there and that are no waves. They go
// into the TRLE root with the level.
std::vector<std::string> ListMediaFiles(const std::string& folder);

} // namespace kelvash::media
