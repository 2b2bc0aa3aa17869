#include "foundation/waiting.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <set>

namespace kelvash {
namespace {

double SecondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST(Waiting, SleepsThatLong) {
    EXPECT_GE(SecondsOf([] { WaitMillis(60, Wait::Sleep); }), 0.06);
    EXPECT_GE(SecondsOf([] { WaitTenths(1, Wait::Sleep); }), 0.1);
    EXPECT_GE(SecondsOf([] { WaitSeconds(0.05, Wait::Sleep); }), 0.05);
}

TEST(Waiting, SpinsThatLong) {
    EXPECT_GE(SecondsOf([] { WaitMillis(60, Wait::Spin); }), 0.06);
    EXPECT_GE(SecondsOf([] { WaitTenths(1, Wait::Spin); }), 0.1);
    EXPECT_GE(SecondsOf([] { WaitSeconds(0.05, Wait::Spin); }), 0.05);
}

TEST(Waiting, UnitsAreWhatTheySay) {
    EXPECT_LT(SecondsOf([] { WaitMillis(60, Wait::Sleep); }), 5);
    EXPECT_LT(SecondsOf([] { WaitTenths(1, Wait::Spin); }), 5);
}

TEST(Waiting, NothingToWaitForIsNothing) {
    const double seconds = SecondsOf([] {
        WaitMillis(0, Wait::Sleep);
        WaitMillis(0, Wait::Spin);
        WaitMillis(-100000, Wait::Sleep);
        WaitMillis(-100000, Wait::Spin);
    });
    EXPECT_LT(seconds, 5);
}

TEST(RandomBelow, StaysBelow) {
    std::set<int> seen;
    for (int i = 0; i < 1000; ++i) {
        const int value = RandomBelow(4);
        EXPECT_GE(value, 0);
        EXPECT_LT(value, 4);
        seen.insert(value);
    }
    EXPECT_EQ(seen.size(), 4U);
}

TEST(RandomBelow, NothingIsBelowOneButNull) {
    EXPECT_EQ(RandomBelow(1), 0);
    EXPECT_EQ(RandomBelow(0), 0);
    EXPECT_EQ(RandomBelow(-7), 0);
}

} // namespace
} // namespace kelvash
