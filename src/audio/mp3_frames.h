// How long an mp3 plays: the program's estimate from its first frame, and the truth from all of them.
//
// Both read the file in small pieces and look after the interface; neither trusts a number that the file
// states beyond what is there, and neither tells of an error.
#pragma once

#include <cstdint>
#include <string_view>

namespace kelvash::audio {

// The estimate by which progress is measured: the file's length at the bit rate of what looks like its first
// frame, less one second. 1 for a missing file, one with no frame, and free format, which states no rate.
std::int32_t Mp3DurationSeconds(std::string_view path);

// The seconds that the frames come to, counted one by one, tags and the tables of encoders left out; 0 if
// there are none. A frame that is cut off at the file's end doesn't count.
double Mp3TrueSeconds(std::string_view path);

// Bytes of the wave that comes of it: 16 bits, stereo.
std::int64_t Mp3DecodedSize(std::string_view path);

} // namespace kelvash::audio
