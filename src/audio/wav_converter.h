// Turns a wave file into another wave format: the four steps of which conversions are made.
//
// The target is written whole: killed at any instant the program leaves the old file of that name or the new
// one. The source may be any file that libsndfile reads as a wave, mono or stereo, or Microsoft ADPCM with
// blocks and coefficients of any kind. The interface is looked after meanwhile.
#pragma once

#include <cstdint>
#include <string>

namespace kelvash::audio {

// What WavConverter makes of its source.
inline constexpr std::int16_t kFrom4Bits = 1;   // 4-bit ADPCM to PCM of 44100 Hz, stereo, 16 bits
inline constexpr std::int16_t kTo4Bits = 2;     // to the 4-bit ADPCM of the game, 44100 Hz, stereo
inline constexpr std::int16_t kToStandard = 3;  // PCM of any rate to 44100 Hz, stereo, 16 bits
inline constexpr std::int16_t kTo22050Mono = 4; // PCM to 22050 Hz, mono, 16 bits

// Converts `source` into `target`, which it replaces; the mode says what comes out, any wave may go in. False
// on failure with the reason in `errorText`, without blanks at its ends, and the target as it was; on success
// `errorText` is empty.
[[nodiscard]] bool WavConverter(const std::string& source, const std::string& target, std::int16_t mode,
                                std::string& errorText);

} // namespace kelvash::audio
