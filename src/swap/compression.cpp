#include "swap/compression.h"

#include "core/level_draft.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/known_names.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/plain_name.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/compression_messages.h"
#include "swap/fragments.h"
#include "swap/level_audio.h"
#include "swap/picture.h"
#include "swap/unpack_guard.h"

namespace kelvash::swap {

namespace {

// Where a packed file is unpacked to; nothing if its name without ".zl" is none that a file can have.
std::optional<std::string> UnpackedPath(const std::string& folder, const std::string& zl_path) {
    const std::optional<PlainName> name = PlainName::From(StripExtension(FileNameOf(zl_path)));
    return name ? std::optional(PathIn(folder, *name)) : std::nullopt;
}

void TellDecompressFailure(MessageId id, const std::string& name) {
    TellCritical(LoadMessage(id) + name);
}

// Empties a temporary folder of the application's folder, or makes it. False if files of another use stay.
bool MakeFresh(const std::string& folder) {
    return DeleteFiles(folder, "*") && CreateFolder(folder);
}

std::string TempDecFolder() {
    return AppFolder() + LoadFragment(fragment::kTempDecFolder);
}

// A folder that lacks a file of the level would be taken for the whole level.
bool FillTempDec(const std::string& folder, bool (*wanted)(const std::string& name), std::string& temp) {
    const std::string target = TempDecFolder();
    bool filled = MakeFresh(target);
    const KnownNames names(target);
    for (const std::string& file : ListFiles(folder, "*"))
        if (filled && wanted(FileNameOf(file))) filled = CopyFile(file, target + "\\" + FileNameOf(file));
    if (filled) {
        temp = target;
        return true;
    }
    TellCritical(LoadMessage(msg::kTempDecFailed) + target);
    RemoveFolder(target);
    return false;
}

bool IsPlain(const std::string& name) {
    return !MatchesMask(name, LoadFragment(fragment::kZlMask));
}

// The compressed files aren't copied first: they would only be thrown away again.
bool UnpackFiles(const std::vector<std::string>& packed, const std::string& folder, std::string& temp) {
    ProgressDialog dialog(BarPlace::ZipDialog, LoadMessage(msg::kDecompressCaption));
    dialog.Label(LoadMessage(msg::kDecompressCopying));
    if (!FillTempDec(folder, IsPlain, temp)) return false;
    UnpackGuard guard(temp);
    const KnownNames names(temp);
    const auto unpack = [&packed](std::size_t i) { return UnpackInMemory(packed[i]); };
    const auto store = [&](std::size_t i, std::optional<MadeFile> made) {
        const std::string& file = packed[i];
        dialog.Label(LoadMessage(msg::kUnzippingFile, {FileNameOf(file)}));
        TheUser().PumpEvents();
        const std::optional<std::string> target = UnpackedPath(temp, file);
        if (!target || !guard.Unpack(file, *target, std::move(made).value_or(MadeFile()))) {
            if (guard.Refused())
                RemoveFolder(temp); // the user wants none of it on his disk
            else
                TellDecompressFailure(msg::kDecompressFailed, FileNameOf(file));
            return false;
        }
        ProgressPercent(dialog.bar, static_cast<double>(i + 1), static_cast<double>(packed.size()));
        return true;
    };
    return ParallelMap(JobOver(packed), unpack, store) == ParallelEnd::Done;
}

// False after a message.
bool DecodeTracks(const std::string& folder, std::string& temp) {
    if (!AnyFile(temp.empty() ? folder : temp, LoadFragment(fragment::kMp3Mask))) return true;
    if (temp.empty() && !CopyToTempDec(folder, temp)) return false;
    const TracksOutcome outcome = DecodeCopies(temp);
    if (outcome.Result == Tracks::Failed) TellCritical(LoadMessage(msg::kConversionFailed) + outcome.Error);
    return outcome.Result == Tracks::Ready;
}

bool UndoPicture(const std::string& folder, std::string& temp) {
    const std::string picture = LoadFragment(fragment::kLoadJpg);
    if (!FileExists(folder + picture)) return true;
    if (temp.empty() && !CopyToTempDec(folder, temp)) return false;
    // A picture that can't be converted isn't told: the game shows its own then.
    if (JpegToBitmap(temp + picture, temp + LoadFragment(fragment::kLoadBmp))) DeleteFile(temp + picture);
    return true;
}

} // namespace

bool CopyToTempDec(const std::string& folder, std::string& temp) {
    return FillTempDec(
        folder, [](const std::string&) { return true; }, temp);
}

bool DecompressLevelFiles(const std::string& folder, std::string& temp, bool decode_mp3) {
    temp.clear();
    core::EndStoring(FolderOf(folder));
    const std::vector<std::string> packed = ListFiles(folder, LoadFragment(fragment::kZlMask));
    if (!packed.empty() && !UnpackFiles(packed, folder, temp)) {
        temp.clear(); // what is there stays till the next use
        return false;
    }
    if ((!decode_mp3 || DecodeTracks(folder, temp)) && UndoPicture(folder, temp)) return true;
    if (!temp.empty()) RemoveFolder(temp);
    temp.clear();
    return false;
}

std::string DecompressOneFile(const std::string& path, bool show_dialog) {
    const std::string folder = AppFolder() + LoadFragment(fragment::kTempFolder);
    const std::optional<std::string> target = UnpackedPath(folder, path);
    std::optional<ProgressDialog> progress;
    if (show_dialog) progress.emplace(BarPlace::ZipDialog, LoadMessage(msg::kOneFileCaption));
    const bool made = target && MakeFresh(folder);
    UnpackGuard guard(folder);
    const bool unpacked = made && guard.Unpack(path, *target);
    progress.reset();
    if (unpacked) return *target;
    if (!guard.Refused()) TellDecompressFailure(msg::kOneFileFailed, FileNameOf(path));
    RemoveTempFolder();
    return {};
}

void RemoveTempFolder() {
    RemoveFolder(AppFolder() + LoadFragment(fragment::kTempFolder));
}

} // namespace kelvash::swap
