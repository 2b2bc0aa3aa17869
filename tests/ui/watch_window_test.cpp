// The main form beside a game: pictures that come, the cover, the end, a game that nobody watches.
#include "ui/watch_window.h"

#include <gmock/gmock.h>

#include <QTest>

#include "companion/game.h"
#include "companion/watch_calls.h"
#include "companion/watcher.h"
#include "core/ports.h"
#include "foundation/lock.h"
#include "foundation/platform/platform.h"
#include "support/bitmaps.h"
#include "ui/principale_home.h"
#include "ui/screenshot_panel.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;
using companion::game;

class WatchForm : public PrincipaleHome {
  protected:
    WatchForm() {
        for (const fs::path& folder : {trle, backup}) {
            fs::remove(folder / "tomb4.exe");
            fs::copy_file("/bin/sleep", folder / "tomb4.exe");
        }
        SetEnvironment("DISPLAY", "");
    }
    ~WatchForm() override {
        KillProcess(game.GameProcess);
        KillProcess(other_);
    }
    // A game that this window has started.
    void Play() {
        ASSERT_TRUE(companion::StartGame({"1000"}, false));
        game.WatcherActive = true;
        form.Watch().Begin();
    }
    // One that another program has.
    void StartElsewhere() {
        ASSERT_TRUE(RunFull("C:\\trle\\tomb4.exe", {"1000"}, Window::Normal, other_, false));
        WaitUntil([] { return core::FindGame() != 0; });
    }
    static void EndGame() {
        KillProcess(game.GameProcess);
        ASSERT_TRUE(WaitForProcess(game.GameProcess, 10));
    }
    std::string Pair() const {
        const auto name = [](const ui::PictureView* view) {
            return fs::path(view->Path().toStdString()).filename().string();
        };
        return name(form.Image1) + ", " + name(form.Image2);
    }

    Process other_;
};

TEST_F(WatchForm, ShowsTheNewestPictureWhateverItsNameIsSortedBehind) {
    core::SelectLevel(1);
    for (int number = 1; number <= 10; ++number)
        MakeFile(LevelPath(1) / "SCREENSHOTS" / (std::to_string(number) + ") City of Gold.bmp"),
                 MakeBitmap({}));
    form.AggiornaDatiLivello(false);
    const std::string folder = "C:\\Levels\\LEVEL_0001\\screenshots\\";
    const auto show = [&](int code, const std::string& name) {
        companion::watch_calls.ShowPictures(core::PlaceOf(code), folder + name + ") City of Gold.bmp");
    };
    show(1, "10");
    EXPECT_THAT(Pair(), testing::HasSubstr("10) City of Gold.bmp"));
    show(1, "9");
    EXPECT_THAT(Pair(), testing::HasSubstr("9) City of Gold.bmp"));
    const std::string before = Pair();
    show(2, "10");
    EXPECT_EQ(Pair(), before) << "of a level that isn't shown";
}

TEST_F(WatchForm, ACoverThatTheSystemClosesEnablesTheWindow) {
    Play();
    ASSERT_NE(form.Watch().Cover(), nullptr);
    EXPECT_FALSE(form.centralWidget()->isEnabled());
    form.Watch().Cover()->close(); // Alt+F4
    EXPECT_TRUE(form.centralWidget()->isEnabled());
    EXPECT_TRUE(game.WatcherActive) << "the watch goes on";
    EndGame();
    form.Timer1->setInterval(20);
    WaitUntil([this] { return !form.Timer1->isActive(); });
}

TEST_F(WatchForm, StaysAsItWasWhereItIsNotClosedInTheInstantOfTheGamesEnd) {
    Play();
    form.Timer1->setInterval(20);
    EndGame();
    core::archive.ArchiveChanged = true;
    fs::create_directory(home / "test.kva.new");
    robot.WillPress("Error while saving archive: C:\\Kelvash\\test.kva", "OK");
    robot.WillPress("The Archive 'test.kva' couldn't be saved.\nClose all the same and lose the changes?",
                    "No");
    EXPECT_FALSE(form.close());
    WaitUntil([this] { return form.centralWidget()->isEnabled() && !form.Timer1->isActive(); });
    LockHolder holder;
    FolderLock lock;
    EXPECT_EQ(lock.Take("C:\\trle", LockKind::Watch, "", holder), LockResult::Taken);
    EXPECT_TRUE(lock.IsOnly()) << "the watch is given back";
    core::archive.ArchiveChanged = false;
}

TEST_F(WatchForm, DoesWhatWaitsBeforeItIsClosedBesideTheGame) {
    Play();
    bool has_archived = false;
    companion::watch_calls.ArchiveSlots = [&](const auto&, int) {
        has_archived = true;
        return companion::WorkOutcome{companion::Work::Done, {}};
    };
    desktop.focused = {7, "game", game.GameProcess.id};
    desktop.held = {kKeyF9};
    companion::PollKeys();
    robot.WillPress(
        "The game is running. Kelvash won't see its end when it is closed now.\nDo you want to close "
        "Kelvash?",
        "Yes");
    EXPECT_TRUE(form.close());
    EXPECT_TRUE(has_archived);
}

TEST_F(WatchForm, TakesOverAGameWhoseWatcherDies) {
    form.Timer_Beside->setInterval(20);
    const fs::path file = RuntimeFolder() / (FolderIdentity("C:\\trle") + ".watch.lock");
    const int watcher = platform::OpenLockFile(file);
    ASSERT_EQ(platform::TryLock(watcher), LockResult::Taken);
    StartElsewhere();
    QTest::qWait(200);
    EXPECT_EQ(game.GameProcess.id, 0) << "it has its watcher";
    platform::CloseLockFile(watcher);
    WaitUntil([] { return game.GameProcess.id != 0; });
    EXPECT_TRUE(form.Timer1->isActive());
    EXPECT_FALSE(form.centralWidget()->isEnabled());
    form.Timer1->setInterval(20);
    KillProcess(other_);
    WaitUntil([this] { return form.centralWidget()->isEnabled() && !form.Timer1->isActive(); });
}

} // namespace
} // namespace kelvash::test
