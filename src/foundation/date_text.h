// Dates as texts, by the patterns of the message table.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvash {

// A time (seconds since 1970, UTC) as local time by a pattern such as "dd/mm/yyyy  hh:nn:ss": runs of d, m,
// y, h, n (minutes) and s stand for the number in as many digits; everything else stands as it is.
std::string FormatDate(std::string_view pattern, std::int64_t seconds);

// The same local time as the days since 1899-12-30, the date format of records.
double DayCount(std::int64_t seconds);

} // namespace kelvash
