// How mp3 files are encoded: the three values that every form and command shares.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "audio/wave_header.h"

namespace kelvash::audio {

struct Mp3Settings {
    std::int32_t Mp3Bitrate = 24;  // kbit/s
    std::int16_t Mp3Channels = 1;  // 1 mono, 2 stereo
    std::int32_t Mp3Frequency = 0; // Hz; 0 leaves it to the encoder
};
// Those that were chosen last in this run.
extern constinit Mp3Settings& mp3_settings;

// What can be chosen, in the order of the lists.
inline constexpr std::array<std::int32_t, 12> kMp3Bitrates = {128, 112, 96, 80, 64, 56,
                                                              48,  40,  32, 24, 16, 8};
inline constexpr std::array<std::int32_t, 8> kMp3Frequencies = {0,     44100, 32000, 22050,
                                                                16000, 12000, 11025, 8000};
inline constexpr std::array<std::int16_t, 2> kMp3Channels = {2, 1};

// A choice of each list as it is shown.
std::string FrequencyText(std::int32_t frequency);
std::string ChannelsText(std::int16_t channels);

// The new size against the source wave: "6.75 %". It takes 128 kbit/s for 36 percent.
std::string Mp3EstimateText(std::int32_t bitrate);

// The text of a kind for a message: "44100 stereo 4 bits", "Mp3  22050 24 Kbps mono"; empty for those that
// have none.
std::string TargetText(AudioKind kind, const Mp3Settings& settings);

} // namespace kelvash::audio
