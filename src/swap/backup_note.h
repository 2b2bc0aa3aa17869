// The note beside the backup: which TRLE folder it is of. docs/formats.md has its lines.
//
// A backup is made beside its place, in the folder that NewBackupFolder names. The note of the new one is
// what says that it is whole; from then on only renames are left, and FinishBackup does those that a killed
// program has left undone.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/user.h"

namespace kelvash::swap {

struct BackupNote {
    std::string TrleFolder;
    std::string GameHash; // of tomb4.exe; empty if it could not be read
    bool Full = false;
    std::string Date; // local time, "yyyy-mm-dd hh:nn:ss"
    // The backup that stood there before is another folder's and stays under a dated name.
    bool KeepsFormer = false;
};

// The text of a note, UTF-8 with CR LF line ends, and back; nothing for a text without a folder and a kind.
std::string EncodeBackupNote(const BackupNote& note);
std::optional<BackupNote> DecodeBackupNote(std::string_view text);

// Nothing if there is none, or one that can't be read.
std::optional<BackupNote> ReadBackupNote();
// Puts the note beside the backup. False after a message.
[[nodiscard]] bool WriteBackupNote(const BackupNote& note);
// A note of this moment.
BackupNote MakeBackupNote(const std::string& trle, bool full);

// Tells one game program from another: CRC-32 and size. Empty if the folder has none that can be read.
std::string GameHash(std::string_view folder);

// Where a backup is made: a folder beside the backup's place.
std::string NewBackupFolder();
// Deletes what a backup that was never whole has left behind. False if it can't.
[[nodiscard]] bool RemoveHalfBackup();
// Declares the new backup whole by its note, and puts it in the place of the old one; profile.FullBackup
// follows. False after a message; FinishBackup tries again then.
[[nodiscard]] bool PlaceBackup(const BackupNote& note);
// Deletes the backup that PlaceBackup has replaced, with the bar moving. False, after a message, if it can't.
bool RemoveFormerBackup(Bar& bar);
// Ends what PlaceBackup was doing when the program was killed. Nothing to do most of the time.
void FinishBackup();

} // namespace kelvash::swap
