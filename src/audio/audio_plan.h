// The first pass over the files of an AudioJob: which steps each of them takes, and whose names clash.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "audio/audio_job.h"

namespace kelvash::audio {

struct PlannedFile {
    std::string Source;
    std::string Target;
    bool IsMp3 = false;
    std::int16_t Step = kStepNone;
    bool Rewrites = false;      // of the wanted kind, but in a form that the game can't play
    bool KeepsOriginal = false; // its result takes its own place

    // What it counts on the bar.
    int Steps() const;
};

// False, with the reason in the job, after a message: one of the files can't reach the target.
[[nodiscard]] bool PlanAudioJob(AudioJob& job, std::vector<PlannedFile>& plan);

} // namespace kelvash::audio
