// A refresh while the game runs: savegames that a killed run left in the working folder come home, but
// nothing is rescued, and no box lies below the game.
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "core/level_list.h"
#include "core/ports.h"
#include "program/level_view.h"
#include "support/savegame_home.h"
#include "swap/install.h"
#include "swap/moved_saves.h"
#include "trle_state/level_owner.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class RefreshBesideAGame : public SavegameHome {
  protected:
    RefreshBesideAGame() {
        EXPECT_TRUE(swap::InstallLevel(1));
        MakeFile(trle / "savegame.0", SaveBytes("City", 1));
        fs::copy_file("/bin/sleep", trle / "tomb4.exe", fs::copy_options::overwrite_existing);
        game_ = fork();
        if (game_ == 0) {
            if (chdir(trle.c_str()) == 0) execl("./tomb4.exe", "tomb4.exe", "60", nullptr);
            _exit(127);
        }
        for (int i = 0; i < 1000 && core::FindGame() != game_; ++i)
            usleep(10'000);
        EXPECT_EQ(core::FindGame(), game_);
        core::RefreshLevelList();
        core::SelectLevel(1);
    }
    ~RefreshBesideAGame() override { EndGame(); }
    void EndGame() {
        if (game_ <= 0) return;
        kill(game_, SIGKILL);
        waitpid(game_, nullptr, 0);
        game_ = 0;
    }
    void Leave(int slot, int number) const {
        MakeFile(home / "_temp_savegame" / ("savegame." + std::to_string(slot)), SaveBytes("City", number));
    }
    void Record() {
        MessageText why;
        ASSERT_TRUE(swap::BeginMoving(trle_state::OwnerOf(core::PlaceOf(1)), why)) << why.text;
    }
    pid_t game_ = 0;
};

TEST_F(RefreshBesideAGame, BringsHomeWhatHasAnOwner) {
    Record();
    Leave(3, 4);
    const auto view = program::SelectedLevelView();
    ASSERT_TRUE(view);
    EXPECT_EQ(view->SlotSavegames.size(), 2U);
    EXPECT_EQ(BytesOf(trle / "savegame.3"), SaveBytes("City", 4));
    ExpectNothingMoving();
    EXPECT_TRUE(user.Told().empty());
}

TEST_F(RefreshBesideAGame, LeavesWhatHasNoneForItsEnd) {
    Leave(3, 4);
    const auto view = program::SelectedLevelView();
    ASSERT_TRUE(view);
    EXPECT_EQ(view->SlotSavegames.size(), 1U);
    EXPECT_TRUE(Exists(home / "_temp_savegame/savegame.3"));
    EXPECT_TRUE(user.Told().empty());
    EndGame();
    user.MayBeTold("have been saved in");
    user.MayBeTold("There are savegames");
    ASSERT_TRUE(program::SelectedLevelView());
    EXPECT_EQ(BytesOf(home / "rescued_saves_1/savegame.3"), SaveBytes("City", 4));
}

} // namespace
} // namespace kelvash::test
