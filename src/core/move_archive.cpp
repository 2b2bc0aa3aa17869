// Moving the level folders of an Archive to another place.
//
// They are copied into a folder of the target under names that count for nothing, renamed into place when all
// is there, and the old ones go when the Archive's file names the new place. A note in that folder tells the
// copies of a killed move from the folders of somebody else.
#include <algorithm>
#include <filesystem>

#include "core/archive.h"
#include "core/archive_messages.h"
#include "core/change.h"
#include "core/change_messages.h"
#include "core/fragments.h"
#include "core/kept_folders.h"
#include "core/level_list.h"
#include "core/maintenance.h"
#include "core/moving_messages.h"
#include "core/owner_moves.h"
#include "core/path_field.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::core {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kCopiesFolder = "\\KELVASH_MOVE";
constexpr std::string_view kNoteName = "\\move.txt";
constexpr std::string_view kNoteTag = "#FROM=";

// A folder on its way: that of a level, or a kept one.
struct Move {
    bool is_level = true;
    std::string from;
    std::string copy; // where it is copied to
    std::string to;
};

std::string CopiesIn(const std::string& target) {
    return target + std::string(kCopiesFolder);
}

std::vector<Move> PlanMoves(const std::string& target) {
    const std::string copies = CopiesIn(target);
    std::vector<Move> moves;
    for (const LevelRecord& level : archive.Table) {
        if (level.Code <= 0) continue;
        const std::string name = LevelFolderName(level.Code);
        moves.push_back({true, LevelFolder(level.Code, false), copies + name, target + name});
    }
    const std::string kept_name = "\\" + FileNameOf(KeptFolder());
    for (const KeptLevel& kept : ListKept()) {
        const std::string name = kept_name + "\\" + kept.Folder;
        moves.push_back({false, KeptFolder() + "\\" + kept.Folder, copies + name, target + name});
    }
    return moves;
}

// --- what an earlier move has left behind ---

// The folder from which a move to the target was on its way when it was killed; empty if none was.
std::string SourceOfMove(const std::string& target) {
    constexpr std::size_t kMostBytes = 4096;
    const std::string note =
        ReadFileStart(CopiesIn(target) + std::string(kNoteName), kMostBytes).value_or(std::string());
    std::size_t position = 0;
    const std::string line = NextLineIn(note, position);
    return StartsWithNoCase(line, kNoteTag) ? line.substr(kNoteTag.size()) : std::string();
}

// True if the target holds copies of a move of this Archive that was killed.
bool HoldsOurCopies(const std::string& target) {
    const std::string source = SourceOfMove(target);
    return !source.empty() && IsSamePlace(source, Trim(archive.Header.SecondaryFolder));
}

// True if each file of a folder lies in another one with the same size and date.
bool IsCopyOf(const std::string& folder, const std::string& original) {
    const Tree tree = ScanTree(folder);
    return std::all_of(tree.files.begin(), tree.files.end(), [&](const std::string& file) {
        const std::string other = original + file.substr(folder.size());
        return FileExists(other) && FileSize(other) == FileSize(file) && FileTime(other) == FileTime(file);
    });
}

// Takes the copies of a killed move away; what has been changed since is kept. False after a message.
bool ClearOldCopies(const std::vector<Move>& moves, const std::string& target) {
    Bar bar{BarPlace::CallerForm, -1};
    for (const Move& move : moves) {
        if (!FolderExists(move.to)) continue;
        if (IsCopyOf(move.to, move.from) && RemoveFolderTree(move.to, bar)) continue;
        const std::string kept = KeepFolder(move.to, target + "\\" + FileNameOf(KeptFolder()));
        if (kept.empty()) {
            TellCritical(LoadMessage(msg::kMoveCannotKeep) + move.to);
            return false;
        }
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kMoveStaleCopy) + kept);
    }
    return true;
}

// --- the target ---

// What is wrong with a target; empty if the level folders can go there.
MessageText FaultOf(const std::string& target) {
    const std::string current(Trim(archive.Header.SecondaryFolder));
    if (MessageText fault = FaultOfPath(target); !fault.text.empty()) return fault;
    if (!FolderExists(target)) return LoadMessage(msg::kMoveNoTarget) + target;
    if (IsSamePlace(target, current)) return LoadMessage(msg::kMoveSameFolder) + current;
    const bool ours = HoldsOurCopies(target);
    for (const Move& move : PlanMoves(target)) {
        if (FolderExists(move.from) && LiesIn(target, move.from))
            return LoadMessage(msg::kMoveInside) + move.from;
        if (FileExists(move.to) || (FolderExists(move.to) && !ours))
            return LoadMessage(msg::kMoveFolderTaken) + move.to;
    }
    if (FolderExists(KeptFolder()) && LiesIn(target, KeptFolder()))
        return LoadMessage(msg::kMoveInside) + KeptFolder();
    const double needed = archive.Header.MainFolderSize + archive.Header.SecondaryFolderSize;
    const std::int64_t room = FreeSpace(target);
    if (room >= 0 && static_cast<double>(room) < needed)
        return LoadMessage(msg::kMoveNoRoom,
                           {target.substr(0, 2), FormatSize(static_cast<std::int64_t>(needed)), kLineBreak});
    return {};
}

// A folder that fits; nothing on cancel.
std::optional<std::string> ChooseTarget() {
    for (;;) {
        std::optional<std::string> target =
            TheUser().ChooseFolder(LoadMessage(msg::kMoveTarget), archive.Header.SecondaryFolder);
        if (!target) return std::nullopt;
        const MessageText fault = FaultOf(*target);
        if (fault.text.empty()) return target;
        ShowMessage(MessageStyle::Exclamation, fault);
    }
}

// Makes the folder for the copies, with its note. False after a message.
bool PrepareTarget(const std::vector<Move>& moves, const std::string& target) {
    const std::string copies = CopiesIn(target);
    Bar bar{BarPlace::CallerForm, -1};
    if (!ClearOldCopies(moves, target)) return false;
    const std::string note =
        std::string(kNoteTag) + std::string(Trim(archive.Header.SecondaryFolder)) + kLineBreak;
    if ((!FolderExists(copies) || RemoveFolderTree(copies, bar)) && CreateFolder(copies) &&
        ReplaceFileBytes(copies + std::string(kNoteName), note, Flush::Yes))
        return true;
    static_cast<void>(RemoveFolderTree(copies, bar)); // holds nothing, at most half a note
    if (FreeSpace(target) == 0)
        TellCritical(LoadMessage(msg::kMoveFull));
    else
        TellCritical(LoadMessage(msg::kMoveReadOnly) + target);
    return false;
}

// --- copying ---

void RemoveCopies(const std::vector<Move>& moves, const std::string& target) {
    Bar bar{BarPlace::CallerForm, -1};
    for (const Move& move : moves)
        if (IsCopyOf(move.to, move.from)) static_cast<void>(RemoveFolderTree(move.to, bar));
    static_cast<void>(RemoveFolderTree(CopiesIn(target), bar)); // what stays is a copy
    static_cast<void>(RemoveEmptyFolder(target + "\\" + FileNameOf(KeptFolder())));
}

// Why nothing more can be copied, before the copies go.
void TellCopyFailure(const std::vector<Move>& moves, const std::string& target) {
    if (TheUser().StopRequested()) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kMoveStopped));
        return;
    }
    std::int64_t missing = -TreeSize(CopiesIn(target), "*");
    for (const Move& move : moves)
        missing += TreeSize(move.from, "*");
    const std::int64_t room = FreeSpace(target);
    const bool full = room >= 0 && room < missing;
    TellCritical(LoadMessage(full ? msg::kMoveFull : msg::kMoveCopyError));
}

// Makes the folders that hold no file, and compares each file's size. False also for a folder that is a link:
// it isn't followed by the copy, and would be lost with the old folder.
bool IsWhole(const Move& move) {
    const Tree tree = ScanTree(move.from);
    for (const std::string& folder : tree.folders) {
        std::error_code error;
        if (fs::is_symlink(NativePath(folder), error) ||
            !CreateFolder(move.copy + folder.substr(move.from.size())))
            return false;
    }
    return std::all_of(tree.files.begin(), tree.files.end(), [&](const std::string& file) {
        const std::string copy = move.copy + file.substr(move.from.size());
        return FileExists(copy) && FileSize(copy) == FileSize(file);
    });
}

bool CopyFolders(const std::vector<Move>& moves) {
    ProgressDialog progress(BarPlace::StoppableDialog, LoadMessage(msg::kMoving));
    Bar one_folder{BarPlace::CallerForm, -1};
    double done = 0;
    for (const Move& move : moves) {
        progress.Label(move.from);
        if (!CreateFolder(FolderOf(move.copy))) return false;
        if (FolderExists(move.from) &&
            !CopyTreeShown(move.from, move.copy, one_folder, Existing::Replace, FilesFolders::Copy))
            return false;
        ProgressPercent(progress.bar, ++done, static_cast<double>(moves.size()));
    }
    progress.Label(LoadMessage(msg::kMoveEmptyFolders));
    for (const Move& move : moves) {
        if (!move.is_level) continue;
        CreateFolder(move.copy);
        for (const Fragment& name : {fragment::kNewScreenshotsFolder, fragment::kNewSavegamesFolder,
                                     fragment::kNewBackupSavegamesFolder})
            CreateFolder(move.copy + LoadFragment(name));
    }
    return true;
}

// The copies take their places, whole and on the disk: the old folders may only go when no loss of power can
// take the new ones with it.
bool PutIntoPlace(const std::vector<Move>& moves, const std::string& target) {
    return std::all_of(moves.begin(), moves.end(),
                       [](const Move& move) { return !FolderExists(move.from) || IsWhole(move); }) &&
           FlushDrive(target) &&
           std::all_of(moves.begin(), moves.end(),
                       [](const Move& move) {
                           return CreateFolder(FolderOf(move.to)) && RenameFile(move.copy, move.to);
                       }) &&
           FlushDrive(target);
}

// Names the new place in the Archive's file, which must say so before the old folders go. False, with all as
// it was, if it can't be written.
bool SaveNewPlace(const std::string& target) {
    const ArchiveHeader old = archive.Header;
    if (EqualNoCase(Trim(old.MainFolder), Trim(old.SecondaryFolder))) archive.Header.MainFolder = target;
    archive.Header.SecondaryFolder = target;
    if (SaveArchive()) return true;
    archive.Header = old;
    return false;
}

void RemoveOldFolders(const std::vector<Move>& moves) {
    ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(msg::kMoveRemovingOld));
    Bar one_folder{BarPlace::CallerForm, -1};
    double done = 0;
    for (const Move& move : moves) {
        if (!RemoveFolderTree(move.from, one_folder))
            TellCritical(LoadMessage(msg::kMoveRemoveError) + move.from);
        ProgressPercent(progress.bar, ++done, static_cast<double>(moves.size()));
    }
}

// The note of a move goes last: until then it tells where the old folders are.
void ForgetMove(const std::string& target) {
    Bar bar{BarPlace::CallerForm, -1};
    static_cast<void>(RemoveFolderTree(CopiesIn(target), bar)); // holds the note alone
}

// The record of a level in TRLE and the Archive's file name the new place, or neither does. The record is
// first: its writing can be taken back as long as both places hold the folders.
bool NameNewPlace(const std::string& target) {
    const std::string old_folder(Trim(archive.Header.SecondaryFolder));
    if (!NoteLevelsMoved(old_folder, target)) return false;
    if (SaveNewPlace(target)) return true;
    static_cast<void>(NoteLevelsMoved(target, old_folder)); // else the former place counts
    return false;
}

// Everything in its new place and the Archive's file saying so; otherwise, after a message, all as it was.
bool Transfer(const std::vector<Move>& moves, const std::string& target) {
    const JobScope job(Stop::Offered); // a stop is told behind the dialog in which it was wanted
    if (!PrepareTarget(moves, target)) return false;
    if (!CopyFolders(moves) || !PutIntoPlace(moves, target)) {
        TellCopyFailure(moves, target);
        RemoveCopies(moves, target);
        return false;
    }
    if (NameNewPlace(target)) return true;
    RemoveCopies(moves, target);
    return false;
}

} // namespace

bool MoveArchive() {
    const Change change(msg::kDoingMove, kAll);
    if (!change) return false;
    if (archive.Header.CdCount > 0 &&
        AskYesNo(MessageStyle::Question, LoadMessage(msg::kMoveOnCdQuestion, {kLineBreak, kLineBreak}))) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kMoveCdLater));
        return false;
    }
    const std::optional<std::string> target = ChooseTarget();
    if (!target) return false;
    const std::vector<Move> moves = PlanMoves(*target);
    const std::string old_kept = KeptFolder();
    if (!Transfer(moves, *target)) return false;
    RemoveOldFolders(moves);
    static_cast<void>(RemoveEmptyFolder(old_kept)); // others may keep something there
    NoteMoveEnded();
    ForgetMove(*target);
    ShowMessage(MessageStyle::Plain, LoadMessage(msg::kMoveDone) + *target);
    RefreshLevelList();
    return true;
}

void TellCutShortMove() {
    const std::string folder(Trim(archive.Header.SecondaryFolder));
    if (folder.empty() || SourceOfMove(folder).empty()) return;
    const Change change(msg::kDoingMoveRest, kArchiveFolder);
    if (!change) return;
    const std::string source = SourceOfMove(folder); // a move may have ended meanwhile
    if (source.empty()) return;
    const auto is_left = [&](const LevelRecord& level) {
        return level.Code > 0 && FolderExists(source + LevelFolderName(level.Code));
    };
    if (std::any_of(archive.Table.begin(), archive.Table.end(), is_left))
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kMoveOldLeft) + source);
    ForgetMove(folder);
}

} // namespace kelvash::core
