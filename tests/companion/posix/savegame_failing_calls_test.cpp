// Each call of an operation on savegames that changes the file system fails in turn: once, or from there on
// every call that takes room. What is told must be true, and nothing is lost.
#include <cerrno>

#include "companion/posix/savegame_faults_home.h"

namespace kelvash::companion {
namespace {

using test::Fault;
using test::RunTraced;
using test::SavegameOperation;
using test::SaveMap;

class SavegameFailingCalls : public test::SavegameFaultsHome {
  protected:
    // What the slots hold; for TRLE the savegames and notes there.
    SaveMap InSlots() const {
        SaveMap found;
        for (const auto& entry : std::filesystem::directory_iterator(SlotsNow())) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with("savegame.") || name.starts_with("note")) found[name] = What(entry.path());
        }
        return found;
    }

    void FailEverywhere(const SavegameOperation& operation, int error, bool lasting) {
        const auto body = [&] { return static_cast<int>(operation.run().Result); };
        Arrange(operation);
        const SaveMap before = InSlots();
        const int calls = RunTraced(body, Plan(Fault::None, 0)).calls;
        const SaveMap after = InSlots();
        std::map<SlotsResult, int> results;
        for (int at = 1; at <= calls && !HasFailure(); at += Step(operation)) {
            SCOPED_TRACE(operation.name + ": call " + std::to_string(at) + " of " + std::to_string(calls) +
                         (lasting ? " and all later ones fail with " : " fails with ") +
                         std::to_string(error));
            Arrange(operation);
            const test::TracedRun run = RunTraced(body, Plan(Fault::Fail, at, error, lasting));
            ASSERT_GE(run.exit_code, 0);
            const auto result = static_cast<SlotsResult>(run.exit_code);
            ++results[result];
            if (result == SlotsResult::Done) {
                EXPECT_EQ(InSlots(), after);
            }
            if (result == SlotsResult::Refused) ExpectRefused(before);
            swap::LookForMovedSaves();
            ExpectAll(operation.may_go);
        }
        std::cout << "  " << calls << " failing calls in " << operation.name << ": "
                  << results[SlotsResult::Done] << " done, " << results[SlotsResult::Refused] << " refused, "
                  << results[SlotsResult::Partly] << " partly\n";
        EXPECT_GT(results[SlotsResult::Refused] + results[SlotsResult::Partly], 0);
    }
    // A lone note may have gone aside, and names may be others; savegames are where they were.
    void ExpectRefused(SaveMap before) const {
        SaveMap now = InSlots();
        std::multiset<std::string> saves, saves_now;
        for (const auto& [name, what] : before)
            if (name.starts_with("savegame.")) saves.insert(what);
        for (const auto& [name, what] : now)
            if (name.starts_with("savegame.")) saves_now.insert(what);
        EXPECT_EQ(saves_now, saves);
    }
    void FailAll() {
        for (const SavegameOperation& operation : Operations()) {
            FailEverywhere(operation, ENOSPC, false);
            FailEverywhere(operation, ENOSPC, true);
            FailEverywhere(operation, EACCES, false);
        }
    }
};

TEST_F(SavegameFailingCalls, AreToldInTheseWords) {
    const std::vector<std::string> texts = {
        "The savegames stay as they are. There is no room, or I cannot read: C:\\Levels",
        "The savegames stay as they are. I cannot move: C:\\Levels",
        "slot2, but the slots are not as they should be.\r\nI cannot move: C:\\Levels",
        "slot2, but the slots are not as they should be.\r\nThere is no room, or I cannot read: C:\\Levels",
        "The savegames could not all be put in order. Those that are missing in the slots are brought back "
        "as "
        "soon as that is possible. They lie in: C:\\Kelvash\\_temp_savegame",
        "The savegames stay as they are. There is no room in the Archive, or I cannot read: C:\\Levels",
        "slot2, but the slots are not as they should be.\r\nNot all of the archived ones could be taken out "
        "of: "
        "C:\\Levels",
        "The savegame has been deleted, but not its description: "
        "C:\\Levels\\LEVEL_0001\\backup_savegames\\note4.txt"};
    std::set<std::size_t> told;
    for (const SavegameOperation& operation : Operations()) {
        if (operation.name != "archive two" && operation.name != "compact" && operation.name != "delete")
            continue;
        const auto body = [&] {
            const std::string message = operation.run().Message.text;
            int found = 0;
            for (std::size_t i = 0; i < texts.size(); ++i)
                if (message.find(texts[i]) != std::string::npos) found |= 1 << i;
            return found;
        };
        Arrange();
        const int calls = RunTraced(body, {}).calls;
        for (int at = 1; at <= calls; ++at) {
            for (const test::FaultPlan& plan :
                 {test::FaultPlan{Fault::Fail, at, EACCES, false}, {Fault::Fail, at, ENOSPC, true}}) {
                Arrange();
                const int found = RunTraced(body, plan).exit_code;
                for (std::size_t i = 0; i < texts.size(); ++i)
                    if ((found >> i & 1) != 0) told.insert(i);
            }
        }
    }
    for (std::size_t i = 0; i < texts.size(); ++i)
        EXPECT_EQ(told.count(i), 1U) << texts[i];
}

TEST_F(SavegameFailingCalls, LoseNothingInTheStash) {
    FailAll();
}

TEST_F(SavegameFailingCalls, LoseNothingBetweenTwoDrives) {
    no_links = true;
    for (const SavegameOperation& operation : Operations())
        if (!operation.from_full) FailEverywhere(operation, ENOSPC, true);
}

TEST_F(SavegameFailingCalls, LoseNothingInTrle) {
    ASSERT_TRUE(swap::InstallLevel(1));
    where = test::Where::InTrle;
    FailAll();
}

} // namespace
} // namespace kelvash::companion
