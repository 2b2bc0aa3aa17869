// The picture of a savegame. There is no link file: the tie is the time of both files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kelvash::companion {

// A picture of a level and its date, seconds since 1970, UTC.
struct DatedImage {
    std::string Path;
    std::int64_t Time = 0;
};
std::vector<DatedImage> DatedImages(const std::vector<std::string>& paths);

// The picture whose date is nearest to that of a savegame, of equally near ones the first; empty if none is
// within the profile's minutes.
std::string LinkedImage(std::int64_t savegame_time, const std::vector<DatedImage>& images);

// Has the user choose one of the level's pictures and gives it the savegame's date; others of just that date
// step five seconds aside. False if nothing was linked.
bool ChooseLinkedImage(std::int32_t code, const std::string& savegame);

} // namespace kelvash::companion
