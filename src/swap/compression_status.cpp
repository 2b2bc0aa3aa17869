// Bringing the files of old levels into the forms that the Archive's header has been changed to.
#include "core/archive.h"
#include "core/change.h"
#include "core/level_list.h"
#include "core/sizes.h"
#include "foundation/drives.h"
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
#include "swap/messages.h"
#include "swap/picture.h"
#include "swap/unpack_guard.h"
#include "swap/zl_file.h"

namespace kelvash::swap {

namespace {

const core::ArchiveHeader& Header() {
    return core::archive.Header;
}

// False if the user stops the run, or wants it stopped after a failure. `whole` becomes false when something
// keeps its old form, here and below.
bool ConvertAudio(const std::string& files, bool& whole) {
    const audio::AudioKind target =
        Header().EncodeWavInMp3 ? audio::AudioKind::Mp3 : audio::AudioKind::TrleAudio;
    const Fragment& mask = Header().EncodeWavInMp3 ? fragment::kStatusWavMask : fragment::kMp3Mask;
    if (!AnyFile(files, LoadFragment(mask))) return true;
    const std::string temp = AppFolder() + LoadFragment(fragment::kTempComprFolder);
    TracksOutcome outcome{Tracks::Failed};
    if (CreateFolder(temp) && DeleteFiles(temp, "*"))
        outcome = ChangeTracks(files, temp, target);
    else
        TellCritical(LoadMessage(msg::kNoComprFolder) + temp);
    RemoveFolder(temp);
    if (AnyFile(files, LoadFragment(mask))) whole = false;
    if (outcome.Result == Tracks::Failed)
        return AskYesNo(MessageStyle::Question, LoadMessage(msg::kAudioStatusFailed, {kLineBreak}));
    return outcome.Result == Tracks::Ready;
}

std::vector<std::string> FilesToPack(const std::string& files) {
    if (!Header().CompressFiles) return ListFiles(files, LoadFragment(fragment::kStatusZlMask));
    std::vector<std::string> found;
    for (const Fragment& mask :
         {fragment::kStatusWavMask, fragment::kStatusTr4Mask, fragment::kStatusMp3Mask}) {
        const std::vector<std::string> some = ListFiles(files, LoadFragment(mask));
        found.insert(found.end(), some.begin(), some.end());
    }
    return found;
}

// False if the user stops the run after a failure.
bool PackOrUnpack(const std::string& files, bool& whole) {
    const std::vector<std::string> list = FilesToPack(files);
    if (list.empty()) return true;
    const bool pack = Header().CompressFiles;
    const std::string word = LoadMessage(pack ? msg::kCompressionWord : msg::kDecompressionWord);
    ProgressDialog dialog(BarPlace::ZipDialog, LoadMessage(pack ? msg::kZippingFiles : msg::kUnzippingFiles));
    UnpackGuard guard(files);
    const KnownNames names(files);
    const auto make = [&](std::size_t i) { return pack ? PackInMemory(list[i]) : UnpackInMemory(list[i]); };
    const auto store = [&](std::size_t i, std::optional<MadeFile> ahead) {
        const std::string& file = list[i];
        const MadeFile made = std::move(ahead).value_or(MadeFile());
        dialog.Label(word + LoadMessage(msg::kFileInProgress, {FileNameOf(file)}));
        TheUser().PumpEvents();
        const std::string changed = pack ? file + LoadFragment(fragment::kZlExtension) : StripExtension(file);
        if (pack ? CompressFile(file, changed, made) : guard.Unpack(file, changed, made)) {
            if (DeleteFile(file)) return true;
            DeleteFile(changed); // the level isn't to hold both
        }
        whole = false;
        return guard.Refused() || AskYesNo(MessageStyle::Question,
                                           LoadMessage(msg::kStatusFileFailed, {word, FileNameOf(file)}));
    };
    return ParallelMap(JobOver(list), make, store) == ParallelEnd::Done;
}

// True if the picture has the new form, or there is none to change.
bool PictureIsConverted(const std::string& files, ProgressDialog& progress) {
    const std::string bitmap = files + LoadFragment(fragment::kLoadBmp);
    const std::string jpeg = files + LoadFragment(fragment::kLoadJpg);
    const bool pack = Header().CompressFiles;
    const std::string& old_form = pack ? bitmap : jpeg;
    if (!FileExists(old_form)) return true;
    progress.Label(pack ? LoadMessage(msg::kConvertingOldBmp) : LoadMessage(msg::kConvertingLoadJpg));
    return (pack ? BitmapToJpeg(bitmap, jpeg) : JpegToBitmap(jpeg, bitmap)) && DeleteFile(old_form);
}

// False if the user stops the run.
bool ChangeLevel(const core::LevelPlace& level, ProgressDialog& progress, bool& whole) {
    progress.Label(LoadMessage(msg::kChangingLevel) + level.Name);
    const std::string files = core::FilesFolder(level.Folder);
    if (!ConvertAudio(files, whole) || !PackOrUnpack(files, whole)) return false;
    if (PictureIsConverted(files, progress)) return true;
    whole = false;
    TellCritical(LoadMessage(msg::kCannotConvertPicture) + level.Name);
    return true;
}

// True if all files have the new form.
bool ChangeLevels() {
    bool whole = true;
    ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(msg::kChangeStatusCaption));
    for (std::int32_t i = 0; i < core::archive.Table.Size(); ++i) {
        const core::LevelPlace level = core::PlaceAt(i);
        if (level.CdNumber <= 0 && !ChangeLevel(level, progress, whole)) return false;
        ProgressPercent(progress.bar, i + 1, core::archive.Table.Size());
    }
    return whole;
}

void TellSizes(double old_size) {
    const auto size = [](double bytes) { return FormatSize(static_cast<std::int64_t>(bytes)) + kLineBreak; };
    ShowMessage(MessageStyle::Plain,
                LoadMessage(msg::kNewSizeReport, {size(Header().MainFolderSize), size(old_size)}));
}

} // namespace

bool ApplyCompressionSettings(const CompressionSettings& settings) {
    const core::Change change(msg::kDoingCompression, core::kHomeFolder | core::kArchiveFolder);
    if (!change) return false;
    core::ArchiveHeader& header = core::archive.Header;
    const bool changed =
        header.CompressFiles != settings.CompressFiles || header.EncodeWavInMp3 != settings.EncodeWavInMp3;
    header.CompressFiles = settings.CompressFiles;
    header.EncodeWavInMp3 = settings.EncodeWavInMp3;
    bool whole = true;
    if (changed && AskYesNo(MessageStyle::Question,
                            LoadMessage(msg::kCompressionChangedQuestion, {kLineBreak, kLineBreak}))) {
        const double old_size = header.MainFolderSize;
        whole = ChangeLevels();
        core::ComputeArchiveSize(core::Report::Silent);
        TellSizes(old_size);
    }
    core::ArchiveTouched();
    core::RefreshLevelList();
    return whole;
}

} // namespace kelvash::swap
