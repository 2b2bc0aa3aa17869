#include "foundation/date_text.h"

#include <gtest/gtest.h>

#include "support/local_time.h"

namespace kelvash {
namespace {

TEST(FormatDate, FillsThePatternsOfTheTable) {
    const std::int64_t seconds = test::LocalSeconds(2004, 3, 9, 7, 5, 8);
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
