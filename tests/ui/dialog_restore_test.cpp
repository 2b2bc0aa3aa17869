#include "ui/Dialog_Restore.h"

#include <gmock/gmock.h>

#include "core/profile.h"
#include "support/swap_home.h"
#include "support/ui_home.h"
#include "swap/install.h"
#include "trle_state/trle_state.h"

namespace kelvash::test {
namespace {

class DialogRestore : public UiHome<SwapHome> {
  protected:
    DialogRestore() {
        AddLevel(1, "City", {{"city.tr4", "city"}, {"script.dat", "city script"}});
        EXPECT_TRUE(swap::InstallLevel(1));
    }
};

TEST_F(DialogRestore, HasItsCaptions) {
    const ui::Dialog_Restore form(forms, nullptr);
    EXPECT_EQ(form.windowTitle().toStdString(),
              " Restore original configuration in Tomb Raider Level Editor");
    EXPECT_EQ(Plain(form.Label_Choose->text()), "Choose kind of restore");
    EXPECT_EQ(Plain(form.Pul_Fast->text()), "Fast");
    EXPECT_EQ(Plain(form.Pul_Full->text()), "Full");
    EXPECT_EQ(Plain(form.Label_Fast->text()),
              "This restore remove simply current level from Tomb Raider Level Editor folder");
    EXPECT_EQ(
        Plain(form.Label_Full->text()),
        "If you have had problems with installing levels in exe format or to remove old level from trle "
        "folder, use this full restore");
}

TEST_F(DialogRestore, FastTakesTheLevelOutAndCloses) {
    ui::Dialog_Restore form(forms, nullptr);
    form.show();
    robot.WillPress("Set in Tomb Raider Level Editor, original configuration", "OK");
    Press(&form, "Pul_Fast");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(trle_state::CurrentLevelCode(), 0);
    EXPECT_FALSE(Exists(trle / "data/city.tr4"));
    EXPECT_EQ(BytesOf(trle / "script.dat"), "original script.dat");
}

TEST_F(DialogRestore, AFailedFastRestoreLeavesTheFormOpen) {
    MakeFile(trle / "savegame.0", "played");
    std::filesystem::remove_all(StashPath(1));
    MakeFile(StashPath(1), "a file where the folder was");
    ui::Dialog_Restore form(forms, nullptr);
    form.show();
    robot.WillPress("I cann't copy files in C:\\Levels\\LEVEL_0001\\backup_savegames folder", "OK");
    robot.WillPress("Error setting original configuration in trle folder", "OK");
    Press(&form, "Pul_Fast");
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(trle_state::CurrentLevelCode(), 1);
}

TEST_F(DialogRestore, FullMakesTheFolderOriginalWithItsOwnLabelAndBar) {
    core::profile.FullBackup = true;
    MakeFile(trle / "stray.dat", "left by a setup program");
    ui::Dialog_Restore form(forms, nullptr);
    form.show();
    robot.WillPress("Files of the TRLE folder that the backup doesn't hold made way: 1.", "OK");
    robot.WillPress("Restored original Tomb Raider Level Editor configuration", "OK");
    Press(&form, "Pul_Full");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.Label_Info->text().toStdString(), "Restore finished");
    EXPECT_EQ(form.ProgressBar1->value(), 100);
    EXPECT_FALSE(Exists(trle / "stray.dat"));
    EXPECT_TRUE(Exists(trle / "tomb4.exe"));
}

TEST_F(DialogRestore, HasNoBarWhileNothingRuns) {
    ui::Dialog_Restore form(forms, nullptr);
    form.show();
    EXPECT_FALSE(form.ProgressBar1->isVisible());
    EXPECT_FALSE(form.Label_Info->isVisible());
    core::profile.FullBackup = true;
    int seen = 0;
    const auto look = [&] { seen += form.Label_Info->isVisible() && form.ProgressBar1->isVisible() ? 1 : 0; };
    QObject::connect(form.ProgressBar1, &QProgressBar::valueChanged, &form, look);
    robot.WillPress("Restored original Tomb Raider Level Editor configuration", "OK");
    Press(&form, "Pul_Full");
    EXPECT_GT(seen, 0);
}

TEST_F(DialogRestore, CancelChangesNothing) {
    ui::Dialog_Restore form(forms, nullptr);
    form.show();
    Press(&form, "Pul_Cancel");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(trle_state::CurrentLevelCode(), 1);
}

} // namespace
} // namespace kelvash::test
