// What the main window shows of the selected level, and its document.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelvash::program {

struct LevelView {
    std::int32_t Code = 0;
    std::string Name;
    std::string Author;
    bool IsIn = false;          // it is in TRLE
    std::string TakenOut;       // name of the level that has to leave TRLE before this one is played
    std::string Note;           // one line, trimmed
    std::string Place;          // folder, CD and counts, in one line
    std::string Folder;         // on disk
    bool FolderMissing = false; // the level's folder isn't where the Archive says
    std::vector<std::string> Screenshots;       // full paths
    std::vector<std::string> SlotSavegames;     // full paths
    std::vector<std::string> ArchivedSavegames; // full paths
};

// The selected level; nothing without a selection, or after a message for a code that no level has.
std::optional<LevelView> SelectedLevelView();

// Opens the selected level's document with the desktop's program. One that lies only on the level's CD is
// copied to disk first, with the files that a page refers to. A document that can't be had is told.
void ShowMoreInfo();

} // namespace kelvash::program
