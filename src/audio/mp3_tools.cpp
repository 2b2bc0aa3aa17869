#include "audio/mp3_tools.h"

#include <algorithm>

#include "audio/encoder_progress.h"
#include "audio/fragments.h"
#include "audio/messages.h"
#include "audio/mp3_frames.h"
#include "audio/tool_folder.h"
#include "audio/wave_header.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/tool.h"
#include "foundation/user.h"

namespace kelvash::audio {

constinit Mp3Run& mp3_run = State<Mp3Run>::Get();

namespace {

using LineManager = void (*)(LineProgress&, const std::string&, bool, bool&);

bool Fail(std::string error) {
    mp3_run.Mp3LastError = std::move(error);
    return false;
}

void SetBarTo(LineProgress& progress, double done) {
    ProgressPercent(progress.bar, done, 1, Counted::Nothing);
}

struct ToolRun {
    std::string Program;
    Arguments Words;
    std::string Folder;
    LineManager Manage;
};

bool RunTool(const ToolRun& run, LineProgress& progress, bool quiet) {
    const auto read = [&](const std::string& line, bool start) {
        bool stop = false;
        // A label that isn't the tool's stays as it is.
        if (!start || !quiet) run.Manage(progress, line, start, stop);
        if (!start && !quiet) TheUser().SetLabel(progress.bar.place, CleanLine(line));
        return stop;
    };
    if (quiet) SetBarTo(progress, progress.from);
    const Captured captured =
        CaptureOutput(run.Program, run.Words, read, LineMode::WholeLines, {}, run.Folder);
    mp3_run.Mp3LastOutput = CleanText(captured.output);
    if (!captured.ok && TheUser().StopRequested()) return Fail(LoadMessage(msg::kToolStopped));
    if (!captured.ok) return Fail(LoadMessage(msg::kToolNotStarted) + run.Program);
    if (!quiet) {
        TheUser().SetLabel(progress.bar.place, {});
        SetBarTo(progress, 0);
    }
    return true;
}

// Why a program that has run has made nothing: the end of what it has printed.
bool FailWithOutput(MessageId without_output) {
    constexpr std::size_t kMost = 1000;
    const std::string& output = mp3_run.Mp3LastOutput;
    if (Trim(output).empty()) return Fail(LoadMessage(without_output));
    const std::size_t start = output.size() > kMost ? output.find('\n', output.size() - kMost) : 0;
    return Fail(output.substr(start == std::string::npos ? output.size() - kMost : start));
}

// The target keeps its old file if the result can't be had whole beside it.
bool PutInPlace(const std::string& result, const std::string& target) {
    return RenameFile(result, target) || CopyFileWhole(result, target);
}

// False, with the error, if a wave of that many bytes can't be had.
bool HasRoomFor(std::int64_t bytes) {
    constexpr std::int64_t kLongestWave = 0xFFFFFFFF;
    if (bytes > kLongestWave) return Fail(LoadMessage(msg::kDecodedTooLong));
    const std::int64_t room = FreeSpace(AppFolder());
    return room < 0 || bytes <= room ||
           Fail(LoadMessage(msg::kDecodedNoRoom, {FormatSize(bytes), FormatSize(room), AppFolder()}));
}

} // namespace

std::string MadPlayText(std::string_view mp3) {
    return std::string(mp3) + LoadFragment(fragment::kMadPlayOptions) + LoadFragment(fragment::kToolOutWave);
}

std::string LameText(const Mp3Settings& settings, std::string_view wave, std::string_view mp3) {
    std::string text = LoadFragment(fragment::kLameBitrate) + std::to_string(settings.Mp3Bitrate);
    text += settings.Mp3Channels == 1 ? LoadFragment(fragment::kLameMono) : " ";
    if (settings.Mp3Frequency != 0)
        text += LoadFragment(fragment::kLameResample) + std::to_string(settings.Mp3Frequency) + " ";
    return text + " \"" + std::string(wave) + "\" \"" + std::string(mp3) + "\"";
}

Arguments WordsOf(std::string_view text) {
    Arguments words;
    bool quoted = false, in_word = false;
    for (const char c : text) {
        if (c == '"') {
            quoted = !quoted;
            if (quoted && !in_word) words.emplace_back();
            in_word = true;
        } else if (c == ' ' && !quoted) {
            in_word = false;
        } else {
            if (!in_word) words.emplace_back();
            in_word = true;
            words.back() += c;
        }
    }
    return words;
}

bool DecodeMp3(const std::string& mp3Path, const std::string& wavPath, LineProgress& progress, bool quiet) {
    constexpr std::int64_t kEmptyWave = 44; // madplay writes it also for what is no mp3
    mp3_run = {};
    if (!FileExists(mp3Path)) return Fail(LoadMessage(msg::kMp3NotFound) + mp3Path);
    const std::string program = FindTool(LoadFragment(fragment::kMadPlay));
    if (program.empty()) return Fail(LoadMessage(msg::kMissingMadPlay));
    if (!HasRoomFor(Mp3DecodedSize(mp3Path))) return false;
    progress.total = std::max(1, Mp3DurationSeconds(mp3Path));
    const std::string in = LoadFragment(fragment::kToolInMp3);
    const ToolFolder folder;
    if (!folder.TakeIn(mp3Path, in)) return Fail(LoadMessage(msg::kNoToolFolder) + AppFolder());
    if (!RunTool({program, WordsOf(MadPlayText(in)), folder.Path(), GestioneMadPlay}, progress, quiet))
        return false;
    const std::string wave = folder.Path() + "\\" + LoadFragment(fragment::kToolOutWave);
    if (FileSize(wave) <= kEmptyWave) return FailWithOutput(msg::kNothingDecoded);
    return PutInPlace(wave, wavPath) || Fail(LoadMessage(msg::kCannotCopyWave) + wavPath);
}

bool EncodeMp3(const std::string& wavPath, const std::string& mp3Path, LineProgress& progress, bool quiet) {
    mp3_run = {};
    const std::string program = FindTool(LoadFragment(fragment::kLame));
    if (program.empty()) return Fail(LoadMessage(msg::kMissingLame, {AppFolder(), kLineBreak}));
    WavHeader header;
    if (!ReadWavHeader(wavPath, header))
        return Fail(LoadMessage(msg::kNotStandardWave, {FileNameOf(wavPath)}));
    progress.total = 0;
    const ToolFolder folder;
    if (!folder.TakeIn(wavPath, LoadFragment(fragment::kToolInWave)))
        return Fail(LoadMessage(msg::kNoToolFolder) + AppFolder());
    const std::string in = folder.Path() + "\\" + LoadFragment(fragment::kToolInWave);
    const std::string out = folder.Path() + "\\" + LoadFragment(fragment::kToolOutMp3);
    const std::string text = LameText(mp3_settings, PathFor(program, in), PathFor(program, out));
    if (!RunTool({program, WordsOf(text), folder.Path(), GestioneLame}, progress, quiet)) return false;
    if (FileSize(out) <= 0) return FailWithOutput(msg::kNothingEncoded);
    return PutInPlace(out, mp3Path) || Fail(LoadMessage(msg::kCannotCopyMp3) + mp3Path);
}

} // namespace kelvash::audio
