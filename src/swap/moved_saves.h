// The working folder of the savegames that are being renumbered, and the way home for what a killed run has
// left there.
//
// It is _temp_savegame of the application's folder. Before its first file moved_saves.rec beside it tells, on
// the disk, whose they are: the Archive, the level and its folder; docs/formats.md has its lines. Whoever
// renumbers next, each swap and each start bring home what lies there; what has no home any more goes to
// rescued_saves_N.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/message_text.h"
#include "trle_state/swap_record.h"

namespace kelvash::swap {

struct MovedSaves {
    std::string Archive = {}; // its file
    trle_state::LevelOwner Owner = {};
};
std::string EncodeMovedSaves(const MovedSaves& moved);
// Nothing for bytes that are damaged or cut in any way.
std::optional<MovedSaves> DecodeMovedSaves(std::string_view bytes);

std::string MovingFolder();
std::string MovingRecord();

// Where the saves of the level with that folder are now: the TRLE root while they are there, else its stash.
// Empty if that can't be told, or reached: TRLE is gone with the level in it, or nobody knows whose the saves
// in TRLE are and they may be those of level 0000.
std::string SlotsOfFolder(std::string_view level_folder);

// Writes the record and makes the empty folder. False, with why: nothing has changed then.
[[nodiscard]] bool BeginMoving(const trle_state::LevelOwner& owner, MessageText& why);
// Takes away the empty folder and then the record. False if the folder still holds something.
[[nodiscard]] bool EndMoving();

// Brings home what lies in the folder: a savegame that its level has already only leaves, any other takes its
// own number, or the lowest that is free. The caller holds the locks. With Rescue::No nothing is told, and
// what has no home stays where it is; so does what has one while TRLE is missing. False, with why, if
// something is left, or if a renumbering is under way.
enum class Rescue { Yes, No };
[[nodiscard]] bool BringMovedSavesHome(Rescue rescue, MessageText& why);
// The same for a start of the program and for whoever is about to list savegames, under locks of its own.
// Without an open Archive, and while the game runs, nothing is rescued or told. Nothing is done while another
// program is at work, or a MovingScope of this one stands.
void LookForMovedSaves();

// Says for its length that an operation of this run uses the folder.
class MovingScope {
  public:
    MovingScope();
    ~MovingScope();
    MovingScope(const MovingScope&) = delete;
    MovingScope& operator=(const MovingScope&) = delete;

    // False for one that stands in another: an operation began in the middle of it.
    bool IsOutermost() const { return is_outermost_; }

  private:
    bool is_outermost_;
};

// Says from BeginMoving to the last move that files lie between two places: nobody brings them home then.
class RenumberScope {
  public:
    RenumberScope();
    ~RenumberScope() { End(); }
    RenumberScope(const RenumberScope&) = delete;
    RenumberScope& operator=(const RenumberScope&) = delete;
    void End();

  private:
    bool stands_ = true;
};

} // namespace kelvash::swap
