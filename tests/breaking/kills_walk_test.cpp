// Random operations of the real program with kills and damage by hand between them.
#include "breaking/walk.h"

namespace kelvash::test {
namespace {

class KillPointsWalk : public WalkHome, public testing::WithParamInterface<int> {};

TEST_P(KillPointsWalk, LosesNoSaveAndNoOriginal) {
    constexpr int kSteps = 25;
    constexpr unsigned kApart = 1000;
    const int rounds = LongForm() ? 2 * BreakingRounds() : 1;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        BeginWalk(static_cast<unsigned>(GetParam()) * kApart + static_cast<unsigned>(round));
        for (int i = 0; i < kSteps; ++i)
            if (!Step()) break;
        if (!HasFailure()) EndWalk();
        if (HasFailure()) ADD_FAILURE() << Road();
    }
    EXPECT_GT(figures.Of("operations"), 0);
    if (!HasFailure()) {
        EXPECT_GT(figures.Of("kills"), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, KillPointsWalk, testing::Range(1, 4));

} // namespace
} // namespace kelvash::test
