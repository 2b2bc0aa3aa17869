// What comes right before the game's end, and right before the end of who watches it.
#include "companion/posix/watcher_home.h"
#include "program/play.h"

namespace kelvash::companion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kArchive = "archive 15 of - TRLE: Original configuration -";
const std::string kRestore = "restore of - TRLE: Original configuration -";
const std::string kBeep = "beep 200 150";
const std::string kSave = "save window for - TRLE: Original configuration -";
const std::string kShow = "show pictures of - TRLE: Original configuration -, new.jpg";

class WatchEnd : public WatcherHome {
  protected:
    WatchEnd() { desktop.pictures[kGameWindow] = "window"; }
    std::vector<std::string> DoneAtEnd() {
        EndGame();
        EXPECT_FALSE(Tick());
        return TakeDone();
    }
};

TEST_F(WatchEnd, WhatWasTappedInTheLastIntervalIsDone) {
    Play();
    Tap(kKeyF9);
    Tap(kKeyF11);
    EXPECT_THAT(DoneAtEnd(),
                ElementsAre("uncover", "wait 1000", kBeep, kBeep, kArchive, kRestore, "show lists", "focus"));
}

TEST_F(WatchEnd, APressUnderTheQuestionForANameIsNotLost) {
    core::profile.PromptCapture = true;
    Play();
    watch_calls.AskPictureName = [this](const auto&, const auto&) {
        Tap(kKeyPrintScreen);
        Tap(kKeyF9);
        EndGame();
        EXPECT_TRUE(Tick());
        return std::string();
    };
    Offer("picture");
    EXPECT_FALSE(Tick());
    const std::vector<std::string> seen = TakeDone();
    EXPECT_THAT(seen, testing::Contains(kArchive));
    EXPECT_THAT(seen, testing::Contains(kSave));
}

TEST_F(WatchEnd, TheSystemsOwnPictureOfTheLastPressIsTaken) {
    desktop.print_screen_copies = true;
    Play();
    Tap(kKeyPrintScreen);
    Offer("window");
    EXPECT_THAT(DoneAtEnd(), ElementsAre("uncover", "wait 1000", "beep 100 150", kSave, kShow, "clear",
                                         "show lists", "focus"));
}

TEST_F(WatchEnd, APictureThatIsStillOnItsWayIsAwaited) {
    Play();
    Offer("window");
    offered = Offered::Slow;
    TickAfter(0.5);
    int waits = 0;
    while_waiting = [&] {
        if (++waits == 3) offered = Offered::Picture;
    };
    EXPECT_THAT(DoneAtEnd(), ElementsAre("uncover", "wait 1000", "wait 200", "wait 200", "beep 100 150",
                                         kSave, kShow, "clear", "show lists", "focus"));
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(WatchEnd, OneThatNeverComesIsTold) {
    Play();
    Offer("window");
    offered = Offered::Slow;
    TickAfter(0.5);
    DoneAtEnd();
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: Screenshots that could not be stored while the game was running: 1"));
}

TEST_F(WatchEnd, AskingWhetherTheGameRunsChangesNothing) {
    Play();
    EXPECT_TRUE(GameRuns());
    EndGame();
    EXPECT_FALSE(GameRuns());
    EXPECT_FALSE(AdoptGame());
    EXPECT_FALSE(Tick());
    EXPECT_THAT(TakeDone(), ElementsAre("uncover", "wait 1000", "show lists", "focus"));
}

// --- another game before the end is finished ---

TEST_F(WatchEnd, IsFinishedBeforeAnotherGameIsStarted) {
    Play();
    TellAfterGame(MessageText("what went wrong"));
    Tap(kKeyF9);
    EndGame();
    may_change = false;
    EXPECT_TRUE(Tick());
    TakeDone();
    FinishWatch();
    EXPECT_THAT(TakeDone(), ElementsAre("wait 1000", kBeep, kArchive, "show lists", "focus"));
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: what went wrong"));
    FinishWatch();
    EXPECT_THAT(TakeDone(), IsEmpty());
}

TEST_F(WatchEnd, IsFinishedByPlay) {
    Play();
    Tap(kKeyF9);
    EndGame();
    test::MakeFile(trle / "tomb4.exe", ""); // can't be started
    EXPECT_FALSE(program::PlayLevel(0));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error attempting to launch program tomb4.exe"));
    const std::vector<std::string> seen = TakeDone();
    ASSERT_GE(seen.size(), 4U);
    EXPECT_THAT(std::vector<std::string>(seen.begin(), seen.begin() + 4),
                ElementsAre("uncover", "wait 1000", kBeep, kArchive));
}

// --- leaving ---

TEST_F(WatchEnd, WhoLeavesDoesWhatWaits) {
    Play();
    Tap(kKeyF9);
    Tap(kKeyPrintScreen);
    may_change = false; // a job was at work
    Tick();
    TakeDone();
    Tap(kKeyF11);
    LeaveWatch();
    EXPECT_THAT(TakeDone(),
                ElementsAre(kBeep, kArchive, kRestore, "put window", "beep 100 150", kSave, kShow, "clear"));
    EXPECT_TRUE(game.WatcherActive) << "it may be that nobody leaves after all";
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(WatchEnd, WhoLeavesWaitsUntilTheSavesAreStill) {
    Play();
    Save("savegame.0", "being written");
    Tap(kKeyF9);
    TickAfter(0.1);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep));
    while_archiving = [this] { EXPECT_GE(now, 1005); };
    LeaveWatch();
    EXPECT_THAT(TakeDone(), testing::Contains(kArchive));
    TellRemembered();
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(WatchEnd, WhoLeavesTellsWhatCannotBeDone) {
    Play();
    int writes = 0;
    while_waiting = [&] { Save("savegame.0", std::string(static_cast<std::size_t>(++writes), 'x')); };
    Save("savegame.0", "being written");
    Tap(kKeyF9);
    stored = {Work::Refused, {}};
    Offer("picture");
    TickAfter(0.1);
    LeaveWatch();
    TellRemembered();
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: The savegames were not archived or restored as the key asked for: when "
                    "Kelvash was closed the game was still writing them, or another program was using the "
                    "folders.\r\nPress the key again once Kelvash is open.",
                    "exclamation: Screenshots that could not be stored while the game was running: 1"));
}

TEST_F(WatchEnd, WhoIsAskedToLeaveByASignalDoesWhatWaits) {
    Play();
    Tap(kKeyF9);
    WatchUntilEnd(500, [] { return true; });
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, kArchive));
}

TEST_F(WatchEnd, WhoLeavesAGameThatHasJustEndedFinishesIt) {
    Play();
    Tap(kKeyF9);
    EndGame();
    LeaveWatch();
    EXPECT_THAT(TakeDone(), ElementsAre("uncover", "wait 1000", kBeep, kArchive, "show lists", "focus"));
    EXPECT_FALSE(Tick());
}

} // namespace
} // namespace kelvash::companion
