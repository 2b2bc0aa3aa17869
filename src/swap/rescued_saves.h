// Saves that have no place: nobody's, or of a level that is gone. They are put into folders rescued_saves_1,
// _2, ... of the application's folder, each with a note of where they came from, and never under the name of
// another level.
#pragma once

#include <string>
#include <vector>

#include "foundation/messages.h"
#include "swap/messages.h"

namespace kelvash::swap {

// Moves files into a new rescue folder and tells where they are, in the words of `told`; `from` is where they
// belonged, as a person may read it. True without a word for no files. False if one of them can't be put
// there whole: it is still where it was.
[[nodiscard]] bool RescueFiles(const std::vector<std::string>& files, const std::string& from,
                               MessageId told = msg::kSavesRescued);

struct RescuedSaves {
    std::string Folder;
    std::string From; // of the note; empty where there is none
    std::vector<std::string> Files;
};
// The rescue folders that still hold something.
std::vector<RescuedSaves> ListRescuedSaves();
// Tells once of those folders that haven't been told of at a start of the program.
void TellRescuedSaves();

} // namespace kelvash::swap
