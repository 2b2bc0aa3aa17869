// How a decoder of Microsoft's ADPCM goes from one sample to the next; the encoder follows it.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "audio/ms_adpcm.h"

namespace kelvash::audio {

inline constexpr std::int32_t kLeastAdpcmStep = 16;
// Steps above this one would leave 32 bits; no encoder comes near it.
inline constexpr std::int32_t kMostAdpcmStep = std::numeric_limits<std::int32_t>::max() / 768;
// What a step is multiplied by behind each code, in 256ths.
inline constexpr std::array<std::int32_t, 16> kAdpcmGrowth = {230, 230, 230, 230, 307, 409, 512, 614,
                                                              768, 614, 512, 409, 307, 230, 230, 230};

// A code of four bits as the number that it is.
constexpr std::int32_t NibbleOf(unsigned code) {
    return static_cast<std::int32_t>(code ^ 8) - 8;
}

constexpr std::int32_t AdpcmPrediction(const AdpcmCoefficients& coefficients, std::int32_t before,
                                       std::int32_t before_that) {
    // Without a sign, as the coefficients of a stranger's file may leave 32 bits.
    const std::uint32_t sum =
        static_cast<std::uint32_t>(before) * static_cast<std::uint32_t>(coefficients.First) +
        static_cast<std::uint32_t>(before_that) * static_cast<std::uint32_t>(coefficients.Second);
    return static_cast<std::int32_t>(sum) >> 8;
}

constexpr std::int32_t AdpcmSample(std::int32_t prediction, std::int32_t nibble, std::int32_t step) {
    return std::clamp(prediction + nibble * step, -32'768, 32'767);
}

constexpr std::int32_t NextAdpcmStep(std::int32_t step, unsigned code) {
    return std::clamp((step * kAdpcmGrowth[code]) >> 8, kLeastAdpcmStep, kMostAdpcmStep);
}

} // namespace kelvash::audio
