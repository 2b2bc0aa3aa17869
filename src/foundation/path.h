// Path texts. None of these touch the disk.
//
// A path is a text with back-slashes and a drive letter on every platform; a folder path has no back-slash at
// its end. What these do with odd texts is fixed behaviour: callers rely on it.
#pragma once

#include <string>
#include <string_view>

namespace kelvash {

// The part behind the last "\" or ":"; the whole text if there is none.
std::string FileNameOf(std::string_view path);
// The part before the last "\"; empty if there is none.
std::string FolderOf(std::string_view path);
// From the last "." of the whole path to its end, with the dot; empty if there is none. A dot in a folder's
// name counts when the file has none.
std::string ExtensionOf(std::string_view path);
// The file name without its extension.
std::string BaseNameOf(std::string_view path);
// The text before the last "."; the whole text if there is none.
std::string StripExtension(std::string_view name);
// The path with another extension, given with its dot. The dot is searched in the whole text.
std::string ReplaceExtension(std::string_view path, std::string_view extension);
// The part behind the last "/" or "\".
std::string UrlFileName(std::string_view url);
// The text up to the first "/" behind the scheme's "//", scheme included.
std::string UrlHost(std::string_view url);
// The name with each of / \ < > : ? | " turned into a blank.
std::string SafeFileName(std::string_view name);

// The next run of digits at or behind `position`, which moves behind it; empty at the end of the text.
std::string NextNumberIn(std::string_view text, std::size_t& position);
// The text up to the next CR or LF; `position` moves behind all line end characters there, so that empty
// lines are skipped.
std::string NextLineIn(std::string_view text, std::size_t& position);

// True for a Windows mask that matches the name: "*" any run, "?" one character, "*.*" everything, and a ".*"
// at the end also nothing. Case doesn't matter, unless that is asked for.
bool MatchesMask(std::string_view name, std::string_view mask);
bool MatchesMaskWithCase(std::string_view name, std::string_view mask);

// True if a path relative to a folder, with a leading "\", is a PlainPath (plain_name.h): it names something
// inside that folder.
bool StaysInside(std::string_view relative);

} // namespace kelvash
