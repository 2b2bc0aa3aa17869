#include "foundation/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "foundation/platform/platform.h"

namespace kelvash {

namespace {

// The characters of the codes 0x80 to 0x9F; the five holes keep their number.
constexpr std::array<char16_t, 32> kAnsiHigh = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char AsciiUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

void AppendUtf8(std::string& out, char32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

// Length of the UTF-8 sequence at the start of `text` and its code; length 1 and code 0xFFFD for a bad byte.
std::pair<std::size_t, char32_t> FirstCharacter(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::size_t length = byte(0) < 0x80   ? 1
                               : byte(0) < 0xC2 ? 0
                               : byte(0) < 0xE0 ? 2
                               : byte(0) < 0xF0 ? 3
                               : byte(0) < 0xF5 ? 4
                                                : 0;
    if (length == 1) return {1, byte(0)};
    if (length == 0 || length > text.size()) return {1, 0xFFFD};
    char32_t code = byte(0) & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return {1, 0xFFFD};
        code = (code << 6) | (byte(i) & 0x3F);
    }
    constexpr char32_t kFirstOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool is_surrogate = code >= 0xD800 && code < 0xE000;
    if (code < kFirstOfLength[length] || code > 0x10FFFF || is_surrogate)
        return {1, 0xFFFD}; // no second spelling of a character, no half of one
    return {length, code};
}

bool IsControl(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

// Marks that show a text in another order than it has, so that "exe.txt" may be read where "txt.exe" stands.
bool TurnsDirection(char32_t code) {
    return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

// Bytes of the escape sequence behind an ESC (or of the control sequence that a single code begins, `kind`
// being the letter that stands for it behind an ESC). One without an end reaches to the end of its line.
std::size_t SequenceLength(std::string_view text, char kind) {
    constexpr std::string_view kTextSequences = "]PX^_"; // these hold a text that BEL or ESC \ ends
    const std::size_t line = std::min(text.find_first_of("\r\n"), text.size());
    if (kTextSequences.find(kind) != std::string_view::npos) {
        const std::size_t end = text.find_first_of("\a\x1B\xC2", 0);
        if (end >= line) return line;
        return end + (text[end] == '\a' ? 1 : 0);
    }
    if (kind != '[') return 0;
    std::size_t end = 0;
    while (end < line && text[end] >= 0x20 && text[end] < 0x40)
        ++end;
    return end < line && text[end] >= 0x40 && text[end] < 0x7F ? end + 1 : end;
}

// Bytes of the sequence that `code`, which stands before `rest`, begins.
std::size_t SequenceBehind(char32_t code, std::string_view rest) {
    constexpr char32_t kEscape = 0x1B;
    // A control above ASCII stands for ESC and the character of its number less 0x40.
    if (code >= 0x80 && code < 0xA0) return SequenceLength(rest, static_cast<char>(code - 0x40));
    if (code != kEscape) return 0;
    std::size_t at = 0;
    while (at < rest.size() && rest[at] >= 0x20 && rest[at] < 0x30)
        ++at;
    if (at == rest.size() || rest[at] < 0x30 || rest[at] >= 0x7F) return at;
    return at + 1 + (at == 0 ? SequenceLength(rest.substr(1), rest[0]) : 0);
}

std::string Clean(std::string_view text, bool one_line) {
    std::string clean;
    clean.reserve(text.size());
    while (!text.empty()) {
        const auto [length, code] = FirstCharacter(text);
        const std::string_view character = text.substr(0, length);
        text.remove_prefix(length);
        const bool space = code == '\r' || code == '\n' || code == '\t';
        if (one_line && (space || code == 0)) {
            if (!clean.ends_with(' ')) clean += ' ';
        } else if (space) {
            clean += character;
        } else if (IsControl(code)) {
            text.remove_prefix(SequenceBehind(code, text));
        } else if (length == 1 && code == 0xFFFD) {
            clean += "\uFFFD";
        } else if (!TurnsDirection(code)) {
            clean += character;
        }
    }
    return clean;
}

char AnsiFromCode(char32_t code) {
    if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) return static_cast<char>(code);
    const auto* found = std::find(kAnsiHigh.begin(), kAnsiHigh.end(), code);
    return found == kAnsiHigh.end() ? '?' : static_cast<char>(0x80 + (found - kAnsiHigh.begin()));
}

} // namespace

std::string_view Trim(std::string_view text) {
    // The fields of a record are mostly padding: it goes by words first.
    constexpr std::string_view kBlankWord = "        ";
    while (text.ends_with(kBlankWord))
        text.remove_suffix(kBlankWord.size());
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string FoldCase(std::string_view text) {
    if (!IsAscii(text)) return platform::FoldCase(text);
    std::string folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), AsciiUpper);
    return folded;
}

int CompareNoCase(std::string_view a, std::string_view b) {
    if (IsAscii(a) && IsAscii(b)) {
        const std::size_t common = std::min(a.size(), b.size());
        for (std::size_t i = 0; i < common; ++i) {
            const int difference = AsciiUpper(a[i]) - AsciiUpper(b[i]);
            if (difference != 0) return difference;
        }
        return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
    }
    return FoldCase(a).compare(FoldCase(b));
}

bool EqualNoCase(std::string_view a, std::string_view b) {
    return CompareNoCase(a, b) == 0;
}

bool StartsWithNoCase(std::string_view text, std::string_view start) {
    return text.size() >= start.size() && EqualNoCase(text.substr(0, start.size()), start);
}

bool EndsWithNoCase(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && EqualNoCase(text.substr(text.size() - end.size()), end);
}

std::size_t FindNoCase(std::string_view text, std::string_view what, std::size_t from) {
    if (from > text.size()) return std::string_view::npos;
    const auto found = std::search(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), what.begin(),
                                   what.end(), [](char a, char b) { return AsciiUpper(a) == AsciiUpper(b); });
    if (found == text.end() && !what.empty()) return std::string_view::npos;
    return static_cast<std::size_t>(found - text.begin());
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    if (text.empty()) return pieces;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find(separator, start)) != std::string_view::npos; start = end + 1)
        pieces.emplace_back(text.substr(start, end - start));
    pieces.emplace_back(text.substr(start));
    return pieces;
}

std::string Join(const std::vector<std::string>& pieces, std::string_view separator) {
    std::string joined;
    for (const std::string& piece : pieces) {
        if (&piece != &pieces.front()) joined += separator;
        joined += piece;
    }
    return joined;
}

std::string ZeroPadded(std::int64_t value, int digits) {
    const bool negative = value < 0;
    std::string text = std::to_string(value).substr(negative ? 1 : 0);
    if (text.size() < static_cast<std::size_t>(digits))
        text.insert(0, static_cast<std::size_t>(digits) - text.size(), '0');
    return negative ? "-" + text : text;
}

std::int32_t LeadingNumber(std::string_view text) {
    text = Trim(text);
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc::result_out_of_range) return value;
    return text.front() == '-' ? std::numeric_limits<std::int32_t>::min()
                               : std::numeric_limits<std::int32_t>::max();
}

std::optional<std::int32_t> WholeNumber(std::string_view text) {
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const auto [length, code] = FirstCharacter(text);
        if (length == 1 && code >= 0x80) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string Utf8FromAnsi(std::string_view bytes) {
    if (IsAscii(bytes)) return std::string(bytes);
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 4);
    for (const char c : bytes) {
        const auto code = static_cast<unsigned char>(c);
        AppendUtf8(text, code >= 0x80 && code < 0xA0 ? kAnsiHigh[code - 0x80] : code);
    }
    return text;
}

std::string AnsiFromUtf8(std::string_view text) {
    if (IsAscii(text)) return std::string(text);
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const auto [length, code] = FirstCharacter(text);
        bytes += length == 1 && code >= 0x80 ? text.front() : AnsiFromCode(code);
        text.remove_prefix(length);
    }
    return bytes;
}

bool HoldsControls(std::string_view text) {
    while (!text.empty()) {
        const auto [length, code] = FirstCharacter(text);
        if (IsControl(code)) return true;
        text.remove_prefix(length);
    }
    return false;
}

std::string CleanText(std::string_view text) {
    return Clean(text, false);
}

std::string CleanLine(std::string_view text) {
    return Clean(text, true);
}

std::string CleanLines(const std::vector<std::string>& names) {
    constexpr std::size_t kMostNames = 20;
    std::string lines;
    for (std::size_t i = 0; i < std::min(names.size(), kMostNames); ++i)
        lines += "\r\n" + CleanLine(names[i]);
    return names.size() > kMostNames ? lines + "\r\n..." : lines;
}

} // namespace kelvash
