#include "core/level_list.h"

#include <algorithm>

#include "core/archive.h"
#include "core/archive_messages.h"
#include "foundation/collation.h"
#include "foundation/messages.h"
#include "foundation/pumping.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "trle_state/trle_state.h"

namespace kelvash::core {

constinit LevelList& level_list = State<LevelList>::Get();

namespace {

std::int32_t IndexOf(std::int32_t code) {
    const auto& items = level_list.Items;
    const auto found = std::find_if(items.begin(), items.end(),
                                    [code](const LevelListItem& item) { return item.Code == code; });
    return found == items.end() ? -1 : static_cast<std::int32_t>(found - items.begin());
}

std::vector<LevelListItem> SortedItems(std::int32_t current) {
    const std::string mark = LoadMessage(msg::kInTrleMark);
    std::vector<std::pair<std::string, LevelListItem>> keyed; // collation key, item
    keyed.reserve(static_cast<std::size_t>(archive.Table.Size()));
    for (std::int32_t i = 0; i < archive.Table.Size(); ++i) {
        const LevelEdit level = archive.Table.Edit(i);
        level->Name = Trim(level->Name);
        std::string text = level->Code == current ? level->Name + mark : level->Name;
        std::string key = CollationKey(text);
        PumpNowAndThen();
        keyed.push_back({std::move(key), {std::move(text), level->Code}});
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<LevelListItem> items;
    items.reserve(keyed.size());
    for (auto& [key, item] : keyed)
        items.push_back(std::move(item));
    return items;
}

// The first item from an index on, in steps of 1 or -1, that holds the text; -1 for none.
std::int32_t Search(std::string_view text, std::int32_t from, std::int32_t step) {
    const auto count = static_cast<std::int32_t>(level_list.Items.size());
    const std::string wanted = FoldCase(text);
    for (std::int32_t i = from; i >= 0 && i < count; i += step)
        if (FoldCase(level_list.Items[static_cast<std::size_t>(i)].Text).find(wanted) != std::string::npos)
            return i;
    return -1;
}

} // namespace

void ClearProgress() {
    TheUser().SetLabel(BarPlace::MainWindow, {});
    TheUser().SetBar(BarPlace::MainWindow, 0);
}

void RefreshLevelList() {
    ClearProgress();
    const std::int32_t selected = SelectedLevel();
    level_list.InTrle = trle_state::CurrentLevelCode();
    level_list.Items = SortedItems(level_list.InTrle);
    level_list.Selected = selected < 0 ? -1 : IndexOf(selected);
    if (level_list.Selected < 0 && !level_list.Items.empty()) level_list.Selected = 0;
    TheUser().LevelListChanged();
}

void SelectLevel(std::int32_t code) {
    const std::int32_t index = IndexOf(code);
    if (index < 0) return;
    level_list.Selected = index;
    TheUser().LevelListChanged();
}

std::int32_t FindLevel(std::string_view text) {
    return Trim(text).empty() ? -1 : Search(Trim(text), 0, 1);
}

std::int32_t FindNextLevel(std::string_view text) {
    return Search(Trim(text), level_list.Selected + 1, 1);
}

std::int32_t FindPreviousLevel(std::string_view text) {
    return Search(Trim(text), level_list.Selected - 1, -1);
}

std::int32_t SelectedLevel() {
    const auto index = static_cast<std::size_t>(level_list.Selected);
    return level_list.Selected < 0 || index >= level_list.Items.size() ? -1 : level_list.Items[index].Code;
}

} // namespace kelvash::core
