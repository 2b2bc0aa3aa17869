#include "foundation/record.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "foundation/text.h"

namespace kelvash {

std::string ReadText(std::string_view bytes) {
    return Utf8FromAnsi(Trim(bytes));
}

void WriteText(std::string_view text, std::span<char> field) {
    const std::string bytes = AnsiFromUtf8(text);
    const std::size_t length = std::min(bytes.size(), field.size());
    std::copy_n(bytes.begin(), length, field.begin());
    std::fill(field.begin() + static_cast<std::ptrdiff_t>(length), field.end(), ' ');
}

bool ReadBoolean(std::string_view bytes) {
    return ReadInteger(bytes) != 0;
}

void WriteBoolean(bool value, std::span<char> field) {
    WriteInteger(value ? -1 : 0, field);
}

std::int64_t ReadInteger(std::string_view bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = bytes.size(); i-- > 0;)
        value = (value << 8) | static_cast<unsigned char>(bytes[i]);
    const auto unused_bits = static_cast<int>(64 - 8 * bytes.size());
    return static_cast<std::int64_t>(value << unused_bits) >> unused_bits;
}

void WriteInteger(std::int64_t value, std::span<char> field) {
    auto bits = static_cast<std::uint64_t>(value);
    for (char& byte : field) {
        byte = static_cast<char>(bits & 0xFF);
        bits >>= 8;
    }
}

double ReadDouble(std::string_view bytes) {
    return std::bit_cast<double>(ReadInteger(bytes));
}

void WriteDouble(double value, std::span<char> field) {
    WriteInteger(std::bit_cast<std::int64_t>(value), field);
}

std::string FitText(std::string_view text, std::size_t width) {
    std::string bytes = AnsiFromUtf8(text);
    if (bytes.size() > width) bytes.resize(width);
    return Utf8FromAnsi(Trim(bytes));
}

} // namespace kelvash
