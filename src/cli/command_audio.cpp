// Commands on sound files, of levels or not.
#include <memory>

#include "audio/audio_facts.h"
#include "audio/audio_job.h"
#include "cli/command.h"
#include "cli/messages.h"
#include "cli/steps.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::cli {

namespace {

using nlohmann::ordered_json;

struct AudioRun {
    std::vector<std::string> typed;
    std::string to;
    std::string out; // as typed
    ordered_json files = ordered_json::array();
};

ordered_json FactsAsJson(const std::string& typed, const std::string& path) {
    const audio::AudioFacts facts = audio::FactsOf(path);
    const auto of_wave = [&](auto value) { return facts.IsMp3 ? ordered_json() : ordered_json(value); };
    ordered_json json = {{"file", typed},
                         {"kind", of_wave(static_cast<int>(facts.Kind))},
                         {"format", facts.Format},
                         {"rate", of_wave(facts.Header.SampleRate)},
                         {"channels", of_wave(facts.Header.Channels)},
                         {"bits", of_wave(facts.Header.BitsPerSample)},
                         {"seconds", facts.Seconds},
                         {"estimate", facts.IsMp3 ? ordered_json(facts.Estimate) : ordered_json()},
                         {"track", facts.IsTrack}};
    if (facts.IsNoise) ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kCliAudioNoise) + path);
    return json;
}

// The paths of the typed files; false after a message.
bool TakeFiles(const AudioRun& run, std::vector<std::string>& paths) {
    for (const std::string& typed : run.typed) {
        std::string path;
        if (!TakePath(typed, path)) return false;
        if (!FileExists(path)) {
            TellCritical(LoadMessage(msg::kCliNoAudioFile) + typed);
            return false;
        }
        paths.push_back(path);
    }
    return true;
}

bool Info(Session& session, AudioRun& run) {
    std::vector<std::string> paths;
    if (!TakeHome(session, MissingHome::Make) || !TakeFiles(run, paths)) return false;
    for (std::size_t i = 0; i < paths.size(); ++i)
        run.files.push_back(FactsAsJson(run.typed[i], paths[i]));
    return true;
}

audio::AudioKind KindCalled(const std::string& name) {
    if (name == "audio") return audio::AudioKind::TrleAudio;
    if (name == "samples") return audio::AudioKind::TrleSamples;
    return name == "mp3" ? audio::AudioKind::Mp3 : audio::AudioKind::Standard;
}

// What became of each file: its place, or why it has none.
void ReportFiles(AudioRun& run, const audio::AudioJob& job) {
    for (std::size_t i = 0; i < job.Files.size(); ++i) {
        ordered_json json = {{"file", run.typed[i]}, {"out", nullptr}, {"error", nullptr}};
        for (const audio::ConvertedFile& converted : job.Converted)
            if (EqualNoCase(converted.Source, job.Files[i])) json["out"] = converted.Result;
        for (const audio::FailedFile& failed : job.Failed)
            if (EqualNoCase(failed.Source, job.Files[i])) json["error"] = failed.Error;
        run.files.push_back(std::move(json));
    }
}

bool Convert(Session& session, AudioRun& run) {
    audio::AudioJob job;
    job.TargetKind = KindCalled(run.to);
    if (!TakeHome(session, MissingHome::Make) || !TakeFiles(run, job.Files) ||
        !TakePath(run.out, job.TargetFolder))
        return false;
    const bool converted = audio::ConvertAudioFiles(job);
    ReportFiles(run, job);
    if (!converted && !job.Stopped) TellCritical(LoadMessage(msg::kCliAudioFailed) + job.LastConversionError);
    return converted && job.Converted.size() == job.Files.size();
}

Argument FilesArgument(AudioRun& run) {
    return {.name = "FILE", .value = &run.typed, .about = "Waves or mp3 files", .required = true};
}

ResultField FilesField(const std::shared_ptr<AudioRun>& run) {
    return {.name = "files", .heading = msg::kCliAudioFiles, .value = [run] { return run->files; }};
}

Command InfoCommand() {
    const auto run = std::make_shared<AudioRun>();
    return {.name = "info",
            .about = "Shows the format and the length of sound files",
            .arguments = {FilesArgument(*run)},
            .run = [run](Session& session) { return Info(session, *run); },
            .fields = {FilesField(run)}};
}

Command ConvertCommand() {
    const auto run = std::make_shared<AudioRun>();
    return {.name = "convert",
            .about = "Converts sound files",
            .arguments = {{.name = "--to",
                           .value = &run->to,
                           .about = "The format",
                           .required = true,
                           .choices = {"standard", "samples", "audio", "mp3"}},
                          PathArgument("OUT", run->out),
                          FilesArgument(*run)},
            .run = [run](Session& session) { return Convert(session, *run); },
            .fields = {FilesField(run)}};
}

} // namespace

Command AudioCommand() {
    return {.name = "audio", .about = "Sound files", .parts = {InfoCommand(), ConvertCommand()}};
}

} // namespace kelvash::cli
