// A wave file as frames, whatever its coding: PCM of any width and what else libsndfile knows, and Microsoft
// ADPCM with any blocks and coefficients. Read once from start to end, in memory that doesn't grow with the
// file.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <span>

#include "foundation/message_text.h"

namespace kelvash::audio {

class WaveSource {
  public:
    virtual ~WaveSource() = default;

    std::size_t Channels = 0;     // 1 or 2
    std::int32_t Rate = 0;        // kLeastRate to kMostRate
    std::int64_t Frames = 0;      // above 0
    bool FitsSixteenBits = false; // samples of 16 bits lose nothing

    // Fills the span with the next frames, the channels in turn; behind the last it isn't asked for more.
    // False if they can't be read. Full scale is 32,768, or 1.
    virtual bool Read(std::span<std::int16_t> samples) = 0;
    virtual bool Read(std::span<float> samples) = 0;
};

inline constexpr std::int32_t kLeastRate = 1'000;
inline constexpr std::int32_t kMostRate = 384'000;

// Takes the stream. Nothing, with the reason, for what is no wave file, is cut off, holds no samples, or has
// a rate or a number of channels that no conversion knows.
std::unique_ptr<WaveSource> OpenWave(std::unique_ptr<std::istream> file, MessageText& why);

} // namespace kelvash::audio
