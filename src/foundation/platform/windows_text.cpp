#include "foundation/platform/platform.h"
#include "foundation/platform/windows_common.h"

namespace kelvash::platform {

namespace {

int Length(std::size_t size) {
    return static_cast<int>(size);
}

std::wstring Upper(const std::wstring& text) {
    std::wstring upper(text.size(), L'\0'); // the file system's mapping is one to one
    const int length = LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, text.data(), Length(text.size()),
                                     upper.data(), Length(upper.size()), nullptr, nullptr, 0);
    return length > 0 ? upper : text;
}

// The number of wide characters in a text that is UTF-8 throughout; 0 for one that isn't.
int WideLength(std::string_view text) {
    return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), Length(text.size()), nullptr, 0);
}

std::size_t SequenceLength(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    return byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

} // namespace

std::wstring WideFromUtf8(std::string_view text) {
    if (text.empty()) return {};
    std::wstring wide(static_cast<std::size_t>(
                          MultiByteToWideChar(CP_UTF8, 0, text.data(), Length(text.size()), nullptr, 0)),
                      L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), Length(text.size()), wide.data(), Length(wide.size()));
    return wide;
}

std::string Utf8FromWide(std::wstring_view text) {
    if (text.empty()) return {};
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), Length(text.size()), nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), Length(text.size()), bytes.data(), size, nullptr, nullptr);
    return bytes;
}

std::string FoldCase(std::string_view text) {
    if (text.empty()) return {};
    if (WideLength(text) > 0) return Utf8FromWide(Upper(WideFromUtf8(text)));
    std::string folded;
    while (!text.empty()) {
        const std::string_view sequence = text.substr(0, SequenceLength(text.front()));
        const bool valid = WideLength(sequence) > 0;
        folded += valid ? Utf8FromWide(Upper(WideFromUtf8(sequence))) : std::string(1, text.front());
        text.remove_prefix(valid ? sequence.size() : 1);
    }
    return folded;
}

} // namespace kelvash::platform
