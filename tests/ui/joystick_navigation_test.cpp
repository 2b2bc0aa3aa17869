// The joystick drives the main form.
#include "ui/joystick_navigation.h"

#include <gmock/gmock.h>

#include "companion/game.h"
#include "companion/settings.h"
#include "core/level_list.h"
#include "support/fake_desktop.h"
#include "ui/Dialog_ScreenShot.h"
#include "ui/principale_home.h"
#include "ui/screenshot_panel.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class JoystickNavigation : public PrincipaleHome {
  protected:
    JoystickNavigation() {
        core::profile.EnableJoystick = true;
        desktop.joysticks[0] = {32767, 32767, 0};
        form.ShowPanel(true);
    }
    // One look of the form while the stick stands so.
    void Look(int x, int y, std::uint32_t buttons = 0) {
        desktop.joysticks[0] = {x, y, buttons};
        form.Timer_Joystick->setSingleShot(true);
        form.Timer_Joystick->start(0);
        WaitUntil([this] { return !form.Timer_Joystick->isActive(); });
        QApplication::processEvents();
        desktop.joysticks[0] = {32767, 32767, 0};
    }
    void Button(std::uint32_t buttons) { Look(32767, 32767, buttons); }
    // Three archived savegames of the selected level, none of them selected.
    void PutSavegames() {
        for (const char* name : {"savegame.0", "savegame.1", "savegame.2"})
            MakeFile(LevelPath(2) / "SAVEGAMES" / "slot1" / name, "Gate,");
        core::SelectLevel(2);
        core::RefreshLevelList();
        form.ShowPanel(false);
        ASSERT_EQ(form.List_SaveGameArchiviati->count(), 3);
        form.List_SaveGameArchiviati->clearSelection();
        form.List_SaveGameArchiviati->setCurrentRow(-1);
    }
    void PutPictures(int count) {
        for (int i = 1; i <= count; ++i)
            MakeFile(LevelPath(2) / "SCREENSHOTS" / (std::to_string(i) + ".bmp"), "BM");
        core::SelectLevel(2);
        core::RefreshLevelList();
        ASSERT_EQ(form.Shots().Pages().ImageCount(), static_cast<std::size_t>(count));
    }
    // The picture under the joystick's cursor, counted from 0.
    std::size_t Cursor() {
        return form.Shots().Pages().FirstShownImage +
               static_cast<std::size_t>(form.Shots().Pages().SelectedSide);
    }

    FakeDesktop desktop;
};

TEST_F(JoystickNavigation, LooksSevenTimesASecond) {
    EXPECT_EQ(form.Timer_Joystick->interval(), 150);
}

TEST_F(JoystickNavigation, UpAndDownGoThroughTheLevels) {
    core::SelectLevel(0);
    core::RefreshLevelList();
    Look(32767, 32767 + 1001);
    EXPECT_EQ(Current(), "Alpha");
    Look(32767, 65535);
    EXPECT_EQ(Current(), "beta city");
    Look(32767, 32767 - 1001);
    EXPECT_EQ(Current(), "Alpha");
}

TEST_F(JoystickNavigation, AThousandAroundTheRestIsNothing) {
    core::SelectLevel(2);
    core::RefreshLevelList();
    for (const auto& [x, y] :
         {std::pair(0, 1000), std::pair(0, -1000), std::pair(1000, 1000), std::pair(-1000, 0)}) {
        Look(32767 + x, 32767 + y);
        EXPECT_EQ(Current(), "Alpha");
    }
    companion::joystick_rest = {30000, 40000};
    Look(30000, 40000);
    EXPECT_EQ(Current(), "Alpha") << "the rest is where the stick stood when it was enabled";
    Look(30000, 38999);
    EXPECT_NE(Current(), "Alpha");
}

TEST_F(JoystickNavigation, ButtonsChooseThePages) {
    Button(2);
    EXPECT_FALSE(form.Frame_SaveGames->isHidden());
    Button(8);
    EXPECT_FALSE(form.Frame_ScreenShots->isHidden());
    Button(2 | 8);
    EXPECT_FALSE(form.Frame_ScreenShots->isHidden()) << "the first of the table counts";
    Button(0x200);
    EXPECT_FALSE(form.Frame_ScreenShots->isHidden()) << "beyond the low byte there is none";
}

TEST_F(JoystickNavigation, TheThirdButtonPlays) {
    fs::remove_all(LevelPath(2) / "FILES");
    core::SelectLevel(2);
    core::RefreshLevelList();
    robot.WillPress("Warning: this level has NO .tr4 file.", "No");
    robot.WillPress("Error while installing files to play new level", "OK");
    Button(4 | 2);
    EXPECT_TRUE(form.Frame_SaveGames->isHidden());
}

TEST_F(JoystickNavigation, LeftAndRightGoThroughSavegamesRoundAndRound) {
    PutSavegames();
    const auto row = [this] { return form.List_SaveGameArchiviati->currentRow(); };
    Look(32767 + 1001, 32767);
    EXPECT_EQ(row(), 0);
    Look(65535, 0);
    EXPECT_EQ(row(), 1) << "across counts before down";
    Look(65535, 32767);
    Look(65535, 32767);
    EXPECT_EQ(row(), 0) << "from the last to the first";
    Look(32767 - 1001, 32767);
    EXPECT_EQ(row(), 2);
    Look(0, 32767);
    EXPECT_EQ(row(), 1);
}

TEST_F(JoystickNavigation, LeftAndRightGoThroughThePicturesAndTurnThePage) {
    PutPictures(5);
    EXPECT_EQ(Cursor(), 0U);
    Look(0, 32767);
    EXPECT_EQ(Cursor(), 0U) << "there is none before";
    for (const std::size_t picture : {1U, 2U, 3U, 4U, 4U}) {
        Look(65535, 32767);
        EXPECT_EQ(Cursor(), picture);
    }
    EXPECT_EQ(form.Shots().Pages().FirstShownImage, 4U);
    for (const std::size_t picture : {3U, 2U, 1U, 0U, 0U}) {
        Look(0, 32767);
        EXPECT_EQ(Cursor(), picture);
    }
}

TEST_F(JoystickNavigation, WithoutPicturesOrSavegamesNothingMoves) {
    core::SelectLevel(3);
    core::RefreshLevelList();
    Look(65535, 32767);
    Look(0, 32767);
    form.ShowPanel(false);
    Look(65535, 32767);
    Look(0, 32767);
    Button(1);
    EXPECT_EQ(Current(), "beta city");
}

TEST_F(JoystickNavigation, IsQuietBesideAGameWithoutAStickOrUnlessEnabled) {
    core::SelectLevel(2);
    core::RefreshLevelList();
    companion::game.WatcherActive = true;
    Look(32767, 65535);
    companion::game.WatcherActive = false;
    core::profile.EnableJoystick = false;
    Look(32767, 65535);
    core::profile.EnableJoystick = true;
    core::profile.JoystickId = 1;
    Look(32767, 65535);
    EXPECT_EQ(Current(), "Alpha");
}

TEST_F(JoystickNavigation, IsQuietBehindAnotherWindow) {
    core::SelectLevel(2);
    core::RefreshLevelList();
    QWidget other;
    other.show();
    other.activateWindow();
    WaitUntil([&] { return QApplication::activeWindow() == &other; });
    Look(32767, 65535);
    EXPECT_EQ(Current(), "Alpha");
    other.setObjectName(QStringLiteral("Dialog_ScreenShot")); // a name alone is no zoomed picture
    Look(32767, 65535);
    EXPECT_EQ(Current(), "Alpha");
    ui::Dialog_ScreenShot zoom(&form);
    zoom.show();
    zoom.activateWindow();
    WaitUntil([&] { return QApplication::activeWindow() == &zoom; });
    Look(32767, 65535);
    EXPECT_EQ(Current(), "beta city") << "in the zoomed picture it goes on";
    Button(1);
    EXPECT_FALSE(zoom.isVisible());
}

} // namespace
} // namespace kelvash::test
