#include "program/level_view.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/level_list.h"
#include "support/swap_home.h"
#include "swap/install.h"

namespace kelvash::program {
namespace {

using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class LevelViewOf : public test::SwapHome {
  protected:
    LevelViewOf() {
        AddLevel(1, "City", {{"city.tr4", "city"}}, {{"savegame.0", "a"}, {"savegame.1", "b"}});
        MakeFile(LevelPath(1) / "SAVEGAMES/slot1/savegame.0", "c");
        MakeFile(LevelPath(1) / "SCREENSHOTS/1) City.jpg", "d");
        core::archive.Table.Edit(1)->Note = "  Choose the second entry ";
        core::RefreshLevelList();
        core::SelectLevel(1);
        user.Forget();
    }
};

TEST_F(LevelViewOf, ALevelOutsideTrleCountsItsTwoLists) {
    const std::optional<LevelView> view = SelectedLevelView();
    ASSERT_TRUE(view);
    EXPECT_EQ(view->Code, 1);
    EXPECT_EQ(view->Note, "Choose the second entry");
    EXPECT_EQ(view->Place, "Path: \"C:\\Levels\\LEVEL_0001\"  -  Screenshots: 1 - Savegames: 2 + 1");
    EXPECT_FALSE(view->FolderMissing);
    EXPECT_THAT(view->Screenshots, SizeIs(1));
    EXPECT_THAT(view->SlotSavegames, SizeIs(2));
    EXPECT_THAT(view->ArchivedSavegames, SizeIs(1));
}

TEST_F(LevelViewOf, TheLevelInTrleCountsItsStashAsTheOlderSaves) {
    ASSERT_TRUE(swap::InstallLevel(1));
    MakeFile(trle / "savegame.2", "new");
    const std::optional<LevelView> view = SelectedLevelView();
    ASSERT_TRUE(view);
    EXPECT_EQ(view->Place, "Path: \"C:\\Levels\\LEVEL_0001\"  -  Screenshots: 1 - Savegames: 3 + 2");
}

TEST_F(LevelViewOf, ALevelOnCdSaysItsDisc) {
    core::archive.Table.Edit(1)->CdNumber = 3;
    EXPECT_EQ(SelectedLevelView()->Place,
              "Path: \"C:\\Levels\\LEVEL_0001\" - CD# 3  -  Screenshots: 1 - Savegames: 2 + 1");
}

TEST_F(LevelViewOf, AMissingFolderIsNoticed) {
    std::filesystem::remove_all(LevelPath(1));
    EXPECT_TRUE(SelectedLevelView()->FolderMissing);
    EXPECT_THAT(SelectedLevelView()->Screenshots, IsEmpty());
}

TEST_F(LevelViewOf, NothingIsNothing) {
    core::archive = core::ArchiveState();
    core::RefreshLevelList();
    EXPECT_FALSE(SelectedLevelView());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(LevelViewOf, AnUnknownCodeIsTold) {
    core::level_list.Items[static_cast<std::size_t>(core::level_list.Selected)].Code = 44;
    EXPECT_FALSE(SelectedLevelView());
    EXPECT_THAT(user.Told(), ElementsAre("critical: Internal error: unknown level code: 44"));
}

} // namespace
} // namespace kelvash::program
