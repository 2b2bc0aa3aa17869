#include "core/level_table.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace kelvash::core {

LevelEdit::LevelEdit(LevelTable& table, std::int32_t index)
    : table_(table), record_(table.levels_[static_cast<std::size_t>(index)]), old_code_(record_.Code) {}

LevelEdit::~LevelEdit() {
    if (record_.Code != old_code_) table_.IndexAnew();
}

LevelTable::LevelTable(std::initializer_list<LevelRecord> levels) : levels_(levels) {
    IndexAnew();
}

std::int32_t LevelTable::Find(std::int32_t code) const {
    const auto found = places_.find(code);
    return found == places_.end() ? -1 : found->second;
}

const LevelRecord& LevelTable::ByCode(std::int32_t code) const {
    static const LevelRecord kNone;
    const std::int32_t index = Find(code);
    return index < 0 ? kNone : (*this)[index];
}

std::int32_t LevelTable::NextCode() const {
    std::int32_t highest = -1;
    for (const LevelRecord& level : levels_)
        highest = std::max(highest, level.Code);
    if (highest < std::numeric_limits<std::int32_t>::max()) return highest + 1;
    std::int32_t code = 1; // of a damaged file
    while (Find(code) >= 0)
        ++code;
    return code;
}

std::int32_t LevelTable::Append(LevelRecord level) {
    const std::int32_t index = Size();
    places_.emplace(level.Code, index);
    levels_.push_back(std::move(level));
    return index;
}

void LevelTable::Remove(std::int32_t index) {
    levels_.erase(levels_.begin() + index);
    IndexAnew();
}

void LevelTable::Replace(std::int32_t index, LevelRecord level) {
    *Edit(index) = std::move(level);
}

void LevelTable::IndexAnew() {
    places_.clear();
    for (std::int32_t i = 0; i < Size(); ++i)
        places_.emplace((*this)[i].Code, i);
}

} // namespace kelvash::core
