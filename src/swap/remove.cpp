#include "swap/remove.h"

#include <string>
#include <vector>

#include "core/archive.h"
#include "core/change.h"
#include "core/profile.h"
#include "core/start_up.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "swap/journal.h"
#include "swap/marker.h"
#include "swap/saves.h"

namespace kelvash::swap {

namespace {

constexpr std::int32_t kNoCode = -1;

bool IsAudio(const std::string& entry) {
    return StartsWithNoCase(entry, LoadMessage(MessageId::kAudioPrefix, {}));
}

// What one removal works on.
struct Removal {
    std::int32_t code = kNoCode;
    std::vector<std::string> copied;
    std::vector<std::string> overwritten;
};

// A marker without its lists is that of an install cut short; the journal then has the lists that were
// planned.
Removal ReadRemoval(std::int32_t code, const std::string& marker, const std::optional<SwapJournal>& journal) {
    const std::string copied_tag = LoadMessage(MessageId::kMarkerCopied, {});
    if (FindNoCase(marker, copied_tag) == std::string::npos && journal && journal->SavesOwner == code) {
        Removal removal{code, journal->Copied, journal->Overwritten};
        // Waves of the compact backup's kind can't be brought back, and those not yet copied over are still
        // whole.
        if (!core::profile.FullBackup) std::erase_if(removal.overwritten, IsAudio);
        return removal;
    }
    return {code, MarkerList(copied_tag, marker),
            MarkerList(LoadMessage(MessageId::kMarkerOverwritten, {}), marker)};
}

// Deletes what the level copied in. A compact backup holds no waves, so without a full one they stay. An
// entry that leaves the TRLE folder counts as a file that can't be deleted.
bool DeleteCopied(const std::vector<std::string>& copied) {
    if (copied.empty()) return true;
    ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(MessageId::kRemovingFiles, {}));
    double done = 0;
    for (const std::string& entry : copied) {
        const std::string file = core::TrleFolder() + entry;
        const bool stays = !core::profile.FullBackup && IsAudio(entry);
        if (!stays && !(StaysInside(entry) && DeleteFile(file))) {
            TellCritical(LoadMessage(MessageId::kCannotDeleteFile, {}) + file);
            return false;
        }
        ProgressPercent(progress.bar, ++done, static_cast<double>(copied.size()));
    }
    return true;
}

// Brings back what the level overwrote. A file that the backup lacks is gone after this, without a word: the
// copy deletes its target first. That is meant; the choice of the compact backup tells of it.
void RestoreOverwritten(const std::vector<std::string>& overwritten) {
    if (overwritten.empty()) return;
    ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(MessageId::kRestoringFiles, {}));
    double done = 0;
    for (const std::string& entry : overwritten) {
        if (StaysInside(entry)) {
            CopyFile(core::BackupFolder() + entry, core::TrleFolder() + entry);
            ClearReadOnly(core::TrleFolder() + entry);
        }
        ProgressPercent(progress.bar, ++done, static_cast<double>(overwritten.size()));
    }
}

// Whose the saves in the TRLE root are: the journal knows better than the marker.
std::int32_t SavesOwner(const std::optional<SwapJournal>& journal, std::int32_t otherwise) {
    const bool known = journal && FolderExists(core::LevelFolder(journal->SavesOwner, false));
    return known ? journal->SavesOwner : otherwise;
}

// Nothing when the saves are put away; else the result of the removal.
std::optional<std::int32_t> StashFailure(std::int32_t code) {
    const std::string folder = core::LevelFolder(code, false);
    switch (StashLevelFiles(code)) {
        case StashResult::Done:
            return std::nullopt;
        case StashResult::CannotEmpty:
            TellCritical(LoadMessage(MessageId::kCannotEmptyStash, {folder}));
            return 0;
        case StashResult::CannotCopy:
            TellCritical(LoadMessage(MessageId::kCannotStash, {folder, kLineBreak}));
            return kRemovalRefused;
        case StashResult::CannotNote:
            return kRemovalRefused;
        case StashResult::CannotDelete:
            TellCritical(LoadMessage(MessageId::kCannotDeleteSave, {}) + ListSaves().front());
            return kRemovalRefused;
    }
    return std::nullopt;
}

// Without a marker the game's saves are level 0000's, unless a swap was cut short.
std::int32_t StashOriginal(const std::optional<SwapJournal>& journal) {
    if (const auto failure = StashFailure(SavesOwner(journal, 0))) return *failure;
    return WriteJournal({0}) ? 0 : kRemovalRefused;
}

std::int32_t TakeOut(const Removal& removal, const std::optional<SwapJournal>& journal) {
    if (const auto failure = StashFailure(SavesOwner(journal, removal.code))) return *failure;
    if (removal.code != 0) {
        if (!DeleteCopied(removal.copied)) return 0;
        RestoreOverwritten(removal.overwritten);
    }
    // From here on the original configuration is in, and the saves of level 0000 are in its stash.
    if (!WriteJournal({0})) return kRemovalRefused;
    DeleteFile(MarkerPath());
    return removal.code;
}

} // namespace

std::int32_t RemovePreviousLevel(std::int32_t code) {
    const core::Change change(MessageId::kDoingTakeOut, core::kSwap);
    if (!change) return kRemovalRefused;
    const std::optional<SwapJournal> journal = ReadJournal();
    if (!FileExists(MarkerPath())) return StashOriginal(journal);
    const std::string marker = ReadMarker();
    const std::string value = MarkerField(LoadMessage(MessageId::kMarkerLevelCode, {}), marker);
    const std::int32_t previous = value.empty() ? kNoCode : LeadingNumber(value);
    const std::string folder = value.empty() ? std::string() : core::LevelFolder(previous, false);
    if (!folder.empty() && !FolderExists(folder)) {
        TellCritical(LoadMessage(MessageId::kLevelFolderMissing, {folder, kLineBreak}));
        return previous;
    }
    // A level that a swap was cut short over is not in; and level 0000 has no marker to be trusted.
    if (previous == code && previous > 0 && !journal) return previous;
    if (folder.empty() || previous == kNoCode) {
        if (!marker.empty())
            TellCritical(LoadMessage(MessageId::kMarkerDamaged, {"\"" + MarkerPath() + "\"", kLineBreak}));
        DeleteFile(MarkerPath());
        return previous;
    }
    const std::int32_t result = TakeOut(ReadRemoval(previous, marker, journal), journal);
    // The level asked for was half in: it is out now, and has to be installed.
    return result == code ? 0 : result;
}

} // namespace kelvash::swap
