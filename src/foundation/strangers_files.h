// Opening what strangers made: files of levels, web sites and e-mail addresses of their authors.
//
// A document goes to the desktop's program for its extension. What is a program by its extension or its first
// bytes is opened only after a question that names it in full, an address only after one that shows it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvash {

// NotWanted: the user said no, or has been told why not.
enum class Opening { Opened, NotWanted, Failed };

Opening OpenStrangersFile(const std::string& path);
// Anything but a web site or an e-mail address ("mailto:") is told.
Opening OpenStrangersAddress(const std::string& text);

// True if the file's extension is a program's or a script's, or its first bytes are.
bool IsProgramFile(const std::string& path);
// The address that a text stands for, with the characters that none can hold encoded: of the scheme http,
// https or mailto, http for a text without one that begins with a host ("www.x.org"). Nothing for any other
// text.
std::optional<std::string> OpenableAddress(std::string_view text);

} // namespace kelvash
