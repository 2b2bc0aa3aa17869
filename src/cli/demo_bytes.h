// Little-endian numbers and fixed-width texts appended to bytes that a file will hold.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvash::cli {

// The low `width` bytes of a number.
inline void AppendNumber(std::int64_t value, int width, std::string& bytes) {
    for (int i = 0; i < width; ++i)
        bytes += static_cast<char>((static_cast<std::uint64_t>(value) >> (8 * i)) & 0xFF);
}
inline void AppendByte(std::int64_t value, std::string& bytes) {
    AppendNumber(value, 1, bytes);
}
inline void AppendWord(std::int64_t value, std::string& bytes) {
    AppendNumber(value, 2, bytes);
}
inline void AppendLong(std::int64_t value, std::string& bytes) {
    AppendNumber(value, 4, bytes);
}

} // namespace kelvash::cli
