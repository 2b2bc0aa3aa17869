// Names of zip entries: what text their bytes are, and where they may be written.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::zip {

// The text of an entry's name. Bytes that are UTF-8 are taken as such, whether the entry says so or not.
// Others are of the DOS code page 437 where all of them are letters there, else of Windows-1252 where they
// are letters, quotation marks or dashes there, else of 437.
std::string ZipNameText(std::string_view bytes);

// The parts of an entry's name between its separators, which are "/" and "\". Nothing for a name that leads
// out of the destination (absolute, with a drive, with a ".." part) or that no file can have. Characters that
// a file's name can't hold become "_", dots and blanks at the end of a part are left out; what comes of it
// are plain names (plain_name.h).
std::optional<std::vector<std::string>> ZipNameParts(std::string_view name);
// True for a name that has no parts because one of them is longer than a file's name can be.
bool IsZipNameTooLong(std::string_view name);

} // namespace kelvash::zip
