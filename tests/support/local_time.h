// Times as a test writes them down.
#pragma once

#include <cstdint>
#include <ctime>

namespace kelvash::test {

// Seconds since 1970 of a local time.
inline std::int64_t LocalSeconds(int year, int month, int day, int hour, int minute, int second) {
    std::tm time{};
    time.tm_year = year - 1900;
    time.tm_mon = month - 1;
    time.tm_mday = day;
    time.tm_hour = hour;
    time.tm_min = minute;
    time.tm_sec = second;
    time.tm_isdst = -1;
    return std::mktime(&time);
}

} // namespace kelvash::test
