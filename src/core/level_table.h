// The level table: the records of an Archive in the order of its file.
//
// A level is known by its code, which the table finds without a walk. Nothing changes a record behind the
// table's back: it is appended, removed, replaced or edited here. The number of records is that of the
// table; no field says it.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <unordered_map>
#include <vector>

#include "core/records.h"

namespace kelvash::core {

class LevelTable;

// Leave to change one record, for as long as it lives. The table itself stays as it is meanwhile.
class LevelEdit {
  public:
    LevelEdit(LevelTable& table, std::int32_t index);
    ~LevelEdit(); // the table knows the level by its new code, if it got one
    LevelEdit(const LevelEdit&) = delete;
    LevelEdit& operator=(const LevelEdit&) = delete;

    LevelRecord* operator->() const { return &record_; }
    LevelRecord& operator*() const { return record_; }

  private:
    LevelTable& table_;
    LevelRecord& record_;
    std::int32_t old_code_;
};

class LevelTable {
  public:
    LevelTable() = default;
    LevelTable(std::initializer_list<LevelRecord> levels);

    std::int32_t Size() const { return static_cast<std::int32_t>(levels_.size()); }
    bool IsEmpty() const { return levels_.empty(); }
    // By place, which is below Size().
    const LevelRecord& operator[](std::int32_t index) const {
        return levels_[static_cast<std::size_t>(index)];
    }
    auto begin() const { return levels_.begin(); }
    auto end() const { return levels_.end(); }

    // Place of the level with that code, of the first one where a damaged file has several; -1 if none has
    // it.
    std::int32_t Find(std::int32_t code) const;
    // Its record; an empty one if no level has the code.
    const LevelRecord& ByCode(std::int32_t code) const;
    // The highest code plus 1; 0 for an empty table. Where nothing is above the highest, the first free one.
    std::int32_t NextCode() const;

    // Puts a record behind the others and gives its place.
    std::int32_t Append(LevelRecord level);
    // Takes a record out; those behind it move one place forward.
    void Remove(std::int32_t index);
    void Replace(std::int32_t index, LevelRecord level);
    LevelEdit Edit(std::int32_t index) { return {*this, index}; }

  private:
    friend LevelEdit;
    void IndexAnew();

    std::vector<LevelRecord> levels_;
    std::unordered_map<std::int32_t, std::int32_t> places_; // by code
};

} // namespace kelvash::core
