#include <locale.h>

#include <clocale>
#include <cwchar>
#include <cwctype>
#include <string>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

namespace {

// The one locale that every Linux has with the full character tables.
locale_t Utf8Locale() {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

} // namespace

std::string FoldCase(std::string_view text) {
    const locale_t locale = Utf8Locale();
    if (locale == nullptr) return std::string(text);
    const locale_t old = uselocale(locale);
    std::string folded;
    std::mbstate_t state{};
    while (!text.empty()) {
        wchar_t character = 0;
        const std::size_t length = std::mbrtowc(&character, text.data(), text.size(), &state);
        char bytes[16];
        std::mbstate_t out{};
        if (length == 0 || length > text.size()) { // a NUL, or bytes that are no character
            state = {};
            folded += text.front();
            text.remove_prefix(1);
            continue;
        }
        const auto upper = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(character)));
        folded.append(bytes, std::wcrtomb(bytes, upper, &out));
        text.remove_prefix(length);
    }
    uselocale(old);
    return folded;
}

} // namespace kelvash::platform
