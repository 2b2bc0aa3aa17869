// Waves of all codings but Microsoft ADPCM, read by libsndfile.
#pragma once

#include <istream>
#include <memory>

#include "audio/wave_source.h"

namespace kelvash::audio {

// Nothing for what libsndfile doesn't read as a wave file.
std::unique_ptr<WaveSource> OpenBySndfile(std::unique_ptr<std::istream> file);

} // namespace kelvash::audio
