// The tracks of a level between mp3, as an Archive may keep them, and the waves that the game plays.
#pragma once

#include <string>

#include "audio/wave_header.h"

namespace kelvash::swap {

enum class Tracks { Ready, Failed, Stopped };
struct TracksOutcome {
    Tracks Result = Tracks::Ready;
    std::string Error{}; // why they failed; what a stop or a failure needs to be told beside it has been
};

// Makes the waves of the game of all mp3 files of a folder that is a copy, which has none of them then.
[[nodiscard]] TracksOutcome DecodeCopies(const std::string& folder);

// Changes the tracks of a folder: its mp3 files into the waves of the game, or its waves into mp3. They are
// made in `through`, which may be the folder itself. A track goes only once its new form is on the disk and
// plays as long; one whose new form would have another file's name stays, told. Unless all is Ready each
// track still has its old form.
[[nodiscard]] TracksOutcome ChangeTracks(const std::string& files, const std::string& through,
                                         audio::AudioKind target);

} // namespace kelvash::swap
