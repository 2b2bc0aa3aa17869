// The cover over the desktop.
#include "ui/Dialog_Blank.h"

#include <gmock/gmock.h>

#include <QImage>
#include <QSignalSpy>
#include <QTest>

#include "companion/game.h"
#include "companion/watch_calls.h"
#include "ui/look.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class Cover : public PrincipaleHome {
  protected:
    // A game that runs for this long.
    void PutGame(const std::string& seconds) {
        for (const fs::path& folder : {trle, backup}) {
            MakeFile(folder / "tomb4.exe", "#!/bin/sh\nsleep " + seconds + "\n");
            fs::permissions(folder / "tomb4.exe", fs::perms::owner_all);
        }
        SetEnvironment("DISPLAY", "");
    }
    ui::Dialog_Blank* Shown() { return form.Watch().Cover(); }
};

TEST_F(Cover, IsBlackAndFillsTheScreenWithoutACaption) {
    ui::Dialog_Blank cover;
    cover.ImpostaValori(form);
    cover.showFullScreen();
    EXPECT_EQ(cover.geometry(), form.screen()->geometry());
    EXPECT_TRUE(cover.windowFlags() & Qt::FramelessWindowHint);
    EXPECT_EQ(cover.windowTitle().toStdString(), "");
    EXPECT_FALSE(cover.isModal());
    const QImage shown = cover.grab().toImage();
    EXPECT_EQ(shown.pixelColor(0, 0), QColor(0, 0, 0));
    EXPECT_EQ(shown.pixelColor(shown.width() / 2, shown.height() / 2), QColor(0, 0, 0));
    EXPECT_EQ(shown.pixelColor(shown.width() - 1, shown.height() - 1), QColor(0, 0, 0));
    EXPECT_EQ(cover.cursor().shape(), Qt::BlankCursor);
}

TEST_F(Cover, AClickClosesIt) {
    ui::Dialog_Blank cover;
    QSignalSpy closed(&cover, &ui::Dialog_Blank::Closed);
    cover.ImpostaValori(form);
    cover.showFullScreen();
    QTest::mouseClick(&cover, Qt::LeftButton);
    EXPECT_FALSE(cover.isVisible());
    EXPECT_EQ(closed.count(), 1);
}

TEST_F(Cover, StandsWhileTheGameRunsAndTheMainWindowIsDisabled) {
    PutGame("2.6");
    core::SelectLevel(2);
    form.Timer1->setInterval(20);
    Press(&form, "Pul_Play");
    ASSERT_NE(Shown(), nullptr);
    EXPECT_TRUE(Shown()->isVisible());
    EXPECT_FALSE(form.centralWidget()->isEnabled());
    EXPECT_FALSE(form.menuBar()->isEnabled());
    EXPECT_TRUE(companion::game.WatcherActive);
    WaitUntil([this] { return form.centralWidget()->isEnabled(); });
    EXPECT_EQ(Shown(), nullptr);
    WaitUntil([this] { return !form.Timer1->isActive(); });
}

TEST_F(Cover, ClosedByAClickItEnablesTheMainWindowAndTheWatchGoesOn) {
    PutGame("4");
    core::SelectLevel(2);
    form.Timer1->setInterval(20);
    Press(&form, "Pul_Play");
    ASSERT_NE(Shown(), nullptr);
    QTest::mouseClick(Shown(), Qt::LeftButton);
    EXPECT_TRUE(form.centralWidget()->isEnabled());
    EXPECT_TRUE(companion::game.WatcherActive);
    const std::string running = "The game is running. Kelvash comes back when it ends.";
    EXPECT_EQ(form.Label_Info->text().toStdString(), running);
    EXPECT_FALSE(form.Pul_Play->isEnabled());
    EXPECT_NE(form.Pul_Play->toolTip().toStdString(), "");
    EXPECT_TRUE(form.Pul_MoreInfo->isEnabled());
    robot.WillPress("The game is running", "OK"); // the level that is in can't be played twice at once
    Q_EMIT form.Combo_Livelli->doubleClicked(form.Combo_Livelli->currentIndex());
    EXPECT_TRUE(form.centralWidget()->isEnabled());
    EXPECT_EQ(form.Label_Info->text().toStdString(), running);
    WaitUntil([this] { return !form.Timer1->isActive(); });
    EXPECT_EQ(form.Label_Info->text().toStdString(), "");
    EXPECT_TRUE(form.Pul_Play->isEnabled());
    EXPECT_EQ(Current(), "Alpha (*)");
}

TEST_F(Cover, AGameThatCannotBeStartedTakesItAway) {
    for (const fs::path& folder : {trle, backup})
        MakeFile(folder / "tomb4.exe", "");
    core::SelectLevel(2);
    robot.Will("Error attempting to launch program tomb4.exe", [this](QWidget* box) {
        EXPECT_EQ(Shown(), nullptr) << "no box behind the cover";
        Press(box, "OK");
    });
    Press(&form, "Pul_Play");
    EXPECT_TRUE(form.centralWidget()->isEnabled());
}

} // namespace
} // namespace kelvash::test
