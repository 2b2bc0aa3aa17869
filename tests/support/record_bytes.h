// Bytes of fixed-layout records, put together by offset and without the code under test.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvash::test {

// Puts bytes over those at an offset.
inline void Put(std::string& bytes, std::size_t offset, std::string_view piece) {
    bytes.replace(offset, piece.size(), piece);
}

// A text that may hold NULs, from a literal.
template <std::size_t Size>
std::string Literal(const char (&text)[Size]) {
    return std::string(text, Size - 1);
}

inline std::string Blanks(std::size_t count) {
    return std::string(count, ' ');
}

} // namespace kelvash::test
