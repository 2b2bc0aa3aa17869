#include "program/remove_level.h"

#include "core/archive.h"
#include "core/change.h"
#include "core/level_list.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "program/messages.h"
#include "swap/remove.h"
#include "trle_state/trle_state.h"

namespace kelvash::program {

namespace {

using core::LevelPlace;

// True, after a message, for a level on CD: its files can't be changed.
bool CheckLevelOnHd(const LevelPlace& level) {
    if (level.CdNumber == 0) return false;
    TellCritical(LoadMessage(msg::kLevelIsOnCd, {kLineBreak}));
    return true;
}

bool MayRemove(const LevelPlace& level) {
    if (!level.IsListed()) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kRemoveNoLevel));
        return false;
    }
    if (CheckLevelOnHd(level)) return false;
    if (level.Code == 0) {
        TellCritical(LoadMessage(msg::kRemoveLevelZero, {kLineBreak}));
        return false;
    }
    return AskYesNo(MessageStyle::Question, LoadMessage(msg::kRemoveQuestion) + '"' + level.Name + '"' +
                                                LoadMessage(msg::kRemoveQuestionEnd));
}

// False if the level is still in TRLE: its saves would lose their place.
bool TakeOutOfTrle(std::int32_t code) {
    if (!trle_state::IsInTrle(code)) return true;
    static_cast<void>(swap::RemovePreviousLevel(core::kNoLevel)); // what counts is where the level is now
    if (!trle_state::IsInTrle(code)) return true;
    ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kRemoveNotTakenOut));
    return false;
}

void RemoveRecord(std::int32_t index) {
    core::archive.Table.Remove(index);
    core::ArchiveTouched();
    core::RefreshLevelList();
}

void RemoveFolderAndTell(const std::string& folder) {
    Bar bar{BarPlace::MainWindow, -1};
    TheUser().SetLabel(bar.place, LoadMessage(msg::kRemovingLevelFolder));
    TheUser().PumpEvents();
    const bool removed = RemoveFolderTree(folder, bar);
    core::ClearProgress();
    if (removed)
        ShowMessage(MessageStyle::Plain, LoadMessage(msg::kLevelRemoved));
    else
        TellCritical(LoadMessage(msg::kRemoveFolderError) + folder);
}

} // namespace

bool RemoveLevel() {
    const core::Change change(msg::kDoingRemove, core::kAll, core::SelectedLevel());
    if (!change) return false;
    const LevelPlace& level = change.Level();
    if (!MayRemove(level) || !TakeOutOfTrle(level.Code)) return false;
    const core::LevelRecord record = core::archive.Table[level.Index];
    RemoveRecord(level.Index);
    if (!AskYesNo(MessageStyle::Question, LoadMessage(msg::kRemoveFolderQuestion, {kLineBreak}) +
                                              level.Folder + LoadMessage(msg::kRemoveFolderQuestionEnd)))
        return true;
    // Whatever AutoSave says: a file that still lists the level would list it without its files.
    if (core::archive.ArchiveChanged && !core::SaveArchive()) {
        TellCritical(LoadMessage(msg::kRemoveNotSaved) + level.Folder);
        return false;
    }
    RemoveFolderAndTell(level.Folder);
    core::archive.Header.MainFolderSize -= record.FilesSize;
    core::archive.Header.SecondaryFolderSize -= record.SavesSize;
    core::ArchiveTouched();
    return true;
}

} // namespace kelvash::program
