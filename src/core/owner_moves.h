// What the record of the level in TRLE has to know when levels change their place.
#pragma once

#include <string_view>

namespace kelvash::core {

// To be called once the folders of levels stand in a new place and before the old ones go: the record of a
// level that is in, or half in, names its new folder from then on, and its old one where the new one is
// missing. `old_parent` and `new_parent` hold the LEVEL_NNNN folders. False after a message.
[[nodiscard]] bool NoteLevelsMoved(std::string_view old_parent, std::string_view new_parent);
// The same for one folder, which may have got another name.
[[nodiscard]] bool NoteLevelMoved(std::string_view old_folder, std::string_view new_folder);
// To be called when the new place is the one for good: the old one doesn't count any more where the new one
// is missing.
void NoteMoveEnded();
// To be called after a level's tr4.inf has changed.
void NoteLevelChanged(std::string_view folder);

} // namespace kelvash::core
