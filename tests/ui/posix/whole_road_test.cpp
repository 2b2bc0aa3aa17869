// From the choice of a level to the end of play, through the window, beside a game that is a real process
// with a window, keys and a clipboard of its own X server.
#include <gmock/gmock.h>

#include <QApplication>
#include <QTest>

#include "companion/game.h"
#include "companion/watcher.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/desktop.h"
#include "foundation/state.h"
#include "support/built.h"
#include "support/program_run.h"
#include "support/ui_home.h"
#include "trle_state/trle_state.h"
#include "ui/Principale.h"
#include "ui/screenshot_panel.h"

// Behind the others: X11 defines common words as macros.
#include "support/x_client.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class WholeRoad : public UiHome<TestHome>, protected XClient {
  protected:
    WholeRoad() {
        const ProgramEnd made =
            RunProgram({Built("bin/kelvash-cli"), {"demo", (root / "demo").string()}, {}, root});
        EXPECT_EQ(made.status, 0) << made.output << made.errors;
        qunsetenv("KELVASH_GAME_MS");
        ResetProgramState();
        drive = c;
        home = c / "Kelvash";
        MapDrives();
        SetDesktop(nullptr); // the real one
    }
    ~WholeRoad() override { SetDesktop(&desktop); }
    // Waits with the window at work.
    static bool ComesHere(const std::function<bool()>& condition) {
        return QTest::qWaitFor(condition, 15'000);
    }
    void TapHere(KeySym key) {
        Key(key, true);
        QTest::qWait(80);
        Key(key, false);
    }
    static std::size_t SavesIn(const fs::path& folder) {
        std::size_t count = 0;
        std::error_code error;
        for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
            if (at->path().filename().string().starts_with("savegame.")) ++count;
        return count;
    }

    const fs::path c = root / "demo" / "drive_c";
    const fs::path trle = c / "Program Files" / "Core Design" / "trle";
    const fs::path level = c / "Levels" / "LEVEL_0002";
    const WindowManager manager;
};

TEST_F(WholeRoad, OfALevelFromChoiceToEndOfPlay) {
    ui::Principale form(forms);
    ASSERT_TRUE(form.Load(""));
    form.show();
    form.ShowPanel(false);
    form.Timer1->setInterval(100);

    // The choice, and what it leads to.
    core::SelectLevel(2);
    core::RefreshLevelList();
    EXPECT_EQ(form.Combo_Livelli->currentIndex().data().toString().toStdString(), "Harbour of Brass");
    EXPECT_EQ(form.List_SaveGameTomb->count(), 2);
    Press(&form, "Pul_Play");
    EXPECT_EQ(trle_state::CurrentLevelCode(), 2);
    EXPECT_THAT(BytesOf(trle / "Kelvash.txt"), HasSubstr("#LEVEL_CODE=0002#"));
    EXPECT_TRUE(Exists(trle / "data" / "harbour.tr4")) << "unpacked";
    EXPECT_EQ(SavesIn(trle), 2U) << "the level's own savegames are in the slots";
    EXPECT_TRUE(companion::game.WatcherActive);
    EXPECT_NE(companion::game.GameWindow, 0U);
    EXPECT_TRUE(form.Watch().Cover()->isVisible());
    EXPECT_FALSE(form.centralWidget()->isEnabled());
    ASSERT_TRUE(ComesHere([] { return companion::FocusOfGame() == companion::game.GameWindow; }));

    // The play.
    TapHere(XK_s);
    EXPECT_TRUE(ComesHere([this] { return SavesIn(trle) == 3; }));
    QTest::qWait(1500); // they are to lie still
    TapHere(XK_F9);
    const fs::path slot = level / "SAVEGAMES" / "slot1";
    EXPECT_TRUE(ComesHere([&] { return SavesIn(slot) == 3 && SavesIn(trle) == 1; }));
    QTest::qWait(500);
    TapHere(XK_F11);
    EXPECT_TRUE(ComesHere([&] { return SavesIn(trle) == 3; }));
    TapHere(XK_Print);
    EXPECT_TRUE(ComesHere([this] { return Exists(level / "SCREENSHOTS" / "1) Harbour of Brass.jpg"); }));

    // Its end.
    TapHere(XK_Escape);
    EXPECT_TRUE(ComesHere([&] { return !form.Timer1->isActive(); }));
    EXPECT_TRUE(form.centralWidget()->isEnabled());
    EXPECT_EQ(form.Watch().Cover(), nullptr);
    EXPECT_EQ(form.Combo_Livelli->currentIndex().data().toString().toStdString(), "Harbour of Brass (*)");
    EXPECT_EQ(form.List_SaveGameTomb->count(), 3);
    EXPECT_EQ(form.Shots().Pages().ImageCount(), 2U);

    // The next level takes this one out, its savegames go home.
    SetEnvironment("KELVASH_GAME_MS", "3000");
    core::SelectLevel(3);
    Press(&form, "Pul_Play");
    EXPECT_EQ(trle_state::CurrentLevelCode(), 3);
    EXPECT_EQ(SavesIn(level / "BACKUP_SAVEGAMES"), 3U);
    EXPECT_FALSE(Exists(trle / "data" / "harbour.tr4"));
    EXPECT_TRUE(ComesHere([&] { return !form.Timer1->isActive(); }));
    qunsetenv("KELVASH_GAME_MS");
}

TEST_F(WholeRoad, TheEndIsSeenUnderTheQuestionForAPicturesName) {
    ui::Principale form(forms);
    ASSERT_TRUE(form.Load(""));
    form.show();
    form.Timer1->setInterval(100);
    core::profile.PromptCapture = true;
    core::SelectLevel(2);
    Press(&form, "Pul_Play");
    ASSERT_TRUE(ComesHere([] { return companion::FocusOfGame() == companion::game.GameWindow; }));
    robot.Will("Dialog_Cattura", [&](QWidget* question) {
        EXPECT_TRUE(companion::IsWatching());
        TapHere(XK_Escape); // the keys are the game's: the question is on another display here
        EXPECT_TRUE(ComesHere([&] { return form.centralWidget()->isEnabled(); }));
        EXPECT_EQ(companion::game.GameProcess.id, 0);
        EXPECT_TRUE(question->isVisible());
        Press(question, "Pul_Cancel");
    });
    TapHere(XK_Print);
    EXPECT_TRUE(ComesHere([&] { return !form.Timer1->isActive(); }));
    EXPECT_TRUE(robot.HasSeen("Dialog_Cattura"));
    EXPECT_FALSE(Exists(level / "SCREENSHOTS" / "1) Harbour of Brass.jpg"));
    EXPECT_FALSE(companion::IsWatching());
}

TEST_F(WholeRoad, AKelvashThatStartsBesideTheGameWatchesIt) {
    const RunningProgram player(
        {Built("bin/kelvash-cli"), {"--json", "--home", (c / "Kelvash").string(), "play", "2"}, {}, root});
    ASSERT_TRUE(ComesHere([] { return TheDesktop().FocusedWindow().caption == "Tomb Raider (stand-in)"; }));
    player.Kill(); // the game plays on
    ui::Principale form(forms);
    ASSERT_TRUE(form.Load(""));
    form.show();
    form.Timer1->setInterval(100);
    EXPECT_FALSE(form.centralWidget()->isEnabled());
    EXPECT_EQ(form.Watch().Cover(), nullptr) << "nothing comes over a game that runs";
    QTest::qWait(1500);
    TapHere(XK_F9);
    EXPECT_TRUE(ComesHere([this] { return SavesIn(level / "SAVEGAMES" / "slot1") == 2; }));
    TapHere(XK_Escape);
    EXPECT_TRUE(ComesHere([&] { return !form.Timer1->isActive(); }));
    EXPECT_TRUE(form.centralWidget()->isEnabled());
}

} // namespace
} // namespace kelvash::test
