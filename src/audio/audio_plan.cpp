#include "audio/audio_plan.h"

#include <set>

#include "audio/fragments.h"
#include "audio/messages.h"
#include "audio/mp3_settings.h"
#include "audio/wave_chunks.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/pumping.h"
#include "foundation/text.h"

namespace kelvash::audio {

namespace {

std::string TargetOf(const AudioJob& job, const std::string& source) {
    const Fragment& extension =
        job.TargetKind == AudioKind::Mp3 ? fragment::kJobMp3Extension : fragment::kJobWaveExtension;
    return job.TargetFolder + "\\" + BaseNameOf(source) + LoadFragment(extension);
}

bool PlanFile(AudioJob& job, PlannedFile& file) {
    file.IsMp3 = EndsWithNoCase(file.Source, LoadFragment(fragment::kJobMp3Extension));
    if (file.IsMp3) return true;
    std::string description;
    AudioKind kind = AudioKind::None;
    file.Step = AnalyseWavFormat(file.Source, job.TargetKind, description, kind);
    file.Rewrites = file.Step == kStepNone && kind == AudioKind::TrleAudio && !PlaysInGame(file.Source);
    if (file.Step != kNoStep) return true;
    const MessageText text = LoadMessage(msg::kJobCannotConvert, {FileNameOf(file.Source), description,
                                                                  TargetText(job.TargetKind, mp3_settings)});
    job.LastConversionError = text;
    TellCritical(text);
    return false;
}

// Those whose result would have the name of another file, or of the result of one before them.
std::vector<std::string> LeaveDoubles(const AudioJob& job, std::vector<PlannedFile>& plan) {
    std::set<std::string> targets;
    for (const std::string& name : job.TakenNames)
        targets.insert(FoldCase(job.TargetFolder + "\\" + name));
    std::vector<std::string> left;
    std::erase_if(plan, [&](const PlannedFile& file) {
        if (targets.insert(FoldCase(file.Target)).second) return false;
        left.push_back(FileNameOf(file.Source));
        return true;
    });
    return left;
}

// True if something stands where the file's result is to stand.
bool IsTaken(const PlannedFile& file) {
    return FileExists(file.Target) && !(EqualNoCase(file.Source, file.Target) && file.Steps() == 0);
}

std::vector<std::string> TakenTargets(const std::vector<PlannedFile>& plan) {
    std::vector<std::string> names;
    for (const PlannedFile& file : plan)
        if (IsTaken(file)) names.push_back(FileNameOf(file.Target));
    return names;
}

std::vector<std::string> LeaveTaken(std::vector<PlannedFile>& plan) {
    std::vector<std::string> left;
    std::erase_if(plan, [&](const PlannedFile& file) {
        if (!IsTaken(file)) return false;
        left.push_back(FileNameOf(file.Source));
        return true;
    });
    return left;
}

// A result may take the place of another file of the list: that one has to be read before.
void SettleClashes(const AudioJob& job, std::vector<PlannedFile>& plan) {
    std::vector<std::string> left = LeaveDoubles(job, plan);
    const std::vector<std::string> taken = TakenTargets(plan);
    const bool replaces =
        !taken.empty() && job.OnClash == Clash::Ask &&
        AskYesNo(MessageStyle::Question,
                 LoadMessageOfOthers(msg::kJobReplaceTargets, {CleanLines(taken), kLineBreak}));
    const std::vector<std::string> others = replaces ? std::vector<std::string>() : LeaveTaken(plan);
    if (job.OnClash == Clash::Leave) left.insert(left.end(), others.begin(), others.end());
    for (PlannedFile& file : plan)
        file.KeepsOriginal = EqualNoCase(file.Source, file.Target) && file.Steps() > 0;
    if (!left.empty())
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kJobNamesClash) + CleanLines(left));
}

} // namespace

int PlannedFile::Steps() const {
    if (IsMp3 || Rewrites) return 2;
    // An encoder's source counts once more, since no description is the one that wouldn't.
    return Step == kStepNone ? 0 : Step == kStepEncode ? 2 : 1;
}

bool PlanAudioJob(AudioJob& job, std::vector<PlannedFile>& plan) {
    for (const std::string& source : job.Files) {
        PlannedFile file{.Source = source, .Target = TargetOf(job, source)};
        if (!PlanFile(job, file)) return false;
        plan.push_back(std::move(file));
        PumpNowAndThen();
    }
    SettleClashes(job, plan);
    return true;
}

} // namespace kelvash::audio
