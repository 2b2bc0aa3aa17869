#include "foundation/plain_name.h"

#include <algorithm>

#include "foundation/files.h"
#include "foundation/path.h"
#include "foundation/text.h"

namespace kelvash {

namespace {

bool IsNumber(std::string_view text) {
    constexpr std::string_view kSuperscripts[] = {"\u00B9", "\u00B2", "\u00B3"}; // these count as well
    return (text.size() == 1 && text[0] >= '1' && text[0] <= '9') ||
           std::find(std::begin(kSuperscripts), std::end(kSuperscripts), text) != std::end(kSuperscripts);
}

} // namespace

bool IsDeviceName(std::string_view name) {
    constexpr std::size_t kPortLength = 3;
    const std::string_view base = Trim(name.substr(0, name.find('.')));
    for (const char* device : {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"})
        if (EqualNoCase(base, device)) return true;
    return (StartsWithNoCase(base, "COM") || StartsWithNoCase(base, "LPT")) &&
           IsNumber(base.substr(kPortLength));
}

std::optional<PlainName> PlainName::From(std::string_view text) {
    if (text.empty() || text.size() > kLongestFileName || !IsUtf8(text)) return std::nullopt;
    if (text.find_first_of("/\\:") != std::string_view::npos || HoldsControls(text)) return std::nullopt;
    if (text.back() == '.' || text.back() == ' ') return std::nullopt; // so "." and ".." as well
    if (IsDeviceName(text) || EqualNoCase(text, kPartialFile)) return std::nullopt;
    return PlainName(text);
}

std::optional<PlainPath> PlainPath::From(std::string_view relative) {
    if (!relative.starts_with('\\')) return std::nullopt;
    const std::vector<std::string> names = Split(relative.substr(1), '\\');
    const bool plain = !names.empty() && std::all_of(names.begin(), names.end(), [](const std::string& name) {
        return PlainName::From(name).has_value();
    });
    return plain ? std::optional(PlainPath(relative)) : std::nullopt;
}

std::string PathIn(std::string_view folder, const PlainName& name) {
    return std::string(folder) + "\\" + name.Text();
}

std::string PathIn(std::string_view folder, const PlainPath& path) {
    return std::string(folder) + path.Text();
}

bool StaysInside(std::string_view relative) {
    return PlainPath::From(relative).has_value();
}

} // namespace kelvash
