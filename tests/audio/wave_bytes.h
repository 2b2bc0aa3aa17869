// Wave files made by hand, for tests.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvash::test {

template <class Number>
std::string LittleEndian(Number value) {
    std::string bytes;
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        bytes += static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i));
    return bytes;
}

inline std::string Chunk(std::string_view name, std::string_view bytes) {
    std::string chunk(name);
    chunk += LittleEndian(static_cast<std::uint32_t>(bytes.size()));
    chunk += bytes;
    if (bytes.size() % 2 != 0) chunk += '\0';
    return chunk;
}

inline std::string Riff(const std::string& chunks) {
    return "RIFF" + LittleEndian(static_cast<std::uint32_t>(chunks.size() + 4)) + "WAVE" + chunks;
}

struct WaveFormat {
    std::uint16_t Tag = 1;
    std::uint16_t Channels = 2;
    std::uint32_t Rate = 44'100;
    std::uint16_t Bits = 16;
    std::uint16_t BlockBytes = 0; // 0 is that of PCM
    std::string Extra = {};       // with its length in front
};

inline std::string FormatChunk(const WaveFormat& format) {
    const auto block = static_cast<std::uint16_t>(format.BlockBytes != 0 ? format.BlockBytes
                                                                         : format.Channels * format.Bits / 8);
    return Chunk("fmt ", LittleEndian(format.Tag) + LittleEndian(format.Channels) +
                             LittleEndian(format.Rate) + LittleEndian(format.Rate * block) +
                             LittleEndian(block) + LittleEndian(format.Bits) + format.Extra);
}

inline std::string WaveBytes(const WaveFormat& format, std::string_view data,
                             const std::string& before_data = {}) {
    return Riff(FormatChunk(format) + before_data + Chunk("data", data));
}

// Samples of 16 bits.
template <class Samples>
std::string SampleBytes(const Samples& samples) {
    std::string bytes;
    for (const auto sample : samples)
        bytes += LittleEndian(static_cast<std::int16_t>(sample));
    return bytes;
}

} // namespace kelvash::test
