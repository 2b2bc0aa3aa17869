#include "foundation/native_text.h"

#include <exception>

namespace kelvash {

namespace {

std::string TextOf(const std::u8string& text) {
    return {text.begin(), text.end()};
}

// Of a name that is no text, as Windows allows: "?" stands in no other.
std::string AsciiOf(const std::filesystem::path& native) {
    std::string text;
    for (const auto character : native.native())
        text += static_cast<char32_t>(character) < 0x80 ? static_cast<char>(character) : '?';
    return text;
}

} // namespace

std::filesystem::path NativeFromText(std::string_view text) {
    return std::u8string(text.begin(), text.end());
}

std::string TextOfNative(const std::filesystem::path& native) {
    try {
        return TextOf(native.u8string());
    } catch (const std::exception&) {
        return AsciiOf(native);
    }
}

std::string GenericTextOf(const std::filesystem::path& native) {
    try {
        return TextOf(native.generic_u8string());
    } catch (const std::exception&) {
        return AsciiOf(native);
    }
}

} // namespace kelvash
