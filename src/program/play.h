// Playing a level: its install and the start of the game.
#pragma once

#include <cstdint>

namespace kelvash::program {

// Installs a level and starts the game. False after a message.
[[nodiscard]] bool PlayLevel(std::int32_t code);

} // namespace kelvash::program
