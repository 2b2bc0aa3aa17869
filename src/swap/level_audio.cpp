#include "swap/level_audio.h"

#include "audio/audio_job.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "swap/compression_messages.h"
#include "swap/fragments.h"
#include "swap/track_cache.h"

namespace kelvash::swap {

namespace {

TracksOutcome OutcomeOf(const audio::AudioJob& job) {
    return {job.Stopped ? Tracks::Stopped : Tracks::Failed, job.LastConversionError};
}

// The names of a folder's files as they are and as they are unpacked.
std::vector<std::string> NamesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const std::string& file : ListFiles(folder, "*")) {
        names.push_back(FileNameOf(file));
        if (MatchesMask(names.back(), LoadFragment(fragment::kTrackZlMask)))
            names.push_back(StripExtension(names.back()));
    }
    return names;
}

std::string WaveOf(const std::string& mp3) {
    return ReplaceExtension(mp3, LoadFragment(fragment::kTrackWavEnd));
}

void RemoveResults(const audio::AudioJob& job) {
    for (const audio::ConvertedFile& converted : job.Converted)
        DeleteFile(converted.Result);
}

// All results in the folder; false, with none of them there, if one can't be had.
bool PlaceResults(const std::string& files, audio::AudioJob& job, std::string& error) {
    std::vector<std::string> placed;
    for (audio::ConvertedFile& converted : job.Converted) {
        const std::string place = files + "\\" + FileNameOf(converted.Result);
        if (!EqualNoCase(place, converted.Result) && !CopyFileWhole(converted.Result, place))
            error = LoadMessage(msg::kTrackNotPlaced) + place;
        converted.Result = place;
        if (error.empty() && !audio::StandsFor(converted))
            error = LoadMessage(msg::kTrackNotWhole) + FileNameOf(converted.Source);
        placed.push_back(place);
        if (!error.empty()) break;
    }
    if (error.empty() && FlushDrive(files)) return true;
    for (const std::string& place : placed)
        DeleteFile(place);
    RemoveResults(job);
    return false;
}

} // namespace

TracksOutcome DecodeCopies(const std::string& folder) {
    const TrackCache cache;
    audio::AudioJob job;
    job.Files = ListFiles(folder, LoadFragment(fragment::kMp3Mask));
    std::erase_if(job.Files, [&](const std::string& mp3) {
        const std::string wave = WaveOf(mp3);
        return !FileExists(wave) && cache.TakeOut(mp3, wave) && DeleteFile(mp3);
    });
    if (job.Files.empty()) return {};
    job.TargetFolder = folder;
    job.TargetKind = audio::AudioKind::TrleAudio;
    job.OnClash = audio::Clash::Leave;
    if (!audio::ConvertAudioFiles(job)) return OutcomeOf(job);
    for (const audio::ConvertedFile& converted : job.Converted)
        cache.Keep(converted.Source, converted.Result);
    DeleteFiles(folder, LoadFragment(fragment::kMp3Mask));
    return {};
}

TracksOutcome ChangeTracks(const std::string& files, const std::string& through, audio::AudioKind target) {
    audio::AudioJob job;
    const bool encodes = target == audio::AudioKind::Mp3;
    job.Files = ListFiles(files, LoadFragment(encodes ? fragment::kTrackWavMask : fragment::kTrackMp3Mask));
    if (job.Files.empty()) return {};
    job.TargetFolder = through;
    job.TargetKind = target;
    job.OnClash = audio::Clash::Leave;
    job.TakenNames = NamesIn(files);
    if (!audio::ConvertAudioFiles(job)) {
        RemoveResults(job);
        return OutcomeOf(job);
    }
    std::string error;
    if (!PlaceResults(files, job, error)) return {Tracks::Failed, error};
    for (const audio::ConvertedFile& converted : job.Converted)
        DeleteFile(converted.Source);
    return {};
}

} // namespace kelvash::swap
