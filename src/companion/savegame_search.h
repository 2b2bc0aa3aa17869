// The search for an archived savegame by its note.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kelvash::companion {

enum class SearchWay { Forward, Back };

// Asks for the text, which is kept for the rest of the run, and searches forward. `selected` is the place in
// the list; nothing if none is. Gives the place of the first one whose note holds the text, from the one
// behind the selection on and round to it again. What isn't found is told.
std::optional<std::size_t> FindSavegameNote(const std::vector<std::string>& archived,
                                            std::optional<std::size_t> selected);
// The same for the text of the last search; nothing without one.
std::optional<std::size_t> FindSavegameAgain(const std::vector<std::string>& archived,
                                             std::optional<std::size_t> selected, SearchWay way);

} // namespace kelvash::companion
