// Putting a file where nothing stands yet, and leaving alone what may appear there meanwhile: a running game
// writes its savegames into the same folder.
#pragma once

#include <string_view>

namespace kelvash {

// Gives a file a second place, on any drive. The destination is whole at once and replaces nothing. On one
// drive the two are one file until one of them goes: it is not to be written in place, and its bytes are as
// much on the disk as they were before; those of a copy are on it. Its name is after FlushFolder. False if
// something stands there, or on any error.
[[nodiscard]] bool PlaceFileNew(std::string_view source, std::string_view destination);
// The same, always with bytes of its own, which are on the disk.
[[nodiscard]] bool CopyFileNew(std::string_view source, std::string_view destination);
// Takes one place of a file away; another keeps its attributes. True also when nothing is there.
[[nodiscard]] bool LeavePlace(std::string_view path);
// The names that a folder has got, and its own, are on the disk after this, as far as the platform offers
// that. False on error.
[[nodiscard]] bool FlushFolder(std::string_view folder);
// True for a file, a folder or a link, one that leads nowhere too.
bool AnythingStands(std::string_view path);
// True if the path itself is a link, wherever it leads.
bool IsLink(std::string_view path);

} // namespace kelvash
