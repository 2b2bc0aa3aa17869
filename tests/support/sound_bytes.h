// Waves and mp3 frames for tests, byte by byte.
#pragma once

#include <cstdint>
#include <string>

namespace kelvash::test {

inline std::string Little(std::uint64_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> (8 * i) & 0xFF);
    return text;
}

// The usual 44 bytes and silence behind them.
inline std::string WaveBytes(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate,
                             std::uint16_t bits, std::uint32_t frames = 0) {
    const std::uint32_t align = channels * bits / 8u;
    const std::uint32_t data = frames * align;
    return "RIFF" + Little(36 + data, 4) + "WAVEfmt " + Little(16, 4) + Little(tag, 2) + Little(channels, 2) +
           Little(rate, 4) + Little(std::uint64_t{rate} * align, 4) + Little(align, 2) + Little(bits, 2) +
           "data" + Little(data, 4) + std::string(data, '\0');
}

// The head of the game's tracks and silent blocks.
inline std::string TrackBytes(std::uint32_t blocks) {
    const std::string coefficients(
        "\x00\x01\x00\x00\x00\x02\x00\xFF\x00\x00\x00\x00\xC0\x00\x40\x00\xF0\x00\x00\x00"
        "\xCC\x01\x30\xFF\x88\x01\x18\xFF",
        28);
    return "RIFF" + Little(82 + blocks * 2048, 4) + "WAVEfmt " + Little(50, 4) + Little(2, 2) + Little(2, 2) +
           Little(44100, 4) + Little(44359, 4) + Little(2048, 2) + Little(4, 2) + Little(32, 2) +
           Little(2036, 2) + Little(7, 2) + coefficients + "fact" + Little(4, 4) + Little(blocks * 2036, 4) +
           "data" + Little(blocks * 2048, 4) + std::string(blocks * std::size_t{2048}, '\0');
}

// Frames of MPEG-1 layer III, 44100 Hz, 128 kbit/s, stereo: 417 bytes and 1152 samples each.
inline std::string Mp3Bytes(int frames) {
    std::string bytes;
    for (int i = 0; i < frames; ++i)
        bytes += "\xFF\xFB\x90" + std::string(414, '\0');
    return bytes;
}

} // namespace kelvash::test
