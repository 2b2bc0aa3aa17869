// An Archive whose file ends before its last level. It is loaded as far as it goes, and the next save would
// make that final.
#pragma once

#include <string>

#include "core/archive_file.h"

namespace kelvash::core {

// Copies the file to a name beside it, unless an earlier copy of it is there, and tells the user what it
// lacks.
void KeepCutArchive(const std::string& path, const ArchiveContents& contents);

} // namespace kelvash::core
