#include "audio/converter.h"

#include <algorithm>

#include "audio/audio_job.h"
#include "audio/fragments.h"
#include "audio/messages.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/strangers_files.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::audio {

namespace {

std::string TempFolder() {
    return AppFolder() + LoadFragment(fragment::kConverterTemp);
}

AudioKind TargetOf(const Converter& converter) {
    switch (converter.Mode) {
        case ConverterMode::EncodeWave:
            return AudioKind::Mp3;
        case ConverterMode::DecodeMp3:
        case ConverterMode::ConvertWave:
            break;
    }
    return converter.WaveTarget;
}

bool IsWanted(const Converter& converter, const std::string& path) {
    return EndsWithNoCase(path, SourceExtension(converter.Mode)) &&
           std::none_of(converter.Files.begin(), converter.Files.end(),
                        [&](const std::string& known) { return EqualNoCase(known, path); });
}

// Offers to play the last result.
void OfferListening(const AudioJob& job) {
    if (job.Converted.empty() || !FileExists(job.Converted.back().Result)) return;
    const std::string result = job.Converted.back().Result;
    if (AskYesNo(MessageStyle::Question,
                 LoadMessageOfOthers(msg::kConverterListen, {kLineBreak, FileNameOf(result)})))
        OpenAudioFile(result);
}

} // namespace

std::string SourceExtension(ConverterMode mode) {
    return LoadFragment(mode == ConverterMode::DecodeMp3 ? fragment::kConverterMp3
                                                         : fragment::kConverterWave);
}

bool OpenConverter() {
    const std::string folder = TempFolder();
    if (CreateFolder(folder) && DeleteFiles(folder, "*")) return true;
    TellCritical(LoadMessage(msg::kConverterNoTemp) + folder);
    return false;
}

void CloseConverter() {
    TheUser().SetLabel(BarPlace::CallerForm, LoadMessage(msg::kConverterRemoving));
    RemoveFolder(TempFolder());
}

void AddFile(Converter& converter) {
    const bool mp3 = converter.Mode == ConverterMode::DecodeMp3;
    const std::string filter = LoadMessage(mp3 ? msg::kConverterMp3Filter : msg::kConverterWaveFilter);
    const std::string folder = converter.Files.empty() ? std::string() : FolderOf(converter.Files.back());
    if (const auto file = TheUser().OpenFile({LoadMessage(msg::kConverterFileTitle), filter, folder, {}}))
        AddFiles(converter, {*file});
}

void AddFolder(Converter& converter) {
    const auto folder = TheUser().ChooseFolder(LoadMessage(msg::kConverterFolderTitle), {});
    if (!folder) return;
    const std::vector<std::string> files = ListFiles(*folder, "*" + SourceExtension(converter.Mode));
    if (files.empty())
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kConverterNoneThere) + *folder);
    AddFiles(converter, files);
}

void AddFiles(Converter& converter, const std::vector<std::string>& files) {
    for (const std::string& file : files)
        if (IsWanted(converter, file)) converter.Files.push_back(file);
}

void RemoveFile(Converter& converter, std::int64_t index) {
    if (index < 0 || index >= static_cast<std::int64_t>(converter.Files.size())) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kConverterNoSelection));
        return;
    }
    const auto file = converter.Files.begin() + index;
    if (AskYesNo(MessageStyle::Question, LoadMessage(msg::kConverterRemove) + FileNameOf(*file)))
        converter.Files.erase(file);
}

void ChooseTargetFolder(Converter& converter) {
    const std::string start =
        converter.TargetFolder.empty() ? LoadFragment(fragment::kConverterStart) : converter.TargetFolder;
    if (const auto folder = TheUser().ChooseFolder(LoadMessage(msg::kConverterTarget), start))
        converter.TargetFolder = *folder;
}

std::string TotalText(const Converter& converter) {
    std::int64_t bytes = 0;
    for (const std::string& file : converter.Files)
        bytes += FileSize(file);
    return std::to_string(converter.Files.size()) + LoadMessage(msg::kConverterTotal) + FormatSize(bytes) +
           ")";
}

bool ConvertFiles(Converter& converter) {
    if (Trim(converter.TargetFolder).empty()) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kConverterNoTarget));
        return false;
    }
    if (converter.Files.empty()) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kConverterNoFiles));
        return false;
    }
    AudioJob job;
    job.Files = converter.Files;
    job.TargetFolder = converter.TargetFolder;
    job.TargetKind = TargetOf(converter);
    if (!ConvertAudioFiles(job)) {
        if (!job.Stopped) TellCritical(LoadMessage(msg::kConverterFailed) + job.LastConversionError);
        return false;
    }
    OfferListening(job);
    return AskYesNo(MessageStyle::Question, LoadMessage(msg::kConverterExit));
}

void OpenAudioFile(const std::string& path) {
    if (OpenStrangersFile(path) == Opening::Failed)
        TellCritical(LoadMessage(msg::kConverterCannotOpen) + path);
}

} // namespace kelvash::audio
