#include "swap/restore.h"

#include <algorithm>
#include <string>

#include "core/change.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "core/start_up.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "swap/install.h"
#include "swap/journal.h"
#include "swap/marker.h"

namespace kelvash::swap {

namespace {

using core::BackupFolder;

void ShowLabel(const Bar& bar, MessageId id, const std::string& behind = {}) {
    TheUser().SetLabel(bar.place, LoadMessage(id, {}) + behind);
    TheUser().PumpEvents();
}

// Everything in the root goes but programs, the set-up's log and shortcuts.
void DeleteRootFiles() {
    const std::vector<std::string> kept = Split(LoadMessage(MessageId::kKeptExtensions, {}), '|');
    for (const std::string& file : ListFiles(core::TrleFolder(), "*")) {
        const std::string extension = ExtensionOf(FileNameOf(file));
        const bool stays = std::any_of(kept.begin(), kept.end(), [&](const std::string& other) {
            return EqualNoCase(extension, other);
        });
        if (!stays) DeleteFile(file);
    }
}

// Copies the files of a folder over another with the bar moving by files; stops at the first failure with
// false.
bool CopyFilesShown(const std::string& source, const std::string& target, Bar& bar) {
    const std::vector<std::string> files = ListFiles(source, "*");
    double done = 0;
    for (const std::string& file : files) {
        if (!CopyFile(file, target + "\\" + FileNameOf(file))) return false;
        ProgressPercent(bar, ++done, static_cast<double>(files.size()));
    }
    return true;
}

// The backup may hold savegames: half of one, left by a killed program, would count as a new save.
void RestoreRootFiles() {
    for (const std::string& file : ListFiles(BackupFolder(), "*"))
        if (!CopyFileWhole(file, core::TrleFolder() + "\\" + FileNameOf(file))) return;
}

void RestoreFolder(const std::string& folder, Bar& bar) {
    ShowLabel(bar, MessageId::kRestoringFolder, folder);
    const bool emptied = DeleteFiles(core::TrleFolder() + folder, "*");
    if (!CopyFilesShown(BackupFolder() + folder, core::TrleFolder() + folder, bar) || !emptied)
        TellCritical(LoadMessage(MessageId::kErrorRestoringFolder, {}) + folder);
}

void RestoreFiles(Bar& bar) {
    const std::string data = LoadMessage(MessageId::kDataFolder, {});
    ShowLabel(bar, MessageId::kRestoreRemovingCritical);
    DeleteRootFiles();
    DeleteFiles(core::TrleFolder() + data, LoadMessage(MessageId::kRestoreTr4Mask, {}));
    DeleteFiles(core::TrleFolder() + data, LoadMessage(MessageId::kRestorePakMask, {}));
    ShowLabel(bar, MessageId::kRestoreCopying);
    RestoreRootFiles();
    CopyFilesShown(BackupFolder() + data, core::TrleFolder() + data, bar);
    if (!core::profile.FullBackup) return;
    for (const std::string& folder : Split(LoadMessage(MessageId::kFullBackupFolders, {}), '|'))
        RestoreFolder(folder, bar);
}

} // namespace

bool SwapToOriginal() {
    if (!InstallLevel(0)) return false;
    core::RefreshLevelList();
    return true;
}

bool FastRestore() {
    const core::Change change(MessageId::kDoingFastRestore, core::kSwap);
    if (!change) return false;
    if (SwapToOriginal()) {
        ShowMessage(MessageStyle::Plain, LoadMessage(MessageId::kRestoreFastDone, {}));
        return true;
    }
    TellCritical(LoadMessage(MessageId::kRestoreFastFailed, {}));
    return false;
}

void FullRestore(Bar& bar, bool show_progress) {
    const core::Change change(MessageId::kDoingFullRestore, core::kSwap);
    if (!change) return;
    ShowLabel(bar, MessageId::kRestoreRemovingLevel);
    // Whether the level could be taken out or not, the files below make the folder original.
    const bool swapped = SwapToOriginal();
    // The root's saves are about to go; the stash of their level keeps what it has of them from now on.
    const std::optional<SwapJournal> journal = ReadJournal();
    const std::int32_t owner = journal ? journal->SavesOwner : CurrentLevelCode();
    if (!WriteJournal({swapped ? 0 : owner})) return;
    if (show_progress) TheUser().OpenProgress(BarPlace::ProgressDialog, {});
    RestoreFiles(bar);
    if (!swapped) static_cast<void>(WriteJournal({0})); // a failure has been told
    if (show_progress) TheUser().CloseProgress(BarPlace::ProgressDialog);
    ShowLabel(bar, MessageId::kRestoreFinished);
    ShowMessage(MessageStyle::Plain, LoadMessage(MessageId::kRestoreDone, {}));
    core::RefreshLevelList();
}

} // namespace kelvash::swap
