// Each operation on savegames is killed at every call that changes the file system. What the next look at the
// lists, or the next operation, finds must be all that was there.
#include "companion/posix/savegame_faults_home.h"

namespace kelvash::companion {
namespace {

using test::Exists;
using test::Fault;
using test::RunTraced;
using test::SavegameOperation;

class SavegameKillPoints : public test::SavegameFaultsHome {
  protected:
    void KillEverywhere(const SavegameOperation& operation) {
        const auto body = [&] { return static_cast<int>(operation.run().Result); };
        Arrange(operation);
        const test::TracedRun whole = RunTraced(body, Plan(Fault::None, 0));
        ASSERT_EQ(whole.exit_code, static_cast<int>(SlotsResult::Done)) << operation.name;
        ASSERT_GT(whole.calls, 5);
        int waiting = 0;
        for (int at = 1; at <= whole.calls && !HasFailure(); at += Step(operation)) {
            SCOPED_TRACE(operation.name + " killed at call " + std::to_string(at) + " of " +
                         std::to_string(whole.calls));
            Arrange(operation);
            ASSERT_TRUE(RunTraced(body, Plan(Fault::Kill, at)).killed);
            waiting += Exists(home / "_temp_savegame") ? 1 : 0;
            swap::LookForMovedSaves();
            ExpectAll(operation.may_go);
            ExpectPairs(operation.may_go);
            EXPECT_EQ(CompactSlots(1, Asker::User).Result, SlotsResult::Done);
            ExpectAll(operation.may_go);
            ExpectPairs(operation.may_go);
            ExpectNothingMoving();
        }
        std::cout << "  " << whole.calls << " kill points in " << operation.name << ", " << waiting
                  << " with the working folder\n";
        EXPECT_EQ(waiting > 0, operation.renumbers);
    }
};

TEST_F(SavegameKillPoints, LoseNothingInTheStash) {
    for (const SavegameOperation& operation : Operations())
        KillEverywhere(operation);
}

TEST_F(SavegameKillPoints, LoseNothingBetweenTwoDrives) {
    no_links = true;
    for (const SavegameOperation& operation : Operations())
        if (!operation.from_full) KillEverywhere(operation);
}

TEST_F(SavegameKillPoints, LoseNothingInTrle) {
    ASSERT_TRUE(swap::InstallLevel(1));
    where = test::Where::InTrle;
    for (const SavegameOperation& operation : Operations())
        KillEverywhere(operation);
}

// The next thing may be a swap, or another level's operation.
TEST_F(SavegameKillPoints, ASwapBringsThemHomeFirst) {
    AddLevel(2, "Coast", {{"coast.tr4", "coast"}});
    ASSERT_TRUE(swap::InstallLevel(1));
    where = test::Where::InTrle;
    const auto body = [] { return static_cast<int>(CompactSlots(1, Asker::User).Result); };
    Arrange();
    const int calls = RunTraced(body, {}).calls;
    int waiting = 0;
    for (int at = 1; at <= calls && !HasFailure(); ++at) {
        SCOPED_TRACE("killed at call " + std::to_string(at));
        Arrange();
        ASSERT_TRUE(RunTraced(body, {Fault::Kill, at}).killed);
        waiting += Exists(home / "_temp_savegame") ? 1 : 0;
        ASSERT_TRUE(swap::InstallLevel(2));
        EXPECT_TRUE(GamesFiles().empty());
        ExpectAll({});
        ASSERT_TRUE(swap::InstallLevel(1));
        ExpectAll({});
        ExpectNothingMoving();
    }
    EXPECT_GT(waiting, 0);
}

} // namespace
} // namespace kelvash::companion
