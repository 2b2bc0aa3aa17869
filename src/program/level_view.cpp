
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
#include "trle_state/trle_state.h"

namespace kelvash::program {

namespace {

// For the level that is in TRLE the saves of its last stay outside count as the older ones. That is meant.
std::size_t OlderSaves(const LevelView& view) {
    if (view.Code != trle_state::CurrentLevelCode()) return view.ArchivedSavegames.size();
    return ListFiles(core::StashFolder(view.Folder), LoadFragment(fragment::kSaveStashMask)).size();
}

std::string PlaceOf(const LevelView& view) {
    const std::int32_t cd = core::LevelByCode(view.Code).CdNumber;
    std::string folder = "\"" + view.Folder + "\"";
    if (cd != 0) folder += LoadMessage(msg::kMainLevelOnCd) + std::to_string(cd);
    folder += LoadMessage(msg::kMainLevelPlaceGap);
    return LoadMessage(msg::kMainLevelPlace, {folder, std::to_string(view.Screenshots.size())}) +
           std::to_string(view.SlotSavegames.size()) + LoadMessage(msg::kMainCounts) +
           std::to_string(OlderSaves(view));
}

} // namespace

void TellUnknownLevel(const std::string& code) {
    TellCritical(LoadMessage(msg::kUnknownLevelCode) + code);
}

std::optional<LevelView> SelectedLevelView() {
    if (core::level_list.Selected < 0) return std::nullopt;
    LevelView view;
    view.Code = core::SelectedLevel();
    if (core::LevelIndex(view.Code) < 0) {
        TellUnknownLevel(std::to_string(view.Code));
        return std::nullopt;
    }
    view.Folder = core::LevelFolder(view.Code, false);
    view.FolderMissing = !FolderExists(view.Folder);
    view.Note = Trim(core::LevelByCode(view.Code).Note);
    view.Screenshots = companion::Screenshots(view.Code);
    view.SlotSavegames = companion::SlotSavegames(view.Code);
    view.ArchivedSavegames = companion::ArchivedSavegames(view.Code);
    view.Place = PlaceOf(view);
    return view;
}

} // namespace kelvash::program
