// What is known of a sound file, for lists and reports.
#pragma once

#include <cstdint>
#include <string>

#include "audio/wave_header.h"

namespace kelvash::audio {

struct AudioFacts {
    bool IsMp3 = false;
    AudioKind Kind = AudioKind::None; // None for an mp3
    std::string Format;               // as it is shown
    WavHeader Header;                 // of a wave
    double Seconds = 0;               // it plays that long
    std::int32_t Estimate = 0;        // of an mp3: Mp3DurationSeconds
    bool IsTrack = false;             // its name and format are those of a numbered music track
    bool IsNoise = false;             // of the game's kind, but the game plays noise
};
AudioFacts FactsOf(const std::string& path);

// The line of a list: the name, then what it is.
std::string ListLine(const std::string& path);

} // namespace kelvash::audio
