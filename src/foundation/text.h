// Texts: trimming, comparison without regard to case, lists, and the border to Windows-1252.
//
// A text in memory is UTF-8 in a std::string and may hold NUL characters (the address lists of a level do).
// Nothing here allocates more than its result, and nothing fails: bytes that are no UTF-8 pass through.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash {

// Without the blanks (0x20, no other white space) at both ends.
std::string_view Trim(std::string_view text);

// The upper-case form by which names are compared and sorted, as NTFS does it.
std::string FoldCase(std::string_view text);

// Below 0, 0, above 0; texts that differ only in case are equal.
int CompareNoCase(std::string_view a, std::string_view b);
bool EqualNoCase(std::string_view a, std::string_view b);
bool StartsWithNoCase(std::string_view text, std::string_view start);
bool EndsWithNoCase(std::string_view text, std::string_view end);
// Position of the first `what` at or behind `from`; npos if there is none. ASCII letters fold, others compare
// exactly.
std::size_t FindNoCase(std::string_view text, std::string_view what, std::size_t from = 0);

// The pieces between separators. An empty text gives an empty list; "a|" gives "a" and "".
std::vector<std::string> Split(std::string_view text, char separator);
std::string Join(const std::vector<std::string>& pieces, std::string_view separator);

// Decimal digits with zeros in front, at least `digits` of them; a minus sign stands before the zeros.
std::string ZeroPadded(std::int64_t value, int digits);

// The whole number that a text begins with, blanks in front ignored, as a 32-bit value (the nearest for one
// too large). 0 if the text begins with none.
std::int32_t LeadingNumber(std::string_view text);

// The number that the whole text is; nothing for any other text or one outside 32 bits.
std::optional<std::int32_t> WholeNumber(std::string_view text);

// True if all bytes belong to characters; so for an empty text.
bool IsUtf8(std::string_view text);

// Between the ANSI code page of every file (Windows-1252) and UTF-8. The five codes without a character map
// to the controls of the same number, so bytes survive a round trip; a character with no place becomes "?",
// bytes that are no UTF-8 stay as they are.
std::string Utf8FromAnsi(std::string_view bytes);
std::string AnsiFromUtf8(std::string_view text);

// True if a control character is in the text: of the first 32, DEL, or of those above ASCII.
bool HoldsControls(std::string_view text);

// A text of a stranger as it may be shown: without escape sequences of terminals, control characters and
// marks that turn the direction of writing; a byte that is no UTF-8 becomes U+FFFD. CleanText keeps CR, LF
// and tabs; CleanLine makes a blank of each run of them and of NULs, so that the text is one line.
std::string CleanText(std::string_view text);
std::string CleanLine(std::string_view text);
// Names of strangers for the end of a message, a line each, the first of them if they are many.
std::string CleanLines(const std::vector<std::string>& names);

} // namespace kelvash
