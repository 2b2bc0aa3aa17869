#include "foundation/path.h"

#include <algorithm>

#include "foundation/text.h"

namespace kelvash {

namespace {

constexpr auto kNone = std::string_view::npos;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLineEnd(char c) {
    return c == '\r' || c == '\n';
}

// Back-tracks only to the last star, so the time stays within name times mask.
bool MatchLetters(std::string_view name, std::string_view mask) {
    std::size_t n = 0, m = 0, star = kNone, retry = 0;
    while (n < name.size()) {
        if (m < mask.size() && mask[m] == '*') {
            star = m++;
            retry = n;
        } else if (m < mask.size() && (mask[m] == '?' || mask[m] == name[n])) {
            ++m;
            ++n;
            // One "?" stands for one character, not for one byte of it.
            if (mask[m - 1] == '?')
                while (n < name.size() && (static_cast<unsigned char>(name[n]) & 0xC0) == 0x80)
                    ++n;
        } else if (star != kNone) {
            m = star + 1;
            n = ++retry;
        } else {
            return false;
        }
    }
    return mask.find_first_not_of('*', m) == kNone;
}

} // namespace

std::string FileNameOf(std::string_view path) {
    const std::size_t at = path.find_last_of("\\:");
    return std::string(at == kNone ? path : path.substr(at + 1));
}

std::string FolderOf(std::string_view path) {
    const std::size_t at = path.rfind('\\');
    return std::string(at == kNone ? std::string_view() : path.substr(0, at));
}

std::string ExtensionOf(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    return std::string(dot == kNone ? std::string_view() : path.substr(dot));
}

std::string BaseNameOf(std::string_view path) {
    return StripExtension(FileNameOf(path));
}

std::string StripExtension(std::string_view name) {
    return std::string(name.substr(0, name.rfind('.')));
}

std::string ReplaceExtension(std::string_view path, std::string_view extension) {
    return StripExtension(path).append(extension);
}

std::string UrlFileName(std::string_view url) {
    const std::size_t at = url.find_last_of("/\\");
    return std::string(at == kNone ? url : url.substr(at + 1));
}

std::string UrlHost(std::string_view url) {
    const std::size_t scheme = url.find("//");
    return std::string(url.substr(0, url.find('/', scheme == kNone ? 0 : scheme + 2)));
}

std::string SafeFileName(std::string_view name) {
    std::string safe(name);
    std::replace_if(
        safe.begin(), safe.end(), [](char c) { return std::string_view("/\\<>:?|\"").find(c) != kNone; },
        ' ');
    return safe;
}

std::string NextNumberIn(std::string_view text, std::size_t& position) {
    while (position < text.size() && !IsDigit(text[position]))
        ++position;
    const std::size_t start = std::min(position, text.size());
    while (position < text.size() && IsDigit(text[position]))
        ++position;
    return std::string(text.substr(start, position - start));
}

std::string NextLineIn(std::string_view text, std::size_t& position) {
    const std::size_t start = std::min(position, text.size());
    while (position < text.size() && !IsLineEnd(text[position]))
        ++position;
    const std::size_t end = std::min(position, text.size());
    while (position < text.size() && IsLineEnd(text[position]))
        ++position;
    return std::string(text.substr(start, end - start));
}

bool MatchesMask(std::string_view name, std::string_view mask) {
    if (mask == "*" || mask == "*.*") return true;
    return MatchesMaskWithCase(FoldCase(name), FoldCase(mask));
}

bool MatchesMaskWithCase(std::string_view name, std::string_view mask) {
    if (mask == "*" || mask == "*.*" || MatchLetters(name, mask)) return true;
    // "name.*" means any extension, and none.
    return mask.ends_with(".*") && name.find('.') == kNone &&
           MatchLetters(name, mask.substr(0, mask.size() - 2));
}

} // namespace kelvash
