// Moving the level folders of an Archive to another place.
#include <algorithm>

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

// What is wrong with a target; empty if the level folders can go there.
std::string FaultOf(const std::string& target) {
    const std::string current(Trim(archive.Header.SecondaryFolder));
    if (EqualNoCase(target, current)) return LoadMessage(MessageId::kMoveSameFolder, {}) + current;
    for (const Move& move : PlanMoves(target)) {
        if (StartsWithNoCase(target + "\\", move.from + "\\"))
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
        std::string fault = FaultOf(*target);
        if (fault.empty() && FitText(*target, kFolderWidth) != *target)
            fault = LoadMessage(MessageId::kConfigNameTooLong, {}) + *target;
        if (fault.empty()) return target;
        ShowMessage(MessageStyle::Exclamation, fault);
    }
}

void RemoveCopies(const std::vector<Move>& moves) {
    Bar bar{BarPlace::CallerForm, -1};
    for (const Move& move : moves)
        static_cast<void>(RemoveFolderTree(move.to, bar)); // what stays is a copy
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
