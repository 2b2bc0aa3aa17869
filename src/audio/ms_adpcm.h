// Microsoft's ADPCM, four bits a sample: its blocks and the header of the game's tracks.
//
// A block stands for itself. It begins with one byte a channel (the number of a pair of coefficients), then
// 16 bits a channel each of the step, the second and the first sample; the rest are nibbles, the higher
// first, the channels in turn. Samples are frames of 16-bit integers, the channels in turn.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::audio {

struct AdpcmCoefficients {
    std::int16_t First = 0; // of the sample before, in 256ths
    std::int16_t Second = 0;
};

struct AdpcmFormat {
    std::size_t Channels = 0; // 1 or 2
    std::size_t BlockBytes = 0;
    std::size_t BlockFrames = 0; // of a whole block
    std::vector<AdpcmCoefficients> Coefficients;
};

// The pairs of every encoder.
inline constexpr std::array<AdpcmCoefficients, 7> kAdpcmCoefficients = {
    {{256, 0}, {512, -256}, {0, 0}, {192, 64}, {240, 0}, {460, -208}, {392, -232}}};

// What precedes the nibbles of a block, for each channel.
inline constexpr std::size_t kAdpcmPreamble = 7;
// The frames that a block of so many bytes can hold; 0 for one too short to hold any.
std::size_t AdpcmFramesIn(std::size_t block_bytes, std::size_t channels);

// Decodes a block, of which the end may be missing, into as many frames as there is room for: no more than
// AdpcmFramesIn its bytes. False if it names coefficients that aren't there; the frames are silence then.
bool DecodeAdpcmBlock(const AdpcmFormat& format, std::string_view block, std::span<std::int16_t> frames);

// --- the tracks of the game ---

inline constexpr std::size_t kTrackChannels = 2;
inline constexpr std::int32_t kTrackRate = 44'100;
inline constexpr std::size_t kTrackBlockBytes = 2048;
inline constexpr std::size_t kTrackBlockFrames = 2036;
inline constexpr std::size_t kTrackHeaderBytes = 90;

// The 90 bytes that the game skips, of a track of so many frames, which fits 4 GB.
std::string TrackHeader(std::int64_t frames);

// Encodes whole blocks of stereo frames, as near to them as a search over coefficients, first steps and
// nibbles comes.
std::string EncodeTrackBlocks(std::span<const std::int16_t> frames);

} // namespace kelvash::audio
