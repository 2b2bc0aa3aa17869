// The levels of the demo: what they are called and which files they have.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/records.h"

namespace kelvash::cli {

// A level as its author would publish it.
struct DemoLevel {
    core::LevelRecord record;
    std::vector<std::pair<std::string, std::string>> files; // name, content
    bool compressed = false;                                // kept in the smaller forms
    std::vector<std::pair<std::string, std::string>> saves; // in its stash
    std::vector<unsigned> shots;                            // its screenshots: what each landscape looks like
};

// Those of the Archive, with codes from 1, and those that come as zips.
std::vector<DemoLevel> ArchiveLevels();
std::vector<DemoLevel> ZippedLevels();

// The files of the TRLE folder but the game: path relative to it, content.
std::vector<std::pair<std::string, std::string>> TrleFiles();
// Its folders, each after the one that holds it.
const std::vector<std::string>& TrleFolders();

} // namespace kelvash::cli
