// A level as an operation finds it, once, at its door: what its code stands for.
//
// It says how things were then. Whoever takes levels out of the table, or opens another Archive, finds anew.
#pragma once

#include <cstdint>
#include <string>

namespace kelvash::trle_state {

// A code that no level of an Archive has.
inline constexpr std::int32_t kNoLevel = -1;

struct LevelPlace {
    std::int32_t Code = kNoLevel;
    std::int32_t Index = -1;   // in the level table; -1 if no level has the code
    std::int32_t CdNumber = 0; // of the CD that holds its files; 0: they are in its folder
    std::string Name;          // trimmed; empty for a code that no level has
    std::string Folder;        // the one on disk; for a code that no level has, the one that it would have

    bool IsListed() const { return Index >= 0; }
};

} // namespace kelvash::trle_state
