// The backup of TRLE's original files, which every removal and restore reads from.
//
// It is full (the whole tree) or compact (the root's own kinds of files, DATA and GRAPHICS); a compact one
// can't bring waves, wads, samples and scripts back. A note beside it (backup_note.h) says which kind it is
// and of which TRLE folder; profile.FullBackup follows the note.
//
// A backup is made beside its place and takes it when it is whole. Whatever breaks the making off, the one
// that stood before stands still.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "foundation/messages.h"
#include "foundation/user.h"
#include "trle_state/level_place.h"

namespace kelvash::swap {

// Room asked for, in bytes.
inline constexpr std::int64_t kFullBackupRoom = 251658240;
inline constexpr std::int64_t kCompactBackupRoom = 94371840;

// The folder backup_trle of the application's folder.
std::string BackupFolder();

// True if the backup has a .dat and a .bmp file in its root and a level.
[[nodiscard]] bool BackupIsValid();

// What the backup is worth for the TRLE folder in use. Unsure: it has no note and no game program to compare,
// or TRLE seems to have moved; the user knows.
enum class BackupState { Missing, Foreign, Unsure, Valid };
BackupState StateOfBackup();

// The door of the install of a level, which it passes once the previous one is out, and of the full restore;
// the way back to the original configuration has none. Open if the backup is valid and of the TRLE folder in
// use. Otherwise says what is missing and offers to make it, or to choose the TRLE folder anew. What can't be
// known is asked once. Elsewhere: the user wants another folder; whatever was begun in this one is to be
// ended first.
enum class Door { Open, Closed, Elsewhere };
[[nodiscard]] Door RequireBackup();

// How an operation behind the door has ended. Elsewhere: cleanly, for another TRLE folder.
enum class Swapped { Done, Failed, Elsewhere };
// Runs an operation that meets the door under its own Change. Where the user wants another TRLE folder he is
// asked for it with no lock held, and the operation begins anew there, with that folder's locks and its look
// for a game. False after a message, or when no folder is chosen.
// The operation is given the level of that code as its door has found it.
using SwapOperation = std::function<Swapped(const trle_state::LevelPlace& level)>;
[[nodiscard]] bool OnChosenFolder(MessageId doing, std::int32_t level, const SwapOperation& operation);

// Asks whether TRLE holds its original configuration; its folder if so. Otherwise the user is told to set
// TRLE up again, and the result is empty.
std::string AskOriginalConfiguration();

// Makes the backup, asking which kind. With `force_full` it is made anew without a question of kind, without
// a test of room and although a valid one stands; files of the old one that TRLE lacks stay in it. False,
// after a message, if the user or the disk refuses, or a custom level is in TRLE or may be.
[[nodiscard]] bool CreateBackup(bool force_full);

// Tells that nothing says whether a level's files are in TRLE, so that no backup can be made of it.
void TellContentUnknown();

// The command "Create\Refresh full backup", with the main window's label and bar. True if it was made; a
// failure is told.
bool RefreshFullBackup();

} // namespace kelvash::swap
