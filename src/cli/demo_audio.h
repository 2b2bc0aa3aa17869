// The demo's sounds: short tones in the two wave forms that the game knows.
#pragma once

#include <string>

namespace kelvash::cli {

// A track of the game's audio folder: Microsoft ADPCM, 44100 Hz, stereo, behind the 90-byte head that the
// game skips without a look. Ends on a whole block.
std::string TrackWave(double hertz, double seconds);
// An effect of its samples folder: 22050 Hz, mono, 16 bits.
std::string SampleWave(double hertz, double seconds);

} // namespace kelvash::cli
