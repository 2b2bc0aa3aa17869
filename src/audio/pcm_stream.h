// A wave as 16-bit samples of a wanted rate and number of channels.
//
// Two channels become one as their mean, which can't clip; one becomes two alike. The rate is changed by
// libsoxr at high quality. Where bits are lost the samples are dithered by noise of triangular distribution,
// the same at each run; what needs no rounding, silence above all, stays as it is. What leaves the range
// stays at its ends.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "audio/wave_source.h"

namespace kelvash::audio {

class PcmStream {
  public:
    // Of a source that outlives it.
    PcmStream(WaveSource& source, std::size_t channels, std::int32_t rate);
    ~PcmStream();
    PcmStream(const PcmStream&) = delete;
    PcmStream& operator=(const PcmStream&) = delete;

    // False if the rate can't be changed, for want of memory.
    bool IsGood() const;
    // Of the same duration as the source, rounded to the nearest.
    std::int64_t Frames() const { return frames_; }
    // Fills the span with the next frames; behind the last it isn't asked for more. False if the source can't
    // be read.
    bool Read(std::span<std::int16_t> samples);

  private:
    struct Work;

    std::size_t channels_;
    std::int64_t frames_;
    std::unique_ptr<Work> work_;
};

// The nearest 16-bit sample to a value of full scale 1, dithered unless it needs no rounding.
class Rounding {
  public:
    std::int16_t Round(float value);

  private:
    float Noise(); // -1 to 1, most often near 0

    std::uint32_t seed_ = 22'050;
};

} // namespace kelvash::audio
