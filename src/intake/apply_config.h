// What a package file asks for while its level is added.
#pragma once

#include <string>
#include <vector>

#include "intake/level_config.h"
#include "intake/new_level.h"

namespace kelvash::intake {

// Takes kelvash.cfg out of the work folder and carries it out, once in a dialog. Name and note go into the
// dialog, what it tells of the author straight into the record. State is Cancelled if the level can't be had
// without wads that are missing.
void ApplyLevelConfig(NewLevel& level);
// Compares the files with the list of the package file. A quiet check fails at the first difference, a loud
// one asks. True as well if the list came from elsewhere than the level's own zip.
enum class Loudness { Quiet, Loud };
[[nodiscard]] bool CheckLevelConfigFiles(const NewLevel& level, Loudness loudness);

// The steps, on the files of a folder. Targets never leave it: what asks for a name that no file can have is
// left out and noted.
using RefusedNames = std::vector<std::string>;
void ApplyDuplications(const std::string& folder, RefusedNames& refused);
void ApplyExternWaves(const std::string& folder, RefusedNames& refused);
void ApplyUseWads(const std::string& folder, RefusedNames& refused);
// True if the wads of a pair of ImportWads are in the Level Editor.
[[nodiscard]] bool WadsInstalled(const std::string& proof, const std::string& url);

} // namespace kelvash::intake
