
#include "program/level_view.h"

#include "companion/savegames.h"
#include "companion/screenshots.h"
#include "core/archive.h"
#include "core/level_list.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "program/fragments.h"
#include "program/messages.h"
#include "swap/moved_saves.h"
#include "trle_state/trle_state.h"

namespace kelvash::program {

namespace {

// For the level that is in TRLE the saves of its last stay outside count as the older ones. That is meant.
std::size_t OlderSaves(const LevelView& view) {
    if (!view.IsIn) return view.ArchivedSavegames.size();
    return ListFiles(core::StashFolder(view.Folder), LoadFragment(fragment::kSaveStashMask)).size();
}

std::string PlaceText(const LevelView& view, std::int32_t cd) {
    std::string folder = "\"" + view.Folder + "\"";
    if (cd != 0) folder += LoadMessage(msg::kMainLevelOnCd) + std::to_string(cd);
    folder += LoadMessage(msg::kMainLevelPlaceGap);
    return LoadMessageOfOthers(msg::kMainLevelPlace, {folder, std::to_string(view.Screenshots.size())}) +
           std::to_string(view.SlotSavegames.size()) + LoadMessage(msg::kMainCounts) +
           std::to_string(OlderSaves(view));
}

} // namespace

std::optional<LevelView> SelectedLevelView() {
    if (core::level_list.Selected < 0) return std::nullopt;
    const core::LevelPlace level = core::PlaceOf(core::SelectedLevel());
    if (!level.IsListed()) {
        TellCritical(LoadMessage(msg::kUnknownLevelCode) + std::to_string(level.Code));
        return std::nullopt;
    }
    swap::LookForMovedSaves(); // of a killed run: the lists are to show them
    LevelView view;
    view.Code = level.Code;
    view.Folder = level.Folder;
    view.FolderMissing = !FolderExists(view.Folder);
    view.Name = level.Name;
    view.Author = Trim(core::archive.Table[level.Index].Author);
    view.Note = Trim(core::archive.Table[level.Index].Note);
    const std::int32_t in_trle = trle_state::CurrentLevelCode();
    view.IsIn = in_trle == level.Code;
    if (!view.IsIn && in_trle > 0) view.TakenOut = core::PlaceOf(in_trle).Name;
    view.Screenshots = companion::Screenshots(level);
    view.SlotSavegames = companion::SlotSavegames(level);
    view.ArchivedSavegames = companion::ArchivedSavegames(level);
    view.Place = PlaceText(view, level.CdNumber);
    return view;
}

} // namespace kelvash::program
