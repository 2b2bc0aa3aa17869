// What the program knows for a whole run, all modules together, and its way back to a fresh start.
#include "foundation/state.h"

#include <gmock/gmock.h>

#include "companion/game.h"
#include "companion/settings.h"
#include "core/archive.h"
#include "core/change.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "core/session.h"
#include "core/tr4_info.h"
#include "foundation/drives.h"
#include "foundation/registration.h"
#include "intake/level_config.h"
#include "intake/new_level.h"
#include "program/messages.h"
#include "support/test_home.h"

namespace kelvash {
namespace {

using testing::IsEmpty;

using ProgramState = test::TestHome;

void ExpectFreshCore() {
    EXPECT_EQ(core::archive.Table.Size(), 0);
    EXPECT_FALSE(core::archive.ArchiveChanged);
    EXPECT_EQ(core::archive.SeenFile, "");
    EXPECT_THAT(core::level_list.Items, IsEmpty());
    EXPECT_EQ(core::level_list.Selected, -1);
    EXPECT_EQ(core::EncodeProfile(core::profile), core::EncodeProfile(core::ProfileRecord()));
    EXPECT_FALSE(core::session.Started);
    EXPECT_EQ(core::session.TimerInterval, 0);
    EXPECT_FALSE(core::WasRefused());
    EXPECT_THAT(core::Tr4List, IsEmpty());
}

void ExpectFreshRest() {
    EXPECT_FALSE(companion::game.WatcherActive);
    EXPECT_EQ(companion::joystick_rest.X, 32767);
    EXPECT_FALSE(intake::ConfigApplied);
    EXPECT_EQ(intake::LevelConfig.LevelName, "");
    EXPECT_THAT(intake::LevelConfig.FileNames, IsEmpty());
    EXPECT_TRUE(MayRegister());
}

void ChangeCore() {
    core::archive.Table = {{}, {}};
    core::archive.ArchiveChanged = true;
    core::archive.SeenFile = "C:\\a.kva";
    core::level_list = {{{"City", 1}}, 0};
    core::profile.TrleFolder = "C:\\trle";
    core::profile.SavegamesToKeep = 9;
    core::session.Started = true;
    core::session.TimerInterval = 300;
    core::Tr4List = {{"city.tr4", 1, 2}};
}

void ChangeRest() {
    companion::game.WatcherActive = true;
    companion::joystick_rest.X = 5;
    intake::ConfigApplied = true;
    intake::LevelConfig.LevelName = "City";
    intake::LevelConfig.FileNames = {"a.wav"};
    AllowRegistration(false);
}

TEST_F(ProgramState, IsFreshAtFirst) {
    ExpectFreshCore();
    ExpectFreshRest();
}

TEST_F(ProgramState, IsThatOfAFreshStartAfterAReset) {
    ChangeCore();
    ChangeRest();
    ResetProgramState();
    ExpectFreshCore();
    ExpectFreshRest();
    EXPECT_EQ(AppFolder(), "");
}

TEST_F(ProgramState, LosesTheRefusalOfAChange) {
    user.MayBeTold("The level is no longer in the Archive");
    core::profile.TrleFolder = "C:\\trle";
    {
        const core::Change change(msg::kDoingMendTrle, core::kHomeFolder, 77); // no such level
        EXPECT_FALSE(change);
    }
    EXPECT_TRUE(core::WasRefused());
    ResetProgramState();
    EXPECT_FALSE(core::WasRefused());
}

// A profile that was read and one that is at its defaults are told apart by what the file held.
TEST_F(ProgramState, ForgetsWhatTheProfilesFileHeld) {
    ASSERT_EQ(core::LoadProfile(), core::ProfileState::FirstRun);
    core::profile.SavegamesToKeep = 9;
    ASSERT_TRUE(core::WriteProfile());
    ResetProgramState();
    MapDrives();
    EXPECT_TRUE(core::WriteProfile());
    core::ProfileRecord written;
    EXPECT_TRUE(core::DecodeProfile(test::BytesOf(home / "Kelvash.prf"), written));
    EXPECT_EQ(written.SavegamesToKeep, 5) << "a file that this run hasn't read has nothing to merge";
}

} // namespace
} // namespace kelvash
