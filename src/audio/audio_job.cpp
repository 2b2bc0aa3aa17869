#include "audio/audio_job.h"

#include <cmath>

#include "audio/audio_plan.h"
#include "audio/fragments.h"
#include "audio/messages.h"
#include "audio/mp3_frames.h"
#include "audio/mp3_settings.h"
#include "audio/mp3_tools.h"
#include "audio/wav_converter.h"
#include "audio/wave_chunks.h"
#include "foundation/files.h"
#include "foundation/lock.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"

namespace kelvash::audio {

namespace {

constexpr std::int16_t kStepDecode = 0; // in messages

// The second pass over one file after the other.
class AudioWorker {
  public:
    AudioWorker(AudioJob& job, const std::vector<PlannedFile>& plan, BarPlace place)
        : job_(job), plan_(plan), place_(place) {
        progress_.bar.place = place;
        for (const PlannedFile& file : plan)
            steps_ += file.Steps();
    }

    void Run() {
        DeleteTemporaries();
        bool go_on = true;
        for (number_ = 0; go_on && number_ < plan_.size(); ++number_) {
            TheUser().PumpEvents();
            go_on = !TheUser().StopRequested() && (TakeFile(plan_[number_]) || AskGoOn());
            DeleteTemporaries();
        }
        if (TheUser().StopRequested()) TellStop();
        job_.LastConversionOk = job_.LastConversionError.empty();
        if (go_on) TheUser().SetLabel(place_, LoadMessage(msg::kJobTerminated));
    }

  private:
    std::string Temporary(const Fragment& name) const { return job_.TargetFolder + LoadFragment(name); }

    void DeleteTemporaries() const {
        for (const Fragment& name : {fragment::kJobDecoded, fragment::kJobStandard, fragment::kJobForEncoder,
                                     fragment::kJobResult, fragment::kJobMp3Result})
            DeleteFile(Temporary(name));
    }

    // A line of the log for the current file.
    void Log(MessageId text, const std::string& target = {}) const {
        TheUser().SetLabel(place_, "[" + std::to_string(number_ + 1) + "\\" + std::to_string(plan_.size()) +
                                       LoadMessageOfOthers(text, {'"' + FileNameOf(file_) + '"', target}));
        TheUser().PumpEvents();
    }

    void BeginStep() {
        progress_.from = Share(done_);
        progress_.share = Share(1);
    }
    void EndStep() {
        ++done_;
        ProgressPercent(progress_.bar, done_, steps_, Counted::Nothing);
    }
    double Share(int steps) const { return steps_ == 0 ? 0 : static_cast<double>(steps) / steps_; }

    bool FailStep(std::string message, std::int16_t step) {
        error_ = std::move(message);
        failed_step_ = step;
        return false;
    }

    // False for a step that has failed, or was stopped.
    bool TakeFile(const PlannedFile& file) {
        file_ = source_ = file.Source;
        std::int16_t step = file.Step;
        if (file.IsMp3 && !Decode(step)) return false;
        if (file.Rewrites && !Unpack(step)) return false;
        if (step == kStepEncode ? !Encode(file) : step > kStepNone && !Convert(step)) return false;
        return PutInPlace(file);
    }

    // Also through a standard wave where no single step leads on.
    bool Decode(std::int16_t& step) {
        const std::string decoded = Temporary(fragment::kJobDecoded);
        Log(msg::kJobLogDecode);
        BeginStep();
        if (!DecodeMp3(source_, decoded, progress_, true))
            return FailStep(LoadMessage(msg::kJobDecodeFailed, {FileNameOf(file_)}) + mp3_run.Mp3LastError,
                            kStepDecode);
        source_ = decoded;
        EndStep();
        step = StepOf(source_);
        if (step != kNoStep) return true;
        const std::string standard = Temporary(fragment::kJobStandard);
        Log(msg::kJobLogToStandard);
        if (!ConvertWave(standard, kStepToStandard)) return false;
        DeleteFile(decoded);
        step = StepOf(source_);
        return true;
    }

    // A wave of the wanted kind comes to it again through a standard one.
    bool Unpack(std::int16_t& step) {
        Log(msg::kJobLogToStandard);
        if (!ConvertWave(Temporary(fragment::kJobStandard), kStepFrom4Bits)) return false;
        EndStep();
        step = kStepTo4Bits;
        return true;
    }

    std::int16_t StepOf(const std::string& path) const {
        std::string description;
        AudioKind kind = AudioKind::None;
        return AnalyseWavFormat(path, job_.TargetKind, description, kind);
    }

    bool ConvertWave(const std::string& target, std::int16_t mode) {
        std::string error;
        if (!WavConverter(source_, target, mode, error)) return FailStep(error, mode);
        source_ = target;
        return true;
    }

    bool Convert(std::int16_t step) {
        Log(msg::kJobLogConvert, TargetText(job_.TargetKind, mp3_settings));
        return ConvertWave(Temporary(fragment::kJobResult), step);
    }

    bool Encode(const PlannedFile& file) {
        WavHeader header;
        if (!ReadWavHeader(source_, header)) {
            Log(msg::kJobLogBeforeEncoding);
            if (!ConvertWave(Temporary(fragment::kJobForEncoder), kStepToStandard)) return false;
        }
        if (!file.IsMp3) EndStep();
        const std::string result = Temporary(fragment::kJobMp3Result);
        Log(msg::kJobLogEncode, TargetText(job_.TargetKind, mp3_settings));
        BeginStep();
        if (!EncodeMp3(source_, result, progress_, true))
            return FailStep(LoadMessage(msg::kJobEncodeFailed) + ": " + mp3_run.Mp3LastError, kStepEncode);
        if (!FileExists(result)) return FailStep(LoadMessage(msg::kJobNoTarget), kStepEncode);
        source_ = result;
        return true;
    }

    bool PutInPlace(const PlannedFile& file) {
        if (file.Steps() > 0) EndStep();
        if (file.KeepsOriginal && !KeepOriginal(file)) return false;
        const bool stands = EqualNoCase(source_, file.Target) ||
                            (EqualNoCase(source_, file.Source) ? CopyFileWhole(source_, file.Target)
                                                               : RenameFile(source_, file.Target));
        if (!stands) return FailStep(LoadMessage(msg::kJobNotCopied) + file.Target, file.Step);
        job_.Converted.push_back({file.Source, file.Target});
        return true;
    }

    // As a copy, so that the name always leads to a whole file.
    bool KeepOriginal(const PlannedFile& file) {
        const std::string base = StripExtension(file.Source) + LoadFragment(fragment::kJobOriginal);
        const std::string extension = ExtensionOf(FileNameOf(file.Source));
        std::string kept = base + extension;
        for (int number = 2; FileExists(kept); ++number)
            kept = base + std::to_string(number) + extension;
        if (CopyFileWhole(file.Source, kept) && FlushFile(kept)) return true;
        return FailStep(LoadMessage(msg::kJobNotKept) + file.Source, file.Step);
    }

    // ReportStepError: true if the next file is to be taken.
    bool AskGoOn() {
        if (TheUser().StopRequested()) return false;
        if (job_.LastConversionError.empty()) job_.LastConversionError = error_;
        job_.Failed.push_back({file_, error_});
        const std::string report = FileNameOf(file_) + "'" + kLineBreak + LoadMessage(msg::kJobStepError) +
                                   StepName(failed_step_) + " (" + std::to_string(failed_step_) +
                                   ") : " + error_ + kLineBreak;
        return AskYesNo(MessageStyle::Question, LoadMessageOfOthers(msg::kJobStepFailed, {report}));
    }

    void TellStop() {
        const MessageText text = LoadMessage(msg::kJobBroken);
        job_.Stopped = true;
        if (job_.LastConversionError.empty()) job_.LastConversionError = text;
        ShowMessage(MessageStyle::Plain, text);
    }

    AudioJob& job_;
    const std::vector<PlannedFile>& plan_;
    BarPlace place_;
    LineProgress progress_;
    int steps_ = 0;
    int done_ = 0;
    std::size_t number_ = 0;
    std::string file_;   // the one at work, as it is told
    std::string source_; // what the next step takes
    std::string error_;
    std::int16_t failed_step_ = 0;
};

bool Refuse(AudioJob& job, const MessageText& text) {
    job.LastConversionError = text;
    TellCritical(text);
    return false;
}

// The temporary files have fixed names: one job a folder.
bool TakeFolder(AudioJob& job, FolderLock& lock) {
    LockHolder holder;
    if (!CreateFolder(job.TargetFolder))
        return Refuse(job, LoadMessage(msg::kJobNoFolder) + job.TargetFolder);
    const LockResult result =
        lock.Take(job.TargetFolder, LockKind::Change, LoadMessage(msg::kDoingConversion), holder);
    return result == LockResult::Taken || Refuse(job, LoadMessage(msg::kJobFolderInUse) + job.TargetFolder);
}

} // namespace

bool ConvertAudioFiles(AudioJob& job) {
    return ShowForm(job) && job.LastConversionOk;
}

void RunAudioJob(AudioJob& job, BarPlace place) {
    const JobScope scope(Stop::Offered);
    FolderLock lock;
    std::vector<PlannedFile> plan;
    TheUser().SetLabel(place, LoadMessage(msg::kJobPreparing));
    if (TakeFolder(job, lock) && PlanAudioJob(job, plan)) AudioWorker(job, plan, place).Run();
}

bool StandsFor(const ConvertedFile& converted) {
    constexpr double kTolerance = 0.2;
    const double seconds = AudioSeconds(converted.Result);
    return seconds > 0 && std::abs(seconds - AudioSeconds(converted.Source)) <= kTolerance &&
           FlushFile(converted.Result);
}

double AudioSeconds(const std::string& path) {
    return EndsWithNoCase(path, LoadFragment(fragment::kMp3Sound)) ? Mp3TrueSeconds(path) : WaveSeconds(path);
}

} // namespace kelvash::audio
