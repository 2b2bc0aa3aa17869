// Level folders that no record of the Archive names: of a level that was removed without its folder, of an
// older Archive file, of another Archive on the same folder.
//
// A new level never empties such a folder. It is moved to KEPT in the Archive's folder under its name and the
// date, moves along with the Archive, and can be taken back as a level.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::core {

// KEPT in the Archive's folder; it need not exist.
std::string KeptFolder();

struct KeptLevel {
    std::string Folder; // name below KEPT
    std::string Name;   // proposed for the level
    std::int64_t Bytes = 0;
};
// What lies in KEPT, by name.
std::vector<KeptLevel> ListKept();

// True if a folder holds sub-folders only, at any depth. So for a missing one.
[[nodiscard]] bool HoldsNoFile(std::string_view folder);
// Moves a folder into `kept_folder`, which is made, under a name of its own; its new path. Empty if it can't.
std::string KeepFolder(const std::string& folder, const std::string& kept_folder);
// Makes way for a new level's folder: one that holds files is kept, which is told, an empty one goes. False
// after a message.
[[nodiscard]] bool MakeWay(const std::string& folder);

// Makes a kept folder a level with the next free code. The level's code, selected; -1 after a message, with
// the folder in KEPT again, if that or the saving of the Archive failed.
std::int32_t TakeKept(const std::string& folder_name);
// The command "Take back a kept level folder": asks which. True if one was taken.
bool TakeKeptLevel();

} // namespace kelvash::core
