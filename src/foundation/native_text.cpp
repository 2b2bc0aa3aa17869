#include "foundation/native_text.h"

namespace kelvash {

namespace {

std::string TextOf(const std::u8string& text) {
    return {text.begin(), text.end()};
}

} // namespace

std::filesystem::path NativeFromText(std::string_view text) {
    return std::u8string(text.begin(), text.end());
}

std::string TextOfNative(const std::filesystem::path& native) {
    return TextOf(native.u8string());
}

std::string GenericTextOf(const std::filesystem::path& native) {
    return TextOf(native.generic_u8string());
}

} // namespace kelvash
