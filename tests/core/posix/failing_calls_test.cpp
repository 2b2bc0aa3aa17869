// Each call of a move that changes the file system fails in turn. Then the Archive must load, and every
// level's files be whole where it says they are.
#include <gtest/gtest.h>

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

    std::map<std::int32_t, FileMap> before; // what lies in the level folders
};

bool MaintenanceFailingCalls::CheckMove() const {
    const std::string named = core::archive.Header.SecondaryFolder;
    EXPECT_EQ(core::archive.Header.MainFolder, named);
    EXPECT_TRUE(named == "C:\\Levels" || named == "C:\\new") << named;
    const std::filesystem::path folder = named == "C:\\new" ? drive / "new" : drive / "Levels";
    EXPECT_EQ(core::archive.Header.LevelCount, 5);
    for (const auto& [code, files] : before)
        EXPECT_EQ(TreeOf(folder / ("LEVEL_000" + std::to_string(code))), files) << "level " << code;
    return named == "C:\\new";
}

void MaintenanceFailingCalls::FailMove(int error, bool lasting) {
    const Operation operation{"move", 1, Backup::Full, [this] {
                                  user.WillAnswer("Select target folder", "C:\\new");
                                  return core::MoveArchive() ? 0 : 1;
                              }};
    Prepare(operation);
    std::filesystem::create_directories(drive / "new");
    Keep(pristine);
    for (const WorldLevel& level : levels)
        before[level.code] = TreeOf(world.LevelPath(level.code));
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

TEST_F(MaintenanceFailingCalls, OnAFullDiskLeaveEveryLevelWhole) {
    FailMove(ENOSPC, true);
}

} // namespace
} // namespace kelvash::test
