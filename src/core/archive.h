// The open Archive: its header, its level table, its file, and the folders of its levels.
//
// The table keeps the order of the file. Outside it a level is known by its code, which an operation turns
// into a LevelPlace once, at its door.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/archive_file.h"
#include "trle_state/level_place.h"

namespace kelvash::core {

// The state of the open Archive. Its file's path is profile.LastArchive; blank means that none is open.
struct ArchiveState : ArchiveContents {
    bool ArchiveChanged = false;     // memory differs from the file
    bool CdMissing = false;          // set by each call of LevelFolder or ReachFolder
    bool ArchiveLoadRefused = false; // the user gave a needed folder up while an Archive was loaded
    std::string SeenFile;            // the file that was read or written last, and what it held then
    ArchiveStamp Seen;
    std::int64_t SeenTime = 0; // its date, as FileTime
};
extern ArchiveState& archive;

bool ArchiveIsOpen();
// Leaves none open: table and list are empty.
void CloseArchive();

// Place in the table of the level with that code; -1 if no level has it.
std::int32_t LevelIndex(std::int32_t code);
// What a code, or a place in the table, stands for. An operation finds that once, at its door, and hands it
// down.
using trle_state::LevelPlace;
LevelPlace PlaceOf(std::int32_t code);
LevelPlace PlaceAt(std::int32_t index);
// "\LEVEL_" and the code in at least four digits.
std::string LevelFolderName(std::int32_t code);
// The folder of a level. With `on_cd` that of a level on CD is on its disc, which is asked for; if it is
// refused the result is empty and archive.CdMissing true. A code that no level has gives the path it would
// have.
std::string LevelFolder(std::int32_t code, bool on_cd);
// The same for a level that has been found, with `on_cd`.
std::string ReachFolder(const LevelPlace& level);
// The folder of a level on the disc in a drive ("X:"), found by looking; empty if it isn't there.
std::string CdLevelFolder(std::string_view drive, std::int32_t code);
// The folder in a disc's root that holds the level folders; empty if there is none.
std::string FindArchiveFolderOnCd(std::string_view drive);

// Sub-folders of a level's folder.
std::string FilesFolder(std::string_view level_folder);
std::string SavegamesFolder(std::string_view level_folder); // the archived ones; the slots' lie in the stash
std::string StashFolder(std::string_view level_folder);     // BACKUP_SAVEGAMES
std::string ScreenshotsFolder(std::string_view level_folder);
// Makes `path` and its four sub-folders; false at the first that fails.
[[nodiscard]] bool CreateLevelFolders(std::string_view path);

// To be called after each change of the header or a record: saves at once when AutoSave is on (a failed write
// is told), else remembers the change.
void ArchiveTouched();
// Offers to save a changed Archive; with AutoSave on it saves without a question. False if its changes are
// neither saved nor given up: who would drop them leaves the Archive open.
bool AskSaveArchive();
// Gives up what the file doesn't hold yet; the Archive is to be closed or loaded anew.
void DropChanges();
// Adds bytes (below 0 too) to a level's FilesSize or SavesSize and, for an index above 0, to the header's
// sum.
enum class SizeKind { Files = 1, Saves = 2 };
void AddLevelSize(std::int32_t index, double bytes, SizeKind kind);

// Writes the Archive and takes the path as its file. False, with nothing changed, if it can't be written, or
// if another program has written the file since it was read and the user doesn't want it overwritten.
[[nodiscard]] bool WriteArchive(std::string_view path);
// Notes that a file holds what the Archive was read from or written to.
void NoteSeenArchive(const std::string& path, const ArchiveStamp& stamp);
// Reads the Archive's file again if another program has written it and memory holds no change of its own.
// True if it did. Places in the table are void then; the selected level stays if it is still there.
bool RefreshArchive();
// False if another program has written the Archive's file since it was read or written here, and the user,
// shown both, doesn't want to overwrite it.
[[nodiscard]] bool MayOverwriteArchive(std::string_view path);
// Loads an Archive over the open one. False without a message if it can't be opened, or if the user gives a
// missing folder up (then archive.ArchiveLoadRefused is set and the table stays loaded).
[[nodiscard]] bool LoadArchive(std::string_view path);
// The same for a file that the user chooses; false on cancel, or after a message.
[[nodiscard]] bool LoadArchiveDialog();
// Saves under a name that the user chooses and tells a failure; not to overwrite another program's work is
// one.
enum class SavedAs { Saved, GivenUp, Failed };
[[nodiscard]] SavedAs SaveArchiveAs();
// Saves under the current path and tells a failure.
bool SaveArchive();
// Starts an Archive with level 0000 alone in a folder that the user chooses. False on cancel or failure: no
// Archive is open then, and its caller may load the former one again.
[[nodiscard]] bool NewArchive();

// Asks for a new place of a missing main or secondary folder. False if the user gives up.
[[nodiscard]] bool CheckArchiveFolders();
// The record of level 0000 as every new Archive has it.
LevelRecord LevelZero();
// The first file name LevelArchive.kva, LevelArchive2.kva, ... of the application's folder that is free; the
// hundredth if none is.
std::string DefaultArchivePath();
// Asks for the folder of a new Archive, which must be empty; empty on cancel. The folder proposed is made at
// once and stays.
std::string SelectNewArchiveFolder();

// "Kelvash: 12 (LevelArchive.kva levels)": the bracket closes behind the word.
std::string ArchiveTitle();

} // namespace kelvash::core
