#include "companion/black_test.h"

#include <gtest/gtest.h>

namespace kelvash::companion {
namespace {

swap::Picture Black(std::uint32_t width, std::uint32_t height) {
    return {width, height, std::string(std::size_t{width} * height * 3, '\0')};
}

swap::Picture WithLightAt(std::uint32_t x, std::uint32_t y, std::size_t colour = 0) {
    swap::Picture picture = Black(9, 7);
    picture.Pixels[(std::size_t{y} * 9 + x) * 3 + colour] = '\1';
    return picture;
}

TEST(BlackTest, TakesABlackImageForOne) {
    EXPECT_FALSE(IsImageNotBlack(Black(9, 7)));
    EXPECT_FALSE(IsImageNotBlack(Black(1, 1)));
    EXPECT_FALSE(IsImageNotBlack({}));
}

TEST(BlackTest, SeesTheFaintestLightInMiddleRowAndColumn) {
    for (std::size_t colour = 0; colour < 3; ++colour) {
        EXPECT_TRUE(IsImageNotBlack(WithLightAt(0, 3, colour)));
        EXPECT_TRUE(IsImageNotBlack(WithLightAt(8, 3, colour)));
        EXPECT_TRUE(IsImageNotBlack(WithLightAt(4, 0, colour)));
        EXPECT_TRUE(IsImageNotBlack(WithLightAt(4, 6, colour)));
    }
}

// The sample is a cross, which is meant.
TEST(BlackTest, OverlooksALineOffTheCentreThatMissesTheCross) {
    EXPECT_FALSE(IsImageNotBlack(WithLightAt(3, 2)));
    swap::Picture line = Black(9, 7);
    for (std::uint32_t y = 0; y < 7; ++y)
        if (y != 3) line.Pixels[(std::size_t{y} * 9 + 2) * 3] = '\xFF';
    EXPECT_FALSE(IsImageNotBlack(line));
    line.Pixels[(std::size_t{3} * 9 + 2) * 3] = '\xFF'; // a whole one crosses the middle row
    EXPECT_TRUE(IsImageNotBlack(line));
}

} // namespace
} // namespace kelvash::companion
