// What is in the TRLE folder now, as record, marker and files tell it together.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "trle_state/level_owner.h"
#include "trle_state/swap_record.h"

namespace kelvash::trle_state {

enum class Holds {
    Original, // no level
    Level,    // the level of Record.Owner
    CutShort, // a swap that didn't end; Record says how far it came
    Unknown   // files of a level that nobody here knows, or none at all; the saves are nobody's
};

struct TrleState {
    Holds Content = Holds::Original;
    // Of the swap record; where there is none that holds, of the marker, with files that bear no stamp.
    SwapRecord Record = {};
    bool FromRecord = false;
    bool MarkerStands = false;
    std::string MarkerText = {};  // in UTF-8
    std::string OwnerFolder = {}; // empty if the saves are nobody's, or the owner's folder is gone
    std::int32_t Code = kNoLevel; // the owner's in the open Archive
};

// Reads only. A level is in while the marker is the one that was written with the record; when it isn't
// (deleted, cut, edited, or another program swapped meanwhile), while every .tr4 of the record stands as it
// was. Else the marker counts: its level is the open Archive's of that code if that has its name, or its
// tr4.inf tells of the .tr4 files there; otherwise what is in is unknown. A TRLE folder that can't be read
// decides nothing: the record counts as it stands.
TrleState LookAtTrle();

// Code of the level of the open Archive that is in the TRLE folder: 0 for the original configuration,
// kNoLevel while that of another Archive, or half of one, is in; 0 also where nothing tells; a code that no
// level has is given as the marker states it. Who would change what isn't original asks for the Content.
std::int32_t CurrentLevelCode();
// True if the level is in TRLE, wholly or as a swap that was cut short has left it.
bool IsInTrle(std::int32_t code);
// True if each file that the level in TRLE brought could be copied.
bool LevelIsWhole();

} // namespace kelvash::trle_state
