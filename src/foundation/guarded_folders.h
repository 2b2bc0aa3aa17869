// Folders that no procedure empties or deletes, whatever path it was given.
//
// Always guarded are the root of every drive, the user's home and the application's folder. The upper layers
// add theirs: TRLE's folder and those of the open Archive. What holds a guarded folder is guarded with it;
// what lies below one is not. A folder is known however it is spelt: through links, another drive, "..",
// another case, dots or blanks at its end.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvash {

// AllButFiles: single files by a mask may be deleted there all the same, as a full restore has to.
enum class Guard { Whole, AllButFiles };
struct GuardedFolder {
    std::string path; // empty ones are left out
    Guard guard = Guard::Whole;
};
// Adds a procedure that tells the folders to guard at the time of each question. True, so that a module can
// add its own before anything runs.
using GuardedFolders = std::vector<GuardedFolder> (*)();
bool AddGuardedFolders(GuardedFolders folders);

// True if a folder and all below it may be deleted. False for a text that is no path of a folder below a
// drive.
bool MayDeleteTree(std::string_view folder);
// True if files right in this folder may be deleted by a mask.
bool MayDeleteFilesIn(std::string_view folder);

} // namespace kelvash
