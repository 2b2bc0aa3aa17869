#include "zip/zip_names.h"

#include <algorithm>
#include <array>

#include "foundation/files.h"
#include "foundation/plain_name.h"
#include "foundation/text.h"

namespace kelvash::zip {

namespace {

// Code page 437 from 0x80 on.
constexpr std::array<std::string_view, 128> kCodePage437 = {
    "Ç", "ü", "é", "â", "ä", "à", "å", "ç", "ê", "ë", "è", "ï", "î", "ì",     "Ä", "Å", "É", "æ", "Æ",
    "ô", "ö", "ò", "û", "ù", "ÿ", "Ö", "Ü", "¢", "£", "¥", "₧", "ƒ", "á",     "í", "ó", "ú", "ñ", "Ñ",
    "ª", "º", "¿", "⌐", "¬", "½", "¼", "¡", "«", "»", "░", "▒", "▓", "│",     "┤", "╡", "╢", "╖", "╕",
    "╣", "║", "╗", "╝", "╜", "╛", "┐", "└", "┴", "┬", "├", "─", "┼", "╞",     "╟", "╚", "╔", "╩", "╦",
    "╠", "═", "╬", "╧", "╨", "╤", "╥", "╙", "╘", "╒", "╓", "╫", "╪", "┘",     "┌", "█", "▄", "▌", "▐",
    "▀", "α", "ß", "Γ", "π", "Σ", "σ", "µ", "τ", "Φ", "Θ", "Ω", "δ", "∞",     "φ", "ε", "∩", "≡", "±",
    "≥", "≤", "⌠", "⌡", "÷", "≈", "°", "∙", "·", "√", "ⁿ", "²", "■", "\u00A0"};

bool IsAscii(unsigned char byte) {
    return byte < 0x80;
}

bool IsLetterOf437(unsigned char byte) {
    constexpr unsigned char kSharpS = 0xE1;
    return byte <= 0x9A || (byte >= 0xA0 && byte <= 0xA5) || byte == kSharpS;
}

bool IsUsualInAnsi(unsigned char byte) {
    constexpr std::string_view kLettersBelow = "\x8A\x8C\x8E\x9A\x9C\x9E\x9F";
    constexpr std::string_view kPunctuation = "\x91\x92\x93\x94\x96\x97\xA0";
    const char c = static_cast<char>(byte);
    return (byte >= 0xC0 && byte != 0xD7 && byte != 0xF7) ||
           kLettersBelow.find(c) != std::string_view::npos || kPunctuation.find(c) != std::string_view::npos;
}

std::string From437(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (IsAscii(byte))
            text += c;
        else
            text += kCodePage437[byte - 0x80];
    }
    return text;
}

// Windows drops dots and blanks at a name's end, as this does.
std::string CleanPart(std::string_view part) {
    constexpr std::string_view kForbidden = "<>:\"|?*";
    std::string clean(part);
    for (char& c : clean)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F' ||
            kForbidden.find(c) != std::string_view::npos)
            c = '_';
    clean.resize(clean.find_last_not_of(". ") + 1);
    return clean;
}

// None for a name that begins at a root or a drive; a ".." becomes an empty part.
std::vector<std::string> CleanParts(std::string_view name) {
    std::string path(name);
    std::replace(path.begin(), path.end(), '\\', '/');
    std::vector<std::string> parts;
    if (path.empty() || path.front() == '/' || (path.size() > 1 && path[1] == ':')) return parts;
    for (const std::string& part : Split(path, '/'))
        if (!part.empty() && part != ".") parts.push_back(CleanPart(part));
    return parts;
}

} // namespace

std::string ZipNameText(std::string_view bytes) {
    if (IsUtf8(bytes)) return std::string(bytes);
    const auto all = [&](bool (*is_usual)(unsigned char)) {
        return std::all_of(bytes.begin(), bytes.end(), [&](char c) {
            const auto byte = static_cast<unsigned char>(c);
            return IsAscii(byte) || is_usual(byte);
        });
    };
    return !all(IsLetterOf437) && all(IsUsualInAnsi) ? Utf8FromAnsi(bytes) : From437(bytes);
}

std::optional<std::vector<std::string>> ZipNameParts(std::string_view name) {
    std::vector<std::string> parts = CleanParts(name);
    const bool plain = !parts.empty() && std::all_of(parts.begin(), parts.end(), [](const std::string& part) {
        return PlainName::From(part).has_value();
    });
    return plain ? std::optional(std::move(parts)) : std::nullopt;
}

bool IsZipNameTooLong(std::string_view name) {
    const std::vector<std::string> parts = CleanParts(name);
    return std::any_of(parts.begin(), parts.end(),
                       [](const std::string& part) { return part.size() > kLongestFileName; });
}

} // namespace kelvash::zip
