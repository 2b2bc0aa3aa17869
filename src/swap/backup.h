// The backup of TRLE's original files, which every removal and restore reads from.
//
// It is full (the whole tree) or compact (the root's own kinds of files, DATA and GRAPHICS);
// profile.FullBackup says which. A compact one can't bring waves, wads, samples and scripts back.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/user.h"

namespace kelvash::swap {

// Room asked for, in bytes.
inline constexpr std::int64_t kFullBackupRoom = 251658240;
inline constexpr std::int64_t kCompactBackupRoom = 94371840;

// True if the backup has a .dat and a .bmp file in its root and a level.
[[nodiscard]] bool BackupIsValid();

// Asks whether TRLE holds its original configuration; its folder if so. Otherwise the user is told to set
// TRLE up again, and the result is empty.
std::string AskOriginalConfiguration();

// Makes the backup, asking which kind. With `force_full` it is made anew without a question of kind, without
// a test of room and although a valid one stands. False if the user or the disk refuses.
[[nodiscard]] bool CreateBackup(bool force_full);

// The command "Create\Refresh full backup", with the main window's label and bar.
void RefreshFullBackup();

} // namespace kelvash::swap
