#include "swap/remove.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "core/archive.h"
#include "core/change.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/backup.h"
#include "swap/fragments.h"
#include "swap/messages.h"
#include "swap/moved_saves.h"
#include "swap/restore.h"
#include "swap/saves.h"
#include "swap/take_out.h"
#include "trle/trle_folder.h"
#include "trle_state/fragments.h"
#include "trle_state/marker.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::FoundRecord;
using trle_state::Holds;
using trle_state::IsStill;
using trle_state::kNoLevel;
using trle_state::LevelOwner;
using trle_state::LookAtTrle;
using trle_state::MarkerField;
using trle_state::MarkerPath;
using trle_state::OwnerOf;
using trle_state::ReadSwapRecord;
using trle_state::RecordedFile;
using trle_state::RecordState;
using trle_state::RepairMarker;
using trle_state::SwapRecord;
using trle_state::SwapStep;
using trle_state::TrleState;
using trle_state::WriteSwapRecord;

namespace {

// Nothing when the saves are put away; else the result of the removal. Without a folder to go to they are
// rescued.
std::optional<std::int32_t> PutSavesAway(TrleState& state, bool knows_stash) {
    const std::string& folder = state.OwnerFolder;
    if (folder.empty()) {
        state.Record.Step = SwapStep::Leaving;
        const bool away = RescueSavesOf(state.Record.Owner) && WriteSwapRecord(state.Record);
        return away ? std::nullopt : std::optional(kRemovalRefused);
    }
    switch (StashLevelFiles(folder, state.Record, knows_stash)) {
        case StashResult::Done:
            return std::nullopt;
        case StashResult::CannotEmpty:
            TellCritical(LoadMessage(msg::kCannotEmptyStash, {folder}));
            return 0;
        case StashResult::CannotCopy:
            TellCritical(LoadMessageOfOthers(msg::kCannotStash, {folder, kLineBreak}));
            return kRemovalRefused;
        case StashResult::CannotNote:
            return kRemovalRefused;
        case StashResult::CannotDelete:
            TellCritical(LoadMessage(msg::kCannotDeleteSave) + ListSaves().front());
            return kRemovalRefused;
    }
    return std::nullopt;
}

LevelOwner Original() {
    return OwnerOf(core::PlaceOf(0));
}

// From here on the original configuration is in, but for files that are still to come back, and the saves of
// level 0000 are in its stash.
bool NoteOriginal(const LevelOwner& original, std::vector<RecordedFile> missing = {}) {
    SwapRecord record;
    record.Owner = original;
    record.LeftOverwritten = std::move(missing);
    return WriteSwapRecord(record);
}

// Where TRLE's own files are in, their saves are level 0000's.
std::int32_t StashOriginal(TrleState& state) {
    const LevelOwner original = Original();
    state.Record.Owner = original;
    state.OwnerFolder = original.Folder;
    if (const auto failure = PutSavesAway(state, true)) return *failure;
    return NoteOriginal(original) ? 0 : kRemovalRefused;
}

// What a file that was half copied when the program was killed is called.
void DeletePartialFiles(const SwapRecord& record) {
    std::string last = "?";
    for (const RecordedFile& file : record.Copied) {
        const std::string folder = FolderOf(file.Target);
        if (folder != last && StaysInside(file.Target))
            DeleteFile(core::TrleFolder() + folder + "\\" + std::string(kPartialFile));
        last = folder;
    }
}

// While the record is at Leaving no marker counts; one that stays behind must not count afterwards.
bool DeleteMarker() {
    if (!FileExists(MarkerPath()) || DeleteFile(MarkerPath())) return true;
    TellCritical(LoadMessage(msg::kCannotDeleteMarker) + MarkerPath());
    return false;
}

// False after a message if a file couldn't be deleted, or the record can't be written.
bool TakeFilesOut(const SwapRecord& record) {
    KeptFiles kept;
    DeletePartialFiles(record);
    bool noted = DeleteCopied(record, kept);
    if (noted) {
        // The originals come first: a marker that can't be deleted keeps none of them away.
        std::vector<RecordedFile> missing = RestoreOverwritten(record, !BackupIsValid(), kept);
        noted = DeleteMarker() && NoteOriginal(Original(), std::move(missing));
    }
    TellKept(kept);
    return noted;
}

// A backup that is another folder's is none.
bool BackupIsUsable() {
    const BackupState state = StateOfBackup();
    return state == BackupState::Valid || state == BackupState::Unsure;
}

// The saves go home in any case; without a backup the level leaves only if nothing is lost by it.
bool MayLeave(TrleState& state) {
    if (BackupIsUsable() || CanRestoreAll(state.Record, state.FromRecord)) return true;
    const bool is_home =
        state.FromRecord && !state.OwnerFolder.empty() && CopySavesHome(state.OwnerFolder, state.Record);
    TellCritical(LoadMessage(msg::kBackupGone) +
                 (is_home ? kLineBreak + LoadMessage(msg::kSavesAreHome) : std::string()));
    return false;
}

std::int32_t TakeOut(TrleState& state) {
    if (state.Code != 0 && !MayLeave(state)) return kRemovalRefused;
    if (const auto failure = PutSavesAway(state, state.FromRecord || state.Code == 0)) return *failure;
    if (!(state.Code == 0 ? DeleteMarker() && NoteOriginal(Original()) : TakeFilesOut(state.Record)))
        return 0;
    return state.Code;
}

void TellLevelFolderMissing(const std::string& folder) {
    TellCritical(LoadMessageOfOthers(msg::kLevelFolderMissing, {folder, kLineBreak}));
}

// The level's folder is gone, or no level of the Archive has the marker's code: nobody can say where its
// saves belong. Its files stay, and go with the next level; where none is to come they go at once.
std::int32_t LeaveIn(TrleState& state, const std::string& folder, std::int32_t code, std::int32_t wanted) {
    TellLevelFolderMissing(folder);
    if (wanted == 0) return TakeOut(state);
    return RescueSavesOf(state.Record.Owner) ? code : kRemovalRefused;
}

// What nothing tells of counts as original from here on, so that a backup would be made of it: where there is
// none, only who asks for the original configuration itself has it so.
std::int32_t RemoveUnknown(TrleState& state, std::int32_t wanted) {
    const std::string value = MarkerField(LoadFragment(fragment::kMarkerLevelCode), state.MarkerText);
    if (!state.MarkerStands || value.empty()) {
        if (wanted != 0 && !BackupIsUsable()) {
            TellContentUnknown();
            return kRemovalRefused;
        }
        if (!state.MarkerText.empty())
            TellCritical(LoadMessageOfOthers(msg::kMarkerDamaged, {"\"" + MarkerPath() + "\"", kLineBreak}));
        if (const auto failure = PutSavesAway(state, false)) return *failure;
        if (!DeleteMarker() || !NoteOriginal(Original())) return kRemovalRefused;
        return state.MarkerStands ? kNoLevel : 0;
    }
    const std::int32_t code = LeadingNumber(value);
    if (const std::string folder = core::LevelFolder(code, false); !FolderExists(folder))
        return LeaveIn(state, folder, code, wanted);
    return TakeOut(state);
}

std::int32_t RemoveLevelFound(TrleState& state, std::int32_t code) {
    const bool is_homeless = state.Code != 0 && state.OwnerFolder.empty();
    if (state.Code == code && code >= 0) {
        if (is_homeless) TellLevelFolderMissing(state.Record.Owner.Folder);
        if (state.FromRecord) RepairMarker(state.Record);
        return code;
    }
    return is_homeless ? LeaveIn(state, state.Record.Owner.Folder, state.Code, code) : TakeOut(state);
}

// A level that is in takes what an earlier one left along when it goes.
bool LeavesWork(const SwapRecord& record) {
    return !record.LeftOverwritten.empty() ||
           (record.Step == SwapStep::Original && !record.LeftCopied.empty());
}

bool IsUnfinished(const TrleState& state) {
    return state.Content == Holds::CutShort || LeavesWork(state.Record);
}

// Files that a locked folder has kept at the last removal. False after a message if one still can't go.
bool DeleteLeftovers(SwapRecord& record, KeptFiles& kept) {
    SwapRecord left;
    left.LeftCopied = std::move(record.LeftCopied);
    record.LeftCopied.clear();
    std::erase_if(left.LeftCopied, [](const RecordedFile& file) {
        return !IsStill(core::TrleFolder() + file.Target, file.Stamp);
    });
    if (DeleteCopied(left, kept)) return true;
    record.LeftCopied = std::move(left.LeftCopied);
    return false;
}

// Ends what a full disk or a locked folder has kept from its end at the last removal. Originals whose place
// a level holds wait until it goes, and so do language files: the level may have one of another name.
CutShort EndLeftovers(SwapRecord record) {
    SwapRecord missing;
    missing.LeftOverwritten = std::move(record.LeftOverwritten);
    const bool is_in = record.Step == SwapStep::In;
    record.LeftOverwritten.clear();
    if (is_in) {
        const auto waits = [](const RecordedFile& file) {
            return FileExists(core::TrleFolder() + file.Target) ||
                   EndsWithNoCase(file.Target, LoadFragment(fragment::kDatExtension));
        };
        std::copy_if(missing.LeftOverwritten.begin(), missing.LeftOverwritten.end(),
                     std::back_inserter(record.LeftOverwritten), waits);
        std::erase_if(missing.LeftOverwritten, waits);
    }
    KeptFiles kept;
    const bool deleted = is_in || DeleteLeftovers(record, kept);
    const std::vector<RecordedFile> still = RestoreOverwritten(missing, false, kept);
    record.LeftOverwritten.insert(record.LeftOverwritten.end(), still.begin(), still.end());
    TellKept(kept);
    if (!WriteSwapRecord(record)) return CutShort::Refused;
    return is_in || (still.empty() && deleted) ? CutShort::Ended : CutShort::FilesLeft;
}

} // namespace

bool IsCutShort() {
    const FoundRecord found = ReadSwapRecord();
    const SwapStep step = found.Record.Step;
    return found.State == RecordState::Good && step != SwapStep::In &&
           (step != SwapStep::Original || LeavesWork(found.Record));
}

CutShort EndCutShort(bool untold) {
    if (!FolderExists(core::TrleFolder())) return IsCutShort() ? CutShort::Refused : CutShort::Ended;
    TrleState state = LookAtTrle();
    if (!IsUnfinished(state)) return CutShort::Ended;
    const core::Change change(msg::kDoingEndSwap, core::kSwap | (untold ? core::kUntold : 0U));
    if (!change) return CutShort::Refused;
    state = LookAtTrle(); // another program may have ended it meanwhile
    if (state.Content != Holds::CutShort)
        return LeavesWork(state.Record) ? EndLeftovers(state.Record) : CutShort::Ended;
    if (state.Record.Step == SwapStep::Restoring) {
        if (!EndFullRestore()) return CutShort::Refused;
    } else {
        if (const auto failure = PutSavesAway(state, true))
            return *failure == 0 ? CutShort::FilesLeft : CutShort::Refused;
        if (!TakeFilesOut(state.Record)) return CutShort::FilesLeft;
    }
    ShowMessage(MessageStyle::Plain, LoadMessage(msg::kCutShortEnded));
    return CutShort::Ended;
}

std::int32_t RemovePreviousLevel(std::int32_t code) {
    const core::Change change(msg::kDoingTakeOut, core::kSwap);
    if (!change) return kRemovalRefused;
    if (!trle::TrleIsThere()) return kRemovalRefused;
    if (MessageText why; !BringMovedSavesHome(Rescue::Yes, why)) {
        TellCritical(why);
        return kRemovalRefused;
    }
    TrleState state = LookAtTrle();
    if (IsUnfinished(state)) {
        const CutShort ended = EndCutShort();
        if (ended != CutShort::Ended) return ended == CutShort::FilesLeft ? 0 : kRemovalRefused;
        state = LookAtTrle();
    }
    switch (state.Content) {
        case Holds::Original:
            return StashOriginal(state);
        case Holds::Level:
            return RemoveLevelFound(state, code);
        case Holds::Unknown:
        case Holds::CutShort:
            return RemoveUnknown(state, code);
    }
    return kRemovalRefused;
}

} // namespace kelvash::swap
