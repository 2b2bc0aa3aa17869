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
#include "trle_state/file_stamp.h"

namespace kelvash::companion {

// The door of an operation on a level's savegames: the locks, a TRLE folder whose swap has ended, and nothing
// left in the working folder. One at a time: an operation that begins in the middle of another, from an event
// that a box or a long copy lets through, finds it shut. For the watcher kNoLevel is the level of another
// Archive that is in TRLE.
class SlotsWork {
  public:
    SlotsWork(MessageId doing, std::int32_t code, Asker asker);

    explicit operator bool() const { return is_open_; }
    // Why it isn't open.
    const SlotsOutcome& Refusal() const { return refusal_; }
    const core::LevelPlace& Level() const { return level_; }
    // The folder of the slots.
    const std::string& Slots() const { return slots_; }

    // True for a file right in the slots.
    bool IsInSlots(std::string_view path) const;
    // True if a savegame that was chosen before the door is the level's, and still the one that was seen;
    // else `why`. `seen` may know nothing, or no hash.
    bool Has(const std::string& savegame, const trle_state::FileStamp& seen, MessageText& why) const;

  private:
    bool Refuse(MessageText why, SlotsResult result = SlotsResult::Refused);
    bool Enter(std::int32_t code, Asker asker);
    bool TakeLevel(std::int32_t code, Asker asker);
    bool Prepare(Asker asker);

    core::Change change_;
    swap::MovingScope moving_;
    core::LevelPlace level_;
    std::string slots_;
    SlotsOutcome refusal_;
    bool is_open_ = false;
};

// What a savegame is before somebody is asked about it, for Has: its bytes tell it from another one.
trle_state::FileStamp StampWithHash(const std::string& savegame);

// A savegame with the running number that the game gave it.
struct NumberedSave {
    swap::SavegameFile File;
    std::int32_t Number = 0;
};
// Takes those that can't be read out of a list, and gives them: nobody can copy them, so they stay where they
// are.
std::vector<NumberedSave> TakeUnreadable(std::vector<NumberedSave>& saves);
std::vector<NumberedSave> NumberedSaves(std::string_view folder);
// In the order of the running numbers; equal ones stay as they stand.
void SortAscending(std::vector<NumberedSave>& saves);
// The lowest slot from `from` on whose names no folder, no dead link and no unreadable savegame has.
std::int32_t UsableSlot(const SlotsWork& work, std::int32_t from);

// A savegame of the slots and the number that it gets there.
struct Renumbering {
    swap::SavegameFile File;
    std::int32_t Slot = 0;
};
// Gives the savegames of the slots their new numbers, with their notes, by way of the working folder; those
// that have them already stay where they are. `list` is ascending in Slot; afterwards it says where each of
// them is. One that finds its place taken by a savegame that appeared meanwhile gets the next free number.
SlotsOutcome Renumber(const SlotsWork& work, std::vector<Renumbering>& list);
// For one that is an operation's first step: tells of what has changed nothing that it hasn't.
SlotsOutcome Untouched(SlotsOutcome outcome);
// All of the slots that can be read from 0 on, in the order of their running numbers.
SlotsOutcome Compact(const SlotsWork& work);

} // namespace kelvash::companion
