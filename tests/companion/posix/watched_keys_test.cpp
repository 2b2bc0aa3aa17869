// F9, F11 and full slots beside a running game.
#include "companion/posix/watcher_home.h"
#include "core/level_list.h"
#include "foundation/user.h"
#include "swap/install.h"

// Behind the others.
#include "support/x_client.h"

namespace kelvash::companion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kArchive = "archive 15 of - TRLE: Original configuration -";
const std::string kRestore = "restore of - TRLE: Original configuration -";
const std::string kBeep = "beep 200 150";

using WatchedKeys = WatcherHome;

// --- which keys count ---

TEST_F(WatchedKeys, ATapBetweenTwoTicksActsAtTheNext) {
    Play();
    Tap(kKeyF9);
    EXPECT_THAT(TakeDone(), IsEmpty());
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, kArchive));
    TickAfter(2);
    EXPECT_THAT(TakeDone(), IsEmpty());
}

// It is meant so: nothing guards the keys against repeating.
TEST_F(WatchedKeys, AKeyHeldAcrossTwoTicksActsTwice) {
    Play();
    desktop.held = {kKeyF11};
    TickAfter(2);
    TickAfter(2);
    desktop.held.clear();
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, kRestore, kBeep, kRestore));
}

TEST_F(WatchedKeys, BothKeysActInOneTick) {
    Play();
    Tap(kKeyF11);
    Tap(kKeyF9);
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, kArchive, kBeep, kRestore));
}

TEST_F(WatchedKeys, OnlyTheGameAndItsCoverAreListenedTo) {
    Play();
    desktop.focused = {5, "an editor", 4711};
    Tap(kKeyF9);
    desktop.held = {kKeyF11};
    TickAfter(2);
    desktop.focused = {};
    TickAfter(2);
    desktop.focused = {9, "a desktop of Wine's with another program", 4711, "explorer.exe"};
    TickAfter(2);
    EXPECT_THAT(TakeDone(), IsEmpty());
    desktop.focused = {kCover, "", 4713};
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, kRestore));
    desktop.focused = {6, "another game of that name", 4711, "tomb4.exe"};
    TickAfter(2);
    EXPECT_THAT(TakeDone(), IsEmpty());
    game.GameWindow = 0; // none has the game's process
    desktop.focused = {6, "the game in a container", 1, "Tomb4.exe"};
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, kRestore));
}

TEST_F(WatchedKeys, TheLevelInTrleCountsWhateverIsSelected) {
    AddLevel(1, "City", {{"city.tr4", "c"}});
    AddLevel(2, "Alpha", {{"alpha.tr4", "a"}});
    core::RefreshLevelList();
    ASSERT_TRUE(swap::InstallLevel(1));
    core::SelectLevel(2);
    Play();
    Tap(kKeyF9);
    Offer("picture");
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, "archive 15 of City", "beep 100 150", "save picture for City",
                                        "show pictures of City, new.jpg", "clear"));
}

// Its folder is all that it takes.
TEST_F(WatchedKeys, ALevelThatTheArchiveHasNoMoreIsActedOnInItsFolder) {
    AddLevel(1, "City", {{"city.tr4", "c"}});
    ASSERT_TRUE(swap::InstallLevel(1));
    Play();
    core::archive.Table.Remove(1);
    Tap(kKeyF9);
    Offer("picture");
    TickAfter(2);
    EXPECT_THAT(TakeDone(),
                ElementsAre(kBeep, "archive 15 of City", "beep 100 150", "save picture for City", "clear"));
    const WatchCalls real;
    watch_calls.ArchiveSlots = real.ArchiveSlots;
    watch_calls.RestoreLastSlot = real.RestoreLastSlot;
    for (const char number : {'\1', '\2'})
        Save(std::string("savegame.") + char('0' + number), std::string(75, 'x') + number + '\0');
    TickAfter(2);
    Tap(kKeyF9);
    TickAfter(2);
    EXPECT_THAT(NamesIn(LevelPath(1) / "SAVEGAMES" / "slot1"), ElementsAre("savegame.0", "savegame.1"));
    TickAfter(2);
    Tap(kKeyF11);
    TickAfter(2);
    EXPECT_TRUE(test::Exists(trle / "savegame.1"));
    EndGame();
    Tick();
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(WatchedKeys, ALevelThatNobodyKnowsIsToldAfterTheGame) {
    AddLevel(1, "City", {{"city.tr4", "c"}});
    ASSERT_TRUE(swap::InstallLevel(1));
    Play();
    core::archive.Table.Remove(1);
    std::filesystem::rename(LevelPath(1), levels / "elsewhere");
    Tap(kKeyF9);
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep));
    EndGame();
    Tick();
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: The savegames were not archived or restored while the game was "
                            "running: nobody knows whose level is in the Tomb Raider Level Editor folder, or "
                            "its own folder is gone"));
}

// --- when savegames may be touched ---

TEST_F(WatchedKeys, AKeyWaitsUntilNoSaveHasChangedForASecond) {
    Play();
    Save("savegame.0", "half");
    Tap(kKeyF9);
    TickAfter(0.5);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep)) << "the key is remembered";
    Save("savegame.0", "the whole of it");
    TickAfter(0.5);
    TickAfter(0.9);
    EXPECT_THAT(TakeDone(), IsEmpty());
    TickAfter(0.1);
    EXPECT_THAT(TakeDone(), ElementsAre(kArchive));
    TickAfter(2);
    EXPECT_THAT(TakeDone(), IsEmpty());
}

TEST_F(WatchedKeys, AKeyWaitsWhileTheGameHasASaveOpen) {
    std::filesystem::copy_file("/bin/sh", trle / "tomb4.exe",
                               std::filesystem::copy_options::overwrite_existing);
    Save("savegame.3", "save");
    ASSERT_TRUE(StartGame({"-c",
                           "exec 7<savegame.3; : >opened; while [ ! -e go ]; do sleep 0.02; done;"
                           "exec 7<&-; : >closed; exec sleep 1000"},
                          false));
    ASSERT_TRUE(test::Comes([this] { return test::Exists(trle / "opened"); }));
    game.WatcherActive = true;
    desktop.focused = {kGameWindow, "", game.GameProcess.id};
    TickAfter(2);
    Tap(kKeyF9);
    TickAfter(2);
    TickAfter(2);
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre("cover", kBeep));
    test::MakeFile(trle / "go", "");
    ASSERT_TRUE(test::Comes([this] { return test::Exists(trle / "closed"); }));
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kArchive));
}

TEST_F(WatchedKeys, AJobDelaysThem) {
    Play();
    may_change = false;
    Tap(kKeyF9);
    TickAfter(2);
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep));
    may_change = true;
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kArchive));
}

TEST_F(WatchedKeys, RefusedLocksAreTriedAgainAtTheNextTick) {
    Play();
    outcome = {Work::Refused, {}};
    Tap(kKeyF9);
    TickAfter(2);
    TickAfter(2);
    outcome = {Work::Done, {}};
    TickAfter(2);
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, kArchive, kArchive, kArchive));
    EndGame();
    Tick();
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(WatchedKeys, WhatIsStillRememberedAtTheEndIsDoneThen) {
    Play();
    Save("savegame.0", "new");
    Tap(kKeyF9);
    TickAfter(0.5);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep));
    EndGame();
    Tick();
    EXPECT_THAT(TakeDone(), ElementsAre("uncover", "wait 1000", kArchive, "show lists", "focus"));
}

TEST_F(WatchedKeys, WhatIsRefusedToTheEndIsTold) {
    Play();
    outcome = {Work::Refused, {}};
    Tap(kKeyF11);
    TickAfter(2);
    EndGame();
    Tick();
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: The savegames were not archived or restored as the key asked "
                            "for: another program was using the folders until the game ended"));
}

TEST_F(WatchedKeys, ATickWithinTheWorkIsHarmless) {
    Play();
    while_archiving = [this] {
        Tap(kKeyF9);
        EXPECT_TRUE(Tick());
        EXPECT_GT(JobDepth(), 0) << "no command can begin beside it";
    };
    Tap(kKeyF9);
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, kArchive));
    while_archiving = {};
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, kArchive)) << "the tap meanwhile counts for the next";
}

// --- what goes wrong ---

TEST_F(WatchedKeys, APartlyDoneOperationIsToldAfterTheGame) {
    Play();
    outcome = {Work::Partly, MessageText("two of them stay where they were")};
    Tap(kKeyF9);
    TickAfter(2);
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, kArchive)) << "not tried again";
    EXPECT_THAT(user.Told(), IsEmpty());
    EndGame();
    Tick();
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: two of them stay where they were"));
}

TEST_F(WatchedKeys, AFailureWithoutAReasonIsToldToo) {
    Play();
    outcome = {Work::Failed, {}};
    Tap(kKeyF11);
    TickAfter(2);
    EndGame();
    Tick();
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: Not all savegames could be archived or restored while the "
                            "game was running"));
}

TEST_F(WatchedKeys, BoxesOfTheWorkAreHeldBack) {
    Play();
    outcome = {Work::Failed, {}};
    while_archiving = [this] {
        TellCritical(MessageText("the disk is full"));
        EXPECT_THAT(user.Told(), IsEmpty());
    };
    Tap(kKeyF9);
    TickAfter(2);
    EndGame();
    Tick();
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: the disk is full"));
}

TEST_F(WatchedKeys, GapsThatAreOwedAreClosedOnceTheGameIsStill) {
    Play();
    outcome = {Work::Partly, MessageText("a save was being written"), {}, true};
    while_archiving = [this] { Save("savegame.0", "just written"); };
    Tap(kKeyF9);
    TickAfter(2);
    EXPECT_THAT(TakeDone(), ElementsAre(kBeep, kArchive));
    outcome = {Work::Done, {}};
    Save("savegame.0", "and written on");
    TickAfter(0.5);
    EXPECT_THAT(TakeDone(), IsEmpty());
    TickAfter(1);
    EXPECT_THAT(TakeDone(), ElementsAre("compact - TRLE: Original configuration -"));
    TickAfter(2);
    EXPECT_THAT(TakeDone(), IsEmpty());
}

// --- full slots ---

class FullSlots : public WatcherHome {
  protected:
    FullSlots() {
        core::profile.ArchiveSavegames = true;
        core::profile.SavegamesToKeep = 5;
    }
    void FillSlots(int count) {
        for (int slot = 0; slot < count; ++slot)
            Save("savegame." + std::to_string(slot), "save");
    }
    // What happens once the saves have lain still.
    std::vector<std::string> Settle() {
        TickAfter(0.5);
        TickAfter(1.5);
        return TakeDone();
    }
    // As the archiving of five leaves it.
    void TakeFive() {
        while_archiving = [this] {
            for (int slot = 10; slot < 15; ++slot)
                std::filesystem::remove(trle / ("savegame." + std::to_string(slot)));
        };
    }
    const std::string kFive = "archive 5 of - TRLE: Original configuration -";
};

TEST_F(FullSlots, FifteenAreArchivedByTheProfilesNumberThenBeeped) {
    TakeFive();
    Play();
    FillSlots(15);
    EXPECT_THAT(Settle(), ElementsAre(kFive, "beep 300 100", "beep 100 150"));
    EXPECT_THAT(Settle(), IsEmpty()) << "the count has dropped";
}

TEST_F(FullSlots, FewerOrAFlagThatIsOffArchiveNone) {
    Play();
    FillSlots(14);
    EXPECT_THAT(Settle(), IsEmpty());
    FillSlots(13);
    core::profile.ArchiveSavegames = false;
    FillSlots(15);
    EXPECT_THAT(Settle(), IsEmpty());
}

TEST_F(FullSlots, OddNamesDontStopIt) {
    TakeFive();
    Play();
    FillSlots(15);
    Save("savegame.bak", "kept by hand");
    Save("SAVEGAME.01", "odd");
    Save("savegame.15", "one too many");
    EXPECT_THAT(Settle(), ElementsAre(kFive, "beep 300 100", "beep 100 150"));
}

// It is meant so: what is counted is the files of that name.
TEST_F(FullSlots, FifteenFilesOfTheNameCountAsFull) {
    Play();
    FillSlots(14);
    Save("savegame.bak", "kept by hand");
    EXPECT_THAT(Settle(), ElementsAre(kFive, "beep 300 100", "beep 100 150"));
}

TEST_F(FullSlots, WhatCouldNotBeArchivedIsTriedAgainAfterAChange) {
    outcome = {Work::Failed, MessageText("no room")};
    Play();
    FillSlots(15);
    EXPECT_THAT(Settle(), ElementsAre(kFive)) << "no beep of success";
    EXPECT_THAT(Settle(), IsEmpty());
    Save("savegame.3", "a new save in the same slot");
    EXPECT_THAT(Settle(), ElementsAre(kFive));
    EndGame();
    Tick();
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: no room"));
}

TEST_F(FullSlots, RefusedTheyAreTriedAgain) {
    outcome = {Work::Refused, {}};
    Play();
    FillSlots(15);
    EXPECT_THAT(Settle(), ElementsAre(kFive));
    outcome = {Work::Done, {}};
    TakeFive();
    EXPECT_THAT(Settle(), ElementsAre(kFive, "beep 300 100", "beep 100 150"));
}

TEST_F(FullSlots, ANumberOfNoneArchivesNone) {
    core::profile.SavegamesToKeep = 0;
    Play();
    FillSlots(15);
    EXPECT_THAT(Settle(), IsEmpty());
}

} // namespace
} // namespace kelvash::companion
