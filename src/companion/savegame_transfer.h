// Savegames that come into a level from elsewhere, and copies that leave it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "companion/slots_outcome.h"

namespace kelvash::companion {

// The most that one import takes where one savegame stays in the slots.
inline constexpr std::int32_t kMostToImport = 14;

// Puts savegames into the lowest free slots, without their notes. Where they don't fit the slots are archived
// first; if they don't fit then either that is told, and it is Nothing, or Partly after an archiving. One
// that is in the slots already is refused.
[[nodiscard]] SlotsOutcome ImportSavegames(std::int32_t code, const std::vector<std::string>& files);

// Copies savegames into a folder under their own names, without their notes; of one name the second and the
// following ones go to sub-folders slot1, slot2, ... Asks before it replaces a file. With Sources::Delete
// each goes out of the level once its copy has been compared, and its note goes along with it.
enum class Sources { Keep, Delete };
[[nodiscard]] SlotsOutcome ExportSavegames(std::int32_t code, const std::vector<std::string>& files,
                                           const std::string& folder, Sources sources);

// What the user chooses, as the commands of the menu ask for it: a savegame to import, a folder to import
// from, a folder to export to. Empty if nothing was chosen.
std::string ChooseSavegameToImport();
std::string ChooseImportFolder();
std::string ChooseExportFolder();

// What Dialog_ListSaveGame works on.
enum class ListPurpose { Import, Export, Mail };
// The savegames to choose from: those of a folder, or the slots and then the archived ones of a level. Empty
// after a message.
std::vector<std::string> SavegamesToList(std::int32_t code, ListPurpose purpose, const std::string& folder);
// For a list in which nothing has been chosen.
void TellNothingChosen();

} // namespace kelvash::companion
