#include "intake/export_level.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>

#include "companion/savegames.h"
#include "core/archive.h"
#include "core/change.h"
#include "core/kept_folders.h"
#include "core/level_list.h"
#include "core/path_field.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/known_names.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/plain_name.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/apply_config.h"
#include "intake/fragments.h"
#include "intake/level_config.h"
#include "intake/messages.h"
#include "swap/backup.h"
#include "swap/compression.h"
#include "zip/zip_module.h"

namespace kelvash::intake {

namespace {

bool RemoveTree(const std::string& folder) {
    Bar bar{BarPlace::CallerForm, -1};
    return !FolderExists(folder) || RemoveFolderTree(folder, bar);
}

// The folders of one export; they go when it ends, whichever way.
struct ExportFolders {
    std::string out = AppFolder() + LoadFragment(fragment::kExportFolder);
    std::string decompressed;          // empty if nothing had to be
    std::vector<std::string> left_out; // files whose names no zip of ours holds

    ExportFolders() = default;
    ExportFolders(const ExportFolders&) = delete;
    ExportFolders& operator=(const ExportFolders&) = delete;
    ~ExportFolders() {
        if (!decompressed.empty())
            static_cast<void>(RemoveTree(decompressed)); // it is emptied before each use
        static_cast<void>(RemoveTree(out));              // as is this
    }
};

void TellLeftOut(const std::vector<std::string>& files) {
    if (!files.empty())
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kExportNamesRefused, {CleanLines(files)}));
}

// Copies files by a mask. False, after a message unless the user stopped it, if one can't be copied.
bool CopyMatching(const std::string& from, const std::string& mask, ExportFolders& folders, Bar& bar) {
    const std::vector<std::string> files = ListFiles(from, mask);
    const KnownNames names(folders.out);
    double done = 0;
    for (const std::string& file : files) {
        if (TheUser().StopRequested()) return false;
        const std::optional<PlainName> name = PlainName::From(FileNameOf(file));
        if (!name) {
            folders.left_out.push_back(file);
            continue;
        }
        if (!CopyFileStoppable(file, PathIn(folders.out, *name))) {
            if (!TheUser().StopRequested()) TellCritical(LoadMessage(msg::kExportCopyError) + file);
            return false;
        }
        ProgressPercent(bar, ++done, static_cast<double>(files.size()));
        TheUser().PumpEvents();
    }
    return true;
}

// The level's files as the game wants them.
bool TakeFiles(const core::LevelPlace& level, ExportFolders& folders, Bar& bar) {
    const std::string folder = core::ReachFolder(level);
    if (core::archive.CdMissing) {
        TellCritical(LoadMessage(msg::kExportCdMissing) + core::FilesFolder(level.Folder));
        return false;
    }
    const std::string files = core::FilesFolder(folder);
    if (!AnyFile(files, "*")) {
        TellCritical(LoadMessage(msg::kExportNoFiles) + files);
        return false;
    }
    if (!swap::DecompressLevelFiles(files, folders.decompressed, true)) {
        TellCritical(LoadMessage(msg::kExportDecompressing));
        return false;
    }
    const std::string& plain = folders.decompressed.empty() ? files : folders.decompressed;
    // The original configuration has documents only.
    if (level.Code != 0 && !AnyFile(plain, LoadFragment(fragment::kExportLevelMask))) {
        TellCritical(LoadMessage(msg::kExportNoLevelFile) + files);
        return false;
    }
    return CopyMatching(plain, "*", folders, bar);
}

bool TakeSaves(const core::LevelPlace& level, ExportFolders& folders, Bar& bar) {
    return CopyMatching(companion::SlotFolder(level), LoadFragment(fragment::kExportSavegameMask), folders,
                        bar);
}

bool TakeScreenshots(const core::LevelPlace& level, ExportFolders& folders, ProgressDialog& progress) {
    const std::string source = core::ScreenshotsFolder(level.Folder);
    const std::vector<std::string> masks = Split(LoadFragment(fragment::kExportShotMasks), '|');
    const bool any = std::any_of(masks.begin(), masks.end(),
                                 [&](const std::string& mask) { return AnyFile(source, mask); });
    if (!any || !AskYesNo(MessageStyle::Question, LoadMessage(msg::kExportShotsQuestion))) return true;
    progress.Label(LoadMessage(msg::kExportShots));
    return std::all_of(masks.begin(), masks.end(), [&](const std::string& mask) {
        return CopyMatching(source, mask, folders, progress.bar);
    });
}

void FillConfig(const core::LevelRecord& level, const std::string& out) {
    LevelConfig = {};
    LevelConfig.AuthorEmails = Trim(level.Emails);
    LevelConfig.AuthorName = Trim(level.Author);
    LevelConfig.MoreInfoFile = Trim(level.MoreInfoFile);
    LevelConfig.LevelName = Trim(level.Name);
    LevelConfig.AuthorSites = Trim(level.Sites);
    LevelConfig.LevelNote = Trim(level.Note);
    LevelConfig.AuthorMessage = Trim(level.AuthorNote);
    for (const std::string& file : ListFiles(out, "*.*")) {
        const auto size = std::min<std::int64_t>(FileSize(file), std::numeric_limits<std::int32_t>::max());
        LevelConfig.FileNames.push_back(FileNameOf(file));
        LevelConfig.FileSizes.push_back(static_cast<std::int32_t>(size));
    }
    LevelConfig.FileCount = static_cast<std::int32_t>(LevelConfig.FileNames.size());
}

// True if a zip there would replace a file that isn't an export's, or vanish with its folder.
bool IsOurPlace(const std::string& target, const ExportFolders& folders) {
    std::vector<std::string> forbidden = {folders.out, swap::BackupFolder()};
    if (!folders.decompressed.empty()) forbidden.push_back(folders.decompressed);
    if (!core::TrleFolder().empty()) forbidden.push_back(core::TrleFolder());
    for (const core::LevelRecord& other : core::archive.Table)
        forbidden.push_back(core::LevelFolder(other.Code, false));
    forbidden.push_back(core::KeptFolder());
    return IsSamePlace(target, std::string(Trim(core::profile.LastArchive))) ||
           IsSamePlace(target, core::ProfilePath()) ||
           std::any_of(forbidden.begin(), forbidden.end(),
                       [&](const std::string& folder) { return LiesIn(target, folder); });
}

// Nothing on cancel, or after a message.
std::optional<std::string> AskTarget(const core::LevelPlace& level, const ExportFolders& folders) {
    const std::string name = LoadFragment(fragment::kExportName, {SafeFileName(CleanLine(level.Name))});
    const std::optional<std::string> target =
        TheUser().SaveFile({LoadMessage(msg::kExportTitle), LoadMessage(msg::kExportFilter),
                            std::string(Trim(core::profile.DownloadFolder)), name});
    if (target && IsOurPlace(*target, folders)) {
        TellCritical(LoadMessage(msg::kExportBadTarget) + *target);
        return std::nullopt;
    }
    if (target && core::CanKeepPath(FolderOf(*target))) core::profile.DownloadFolder = FolderOf(*target);
    return target;
}

// Makes the zip of the out folder. False after a message, or without one when the user stopped it.
bool MakeZip(const std::string& out, const std::string& target, ProgressDialog& progress) {
    progress.Label(LoadMessage(msg::kExportZipping) + target);
    std::vector<std::string> entries;
    std::string message;
    if (zip::ZipFolder(out, target, entries, zip::Recurse::No, progress.bar, message)) return true;
    if (!TheUser().StopRequested()) TellCritical(LoadMessage(msg::kExportZipError) + kLineBreak + message);
    return false;
}

// Makes the zip and gives its path; nothing if there is none.
std::optional<std::string> Export(const core::LevelPlace& level) {
    ProgressDialog progress(BarPlace::StoppableDialog, LoadMessage(msg::kExportCopying));
    ExportFolders folders; // they go while the dialog still shows it
    if (!RemoveTree(folders.out) || !CreateFolder(folders.out)) {
        TellCritical(LoadMessage(msg::kExportCannotEmpty) + folders.out);
        return std::nullopt;
    }
    if (!TakeFiles(level, folders, progress.bar) || !TakeSaves(level, folders, progress.bar) ||
        !TakeScreenshots(level, folders, progress))
        return std::nullopt;
    TellLeftOut(folders.left_out);
    // One among the level's files is none of this zip.
    DeleteFile(folders.out + LoadFragment(fragment::kConfigName));
    FillConfig(core::archive.Table[level.Index], folders.out);
    if (!WriteLevelConfig(folders.out + LoadFragment(fragment::kConfigName))) return std::nullopt;
    ConfigApplied = false;
    const std::optional<std::string> target = AskTarget(level, folders);
    const bool made = target && MakeZip(folders.out, *target, progress);
    progress.Label(LoadMessage(msg::kExportRemoving));
    return made ? target : std::nullopt;
}

} // namespace

bool ExportLevel() {
    const core::Change change(msg::kDoingExport, core::kAll, core::SelectedLevel());
    if (!change) return false;
    if (!change.Level().IsListed()) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kExportNoLevel));
        return false;
    }
    const std::optional<std::string> zip = Export(change.Level());
    if (zip) ShowMessage(MessageStyle::Plain, LoadMessage(msg::kExportDone) + *zip);
    return zip.has_value();
}

} // namespace kelvash::intake
