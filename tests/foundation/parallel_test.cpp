#include "foundation/parallel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

#include "foundation/pumping.h"
#include "support/foundation_home.h"
#include "support/pump_clock.h"

namespace kelvash::test {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

class Parallel : public FoundationHome {
  protected:
    Parallel() { SetPumpClock(&std::chrono::steady_clock::now); }
    const JobScope job{Stop::Offered};
};

// Items end in another order than they begin.
std::size_t SquareOf(std::size_t item) {
    std::this_thread::sleep_for(milliseconds(item % 3 == 0 ? 3 : 0));
    return item * item;
}

TEST_F(Parallel, ItemsAreTakenInOrderOnThisThread) {
    const auto own = std::this_thread::get_id();
    for (const Effort effort : {Effort::Heavy, Effort::Little}) {
        std::vector<std::size_t> taken;
        const ParallelEnd end = ParallelMap({100, 4, effort}, &SquareOf,
                                            [&](std::size_t item, const std::optional<std::size_t>& result) {
                                                EXPECT_EQ(std::this_thread::get_id(), own);
                                                EXPECT_EQ(item, taken.size());
                                                taken.push_back(result.value_or(0));
                                                return true;
                                            });
        EXPECT_EQ(end, ParallelEnd::Done);
        ASSERT_EQ(taken.size(), 100U);
        EXPECT_EQ(taken[99], 99U * 99U);
    }
}

TEST_F(Parallel, HeavyWorkIsDoneElsewhereAndLittleHere) {
    const auto own = std::this_thread::get_id();
    const auto is_here = [&](std::size_t) { return std::this_thread::get_id() == own; };
    std::vector<bool> heavy, little;
    ParallelMap({3, 4, Effort::Heavy}, is_here, [&](std::size_t, std::optional<bool> here) {
        heavy.push_back(here.value());
        return true;
    });
    ParallelMap({3, 4, Effort::Little}, is_here, [&](std::size_t, std::optional<bool> here) {
        little.push_back(here.value());
        return true;
    });
    EXPECT_THAT(heavy, ElementsAre(false, false, false));
    EXPECT_THAT(little, ElementsAre(true, true, true));
}

TEST_F(Parallel, NoMoreItemsAreInFlightThanAllowed) {
    std::atomic<int> open = 0;
    std::atomic<int> most = 0;
    ParallelFor(
        {50, 3, Effort::Heavy},
        [&](std::size_t) {
            const int now = ++open;
            int seen = most;
            while (now > seen && !most.compare_exchange_weak(seen, now)) {
            }
        },
        [&](std::size_t, bool) {
            std::this_thread::sleep_for(milliseconds(1)); // the workers would run ahead
            --open;
            return true;
        });
    EXPECT_LE(most, 3);
    EXPECT_GE(most, 2);
}

TEST_F(Parallel, AnExceptionIsThatItemsFailure) {
    for (const Effort effort : {Effort::Heavy, Effort::Little}) {
        std::string whole;
        const ParallelEnd end = ParallelMap(
            {5, 4, effort},
            [](std::size_t item) {
                if (item == 1) throw std::runtime_error("one");
                if (item == 3) throw 3;
                return item;
            },
            [&](std::size_t, const std::optional<std::size_t>& result) {
                whole += result ? 'y' : 'n';
                return true;
            });
        EXPECT_EQ(end, ParallelEnd::Done);
        EXPECT_EQ(whole, "ynyny");
    }
}

TEST_F(Parallel, TakingCanEndIt) {
    for (const Effort effort : {Effort::Heavy, Effort::Little}) {
        std::atomic<int> begun = 0;
        const ParallelEnd end = ParallelFor(
            {1000, 4, effort}, [&](std::size_t) { ++begun; },
            [](std::size_t item, bool) { return item < 10; });
        EXPECT_EQ(end, ParallelEnd::Ended);
        EXPECT_LE(begun, 11 + 4);
    }
}

TEST_F(Parallel, AStopEndsItBetweenItems) {
    for (const Effort effort : {Effort::Heavy, Effort::Little}) {
        user.stop = false;
        std::atomic<int> begun = 0;
        int taken = 0;
        const ParallelEnd end = ParallelFor(
            {1000, 4, effort}, [&](std::size_t) { ++begun; },
            [&](std::size_t, bool) {
                user.stop = ++taken == 5;
                return true;
            });
        EXPECT_EQ(end, ParallelEnd::Stopped);
        EXPECT_EQ(taken, 5);
        EXPECT_LE(begun, 5 + 4);
    }
}

TEST_F(Parallel, TheInterfaceIsLookedAfterWhileItWaits) {
    ParallelFor(
        {1, 1, Effort::Heavy}, [](std::size_t) { std::this_thread::sleep_for(milliseconds(400)); },
        [](std::size_t, bool) { return true; });
    EXPECT_GE(user.pumps, 8); // 20 on an idle machine
}

TEST_F(Parallel, AStopWaitsForWhatHasBegunWithTheInterfaceAtWork) {
    std::atomic<bool> ended = false;
    user.stop_at_pump = 1;
    const ParallelEnd end = ParallelFor(
        {4, 1, Effort::Heavy},
        [&](std::size_t) {
            std::this_thread::sleep_for(milliseconds(300));
            ended = true;
        },
        [](std::size_t, bool) { return true; });
    EXPECT_EQ(end, ParallelEnd::Stopped);
    EXPECT_TRUE(ended);
    EXPECT_GE(user.pumps, 6);
}

TEST_F(Parallel, NothingToDoIsDone) {
    EXPECT_EQ(ParallelFor(
                  {0}, [](std::size_t) { FAIL(); }, [](std::size_t, bool) { return false; }),
              ParallelEnd::Done);
}

TEST_F(Parallel, OnePieceOfWorkRunsBesideTheInterface) {
    EXPECT_TRUE(Beside([] { std::this_thread::sleep_for(milliseconds(300)); }));
    EXPECT_GE(user.pumps, 6);
    EXPECT_FALSE(Beside([] { throw std::runtime_error("no"); }));
    user.stop = true;
    bool done = false;
    EXPECT_TRUE(Beside([&] { done = true; })) << "it isn't what the user can stop";
    EXPECT_TRUE(done);
}

TEST(WithoutAJob, APieceOfWorkRunsHere) {
    std::thread::id where;
    EXPECT_TRUE(Beside([&] { where = std::this_thread::get_id(); }));
    EXPECT_EQ(where, std::this_thread::get_id());
}

} // namespace
} // namespace kelvash::test
