// Moving the level folders of an Archive to another place.
#include <algorithm>
#include <filesystem>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/maintenance.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::core {

namespace fs = std::filesystem;

namespace {

// A level folder on its way.
struct Move {
    std::int32_t code = 0;
    bool on_cd = false;
    std::string from;
    std::string to;
};

std::vector<Move> PlanMoves(const std::string& target) {
    std::vector<Move> moves;
    for (std::int32_t i = 0; i < archive.Header.LevelCount; ++i) {
        const LevelRecord& level = archive.Levels[static_cast<std::size_t>(i)];
        if (level.Code > 0)
            moves.push_back({level.Code, level.CdNumber != 0, LevelFolder(level.Code, false),
                             target + LevelFolderName(level.Code)});
    }
    return moves;
}

// Where a path leads: several drives and links may reach the same folder.
fs::path PlaceOf(std::string_view path) {
    std::error_code error;
    const fs::path native = NativePath(path);
    const fs::path place = fs::weakly_canonical(native, error);
    return error ? native : place;
}

bool LiesIn(const fs::path& place, const fs::path& folder) {
    return std::mismatch(folder.begin(), folder.end(), place.begin(), place.end()).first == folder.end();
}

// What is wrong with a target; empty if the level folders can go there.
MessageText FaultOf(const std::string& target) {
    const std::string current(Trim(archive.Header.SecondaryFolder));
    const fs::path place = PlaceOf(target);
    if (EqualNoCase(target, current) || place == PlaceOf(current))
        return LoadMessage(MessageId::kMoveSameFolder, {}) + current;
    for (const Move& move : PlanMoves(target)) {
        if (FolderExists(move.from) && LiesIn(place, PlaceOf(move.from)))
            return LoadMessage(MessageId::kMoveInside, {}) + move.from;
        if (FolderExists(move.to)) return LoadMessage(MessageId::kMoveFolderTaken, {}) + move.to;
    }
    const double needed = archive.Header.MainFolderSize + archive.Header.SecondaryFolderSize;
    const std::int64_t room = FreeSpace(target);
    if (room >= 0 && static_cast<double>(room) < needed)
        return LoadMessage(MessageId::kMoveNoRoom,
                           {target.substr(0, 2), FormatSize(static_cast<std::int64_t>(needed)), kLineBreak});
    return {};
}

// A folder that fits; nothing on cancel.
std::optional<std::string> ChooseTarget() {
    constexpr std::size_t kFolderWidth = 256;
    for (;;) {
        std::optional<std::string> target =
            TheUser().ChooseFolder(LoadMessage(MessageId::kMoveTarget, {}), archive.Header.SecondaryFolder);
        if (!target) return std::nullopt;
        MessageText fault = FaultOf(*target);
        if (fault.text.empty() && FitText(*target, kFolderWidth) != *target)
            fault = LoadMessage(MessageId::kConfigNameTooLong, {}) + *target;
        if (fault.text.empty()) return target;
        ShowMessage(MessageStyle::Exclamation, fault);
    }
}

void RemoveCopies(const std::vector<Move>& moves) {
    Bar bar{BarPlace::CallerForm, -1};
    for (const Move& move : moves)
        static_cast<void>(RemoveFolderTree(move.to, bar)); // what stays is a copy
}

// Makes the folders that hold no file, and compares each file's size. False also for a folder that is a link:
// it isn't followed by the copy, and would be lost with the old folder.
bool IsWhole(const Move& move) {
    const std::string files = LoadMessage(MessageId::kInsideFilesFolder, {});
    const auto is_left_out = [&](const std::string& relative) {
        return move.on_cd && FindNoCase(relative + "\\", files) != std::string::npos;
    };
    const Tree tree = ScanTree(move.from);
    for (const std::string& folder : tree.folders) {
        const std::string relative = folder.substr(move.from.size());
        if (is_left_out(relative)) continue;
        std::error_code error;
        if (fs::is_symlink(NativePath(folder), error) || !CreateFolder(move.to + relative)) return false;
    }
    return std::all_of(tree.files.begin(), tree.files.end(), [&](const std::string& file) {
        const std::string relative = file.substr(move.from.size());
        const std::string copy = move.to + relative;
        return is_left_out(relative) || (FileExists(copy) && FileSize(copy) == FileSize(file));
    });
}

// The old folders may only go when no loss of power can take the copies with it.
bool AreSafe(const std::vector<Move>& moves, const std::string& target) {
    return std::all_of(moves.begin(), moves.end(),
                       [](const Move& move) { return !FolderExists(move.from) || IsWhole(move); }) &&
           FlushDrive(target);
}

// Copies everything; on failure or a stop what was copied goes again.
bool CopyLevels(const std::vector<Move>& moves) {
    ProgressDialog progress(BarPlace::StoppableDialog, LoadMessage(MessageId::kMoving, {}));
    Bar one_level{BarPlace::CallerForm, -1};
    double done = 0;
    for (const Move& move : moves) {
        progress.Label(move.from);
        const FilesFolders files = move.on_cd ? FilesFolders::Skip : FilesFolders::Copy;
        if (FolderExists(move.from) &&
            !CopyTreeShown(move.from, move.to, one_level, Existing::Replace, files)) {
            const bool stopped = TheUser().StopRequested();
            RemoveCopies(moves);
            ShowMessage(stopped ? MessageStyle::Exclamation : MessageStyle::Critical,
                        LoadMessage(stopped ? MessageId::kMoveStopped : MessageId::kMoveCopyError, {}));
            return false;
        }
        ProgressPercent(progress.bar, ++done, static_cast<double>(moves.size()));
    }
    progress.Label(LoadMessage(MessageId::kMoveEmptyFolders, {}));
    for (const Move& move : moves) {
        CreateFolder(move.to);
        for (const MessageId name : {MessageId::kNewScreenshotsFolder, MessageId::kNewSavegamesFolder,
                                     MessageId::kNewBackupSavegamesFolder})
            CreateFolder(move.to + LoadMessage(name, {}));
    }
    return true;
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
    ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(MessageId::kMoveRemovingOld, {}));
    Bar one_level{BarPlace::CallerForm, -1};
    double done = 0;
    for (const Move& move : moves) {
        if (!RemoveFolderTree(move.from, one_level))
            TellCritical(LoadMessage(MessageId::kMoveRemoveError, {}) + move.from);
        ProgressPercent(progress.bar, ++done, static_cast<double>(moves.size()));
    }
}

} // namespace

bool MoveArchive() {
    if (archive.Header.CdCount > 0 &&
        AskYesNo(MessageStyle::Question,
                 LoadMessage(MessageId::kMoveOnCdQuestion, {kLineBreak, kLineBreak}))) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(MessageId::kMoveCdLater, {}));
        return false;
    }
    const std::optional<std::string> target = ChooseTarget();
    if (!target) return false;
    const std::vector<Move> moves = PlanMoves(*target);
    if (!CopyLevels(moves)) return false;
    if (!AreSafe(moves, *target)) {
        RemoveCopies(moves);
        TellCritical(LoadMessage(MessageId::kMoveCopyError, {}));
        return false;
    }
    if (!SaveNewPlace(*target)) {
        RemoveCopies(moves);
        return false;
    }
    RemoveOldFolders(moves);
    ShowMessage(MessageStyle::Plain, LoadMessage(MessageId::kMoveDone, {}) + *target);
    RefreshLevelList();
    return true;
}

} // namespace kelvash::core
