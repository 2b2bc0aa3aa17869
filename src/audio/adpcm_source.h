// Microsoft ADPCM with any blocks and coefficients, decoded here.
#pragma once

#include <istream>
#include <memory>

#include "audio/wave_layout.h"
#include "audio/wave_source.h"

namespace kelvash::audio {

// Nothing for a format that no block can have. A `fact` that the last block may end with is the length.
std::unique_ptr<WaveSource> OpenAdpcm(std::unique_ptr<std::istream> file, const WaveLayout& layout);

} // namespace kelvash::audio
