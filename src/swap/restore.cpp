#include "swap/restore.h"

#include <algorithm>
#include <optional>
#include <string>

#include "core/archive.h"
#include "core/change.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "swap/backup.h"
#include "swap/backup_messages.h"
#include "swap/fragments.h"
#include "swap/install.h"
#include "swap/kept_files.h"
#include "swap/messages.h"
#include "swap/saves.h"
#include "trle/fragments.h"
#include "trle/trle_folder.h"
#include "trle_state/fragments.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::FoundRecord;
using trle_state::IsStill;
using trle_state::LevelOwner;
using trle_state::OwnerOf;
using trle_state::ReadSwapRecord;
using trle_state::RecordedFile;
using trle_state::RecordState;
using trle_state::StampOf;
using trle_state::SwapRecord;
using trle_state::SwapStep;
using trle_state::WriteSwapRecord;

namespace {

// One run of the restore: what is told, what was put aside, what went wrong.
struct Restoring {
    Bar& bar;
    SwapRecord record; // its files aren't the user's own
    KeptFiles kept = {};
    std::vector<RecordedFile> missing = {}; // files of the backup that couldn't come
    bool whole = true;
};

void ShowLabel(const Bar& bar, MessageId id, const std::string& behind = {}) {
    TheUser().SetLabel(bar.place, LoadMessage(id) + behind);
    TheUser().PumpEvents();
}

bool IsOfLevel(const SwapRecord& record, const std::string& target) {
    const auto is_it = [&](const RecordedFile& file) {
        return EqualNoCase(file.Target, target) && IsStill(core::TrleFolder() + target, file.Stamp);
    };
    // What was brought back of the saves is in the stash too.
    const auto is_copy = [&](const RecordedFile& save) {
        return EqualNoCase("\\" + save.Target, target) && IsStill(core::TrleFolder() + target, save.Stamp);
    };
    return std::any_of(record.Copied.begin(), record.Copied.end(), is_it) ||
           std::any_of(record.LeftCopied.begin(), record.LeftCopied.end(), is_it) ||
           std::any_of(record.Saves.begin(), record.Saves.end(), is_copy);
}

// Deletes a file of the TRLE folder; one that is nowhere else is put aside, or stays.
bool Clear(Restoring& run, const std::string& file) {
    const std::string target = file.substr(core::TrleFolder().size());
    return (IsOfLevel(run.record, target) || KeepFile(target, run.kept)) && DeleteFile(file);
}

bool ClearFolder(Restoring& run, const std::string& folder, const std::string& mask) {
    bool cleared = true;
    for (const std::string& file : ListFiles(core::TrleFolder() + folder, mask))
        cleared = Clear(run, file) && cleared;
    return cleared;
}

// Everything in the root goes but programs, the set-up's log and shortcuts.
void ClearRootFiles(Restoring& run) {
    const std::vector<std::string> staying = Split(LoadFragment(fragment::kKeptExtensions), '|');
    for (const std::string& file : ListFiles(core::TrleFolder(), "*")) {
        const std::string extension = ExtensionOf(FileNameOf(file));
        const bool stays = std::any_of(staying.begin(), staying.end(), [&](const std::string& other) {
            return EqualNoCase(extension, other);
        });
        run.whole = (stays || Clear(run, file)) && run.whole;
    }
}

// Copies the files of a folder of the backup over TRLE's; with `bar` it moves by files. A file that stands as
// it is in the backup isn't copied again. False if one couldn't come.
bool CopyBack(Restoring& run, const std::string& folder, Bar* bar) {
    const std::vector<std::string> files = ListFiles(BackupFolder() + folder, "*");
    const std::size_t missing_before = run.missing.size();
    double done = 0;
    CreateFolder(core::TrleFolder() + folder);
    for (const std::string& file : files) {
        const std::string target = folder + "\\" + FileNameOf(file);
        const bool stands = IsStill(core::TrleFolder() + target, StampOf(file));
        if (!stands && !(KeepFile(target, run.kept) && CopyFileWhole(file, core::TrleFolder() + target)))
            run.missing.push_back({target, StampOf(file)});
        if (bar != nullptr) ProgressPercent(*bar, ++done, static_cast<double>(files.size()));
    }
    run.whole = run.whole && run.missing.size() == missing_before;
    return run.missing.size() == missing_before;
}

// The files without which no game starts. They have a message of their own: that of a folder is for those
// that only a full backup holds.
void CopyCriticalBack(Restoring& run) {
    const std::string data = LoadFragment(fragment::kDataFolder);
    const bool root_is_back = CopyBack(run, {}, nullptr);
    if (CopyBack(run, data, &run.bar) && root_is_back) return;
    std::string files;
    for (const RecordedFile& file : run.missing)
        files += kLineBreak + core::TrleFolder() + file.Target;
    TellCritical(LoadMessage(msg::kOriginalsNotBack) + files);
}

void RestoreFolder(Restoring& run, const std::string& folder) {
    ShowLabel(run.bar, msg::kRestoringFolder, folder);
    const bool emptied = ClearFolder(run, folder, "*");
    if (!CopyBack(run, folder, &run.bar) || !emptied)
        TellCritical(LoadMessage(msg::kErrorRestoringFolder) + folder);
    run.whole = run.whole && emptied;
}

void RestoreFiles(Restoring& run) {
    const std::string data = LoadFragment(fragment::kDataFolder);
    ShowLabel(run.bar, msg::kRestoreRemovingCritical);
    ClearRootFiles(run);
    for (const Fragment& mask : {fragment::kRestoreTr4Mask, fragment::kRestorePakMask})
        run.whole = ClearFolder(run, data, LoadFragment(mask)) && run.whole;
    ShowLabel(run.bar, msg::kRestoreCopying);
    CopyCriticalBack(run);
    if (!core::profile.FullBackup) return;
    for (const std::string& folder : Split(LoadFragment(fragment::kFullBackupFolders), '|'))
        RestoreFolder(run, folder);
}

// What of the level couldn't be deleted, for the next swap to try again.
std::vector<RecordedFile> LeftOf(SwapRecord&& record) {
    std::vector<RecordedFile> left = std::move(record.Copied);
    left.insert(left.end(), record.LeftCopied.begin(), record.LeftCopied.end());
    std::erase_if(left, [](const RecordedFile& file) {
        return !IsStill(core::TrleFolder() + file.Target, file.Stamp) ||
               FileExists(BackupFolder() + file.Target);
    });
    return left;
}

// Makes everything original; a run that is cut short here is ended at the next start, and a file of the
// backup that couldn't come is brought then. Nothing if it couldn't be begun; else true if all are in their
// place.
std::optional<bool> RestoreAll(Bar& bar) {
    FoundRecord found = ReadSwapRecord();
    Restoring run{bar, found.State == RecordState::Good ? std::move(found.Record) : SwapRecord()};
    run.record.Step = SwapStep::Restoring;
    if (!WriteSwapRecord(run.record)) return std::nullopt;
    RestoreFiles(run);
    TellKept(run.kept);
    // The saves of level 0000 stay in its stash; what the backup holds of them is in the root again.
    SwapRecord original;
    original.Owner = OwnerOf(core::PlaceOf(0));
    original.LeftCopied = LeftOf(std::move(run.record));
    original.LeftOverwritten = std::move(run.missing);
    return WriteSwapRecord(original) && run.whole && original.LeftCopied.empty();
}

Swapped RestoreHere(Bar& bar, bool show_progress) {
    if (!trle::TrleIsThere()) return Swapped::Failed;
    const Door door = RequireBackup();
    if (door != Door::Open) return door == Door::Elsewhere ? Swapped::Elsewhere : Swapped::Failed;
    ShowLabel(bar, msg::kRestoreRemovingLevel);
    // Whether the level could be taken out or not, the files below make the folder original. But saves that
    // couldn't go home are about to be deleted.
    if (!SwapToOriginal() && !RescueSavesOf(LevelOwner())) return Swapped::Failed;
    std::optional<ProgressDialog> progress;
    if (show_progress) progress.emplace(BarPlace::ProgressDialog, std::string());
    const std::optional<bool> restored = RestoreAll(bar);
    progress.reset();
    if (!restored) return Swapped::Failed;
    ShowLabel(bar, msg::kRestoreFinished);
    ShowMessage(MessageStyle::Plain, LoadMessage(msg::kRestoreDone));
    core::RefreshLevelList();
    OfferKeptWaves();
    return *restored ? Swapped::Done : Swapped::Failed;
}

} // namespace

bool SwapToOriginal() {
    if (!InstallLevel(0)) return false;
    core::RefreshLevelList();
    return true;
}

bool FastRestore() {
    const core::Change change(msg::kDoingFastRestore, core::kSwap);
    if (!change) return false;
    if (SwapToOriginal()) {
        ShowMessage(MessageStyle::Plain, LoadMessage(msg::kRestoreFastDone));
        OfferKeptWaves();
        return true;
    }
    TellCritical(LoadMessage(msg::kRestoreFastFailed));
    return false;
}

bool FullRestore(Bar& bar, bool show_progress) {
    return OnChosenFolder(msg::kDoingFullRestore, core::kNoLevel,
                          [&](const core::LevelPlace&) { return RestoreHere(bar, show_progress); });
}

bool EndFullRestore() {
    Bar bar{BarPlace::ProgressDialog, -1};
    return RestoreAll(bar).has_value();
}

} // namespace kelvash::swap
