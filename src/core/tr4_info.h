// The file tr4.inf of a level's folder, by which levels are compared without their files or their CD.
//
// A 32-bit count, then one record of 92 bytes for each .tr4 file of the level.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/record.h"
#include "foundation/user.h"
#include "trle_state/level_place.h"

namespace kelvash::core {

struct Tr4Info {
    std::string FileName;
    double FileDate = 0; // days since 1899-12-30, local time
    std::int32_t FileSize = 0;
};
// The table in use, filled by ListTr4 and ReadTr4Info.
extern std::vector<Tr4Info>& Tr4List;

inline constexpr std::size_t kTr4InfoSize = 92;
inline constexpr std::array<Field<Tr4Info>, 3> kTr4InfoFields = {{
    {"FileName", 0, 80, &Tr4Info::FileName},
    {"FileDate", 80, 8, &Tr4Info::FileDate},
    {"FileSize", 88, 4, &Tr4Info::FileSize},
}};
static_assert(IsLayout(kTr4InfoFields, kTr4InfoSize));

// The records that the bytes of a file hold; a count that states more of them than are there is corrected.
std::vector<Tr4Info> DecodeTr4Info(std::string_view bytes);
std::string EncodeTr4Info(const std::vector<Tr4Info>& list);

std::string Tr4InfoPath(const trle_state::LevelPlace& level);

// Fills Tr4List with the .tr4 files of a folder; names are what a record holds of them.
void ListTr4(std::string_view folder);
// Writes Tr4List to the tr4.inf of a level. False if it can't be written; the old one stands then.
[[nodiscard]] bool WriteTr4Info(const trle_state::LevelPlace& level);
// Fills Tr4List from the tr4.inf of a level. False if it has none.
[[nodiscard]] bool ReadTr4Info(const trle_state::LevelPlace& level);

// A level whose tr4.inf has a file of the same name and size as one of a list. Dates don't count.
struct EqualLevel {
    trle_state::LevelPlace Level;
    std::string FileName;
};
// True, with the first such level of the table other than `own_code`. Advances the bar by level, if one is
// given.
[[nodiscard]] bool CheckEqualLevels(const std::vector<Tr4Info>& list, std::int32_t own_code,
                                    EqualLevel& equal, Bar* bar = nullptr);

// The command "Check for equal levels in archive": the number of equal levels found, -1 if it was broken off.
std::int32_t ControllaUguali();

} // namespace kelvash::core
