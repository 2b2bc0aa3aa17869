// Storing a level's files in the forms that the Archive's header asks for.
#include <algorithm>

#include "core/archive.h"
#include "core/level_draft.h"
#include "core/tr4_info.h"
#include "foundation/files.h"
#include "foundation/known_names.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/compression.h"
#include "swap/compression_messages.h"
#include "swap/fragments.h"
#include "swap/level_audio.h"
#include "swap/picture.h"
#include "swap/zl_file.h"

namespace kelvash::swap {

namespace {

void ShowLabel(const std::string& text) {
    TheUser().SetLabel(BarPlace::CallerForm, text);
    TheUser().PumpEvents();
}

// The level's new files take the place of the old ones. A level that already lies there stays as it is.
bool ReplaceFiles(const std::string& source, const std::string& level_folder, MessageId label) {
    if (EqualNoCase(source, core::FilesFolder(level_folder))) return true;
    ShowLabel(LoadMessage(label));
    const bool replaced = core::StoreLevelFiles(source, level_folder);
    ShowLabel({});
    return replaced;
}

// Waves that can't be encoded go in as they are, if the user wants that.
bool EncodeWaves(const std::string& source) {
    const TracksOutcome outcome = ChangeTracks(source, source, audio::AudioKind::Mp3);
    if (outcome.Result == Tracks::Ready) return true;
    if (outcome.Result == Tracks::Failed)
        TellCritical(LoadMessage(msg::kAudioCompressionFailed) + outcome.Error);
    return AskYesNo(MessageStyle::Question, LoadMessage(msg::kContinueFileCopy));
}

void ConvertLoadPicture(const std::string& source) {
    const std::string bitmap = source + LoadFragment(fragment::kLoadBmp);
    if (!FileExists(bitmap)) return;
    ShowLabel(LoadMessage(msg::kConvertingLoadBmp));
    if (BitmapToJpeg(bitmap, source + LoadFragment(fragment::kLoadJpg))) DeleteFile(bitmap);
    ShowLabel({});
}

// A file whose stored form would have a longer name than a file can stays as it is.
bool IsCompressible(const std::string& file) {
    constexpr std::size_t kExtensionLength = 4;
    constexpr std::size_t kLongestName = 255 - sizeof ".zl.new" + 1; // under which it is written
    if (file.size() < kExtensionLength || FileNameOf(file).size() > kLongestName) return false;
    const std::vector<std::string> extensions = Split(LoadFragment(fragment::kCompressedExtensions), '|');
    const std::string end = file.substr(file.size() - kExtensionLength);
    return std::any_of(extensions.begin(), extensions.end(),
                       [&](const std::string& extension) { return EqualNoCase(end, extension); });
}

bool PackFiles(const std::string& source) {
    const KnownNames names(source);
    std::vector<std::string> files = ListFiles(source, "*.*");
    std::erase_if(files, [](const std::string& file) { return !IsCompressible(file); });
    const auto pack = [&files](std::size_t i) { return PackInMemory(files[i]); };
    const auto store = [&files](std::size_t i, std::optional<MadeFile> made) {
        const std::string& file = files[i];
        ShowLabel(LoadMessage(msg::kCompressingFile, {FileNameOf(file)}));
        const std::string stored = file + LoadFragment(fragment::kZlExtension);
        if (!CompressFile(file, stored, std::move(made).value_or(MadeFile()))) return false;
        if (DeleteFile(file)) return true;
        DeleteFile(stored); // the level isn't to hold both
        return false;
    };
    return ParallelMap(JobOver(files), pack, store) == ParallelEnd::Done;
}

} // namespace

bool CompressLevelFiles(const std::string& source, const core::LevelPlace& level) {
    // Before they are packed, and whatever becomes of the packing: the files may come in plain then. Without
    // it the level only isn't compared with others.
    core::ListTr4(source);
    if (!core::Tr4List.empty()) static_cast<void>(core::WriteTr4Info(level));
    const std::string folder = core::ReachFolder(level);
    if (core::archive.CdMissing) return false;
    if (level.Code != 0) {
        if (core::archive.Header.EncodeWavInMp3 && !EncodeWaves(source)) return false;
        if (core::archive.Header.CompressFiles) {
            ConvertLoadPicture(source);
            if (!PackFiles(source)) return false;
        }
    }
    return ReplaceFiles(source, folder, level.Code == 0 ? msg::kCompressCopying : msg::kFileCopyInProgress);
}

} // namespace kelvash::swap
