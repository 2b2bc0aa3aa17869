#include "foundation/date_text.h"

#include <chrono>

#include "foundation/platform/platform.h"
#include "foundation/text.h"

namespace kelvash {

namespace {

// The number that a letter of a pattern stands for; -1 for any other character.
int NumberFor(char letter, const platform::LocalTime& time) {
    switch (letter) {
        case 'd':
            return time.day;
        case 'm':
            return time.month;
        case 'y':
            return time.year;
        case 'h':
            return time.hour;
        case 'n':
            return time.minute;
        case 's':
            return time.second;
        default:
            return -1;
    }
}

} // namespace

std::string FormatDate(std::string_view pattern, std::int64_t seconds) {
    const platform::LocalTime time = platform::ToLocalTime(seconds);
    std::string text;
    for (std::size_t i = 0; i < pattern.size();) {
        const int number = NumberFor(pattern[i], time);
        std::size_t end = i + 1;
        while (number >= 0 && end < pattern.size() && pattern[end] == pattern[i])
            ++end;
        text += number < 0 ? std::string(1, pattern[i]) : ZeroPadded(number, static_cast<int>(end - i));
        i = end;
    }
    return text;
}

double DayCount(std::int64_t seconds) {
    constexpr double kSecondsADay = 86400;
    const platform::LocalTime time = platform::ToLocalTime(seconds);
    const std::chrono::sys_days day = std::chrono::year(time.year) /
                                      std::chrono::month(static_cast<unsigned>(time.month)) /
                                      std::chrono::day(static_cast<unsigned>(time.day));
    constexpr std::chrono::sys_days kDayZero =
        std::chrono::year(1899) / std::chrono::December / std::chrono::day(30);
    const int second = (time.hour * 60 + time.minute) * 60 + time.second;
    return static_cast<double>((day - kDayZero).count()) + second / kSecondsADay;
}

} // namespace kelvash
