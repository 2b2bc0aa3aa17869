// The list of levels as a view shows it. The view is told of changes through the user port.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::core {

struct LevelListItem {
    std::string Text; // the level's name, trimmed, with " (*)" behind it for the level that is in TRLE
    std::int32_t Code = 0;
};

// Items in the order of their texts, without regard to case and diacritics; Selected is an index, -1 for
// none.
struct LevelList {
    std::vector<LevelListItem> Items;
    std::int32_t Selected = -1;
    std::int32_t InTrle = -1; // code of the level that bears the mark, whether there is such a level or not
};
extern LevelList& level_list;

// Empties the main window's label and bar.
void ClearProgress();
// Rebuilds the list, keeping the selected level; index 0 is selected when there was none or it is gone.
// Clears the progress.
void RefreshLevelList();
// Selects the level with that code, if it is in the list.
void SelectLevel(std::int32_t code);
// Code of the selected level; -1 if none is selected.
std::int32_t SelectedLevel();

// The search: always on the items' texts, the mark included, without regard to case; the text is trimmed.
// Each gives the item to select, or -1 for none. Without a text the neighbours are those in the list.
std::int32_t FindLevel(std::string_view text); // from the top; -1 for an empty text
std::int32_t FindNextLevel(std::string_view text);
std::int32_t FindPreviousLevel(std::string_view text);

} // namespace kelvash::core
