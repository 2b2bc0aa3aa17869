#include "foundation/pumping.h"

#include <gtest/gtest.h>

#include <thread>

#include "foundation/files.h"
#include "support/foundation_home.h"
#include "support/pump_clock.h"

namespace kelvash::test {
namespace {

using std::chrono::milliseconds;

class Pumping : public FoundationHome {
  protected:
    // How often the interface is looked after while something is done in a job, of which each step takes that
    // long.
    template <class Doing>
    int PumpsOf(milliseconds step, Doing doing) {
        const JobScope job;
        user.pumps = 0;
        SetPumpStep(step);
        doing();
        SetPumpStep(milliseconds(0));
        return user.pumps;
    }
};

TEST_F(Pumping, ComesNoMoreOftenThanTheInterval) {
    const auto steps = [] {
        for (int i = 0; i < 1000; ++i)
            PumpNowAndThen();
    };
    EXPECT_EQ(PumpsOf(milliseconds(30), steps), 1000);
    const int pumps = PumpsOf(milliseconds(1), steps);
    EXPECT_GE(pumps, 1000 / 15 - 3);
    EXPECT_LE(pumps, 1000 / 15);
}

TEST_F(Pumping, NeedsAJob) {
    SetPumpStep(milliseconds(100));
    PumpNowAndThen();
    EXPECT_EQ(user.pumps, 0) << "what an idle window reads is no job";
    const JobScope job;
    PumpNowAndThen();
    EXPECT_EQ(user.pumps, 1);
}

TEST_F(Pumping, IsNoneOfAFormsThatWaitsForTheUser) {
    const JobScope job;
    SetPumpStep(milliseconds(100));
    user.job_waits = true;
    PumpNowAndThen();
    EXPECT_EQ(user.pumps, 0);
}

TEST_F(Pumping, IsNoneOfAnotherThread) {
    const JobScope job;
    SetPumpStep(milliseconds(100));
    std::thread(&PumpNowAndThen).join();
    EXPECT_EQ(user.pumps, 0);
}

TEST_F(Pumping, DoesNotNest) {
    const JobScope job;
    SetPumpStep(milliseconds(100));
    user.when_pumped = [] { PumpNowAndThen(); };
    PumpNowAndThen();
    EXPECT_EQ(user.pumps, 1);
    PumpNowAndThen();
    EXPECT_EQ(user.pumps, 2);
}

TEST_F(Pumping, TellsAStop) {
    const JobScope job(Stop::Offered);
    SetPumpStep(milliseconds(100));
    user.stop_at_pump = 2;
    EXPECT_FALSE(StopWantedByNow());
    EXPECT_TRUE(StopWantedByNow());
}

TEST_F(Pumping, AWaitIsFullOfThem) {
    const auto start = std::chrono::steady_clock::now();
    WaitPumping(0.2);
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(200));
    EXPECT_GE(user.pumps, 4); // 10 on an idle machine
}

// --- what may take long ---

TEST_F(Pumping, ComesWithEachEntryOfAFolder) {
    for (int i = 0; i < 100; ++i)
        MakeFile(drive / "many" / std::to_string(i), "");
    EXPECT_GE(PumpsOf(milliseconds(25), [] { EXPECT_EQ(ListFiles("C:\\many", "*").size(), 100U); }), 100);
    EXPECT_GE(PumpsOf(milliseconds(25), [] { EXPECT_FALSE(AnyFile("C:\\many", "*.x")); }), 100);
    EXPECT_GE(PumpsOf(milliseconds(25), [] { EXPECT_EQ(TreeSize("C:\\many", "*"), 0); }), 100);
    EXPECT_GE(PumpsOf(milliseconds(25), [] { EXPECT_TRUE(DeleteFiles("C:\\many", "*")); }), 200);
}

TEST_F(Pumping, ComesWithinABigFile) {
    constexpr std::size_t kBig = std::size_t{64} << 20;
    MakeFile(drive / "big", std::string(kBig, 'b'));
    EXPECT_GE(PumpsOf(milliseconds(25), [&] { EXPECT_EQ(ReadWholeFile("C:\\big").size(), kBig); }), 1000)
        << "each 64 KiB";
    const std::string bytes(kBig, 'w');
    EXPECT_GE(PumpsOf(milliseconds(25), [&] { EXPECT_TRUE(ReplaceFileBytes("C:\\new", bytes, Flush::No)); }),
              30)
        << "each 2 MiB";
}

TEST_F(Pumping, ComesWithEachFileOfATreeThatGoes) {
    for (int i = 0; i < 300; ++i)
        MakeFile(drive / "tree" / std::to_string(i) / "file", "");
    Bar bar;
    // Read, deleted, and its folder removed.
    EXPECT_GE(PumpsOf(milliseconds(25), [&] { EXPECT_TRUE(RemoveFolderTree("C:\\tree", bar)); }), 900);
}

TEST_F(Pumping, ComesWithAStepThatMovesNoBar) {
    Bar bar;
    const int pumps = PumpsOf(milliseconds(25), [&] {
        for (int i = 0; i < 1000; ++i)
            ProgressPercent(bar, i, 1e9);
    });
    EXPECT_EQ(user.percents.size(), 1U);
    EXPECT_EQ(pumps, 1000);
}

} // namespace
} // namespace kelvash::test
