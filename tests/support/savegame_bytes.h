// A savegame as the game writes it.
#pragma once

#include <string>

namespace kelvash::test {

// The title padded with NULs, the number, and what tells it from others.
inline std::string SaveBytes(const std::string& title, int number, const std::string& more = {}) {
    std::string bytes = title + std::string(75 - title.size(), '\0');
    bytes += static_cast<char>(number & 0xFF);
    bytes += static_cast<char>(number >> 8 & 0xFF);
    return bytes + more;
}

} // namespace kelvash::test
