#include "ui/help_text.h"

#include <gtest/gtest.h>

#include "foundation/text.h"

namespace kelvash::ui {
namespace {

std::optional<std::size_t> Place(std::string_view what, std::size_t from, SearchDirection direction) {
    const auto match = FindText("ɐɐ level ɐ", what, from, direction, SearchUnit::Anywhere);
    if (!match) return std::nullopt;
    return match->position * 100 + match->length;
}

// The capital of this letter exists on this system and has three bytes instead of two.
TEST(HelpText, APositionHoldsBehindLettersWhoseCapitalHasAnotherLength) {
    ASSERT_EQ(FoldCase("ɐ"), "Ɐ");
    EXPECT_EQ(Place("LEVEL", 0, SearchDirection::Forward), 505U);
    EXPECT_EQ(Place("Ɐ", 1, SearchDirection::Forward), 202U);
    EXPECT_EQ(Place("level", 10, SearchDirection::Backward), 505U);
    EXPECT_EQ(Place("level", 9, SearchDirection::Backward), std::nullopt);
    EXPECT_EQ(Place("Ɐ", 12, SearchDirection::Backward), 202U);
    EXPECT_EQ(Place("Ɐ", 13, SearchDirection::Backward), 1102U);
}

} // namespace
} // namespace kelvash::ui
