// The chunks of a wave file: how long it really plays, and whether the game can play it.
//
// Unlike wave_header.h this looks for the chunks wherever they stand. Lengths that a file states count no
// further than the file goes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "audio/wave_header.h"

namespace kelvash::audio {

struct WaveChunks {
    WavHeader Format;              // its four values, wherever the format chunk stands
    std::string More;              // of the format chunk what is behind them
    std::int64_t FormatOffset = 0; // of the chunk's first byte in the file
    std::optional<std::uint32_t> FactSamples;
    std::int64_t FactOffset = 0;
    std::int64_t DataOffset = 0;
    std::int64_t DataSize = 0; // as much as is there
};
// Nothing for what has no format or no data.
std::optional<WaveChunks> ReadWaveChunks(std::string_view path);

// The seconds that a wave plays: its data by rate and format, of a compressed one the sample count that it
// states where that is plausible. 0 for what is no wave.
double WaveSeconds(std::string_view path);

// True if a 4-bit wave is as the game wants it. It skips 90 bytes unseen and takes all behind them for blocks
// of 2048 bytes: anything else is noise.
bool PlaysInGame(std::string_view path);

} // namespace kelvash::audio
