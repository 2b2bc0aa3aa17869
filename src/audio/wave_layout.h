// What the chunks of a wave file say, for whoever must know more than a reader of samples tells: where the
// data lie, whether they are there, and how many frames of the last block count.
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>

namespace kelvash::audio {

inline constexpr std::uint16_t kMsAdpcmTag = 2;

struct WaveLayout {
    std::uint16_t Tag = 0;
    std::uint16_t Channels = 0;
    std::uint32_t Rate = 0;
    std::uint16_t BlockBytes = 0;
    std::string Extra;                 // of the format chunk, behind the bits a sample
    std::optional<std::uint32_t> Fact; // frames, where a `fact` chunk says it
    std::int64_t DataStart = 0;
    std::int64_t DataBytes = 0; // as many as there are, of those that the header states
    bool CutOff = false;        // it states more
};

// Nothing for what is no wave file (RIFF, little-endian) with a format and data behind it. Other chunks are
// passed over; a wrong length of the whole doesn't matter.
std::optional<WaveLayout> ReadWaveLayout(std::istream& file);

} // namespace kelvash::audio
