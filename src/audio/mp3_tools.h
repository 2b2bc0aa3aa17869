// Decoding and encoding of mp3 files by the outside programs madplay and lame: those of the application's
// folder, else the system's.
//
// A run has a folder of its own below the application's, where the source stands as "in.mp3" or "in.wav", so
// that no name is taken for an option and runs side by side don't mix; it is gone afterwards, and what a
// killed run has left goes at the next start. A stop by the user ends the program. Neither shows a box.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "audio/mp3_settings.h"
#include "foundation/line_progress.h"
#include "foundation/process.h"

namespace kelvash::audio {

// What the latest run has left.
struct Mp3Run {
    std::string Mp3LastError;  // why it gave false
    std::string Mp3LastOutput; // what the program printed
};
extern constinit Mp3Run& mp3_run;

// Decode a file to the wave that madplay makes of it, and encode a standard wave by mp3_settings. The bar of
// `progress` moves while the program runs; unless `quiet` the label at its place shows what it prints. The
// result has replaced a file of its name when they give true; false leaves that as it was.
[[nodiscard]] bool DecodeMp3(const std::string& mp3Path, const std::string& wavPath, LineProgress& progress,
                             bool quiet);
[[nodiscard]] bool EncodeMp3(const std::string& wavPath, const std::string& mp3Path, LineProgress& progress,
                             bool quiet);

// The argument texts, to the blank.
std::string MadPlayText(std::string_view mp3);
std::string LameText(const Mp3Settings& settings, std::string_view wave, std::string_view mp3);
// The words of such a text: blanks part them, but not between double quotes.
Arguments WordsOf(std::string_view text);

} // namespace kelvash::audio
