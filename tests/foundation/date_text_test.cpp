#include "foundation/date_text.h"

#include <ctime>

#include "support/foundation_home.h"

namespace kelvash {
namespace {

std::int64_t LocalSeconds(int year, int month, int day, int hour, int minute, int second) {
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

TEST(FormatDate, FillsThePatternsOfTheTable) {
    const std::int64_t seconds = LocalSeconds(2004, 3, 9, 7, 5, 8);
    EXPECT_EQ(FormatDate("dd/mm/yyyy  hh:nn:ss", seconds), "09/03/2004  07:05:08");
    EXPECT_EQ(FormatDate("hh:nn  dd/mm/yyyy", seconds), "07:05  09/03/2004");
    EXPECT_EQ(FormatDate("dd/mm/yyyy hh.nn.ss", seconds), "09/03/2004 07.05.08");
}

TEST(FormatDate, LeavesOtherCharactersAlone) {
    EXPECT_EQ(FormatDate("[x] ", 0), "[x] ");
    EXPECT_EQ(FormatDate("", 0), "");
}

} // namespace
} // namespace kelvash
