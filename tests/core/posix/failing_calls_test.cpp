// Each call of a move that changes the file system fails in turn. Then the Archive must load, and every
// level's files be whole where it says they are.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <iostream>

#include "core/archive.h"
#include "core/maintenance.h"
#include "core/profile.h"
#include "support/fault_home.h"

namespace kelvash::test {
namespace {

class MaintenanceFailingCalls : public FaultHome {
  protected:
    void SetUp() override {
        if (!CanTrace()) GTEST_SKIP() << "no process can be traced here";
    }
    // True if the Archive names the new place.
    bool CheckMove() const;
    void FailMove(int error, bool lasting);
    Operation Move() {
        return {"move", 1, Backup::Full, [this] {
                    user.WillAnswer("Select target folder", "C:\\new");
                    return core::MoveArchive() ? 0 : 1;
                }};
    }
    void PrepareMove(const Operation& operation);
    bool OldFoldersAreLeft() const;

    std::map<std::int32_t, FileMap> before; // what lies in the level folders
};

bool MaintenanceFailingCalls::CheckMove() const {
    const std::string named = core::archive.Header.SecondaryFolder;
    EXPECT_EQ(core::archive.Header.MainFolder, named);
    EXPECT_TRUE(named == "C:\\Levels" || named == "C:\\new") << named;
    const std::filesystem::path folder = named == "C:\\new" ? drive / "new" : drive / "Levels";
    EXPECT_EQ(core::archive.Table.Size(), 5);
    for (const auto& [code, files] : before)
        EXPECT_EQ(TreeOf(folder / ("LEVEL_000" + std::to_string(code))), files) << "level " << code;
    return named == "C:\\new";
}

void MaintenanceFailingCalls::PrepareMove(const Operation& operation) {
    Prepare(operation);
    std::filesystem::create_directories(drive / "new");
    Keep(pristine);
    for (const WorldLevel& level : levels)
        before[level.code] = TreeOf(world.LevelPath(level.code));
}

bool MaintenanceFailingCalls::OldFoldersAreLeft() const {
    return std::any_of(levels.begin(), levels.end(), [this](const WorldLevel& level) {
        return Exists(drive / "Levels" / ("LEVEL_000" + std::to_string(level.code)));
    });
}

void MaintenanceFailingCalls::FailMove(int error, bool lasting) {
    const Operation operation = Move();
    PrepareMove(operation);
    const int points = CountCalls(operation);
    int moved = 0;
    for (int at = 1; at <= points && !HasFailure(); ++at) {
        SCOPED_TRACE("call " + std::to_string(at) + " fails with " + std::to_string(error) +
                     (lasting ? ", and all later ones" : ""));
        const TracedRun run = RunWith(operation, {Fault::Fail, at, error, lasting});
        StartProgram();
        const bool at_new_place = CheckMove();
        EXPECT_EQ(run.exit_code, at_new_place ? 0 : 1);
        EXPECT_TRUE(at_new_place || std::filesystem::is_empty(drive / "new"));
        moved += at_new_place ? 1 : 0;
        if (at_new_place) continue;
        EXPECT_EQ(operation.run(), 0) << "the next try";
        EXPECT_TRUE(CheckMove());
        user.Forget();
    }
    EXPECT_TRUE(moved > 0 && moved < points) << moved;
    EXPECT_TRUE(StartIsUntouched());
    std::cout << "  " << points << " calls failed in move" << (lasting ? ", lasting" : ", once") << "\n";
}

TEST_F(MaintenanceFailingCalls, OfAMoveLeaveEveryLevelWhole) {
    FailMove(EIO, false);
}

// What a kill leaves at the old place is told at the next start.
TEST_F(MaintenanceFailingCalls, AKilledMoveTellsOfOldFolders) {
    const Operation operation = Move();
    PrepareMove(operation);
    const int points = CountCalls(operation);
    int told = 0;
    for (int at = 1; at <= points && !HasFailure(); ++at) {
        SCOPED_TRACE("killed at call " + std::to_string(at));
        EXPECT_TRUE(RunWith(operation, {Fault::Kill, at}).killed);
        StartProgram();
        const bool at_new_place = CheckMove();
        const std::vector<std::string>& lines = user.Told();
        const bool is_told = std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
            return line.find("Their old folders haven't all been removed from: C:\\Levels") !=
                   std::string::npos;
        });
        EXPECT_EQ(is_told, at_new_place && OldFoldersAreLeft());
        told += is_told ? 1 : 0;
        user.Forget();
    }
    EXPECT_GT(told, 0);
    std::cout << "  " << points << " kills in move, " << told << " told\n";
}

TEST_F(MaintenanceFailingCalls, OnAFullDiskLeaveEveryLevelWhole) {
    FailMove(ENOSPC, true);
}

} // namespace
} // namespace kelvash::test
