// The converter of audio files: takes each file of a list through the steps that lead to the wanted format.
//
// Whoever wants files converted calls ConvertAudioFiles, which shows the worker's form; the form calls
// RunAudioJob. A first pass finds the steps of all files, the second one takes them. A stop ends the running
// program or takes effect between steps; what is done by then stays.
#pragma once

#include <string>
#include <vector>

#include "audio/wave_header.h"
#include "foundation/user.h"

namespace kelvash::audio {

// What becomes of a file whose result would take another file's place: it stays as it is, told; or the user
// is asked. Two files with one result always leave the second as it is.
enum class Clash { Leave, Ask };

struct ConvertedFile {
    std::string Source;
    std::string Result;
};

struct FailedFile {
    std::string Source;
    std::string Error;
};

struct AudioJob {
    static constexpr const char* kForm = "Dialog_ConvertiMp3";
    std::vector<std::string> Files; // full paths; what is ".mp3" is decoded first
    std::string TargetFolder;
    AudioKind TargetKind = AudioKind::Standard; // one of the three waves, or mp3
    Clash OnClash = Clash::Ask;
    std::vector<std::string> TakenNames; // of files elsewhere whose place no result may take

    bool LastConversionOk = false;
    std::string LastConversionError;      // the first one
    bool Stopped = false;                 // by the user: no error
    std::vector<ConvertedFile> Converted; // those whose results stand in their places, in order
    std::vector<FailedFile> Failed;
};

// Shows the form in which the job runs. The result is LastConversionOk.
[[nodiscard]] bool ConvertAudioFiles(AudioJob& job);

// Does the job; label and bar are those of a place. Boxes tell what fails.
void RunAudioJob(AudioJob& job, BarPlace place);

// True if a result is on the disk and plays as long as its source, within a fifth of a second: only then may
// the source go.
[[nodiscard]] bool StandsFor(const ConvertedFile& converted);
// The length of a wave or an mp3 in seconds.
double AudioSeconds(const std::string& path);

} // namespace kelvash::audio
