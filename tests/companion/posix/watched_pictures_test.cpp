// Pictures that come onto the clipboard, or are taken of the game's window.
#include "companion/posix/watcher_home.h"

namespace kelvash::companion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kLevel = "- TRLE: Original configuration -";

class WatchedPictures : public WatcherHome {
  protected:
    WatchedPictures() { desktop.pictures[kGameWindow] = "window"; }
    static std::vector<std::string> Stored(const std::string& picture) {
        return {"beep 100 150", "save " + picture + " for " + kLevel,
                "show pictures of " + kLevel + ", new.jpg", "clear"};
    }
    std::vector<std::string> DoneAfter(double seconds) {
        TickAfter(seconds);
        return TakeDone();
    }
};

TEST_F(WatchedPictures, WhatIsOnTheClipboardIsStoredAndCleared) {
    Play();
    Offer("picture");
    EXPECT_EQ(DoneAfter(0.5), Stored("picture"));
    EXPECT_EQ(offered, Offered::None);
    EXPECT_THAT(DoneAfter(0.5), IsEmpty());
}

TEST_F(WatchedPictures, WhatWasThereBeforeTheGameIsNone) {
    Offer("old");
    Play();
    EXPECT_THAT(DoneAfter(0.5), IsEmpty());
}

TEST_F(WatchedPictures, ATextIsLeftAlone) {
    Play();
    ++clipboard_change; // nothing that is a picture
    EXPECT_THAT(DoneAfter(0.5), IsEmpty());
}

TEST_F(WatchedPictures, OneThatCannotBeHadIsClearedAndToldAfterTheGame) {
    Play();
    Offer("");
    offered = Offered::Failed;
    EXPECT_THAT(DoneAfter(0.5), ElementsAre("clear"));
    EXPECT_THAT(DoneAfter(0.5), IsEmpty());
    EndGame();
    Tick();
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: Screenshots that could not be stored while the game was running: 1"));
}

TEST_F(WatchedPictures, OneThatComesSlowlyIsAwaitedTickByTick) {
    Play();
    Offer("picture");
    offered = Offered::Slow;
    EXPECT_THAT(DoneAfter(0.5), IsEmpty());
    offered = Offered::Picture;
    EXPECT_EQ(DoneAfter(0.5), Stored("picture"));
}

TEST_F(WatchedPictures, ABlackOneIsDroppedWithoutASound) {
    core::profile.VerifyImage = true;
    Play();
    Offer("black");
    EXPECT_THAT(DoneAfter(0.5), ElementsAre("clear"));
    core::profile.VerifyImage = false;
    Offer("black");
    EXPECT_EQ(DoneAfter(0.5), Stored("black"));
}

TEST_F(WatchedPictures, OneThatCannotBeStoredIsClearedAndToldAfterTheGame) {
    Play();
    stored = {Work::Failed, {}};
    Offer("first");
    EXPECT_THAT(DoneAfter(0.5), ElementsAre("beep 100 150", "save first for " + kLevel, "clear"));
    Offer("second");
    DoneAfter(0.5);
    EXPECT_THAT(user.Told(), IsEmpty());
    EndGame();
    Tick();
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: Screenshots that could not be stored while the game was running: 2"));
}

TEST_F(WatchedPictures, WhyItCouldNotBeStoredIsTold) {
    Play();
    stored = {Work::Failed, MessageText("no room")};
    Offer("first");
    DoneAfter(0.5);
    EndGame();
    Tick();
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: no room",
                    "exclamation: Screenshots that could not be stored while the game was running: 1"));
}

TEST_F(WatchedPictures, RefusedLocksAreTriedAgainWithOneBeep) {
    Play();
    stored = {Work::Refused, {}};
    Offer("first");
    EXPECT_THAT(DoneAfter(0.5), ElementsAre("beep 100 150", "save first for " + kLevel));
    Offer("second");
    EXPECT_THAT(DoneAfter(0.5), ElementsAre("save first for " + kLevel));
    stored = {Work::Done, {}, "new.jpg"};
    std::vector<std::string> wanted = Stored("first");
    wanted.erase(wanted.begin());
    wanted.pop_back(); // the second is on the clipboard by now
    const std::vector<std::string> next = Stored("second");
    wanted.insert(wanted.end(), next.begin(), next.end());
    EXPECT_EQ(DoneAfter(0.5), wanted);
}

TEST_F(WatchedPictures, TheSameOfferedAgainGivesNone) {
    Play();
    Offer("picture");
    DoneAfter(0.5);
    Offer("picture");
    EXPECT_THAT(DoneAfter(5), ElementsAre("clear"));
    Offer("another");
    EXPECT_EQ(DoneAfter(0.5), Stored("another"));
}

TEST_F(WatchedPictures, TheSameInAnotherEncodingGivesNone) {
    Play();
    Offer("picture as bmp");
    DoneAfter(0.5);
    Offer("picture as png");
    EXPECT_THAT(DoneAfter(5), ElementsAre("clear"));
}

TEST_F(WatchedPictures, WhatWasThereBeforeTheGameAndIsOfferedAnewIsNone) {
    Offer("old as bmp");
    Play();
    Offer("old as png");
    EXPECT_THAT(DoneAfter(0.5), IsEmpty()) << "nor is it taken from the user";
    Offer("new");
    EXPECT_EQ(DoneAfter(0.5), Stored("new"));
}

// The clipboard goes on; each picture is read while it is there.
TEST_F(WatchedPictures, AJobDelaysTheirStoringAlone) {
    Play();
    may_change = false;
    Offer("first");
    EXPECT_THAT(DoneAfter(0.5), IsEmpty());
    Offer("second");
    EXPECT_THAT(DoneAfter(0.5), IsEmpty());
    Offer("second");
    EXPECT_THAT(DoneAfter(0.5), ElementsAre("clear")) << "it waits already";
    may_change = true;
    std::vector<std::string> wanted = Stored("first"), next = Stored("second");
    wanted.pop_back();
    next.pop_back();
    wanted.insert(wanted.end(), next.begin(), next.end());
    EXPECT_EQ(DoneAfter(0.5), wanted);
}

TEST_F(WatchedPictures, WhatComesOntoTheClipboardMeanwhileStays) {
    Play();
    while_saving = [this] { Offer("next"); };
    Offer("picture");
    std::vector<std::string> wanted = Stored("picture");
    wanted.pop_back();
    EXPECT_EQ(DoneAfter(0.5), wanted) << "not cleared";
    while_saving = {};
    EXPECT_EQ(DoneAfter(0.5), Stored("next"));
}

// --- Print Screen ---

TEST_F(WatchedPictures, APressTakesTheGamesWindowOverTheClipboard) {
    Play();
    Tap(kKeyPrintScreen);
    desktop.pictures[kGameWindow] = "a moment later";
    std::vector<std::string> wanted = Stored("window");
    wanted.insert(wanted.begin(), "put window");
    EXPECT_EQ(DoneAfter(0.5), wanted);
    EXPECT_THAT(DoneAfter(5), IsEmpty());
}

TEST_F(WatchedPictures, APressGivesOnePictureHoweverLongItIs) {
    Play();
    desktop.held = {kKeyPrintScreen};
    EXPECT_EQ(DoneAfter(0.5).size(), 5U);
    EXPECT_THAT(DoneAfter(0.5), IsEmpty());
    desktop.held.clear();
    PollKeys();
    Tap(kKeyPrintScreen);
    EXPECT_EQ(DoneAfter(5).size(), 5U) << "the same picture, but another press";
}

TEST_F(WatchedPictures, TheDesktopsOwnPictureOfThePressIsTakenInstead) {
    Play();
    Tap(kKeyPrintScreen);
    Offer("the desktop's");
    EXPECT_EQ(DoneAfter(0.5), Stored("the desktop's"));
    EXPECT_THAT(DoneAfter(5), IsEmpty());
}

TEST_F(WatchedPictures, TheDesktopsOwnPictureThatComesLateIsTheSamePress) {
    Play();
    Tap(kKeyPrintScreen);
    EXPECT_EQ(DoneAfter(0.5).size(), 5U);
    Offer("the desktop's");
    EXPECT_THAT(DoneAfter(1.5), ElementsAre("clear"));
    Offer("much later");
    EXPECT_EQ(DoneAfter(1), Stored("much later"));
}

TEST_F(WatchedPictures, WhereTheSystemCopiesNothingElseIsTaken) {
    desktop.print_screen_copies = true;
    Play();
    Tap(kKeyPrintScreen);
    Offer("the system's");
    EXPECT_EQ(DoneAfter(0.5), Stored("the system's"));
    Tap(kKeyPrintScreen);
    Offer("the system's");
    EXPECT_EQ(DoneAfter(0.5), Stored("the system's")) << "nothing moved between two presses";
}

TEST_F(WatchedPictures, ThreePressesBetweenTwoTicksGiveThreePictures) {
    Play();
    Tap(kKeyPrintScreen);
    Tap(kKeyPrintScreen);
    Tap(kKeyPrintScreen);
    EXPECT_EQ(DoneAfter(0.5).size(), 15U);
}

TEST_F(WatchedPictures, PressesBeyondFourAreToldAsLost) {
    Play();
    for (int press = 0; press < 6; ++press)
        Tap(kKeyPrintScreen);
    EXPECT_EQ(DoneAfter(0.5).size(), 20U);
    EndGame();
    Tick();
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: Screenshots that could not be stored while the game was running: 2"));
}

TEST_F(WatchedPictures, PressesDuringALongJobAreBounded) {
    Play();
    may_change = false;
    for (int i = 0; i < 6; ++i) {
        Tap(kKeyPrintScreen);
        DoneAfter(0.5);
    }
    may_change = true;
    EXPECT_EQ(DoneAfter(0.5).size(), 20U);
    EndGame();
    Tick();
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: Screenshots that could not be stored while the game was running: 2"));
}

TEST_F(WatchedPictures, TheJoysticksButtonTakesOneAtEachTick) {
    core::profile.JoyButtonA = 4;
    Play();
    desktop.joysticks[0].buttons = 4;
    const std::vector<std::string> seen = DoneAfter(0.5);
    ASSERT_EQ(seen.size(), 6U);
    EXPECT_EQ(seen[0], "key 44");
    EXPECT_EQ(seen[1], "put window");
    EXPECT_EQ(DoneAfter(0.5).size(), 6U);
}

TEST_F(WatchedPictures, APressRightBeforeTheEndIsStored) {
    Play();
    Tap(kKeyPrintScreen);
    EndGame();
    TickAfter(0.5);
    const std::vector<std::string> seen = TakeDone();
    ASSERT_EQ(seen.size(), 9U);
    EXPECT_EQ(seen[2], "put window");
    EXPECT_EQ(seen[4], "save window for " + kLevel);
    EXPECT_EQ(seen[7], "show lists");
}

TEST_F(WatchedPictures, APressThatShowsNothingIsToldAsLost) {
    desktop.pictures.clear();
    Play();
    Tap(kKeyPrintScreen);
    EXPECT_THAT(DoneAfter(0.5), IsEmpty());
    EndGame();
    Tick();
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: Screenshots that could not be stored while the game was running: 1"));
}

TEST_F(WatchedPictures, TheCoverIsNotTaken) {
    Play();
    desktop.pictures[kCover] = "black";
    desktop.focused = {kCover, "", 4713};
    Tap(kKeyPrintScreen);
    const std::vector<std::string> seen = DoneAfter(0.5);
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen[0], "put window");
}

TEST_F(WatchedPictures, APressElsewhereTakesNothing) {
    Play();
    desktop.focused = {5, "an editor", 4711};
    Tap(kKeyPrintScreen);
    EXPECT_THAT(DoneAfter(0.5), IsEmpty());
}

// --- with a question ---

class PromptedPictures : public WatchedPictures {
  protected:
    PromptedPictures() {
        core::profile.PromptCapture = true;
        watch_calls.AskPictureName = [this](const auto& level, const std::string& picture) {
            Did("ask " + picture + " for " + level.Name);
            if (while_asking) while_asking();
            return std::string("asked.jpg");
        };
    }
    std::function<void()> while_asking;
};

TEST_F(PromptedPictures, ThirteenIsTypedAndTheNameAskedFor) {
    Play();
    Offer("picture");
    EXPECT_THAT(DoneAfter(0.5), ElementsAre("beep 100 150", "key 49", "key 51", "ask picture for " + kLevel,
                                            "show pictures of " + kLevel + ", asked.jpg", "clear"));
}

TEST_F(PromptedPictures, WhereNobodyCanBeAskedItIsStored) {
    watch_calls.AskPictureName = {};
    Play();
    Offer("picture");
    EXPECT_EQ(DoneAfter(0.5), Stored("picture"));
}

TEST_F(PromptedPictures, TheGamesEndIsSeenUnderTheQuestion) {
    Play();
    while_asking = [this] {
        EndGame();
        EXPECT_TRUE(Tick());
        EXPECT_EQ(game.GameProcess.id, 0);
        Offer("another"); // nobody's any more, and it stays
        EXPECT_TRUE(Tick());
    };
    Offer("picture");
    EXPECT_THAT(DoneAfter(0.5), ElementsAre("beep 100 150", "key 49", "key 51", "ask picture for " + kLevel,
                                            "uncover", "show pictures of " + kLevel + ", asked.jpg",
                                            "wait 1000", "show lists", "focus"));
    EXPECT_FALSE(IsWatching());
}

} // namespace
} // namespace kelvash::companion
