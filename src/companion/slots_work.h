// What all operations on the slots of a level begin with, and how they put savegames into another order.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "companion/slots_outcome.h"
#include "core/archive.h"
#include "core/change.h"
#include "swap/moved_saves.h"
#include "swap/savegame_files.h"

namespace kelvash::companion {

// The door of an operation on a level's savegames: the locks, a TRLE folder whose swap has ended, and nothing
// left in the working folder.
class SlotsWork {
  public:
    SlotsWork(MessageId doing, std::int32_t code, Asker asker);

    explicit operator bool() const { return is_open_; }
    // Why it isn't open.
    const SlotsOutcome& Refusal() const { return refusal_; }
    const core::LevelPlace& Level() const { return change_.Level(); }
    // The folder of the slots.
    const std::string& Slots() const { return slots_; }

  private:
    void Refuse(SlotsResult result, MessageText why) { refusal_ = {result, 0, std::move(why)}; }
    bool Prepare(Asker asker);

    core::Change change_;
    swap::MovingScope moving_;
    std::string slots_;
    SlotsOutcome refusal_;
    bool is_open_ = false;
};

// A savegame with the running number that the game gave it.
struct NumberedSave {
    swap::SavegameFile File;
    std::int32_t Number = 0;
};
std::vector<NumberedSave> NumberedSaves(std::string_view folder);
// In the order of the running numbers; equal ones stay as they stand.
void SortAscending(std::vector<NumberedSave>& saves);

// A savegame of the slots and the number that it gets there.
struct Renumbering {
    swap::SavegameFile File;
    std::int32_t Slot = 0;
};
// Gives the savegames of the slots their new numbers, with their notes, by way of the working folder; those
// that have them already stay where they are. `list` is ascending in Slot; afterwards it says where each of
// them is. One that finds its place taken by a savegame that appeared meanwhile gets the next free number.
SlotsOutcome Renumber(const SlotsWork& work, std::vector<Renumbering>& list);
// All of the slots from 0 on, in the order of their running numbers.
SlotsOutcome Compact(const SlotsWork& work);

} // namespace kelvash::companion
