// Putting a level into the TRLE folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "swap/backup.h"

namespace kelvash::swap {

// One file of a level and its place relative to the TRLE folder, with a leading back-slash.
struct WorkItem {
    std::string Name;
    std::string Target;
};

// What an install will do to the TRLE folder.
struct InstallPlan {
    std::vector<WorkItem> Items;
    std::vector<std::string> Overwritten; // targets that stand already, and the language file that goes
    std::string LanguageFile; // name of TRLE's language file that the level displaces; may be empty
};

// Which files of a level's folder go where, in order. A name may occur twice.
std::vector<WorkItem> BuildWorkList(const std::string& files);
InstallPlan PlanInstall(const std::string& files, const std::string& trle);

// Takes the previous level out and this one in, with its saves; 0 gives the original configuration back. True
// if the level is ready to run. False after a message: the previous level may be out all the same.
[[nodiscard]] bool InstallLevel(std::int32_t code);
// The same as a part of an operation that OnChosenFolder runs.
Swapped InstallHere(const trle_state::LevelPlace& level);

// For an install that has failed: what went wrong has been told.
void TellNotInstalled();

} // namespace kelvash::swap
