// Savegames and their notes as files: which note is whose, which number is free, and how a pair moves.
//
// The number of a savegame is that of its extension. Several odd ones may have one number (savegame.1,
// savegame.01, and savegame.bak is 0): the note note<N>.txt is that of the one with the plain number, else of
// the first.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::swap {

struct SavegameFile {
    std::string Path;
    std::string Note = {}; // its own; empty without one
};

// The number behind the dot of the file's name; 0 for any other text there.
std::int32_t SlotNumber(std::string_view path);
std::string SavegamePath(std::string_view folder, std::int32_t number);
std::string NotePath(std::string_view folder, std::int32_t number);
// True for the name of a note, "note" and a plain number.
bool IsNoteName(std::string_view name);
// The savegames of a folder in the order of their names.
std::vector<SavegameFile> ListSavegameFiles(std::string_view folder);
// True if a note of this savegame's number is, or would be, its own.
bool OwnsItsNote(std::string_view path);
// Notes whose savegame isn't there, as full paths.
std::vector<std::string> ListLoneNotes(std::string_view folder);

// The savegame that a number of a folder stands for, with its note if it is to have one.
SavegameFile PairAt(std::string_view folder, std::int32_t number, bool has_note);
// True if another one holds the same bytes, and the same note where this one has any.
bool IsHeldBy(const SavegameFile& save, const SavegameFile& other);

// True for a number under whose names something stands that is no file: a folder, a link that leads nowhere.
bool IsBlocked(std::string_view folder, std::int32_t number);
// The lowest number from `from` on, and behind the highest from 0 on, under which nothing stands, a note
// whose savegame is gone aside.
std::int32_t FreeNumber(std::string_view folder, std::int32_t from);

// Gives a savegame and its note a second place under a number that FreeNumber gave. A note there whose
// savegame is gone goes to REPEATED of the level first. False with nothing left there. Copy: with bytes of
// its own.
enum class Placing { Move, Copy };
[[nodiscard]] bool PlacePair(const SavegameFile& save, std::string_view folder, std::int32_t number,
                             std::string_view level_folder, Placing placing);
// Takes away the old place of one that has been placed: the note first, so that none is ever alone.
[[nodiscard]] bool LeavePair(const SavegameFile& save);

// Where savegames go that have the number, but not the bytes, of another.
std::string RepeatedFolder(std::string_view level_folder);
// Moves a savegame with its note, or a note alone, there. Nothing is replaced.
[[nodiscard]] bool MoveToRepeated(const SavegameFile& save, std::string_view level_folder);
[[nodiscard]] bool MoveNoteToRepeated(const std::string& note, std::string_view level_folder);

// A note whose savegame goes because `stays` is its twin: it becomes that one's, unless that has another,
// which sends it to REPEATED. False if it is still where it was.
[[nodiscard]] bool PassNote(const std::string& note, const SavegameFile& stays,
                            std::string_view level_folder);

} // namespace kelvash::swap
