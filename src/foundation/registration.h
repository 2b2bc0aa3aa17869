// The desktop's and the registry's view of the program: file type, menu entry, App Paths keys.
//
// On Windows these are registry keys and a shell link. On Linux a MIME type and a desktop entry in the user's
// data folder take their place, and the App Paths keys are read from and written to the registry files of a
// Wine prefix.
#pragma once

#include <string>
#include <string_view>

#include "foundation/drives.h"

namespace kelvash {

// Whether anything outside the application's folder may be registered; true at the start. Where it may not,
// the calls below that write do nothing and give true.
void AllowRegistration(bool allowed);
bool MayRegister();

// Ties an extension (with its dot) and its description to an icon and a program. False at the first failed
// write.
bool RegisterFileType(std::string_view extension, std::string_view description, std::string_view icon,
                      std::string_view program);
// Makes a menu entry or link named `caption` in a special folder; back-slashes in the caption name folders
// below it, which are made. The target is a path or a name in its folder: a program, or a document to open.
// True if it stands.
bool CreateShortcut(SpecialFolderId where, std::string_view target_folder, std::string_view target,
                    std::string_view caption, std::string_view arguments);
// The first value of a key below the local machine's root, up to its first NUL; empty on failure.
std::string ReadRegistryValue(std::string_view key);
// Writes the default value of such a key and a named value, where the platform has a registry of its own.
// True if both stand or there is none to write.
bool WriteRegistryValues(std::string_view key, std::string_view default_value, std::string_view name,
                         std::string_view value);

} // namespace kelvash
