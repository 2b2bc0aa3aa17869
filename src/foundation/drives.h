// Drives, the system's folders, and the border between path texts and the platform's paths.
//
// On Windows a path text is the platform's path. Elsewhere the drives are those of the Wine prefix
// ($WINEPREFIX or ~/.wine, its dosdevices); without a prefix C: is the folder drive_c of the application's
// folder and Z: the whole file system. Any drive can be set by hand: SetDrive, or lines "L=folder[,cdrom]" in
// drives.txt of the application's folder.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash {

// The numbers are those of the scripting file-system object that DriveRecord's type field follows.
enum class DriveType { Unknown = 0, Removable = 1, Fixed = 2, Network = 3, CdRom = 4, RamDisk = 5 };

struct DriveRecord {
    char letter = ' ';
    bool ready = false;
    std::string share_name;
    std::string volume_name; // at most 64 characters
    std::uint32_t serial_number = 0;
    DriveType type = DriveType::Unknown;
    std::int64_t free_bytes = 0;
    std::int64_t total_bytes = 0;
};

// Sets the application's folder and finds the drives: the platform's own, then drives.txt, then what SetDrive
// was told before. `home` is a native path; it is made if it is missing. False if that fails.
[[nodiscard]] bool SetAppFolder(const std::filesystem::path& home);
// The application's folder as a path text.
std::string AppFolder();
// The program's own executable as a path text.
std::string ProgramPath();
// The platform's rule for the application's folder when no option names one: KELVASH_HOME, the program's own
// folder where it holds a Kelvash.prf, else the user's data folder.
std::filesystem::path DefaultAppFolder();

// Puts a drive letter on a native folder. False for a letter outside A to Z or a folder that is missing.
[[nodiscard]] bool SetDrive(char letter, const std::filesystem::path& folder, DriveType type);
// Forgets the application's folder and all drives.
void ResetDrives();

// The platform's path of a path text: the one way to it. Names are found without regard to case where the
// disk has regard to it: the exact name first. Components that don't exist stay as they are spelt. An unknown
// drive, a text without a drive, or one with a NUL or a "/" gives a path that doesn't exist.
std::filesystem::path NativePath(std::string_view path);
// The shortest path text of any drive that reaches a native path; empty if none does or the path can't be
// spelt as one. Relative paths count from the working folder.
std::string DosPath(const std::filesystem::path& native);
// A path text made of what a person typed: a DOS path as it is, anything else taken as a native path.
std::string PathFromUser(std::string_view typed);

// The native folders that all drives begin with.
std::vector<std::filesystem::path> DriveRoots();

// Fills the record; false and an empty record for a missing drive. `letter` may be followed by more text.
bool DriveInfo(std::string_view letter, DriveRecord& record);
// "X:" texts of the CD drives from C to Z, and of the fixed drives. A letter that stands for the whole file
// system of a Unix counts as a network drive: nothing is to be put into its root.
std::vector<std::string> CdDrives();
std::vector<std::string> FixedDrives();
// The fixed drive with the most free space, as "X:", and that space; empty if there is none.
std::string BestFixedDrive(std::int64_t& free_bytes);
// Free bytes on the drive of a path; -1 if they can't be told.
std::int64_t FreeSpace(std::string_view path);

enum class SpecialFolderId { Temporary, Programs, Desktop, ProgramFiles, Documents, System };
// A folder of the system without a back-slash at its end; empty on failure.
std::string SpecialFolder(SpecialFolderId id);

} // namespace kelvash
