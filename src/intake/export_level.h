// The export of a level to a zip that another Archive's AddLevel can read: its files, savegames and, if
// wanted, screenshots, with a package file made from its record.
#pragma once

#include <cstdint>

namespace kelvash::intake {

// The command "Export all files of current level in zip file" on the selected level. Asks for the zip's name.
// True if the zip was made; a failure is told. The Archive is only read, and every way out removes the
// temporary folders.
bool ExportLevel();

} // namespace kelvash::intake
