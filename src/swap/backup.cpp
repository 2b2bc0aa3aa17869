#include "swap/backup.h"

#include <algorithm>

#include "core/archive.h"
#include "core/change.h"
#include "core/level_list.h"
#include "core/ports.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/text.h"
#include "swap/backup_messages.h"
#include "swap/backup_note.h"
#include "swap/fragments.h"
#include "swap/messages.h"
#include "trle/find_trle.h"
#include "trle/fragments.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::Holds;
using trle_state::LookAtTrle;
using trle_state::TrleState;

namespace {

enum class Kind { Full, Compact };

// Nothing if nobody says.
std::optional<Kind> AskKind() {
    const Answer answer = TheUser().Ask(Buttons::YesNo, MessageStyle::Question,
                                        LoadMessage(msg::kFullBackupQuestion, {kLineBreak, kLineBreak}));
    if (answer == Answer::None) return std::nullopt;
    return answer == Answer::Yes ? Kind::Full : Kind::Compact;
}

bool EnoughRoom(std::int64_t needed) {
    const std::string drive = AppFolder().substr(0, 2);
    if (needed == 0 || FreeSpace(AppFolder()) >= needed) return true;
    return AskYesNo(MessageStyle::Exclamation, LoadMessage(msg::kBackupNoRoom, {drive}) + FormatSize(needed) +
                                                   ")" + kLineBreak + kLineBreak +
                                                   LoadMessage(msg::kBackupTryAnyway));
}

// What becomes of the files of a backup that stands already.
enum class Former { Merged, Dropped, Kept };

// A folder that holds a level, or may hold one, is not the original one, whatever the user answers. False
// after a message, which is `level_is_in` where a level is known to be in.
bool IsOriginal(MessageStyle style, MessageId level_is_in) {
    const TrleState state = LookAtTrle();
    if (state.Content == Holds::Original) return true;
    if (state.Content == Holds::Unknown && !state.MarkerStands)
        TellContentUnknown();
    else
        ShowMessage(style, LoadMessageOfOthers(level_is_in, {core::TrleFolder(), kLineBreak}));
    return false;
}

bool HasFullKind(const std::string& folder) {
    return AnyFile(folder + LoadFragment(fragment::kAudioFolder), LoadFragment(fragment::kBackupWaveMask)) &&
           AnyFile(folder + LoadFragment(fragment::kScriptFolder), "*.*");
}

// The application's folder and its backups, where they lie inside TRLE, are none of the original files.
bool IsOurs(const std::string& folder) {
    return IsSamePlace(folder, AppFolder()) ||
           PlaceOf(folder).native().starts_with(PlaceOf(BackupFolder()).native());
}

bool CopyWholeTree(const std::string& trle, const std::string& target, Bar& bar) {
    if (!LiesIn(AppFolder(), trle))
        return CopyTreeShown(trle, target, bar, Existing::Replace, FilesFolders::Copy);
    if (!CreateFolder(target) || !CopyFiles(trle, target, Existing::Replace, "*")) {
        TellCritical(LoadMessage(msg::kBackupNotWhole) + target);
        return false;
    }
    const std::vector<std::string> folders = ListFolders(trle);
    return std::all_of(folders.begin(), folders.end(), [&](const std::string& folder) {
        return IsOurs(folder) || CopyWholeTree(folder, target + "\\" + FileNameOf(folder), bar);
    });
}

// With the main window's bar when its command asked for it; at the start that window isn't there yet.
bool CopyFull(const std::string& trle, bool at_start) {
    std::optional<ProgressDialog> progress;
    Bar bar{BarPlace::MainWindow, -1};
    if (at_start) {
        progress.emplace(BarPlace::ProgressDialog, LoadMessage(msg::kFullCaption));
        progress->Label(LoadMessage(msg::kFullCopying, {trle}));
        bar.place = BarPlace::ProgressDialog;
    }
    return CopyWholeTree(trle, NewBackupFolder(), bar);
}

// The folders and the root's files of a compact backup.
bool CopyCompactRoot(const std::string& trle, ProgressDialog& progress) {
    const std::string backup = NewBackupFolder();
    progress.Label(LoadMessage(msg::kCompactFolders));
    for (const std::string& folder : Split(LoadFragment(fragment::kCompactFolderNames), '|'))
        if (!CreateFolder(backup + folder)) return false;
    progress.Label(LoadMessage(msg::kCompactRoot));
    const std::vector<std::string> masks = Split(LoadFragment(fragment::kCompactRootMasks), '|');
    return std::all_of(masks.begin(), masks.end(), [&](const std::string& mask) {
        return CopyFiles(trle, backup, Existing::Replace, mask);
    });
}

bool CopyCompact(const std::string& trle) {
    const std::string backup = NewBackupFolder();
    ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(msg::kCompactCaption));
    if (!CopyCompactRoot(trle, progress)) {
        TellCritical(LoadMessage(msg::kBackupNotWhole) + backup);
        return false;
    }
    const std::string data = LoadFragment(fragment::kDataFolder);
    progress.Label(LoadMessage(msg::kCompactData));
    if (!CopyTreeShown(trle + data, backup + data, progress.bar, Existing::Replace, FilesFolders::Copy))
        return false;
    const std::string graphics = LoadFragment(fragment::kGraphicsFolder);
    progress.Label(LoadMessage(msg::kCompactGraphics));
    return CopyTreeShown(trle + graphics, backup + graphics, progress.bar, Existing::Replace,
                         FilesFolders::Copy);
}

// Makes the folder in which the backup grows, with the files of the old one if those are to stay.
bool BeginBackup(Kind kind, Former former) {
    const std::string fresh = NewBackupFolder();
    if (!RemoveHalfBackup() || FileExists(BackupFolder()) || !CreateFolder(fresh)) {
        // The message of a compact one names the Archive's folder, not the backup's. That is meant.
        TellCritical(kind == Kind::Compact
                         ? LoadMessage(msg::kCannotWriteFolder) + core::archive.Header.SecondaryFolder
                         : LoadMessage(msg::kCannotCreateBackup, {BackupFolder()}));
        return false;
    }
    if (former != Former::Merged || !FolderExists(BackupFolder())) return true;
    Bar bar{BarPlace::MainWindow, -1};
    return CopyTreeShown(BackupFolder(), fresh, bar, Existing::Replace, FilesFolders::Copy);
}

// Puts the copied files in the backup's place.
bool TakeIntoUse(const std::string& trle, Kind kind, Former former) {
    // An incomplete TRLE folder gives a backup that can't bring everything back.
    BackupNote note =
        MakeBackupNote(trle, kind == Kind::Full && HasFullKind(trle) && HasFullKind(NewBackupFolder()));
    note.KeepsFormer = former == Former::Kept;
    if (!PlaceBackup(note)) return false;
    if (former == Former::Dropped)
        TheUser().SetLabel(BarPlace::MainWindow, LoadMessage(msg::kRemovingOldBackup));
    Bar bar{BarPlace::MainWindow, -1};
    RemoveFormerBackup(bar);
    return true;
}

bool MakeBackup(bool force_full, Former former) {
    if (!IsOriginal(MessageStyle::Critical, msg::kBackupLevelIsIn)) return false;
    const std::string trle = AskOriginalConfiguration();
    if (trle.empty()) return false;
    const std::optional<Kind> kind = force_full ? Kind::Full : AskKind();
    if (!kind) return false;
    const std::int64_t needed = force_full ? 0 : *kind == Kind::Full ? kFullBackupRoom : kCompactBackupRoom;
    if (!EnoughRoom(needed)) return false;
    if (!FolderExists(trle)) { // it went while the questions stood
        TellCritical(LoadMessage(msg::kBackupTrleGone) + trle);
        return false;
    }
    if (BeginBackup(*kind, former) && (*kind == Kind::Full ? CopyFull(trle, !force_full) : CopyCompact(trle)))
        return TakeIntoUse(trle, *kind, former);
    static_cast<void>(RemoveHalfBackup()); // what stays counts for nothing
    return false;
}

// What is done with the old one when a backup is made of the TRLE folder in use.
Former FormerOf(Former own) {
    const std::optional<BackupNote> note = ReadBackupNote();
    const bool elsewhere = note && !IsSamePlace(note->TrleFolder, core::TrleFolder());
    return elsewhere || StateOfBackup() == BackupState::Foreign ? Former::Kept : own;
}

// The user knows what neither note nor game program tells; the answer is kept.
bool AskWhoseBackup() {
    const std::string trle = core::TrleFolder();
    const std::optional<BackupNote> note = ReadBackupNote();
    const bool own =
        note ? AskYesNo(MessageStyle::Question,
                        LoadMessageOfOthers(msg::kBackupMovedQuestion, {note->TrleFolder, kLineBreak, trle}))
             : AskYesNo(MessageStyle::Question,
                        LoadMessageOfOthers(msg::kBackupIsOfQuestion, {BackupFolder(), trle}));
    // Where the note can't be written, which is told, the question comes again.
    if (own) static_cast<void>(WriteBackupNote(MakeBackupNote(trle, core::profile.FullBackup)));
    return own;
}

// Says what is missing and asks what to do: yes makes the backup, no chooses the TRLE folder anew.
Answer AskForBackup(BackupState state) {
    const std::string trle = core::TrleFolder();
    const std::optional<BackupNote> note = ReadBackupNote();
    const std::string choices =
        kLineBreak + LoadMessage(msg::kBackupChoices, {kLineBreak, kLineBreak, kLineBreak});
    if (state == BackupState::Missing)
        return TheUser().Ask(Buttons::YesNoCancel, MessageStyle::Exclamation,
                             LoadMessage(msg::kBackupMissing, {trle}) + choices);
    if (note)
        return TheUser().Ask(Buttons::YesNoCancel, MessageStyle::Exclamation,
                             LoadMessageOfOthers(msg::kBackupForeign, {trle, note->TrleFolder}) + choices);
    return TheUser().Ask(Buttons::YesNoCancel, MessageStyle::Exclamation,
                         LoadMessage(msg::kBackupOther, {trle}) + choices);
}

// True if the old files are to go before a new backup is made; nothing if there is to be none.
std::optional<bool> AskRemoval() {
    if (!core::profile.FullBackup) {
        // No goes on as well, so a third button is what leaves all as it is.
        const Answer answer =
            TheUser().Ask(Buttons::YesNoCancel, MessageStyle::Question, LoadMessage(msg::kRemoveOldBackup));
        if (answer != Answer::Yes && answer != Answer::No) return std::nullopt;
        return answer == Answer::Yes;
    }
    if (AskYesNo(MessageStyle::Question, LoadMessage(msg::kAlreadyFull, {kLineBreak, core::TrleFolder()})))
        return true;
    return std::nullopt;
}

} // namespace

std::string BackupFolder() {
    return AppFolder() + LoadFragment(fragment::kBackupFolder);
}

bool BackupIsValid() {
    return AnyFile(BackupFolder(), LoadFragment(fragment::kBackupDatMask)) &&
           AnyFile(BackupFolder(), LoadFragment(fragment::kBackupBmpMask)) &&
           AnyFile(BackupFolder() + LoadFragment(fragment::kDataFolder),
                   LoadFragment(fragment::kBackupTr4Mask));
}

std::string AskOriginalConfiguration() {
    const std::string trle = core::TrleFolder();
    const Answer answer = TheUser().Ask(Buttons::YesNo, MessageStyle::Question,
                                        LoadMessage(msg::kOriginalNeeded) + kLineBreak +
                                            LoadMessage(msg::kOriginalQuestion, {trle}) + kLineBreak +
                                            LoadMessage(msg::kOriginalNote));
    if (answer == Answer::Yes) return trle;
    if (answer == Answer::None) return {};
    TellCritical(LoadMessage(msg::kOriginalTips, {kLineBreak}));
    TellCritical(LoadMessage(msg::kOriginalSetupAgain, {kLineBreak, kLineBreak}));
    return {};
}

BackupState StateOfBackup() {
    if (core::TrleFolder().empty() || !BackupIsValid()) return BackupState::Missing;
    const std::optional<BackupNote> note = ReadBackupNote();
    if (note && IsSamePlace(note->TrleFolder, core::TrleFolder())) return BackupState::Valid;
    const std::string own = GameHash(core::TrleFolder());
    const std::string backed_up = note ? note->GameHash : GameHash(BackupFolder());
    if (own.empty() || backed_up.empty()) return BackupState::Unsure;
    if (own != backed_up) return BackupState::Foreign;
    return note ? BackupState::Unsure : BackupState::Valid;
}

void TellContentUnknown() {
    TellCritical(LoadMessageOfOthers(msg::kBackupContentUnknown, {core::TrleFolder(), kLineBreak}));
}

Door RequireBackup() {
    FinishBackup();
    BackupState state = StateOfBackup();
    if (state == BackupState::Unsure) state = AskWhoseBackup() ? BackupState::Valid : BackupState::Foreign;
    if (state == BackupState::Valid) return Door::Open;
    const Former former = state == BackupState::Foreign ? Former::Kept : FormerOf(Former::Merged);
    switch (AskForBackup(state)) {
        case Answer::Yes:
            return MakeBackup(false, former) ? Door::Open : Door::Closed;
        case Answer::No:
            return Door::Elsewhere;
        default:
            return Door::Closed;
    }
}

bool OnChosenFolder(MessageId doing, std::int32_t level, const SwapOperation& operation) {
    for (;;) {
        core::Change change(doing, core::kSwap, level);
        if (!change) return false;
        const Swapped result = operation(change.Level());
        if (result != Swapped::Elsewhere) return result == Swapped::Done;
        change.End();
        if (!trle::AskTrleFolder()) return false;
        core::RefreshLevelList(); // another TRLE folder may hold another level
    }
}

bool CreateBackup(bool force_full) {
    FinishBackup();
    if (!force_full && BackupIsValid()) return true;
    const core::Change change(msg::kDoingBackup, core::kHomeFolder | core::kTrleFolder);
    if (!change) return false;
    if (!force_full && BackupIsValid()) return true; // made meanwhile
    return MakeBackup(force_full, FormerOf(Former::Merged));
}

bool RefreshFullBackup() {
    const core::Change change(msg::kDoingRefreshBackup, core::kHomeFolder | core::kTrleFolder);
    if (!change) return false;
    FinishBackup();
    if (!IsOriginal(MessageStyle::Exclamation, msg::kBackupRefreshLevelIsIn)) return false;
    const std::optional<bool> remove_old = AskRemoval();
    if (!remove_old) return false;
    TheUser().SetLabel(BarPlace::MainWindow, LoadMessage(msg::kCopyingBackup));
    const bool made = MakeBackup(true, FormerOf(*remove_old ? Former::Dropped : Former::Merged));
    if (!made) {
        core::RefreshLevelList();
        if (!TheUser().StopRequested()) TellCritical(LoadMessage(msg::kErrorFullBackup) + BackupFolder());
    }
    core::ClearProgress();
    return made;
}

} // namespace kelvash::swap

std::optional<bool> kelvash::core::BackupIsFull() {
    const std::optional<swap::BackupNote> note = swap::ReadBackupNote();
    return note ? std::optional<bool>(note->Full) : std::nullopt;
}
