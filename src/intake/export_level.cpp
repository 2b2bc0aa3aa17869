#include "intake/export_level.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/known_names.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "foundation/zip_module.h"
#include "intake/apply_config.h"
#include "intake/level_config.h"
#include "swap/compression.h"
#include "swap/marker.h"

namespace kelvash::intake {

namespace {

std::string Text(MessageId id) {
    return LoadMessage(id, {});
}

bool RemoveTree(const std::string& folder) {
    Bar bar{BarPlace::CallerForm, -1};
    return !FolderExists(folder) || RemoveFolderTree(folder, bar);
}

// The folders of one export; they go when it ends, whichever way.
struct ExportFolders {
    std::string out = AppFolder() + Text(MessageId::kExportFolder);
    std::string decompressed; // empty if nothing had to be

    ExportFolders() = default;
    ExportFolders(const ExportFolders&) = delete;
    ExportFolders& operator=(const ExportFolders&) = delete;
    ~ExportFolders() {
        if (!decompressed.empty())
            static_cast<void>(RemoveTree(decompressed)); // it is emptied before each use
        static_cast<void>(RemoveTree(out));              // as is this
    }
};

// Copies files by a mask. False, after a message unless the user stopped it, if one can't be copied.
bool CopyMatching(const std::string& from, const std::string& mask, const std::string& to, Bar& bar) {
    const std::vector<std::string> files = ListFiles(from, mask);
    const KnownNames names(to);
    double done = 0;
    for (const std::string& file : files) {
        if (TheUser().StopRequested()) return false;
        if (!CopyFileStoppable(file, to + "\\" + FileNameOf(file))) {
            if (!TheUser().StopRequested()) TellCritical(Text(MessageId::kExportCopyError) + file);
            return false;
        }
        ProgressPercent(bar, ++done, static_cast<double>(files.size()));
        TheUser().PumpEvents();
    }
    return true;
}

// The level's files as the game wants them.
bool TakeFiles(const core::LevelRecord& level, ExportFolders& folders, Bar& bar) {
    const std::string folder = core::LevelFolder(level.Code, true);
    if (core::archive.CdMissing) {
        TellCritical(Text(MessageId::kExportCdMissing) +
                     core::FilesFolder(core::LevelFolder(level.Code, false)));
        return false;
    }
    const std::string files = core::FilesFolder(folder);
    if (!swap::DecompressLevelFiles(files, folders.decompressed, true)) {
        TellCritical(Text(MessageId::kExportDecompressing));
        return false;
    }
    return CopyMatching(folders.decompressed.empty() ? files : folders.decompressed, "*", folders.out, bar);
}

bool TakeSaves(const core::LevelRecord& level, const std::string& out, Bar& bar) {
    const std::string source = swap::CurrentLevelCode() == level.Code
                                   ? core::TrleFolder()
                                   : core::StashFolder(core::LevelFolder(level.Code, false));
    return CopyMatching(source, Text(MessageId::kExportSavegameMask), out, bar);
}

bool TakeScreenshots(const core::LevelRecord& level, const std::string& out, ProgressDialog& progress) {
    const std::string source = core::ScreenshotsFolder(core::LevelFolder(level.Code, false));
    const std::vector<std::string> masks = Split(Text(MessageId::kExportShotMasks), '|');
    const bool any = std::any_of(masks.begin(), masks.end(),
                                 [&](const std::string& mask) { return AnyFile(source, mask); });
    if (!any || !AskYesNo(MessageStyle::Question, Text(MessageId::kExportShotsQuestion))) return true;
    progress.Label(Text(MessageId::kExportShots));
    return std::all_of(masks.begin(), masks.end(), [&](const std::string& mask) {
        return CopyMatching(source, mask, out, progress.bar);
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

std::optional<std::string> AskTarget(const core::LevelRecord& level) {
    constexpr std::size_t kFolderWidth = 256;
    const std::string name =
        LoadMessage(MessageId::kExportName, {SafeFileName(std::string(Trim(level.Name)))});
    const std::optional<std::string> target =
        TheUser().SaveFile({Text(MessageId::kExportTitle), Text(MessageId::kExportFilter),
                            std::string(Trim(core::profile.DownloadFolder)), name});
    if (target && FitText(FolderOf(*target), kFolderWidth) == FolderOf(*target))
        core::profile.DownloadFolder = FolderOf(*target);
    return target;
}

// Makes the zip of the out folder. False after a message, or without one when the user stopped it.
bool MakeZip(const std::string& out, const std::string& target, ProgressDialog& progress) {
    progress.Label(Text(MessageId::kExportZipping) + target);
    std::vector<std::string> entries;
    std::string message;
    if (ZipFolder(out, target, entries, Recurse::No, progress.bar, message)) return true;
    if (!TheUser().StopRequested()) TellCritical(Text(MessageId::kExportZipError) + kLineBreak + message);
    return false;
}

// Makes the zip and gives its path; nothing if there is none.
std::optional<std::string> Export(const core::LevelRecord& level) {
    ExportFolders folders;
    if (!RemoveTree(folders.out) || !CreateFolder(folders.out)) {
        TellCritical(Text(MessageId::kExportCannotEmpty) + folders.out);
        return std::nullopt;
    }
    ProgressDialog progress(BarPlace::StoppableDialog, Text(MessageId::kExportCopying));
    if (!TakeFiles(level, folders, progress.bar) || !TakeSaves(level, folders.out, progress.bar) ||
        !TakeScreenshots(level, folders.out, progress))
        return std::nullopt;
    FillConfig(level, folders.out);
    if (!WriteLevelConfig(folders.out + Text(MessageId::kConfigName))) return std::nullopt;
    ConfigApplied = false;
    const std::optional<std::string> target = AskTarget(level);
    const bool made = target && MakeZip(folders.out, *target, progress);
    progress.Label(Text(MessageId::kExportRemoving));
    return made ? target : std::nullopt;
}

} // namespace

bool ExportLevel() {
    const std::int32_t index = core::LevelIndex(core::SelectedLevel());
    if (index < 0) {
        ShowMessage(MessageStyle::Exclamation, Text(MessageId::kExportNoLevel));
        return false;
    }
    const std::optional<std::string> zip = Export(core::archive.Levels[static_cast<std::size_t>(index)]);
    if (zip) ShowMessage(MessageStyle::Plain, Text(MessageId::kExportDone) + *zip);
    return zip.has_value();
}

} // namespace kelvash::intake
