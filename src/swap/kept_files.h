// The user's own files that a swap is about to overwrite, displace or delete: they are put aside first.
//
// They lie in kept_files of the application's folder, in a folder with the date of the operation, each at its
// place below TRLE; waves in kept_files\audio, from where they can be brought back at once. What the backup
// holds isn't the user's own, nor are load.bmp, error.log and edgeptr.pcx, which the game rewrites.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "trle_state/swap_record.h"

namespace kelvash::swap {

// What one operation has put aside.
struct KeptFiles {
    std::string Folder = {}; // empty before the first file
    int Count = 0;
    std::vector<std::string> Failed = {}; // full paths of those that couldn't be put aside
};

// True if the backup holds the file's bytes at the same place, or nobody needs them.
bool IsHeldElsewhere(const std::string& target);
// Moves a file of the TRLE folder aside unless it is held elsewhere or missing. `place` is where it went;
// empty if it stayed. False if it can't be put aside: then it must stay where it is.
[[nodiscard]] bool KeepFile(const std::string& target, KeptFiles& kept, std::string& place);
[[nodiscard]] bool KeepFile(const std::string& target, KeptFiles& kept);
// Brings a file back that was put aside for one that then couldn't come, unless something stands there;
// `place` is where it went, and empty once it is back.
void PutBack(const std::string& target, KeptFiles& kept, std::string& place);
// Tells where an operation's files are, and which couldn't be put aside; nothing if there are none.
void TellKept(const KeptFiles& kept);

// Waves that are kept and that the TRLE folder lacks, by name.
std::vector<std::string> MissingKeptWaves();
// Offers to bring these back. True if any came back.
bool OfferKeptWaves();

} // namespace kelvash::swap
