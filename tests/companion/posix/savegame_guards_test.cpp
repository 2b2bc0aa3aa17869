// What must not happen to savegames: an operation on another one than was chosen, on a level that is not
// there, in the middle of another operation, or through a second name of a file.
#include <gmock/gmock.h>

#include <fstream>
#include <functional>

#include "companion/archive_slots.h"
#include "companion/compact_slots.h"
#include "companion/restore_slots.h"
#include "companion/savegame_commands.h"
#include "companion/savegame_images.h"
#include "companion/savegame_notes.h"
#include "companion/savegame_transfer.h"
#include "companion/savegames.h"
#include "core/change.h"
#include "foundation/absent_user.h"
#include "foundation/files.h"
#include "foundation/place_file.h"
#include "support/pump_clock.h"
#include "support/savegame_home.h"
#include "swap/install.h"
#include "swap/moved_saves.h"
#include "trle_state/swap_record.h"

namespace kelvash::companion {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using test::SaveBytes;
using test::SaveMap;

const std::string kSlots = "C:\\Levels\\LEVEL_0001\\backup_savegames\\";
const std::string kArchive = "C:\\Levels\\LEVEL_0001\\savegames\\";

// Answers yes, and does something while its question is open.
class BusyUser : public AbsentUser {
  public:
    explicit BusyUser(std::function<void()> meanwhile) : meanwhile_(std::move(meanwhile)) { SetUser(this); }
    ~BusyUser() override { SetUser(nullptr); }

    Answer Ask(Buttons, MessageStyle, const MessageText&) override {
        meanwhile_();
        return Answer::Yes;
    }
    void PumpEvents() override { meanwhile_(); }

  private:
    std::function<void()> meanwhile_;
};

class SavegameGuards : public test::SavegameHome {
  protected:
    ~SavegameGuards() override { SetUser(&user); }
};

TEST_F(SavegameGuards, ADeleteLeavesWhatHasComeInItsPlace) {
    PutSlot(0, 1);
    PutSlot(1, 2);
    const BusyUser player([&] { PutSlot(1, 77); });
    const SlotsOutcome outcome = AskDeleteSavegame(1, kSlots + "savegame.1");
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message, "Nothing has been done, because another savegame has come in the place of: " +
                                   kSlots + "savegame.1");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "1"}, {"savegame.1", "77"}}));
}

TEST_F(SavegameGuards, ADeleteOfOneThatIsGoneIsRefused) {
    PutSlot(0, 1);
    const BusyUser player([&] { std::filesystem::remove(Slots() / "savegame.0"); });
    const SlotsOutcome outcome = AskDeleteSavegame(1, kSlots + "savegame.0");
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message, "Nothing has been done, because the level has no such savegame any more: " +
                                   kSlots + "savegame.0");
}

TEST_F(SavegameGuards, OnlyTheLevelsOwnAreDeletedExportedAndNoted) {
    AddLevel(2, "Coast", {{"coast.tr4", "coast"}});
    MakeFile(StashPath(2) / "savegame.0", SaveBytes("Coast", 5));
    const std::string other = "C:\\Levels\\LEVEL_0002\\backup_savegames\\savegame.0";
    user.WillAnswer("Delete savegame [", "yes");
    EXPECT_EQ(AskDeleteSavegame(1, other).Result, SlotsResult::Refused);
    std::filesystem::create_directories(drive / "out");
    EXPECT_EQ(ExportSavegames(1, {other}, "C:\\out", Sources::Delete).Result, SlotsResult::Refused);
    EXPECT_EQ(BytesOf(StashPath(2) / "savegame.0"), SaveBytes("Coast", 5));
    MakeFile(drive / "elsewhere/savegame.0", SaveBytes("Coast", 5));
    user.MayBeTold("");
    EXPECT_FALSE(WriteNote("C:\\elsewhere\\savegame.0", "nobody's"));
    EXPECT_FALSE(Exists(drive / "elsewhere/note0.txt"));
    EXPECT_TRUE(WriteNote(other, "its own level's"));
}

TEST_F(SavegameGuards, ANoteIsNotGivenToAnotherSavegame) {
    PutSlot(3, 1);
    const SeenNote seen = LookAtNote(kSlots + "savegame.3");
    PutSlot(3, 2);
    user.MayBeTold("");
    EXPECT_FALSE(WriteNote(kSlots + "savegame.3", "of the first", seen));
    EXPECT_FALSE(Exists(Slots() / "note3.txt"));
    MakeFile(Slots() / "savegame.03", SaveBytes("City", 9));
    EXPECT_FALSE(WriteNote(kSlots + "savegame.03", "of 03")); // note3.txt would be that of savegame.3
    EXPECT_FALSE(Exists(Slots() / "note3.txt"));
    EXPECT_TRUE(WriteNote(kSlots + "savegame.3", "of 3"));
}

TEST_F(SavegameGuards, WhatIsInTheSlotsIsNotCopiedThere) {
    for (int slot = 0; slot < 15; ++slot)
        PutSlot(slot, slot + 1);
    SlotsOutcome outcome = RestoreToSlots(1, kSlots + "savegame.4");
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "Nothing has been copied. This savegame is in the slots already: " + kSlots + "savegame.4");
    outcome = ImportSavegames(1, {kSlots + "savegame.4"});
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "Nothing has been imported. This savegame is in the slots already: " + kSlots + "savegame.4");
    EXPECT_EQ(Contents(Slots()).size(), 15U);
    EXPECT_FALSE(Exists(Archived() / "slot1"));
}

TEST_F(SavegameGuards, AnOperationInTheMiddleOfAnotherFindsTheDoorShut) {
    for (int slot = 0; slot < 15; ++slot)
        PutSlot(slot, slot + 1);
    PutArchived(1, 2, 100);
    SlotsOutcome watcher, person;
    {
        const BusyUser player([&] {
            watcher = ArchiveSlots(1, 3, Asker::Watcher);
            person = CompactSlots(1, Asker::User);
        });
        EXPECT_EQ(RestoreToSlots(1, kArchive + "slot1\\savegame.2").Result, SlotsResult::Done);
    }
    EXPECT_EQ(watcher.Result, SlotsResult::Busy);
    EXPECT_EQ(watcher.Message, "");
    EXPECT_EQ(person.Result, SlotsResult::Busy);
    EXPECT_EQ(person.Message, "Savegames are being moved just now. Try again when that has ended.");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "15"}, {"savegame.1", "100"}}));
    SetUser(&user);
    EXPECT_EQ(ArchiveSlots(1, 1, Asker::Watcher).Result, SlotsResult::Done);
}

// The game writes a savegame anew while it is being renumbered.
class WrittenMeanwhile : public SavegameGuards {
  protected:
    void WriteOnce(const std::string& name) {
        if (!Exists(home / "_temp_savegame" / name) || written) return;
        written = true;
        std::filesystem::remove(Slots() / name);
        MakeFile(Slots() / name, SaveBytes("City", 99));
    }
    WrittenMeanwhile() { test::SetPumpStep(std::chrono::milliseconds(20)); }

    const JobScope job;
    bool written = false;
};

TEST_F(WrittenMeanwhile, ASavegameStaysAndSoDoTheOthers) {
    PutSlot(3, 1);
    PutSlot(5, 2);
    const BusyUser game([this] { WriteOnce("savegame.5"); });
    const SlotsOutcome outcome = CompactSlots(1, Asker::Watcher);
    EXPECT_EQ(outcome.Result, SlotsResult::Busy);
    EXPECT_EQ(outcome.Message,
              "The savegames stay as they are. The game is writing this savegame: " + kSlots + "savegame.5");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.3", "1"}, {"savegame.5", "99"}}));
    ExpectNothingMoving();
    EXPECT_EQ(CompactSlots(1, Asker::Watcher).Result, SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "1"}, {"savegame.1", "99"}}));
}

TEST_F(WrittenMeanwhile, AnArchivingOwesTheOrder) {
    PutSlot(3, 1);
    PutSlot(5, 2);
    PutSlot(7, 3);
    const BusyUser game([this] { WriteOnce("savegame.7"); });
    const SlotsOutcome outcome = ArchiveSlots(1, 1, Asker::Watcher);
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_TRUE(outcome.CompactOwed);
    EXPECT_EQ(outcome.Message, "The savegames have been copied to " + kArchive +
                                   "slot1, but the slots are not as they should be.\r\nThe game is writing "
                                   "this savegame: " +
                                   kSlots + "savegame.7");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.5", "2"}, {"savegame.7", "99"}}));
}

TEST_F(SavegameGuards, TheWatcherLeavesASwapThatWasCutShort) {
    ASSERT_TRUE(swap::InstallLevel(1));
    for (const auto& entry : std::filesystem::directory_iterator(home)) {
        if (entry.path().extension() != ".rec") continue;
        std::optional<trle_state::SwapRecord> record = trle_state::DecodeSwapRecord(BytesOf(entry.path()));
        ASSERT_TRUE(record);
        record->Step = trle_state::SwapStep::Leaving;
        MakeFile(entry.path(), trle_state::EncodeSwapRecord(*record, "C:\\trle"));
    }
    const SlotsOutcome outcome = ArchiveSlots(1, 15, Asker::Watcher);
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "Nothing has been done with the savegames, because the level in TRLE is only "
              "half there: its swap was cut short.");
}

TEST_F(SavegameGuards, FullSlotsThatWereArchivedForNothingAreToldOf) {
    for (int slot = 0; slot < 15; ++slot)
        PutSlot(slot, slot + 1);
    user.WillAnswer("All Tomb Raider slots are full", "yes");
    const SlotsOutcome outcome = RestoreToSlots(1, "C:\\gone\\savegame.4");
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_EQ(outcome.Message,
              "The savegames of the slots have been archived, but nothing could be copied into "
              "the slots: C:\\gone\\savegame.4");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "15"}}));
}

TEST_F(SavegameGuards, ADeleteTellsThatTheSlotsHaveGaps) {
    PutSlot(0, 1);
    PutSlot(1, 2);
    MakeFile(home / "_temp_savegame", "a file");
    user.WillAnswer("Delete savegame [", "yes");
    const SlotsOutcome outcome = AskDeleteSavegame(1, kSlots + "savegame.0");
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_EQ(outcome.Message,
              "The savegame has been deleted, but the slots could not be put in order.\r\n"
              "Something is in the way that isn't a folder of Kelvash's own: "
              "C:\\Kelvash\\_temp_savegame");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.1", "2"}}));
}

TEST_F(SavegameGuards, ARestoreTellsWhatStaysWhereItWas) {
    PutSlot(0, 5, "new");
    PutArchived(1, 3, 5, "old");
    MakeFile(Repeated(), "a file");
    const SlotsOutcome outcome = RestoreLastSlot(1, Asker::User);
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_EQ(outcome.Message, "Not all savegames could be restored. These are still where they were:\r\n" +
                                   kArchive + "slot1\\savegame.3");
    EXPECT_EQ(Contents(Archived() / "slot1"), (SaveMap{{"savegame.3", "5old"}}));
}

// Root reads every file, so these are looked at as an ordinary user.
class UnreadableSavegames : public SavegameGuards {
  protected:
    static void Lock(const std::filesystem::path& file) {
        std::filesystem::permissions(file, std::filesystem::perms::none);
    }
};

TEST_F(UnreadableSavegames, AreStayedOverByARestore) {
    PutSlot(0, 5);
    PutArchived(1, 0, 3);
    PutArchived(1, 1, 9);
    PutArchived(1, 2, 7);
    Lock(Archived() / "slot1/savegame.2");
    SlotsOutcome outcome;
    {
        const test::OrdinaryUser ordinary;
        outcome = RestoreLastSlot(1, Asker::User);
    }
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_EQ(outcome.Count, 2);
    EXPECT_EQ(outcome.Message, "Not all savegames could be restored. These are still where they were:\r\n" +
                                   kArchive + "slot1\\savegame.2");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "3"}, {"savegame.1", "5"}, {"savegame.2", "9"}}));
    EXPECT_EQ(Contents(Archived() / "slot1"), (SaveMap{{"savegame.2", "7"}}));
    ExpectNothingMoving();
}

TEST_F(UnreadableSavegames, StayInTheSlotsWhereOthersAreArchived) {
    for (int slot = 0; slot < 4; ++slot)
        PutSlot(slot, slot + 1);
    Lock(Slots() / "savegame.1");
    SlotsOutcome outcome;
    {
        const test::OrdinaryUser ordinary;
        outcome = ArchiveSlots(1, 15, Asker::User);
    }
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_EQ(outcome.Message,
              "The savegames have been archived but for these, which stay in the slots because I "
              "cannot read them:\r\n" +
                  kSlots + "savegame.1");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "4"}, {"savegame.1", "2"}}));
    EXPECT_EQ(Contents(Archived()),
              (SaveMap{{"slot1/savegame.0", "1"}, {"slot1/savegame.1", "3"}, {"slot1/savegame.2", "4"}}));
}

TEST_F(UnreadableSavegames, AreNoReasonForGapsBesideThem) {
    PutSlot(1, 2);
    PutSlot(5, 3);
    PutSlot(7, 1);
    Lock(Slots() / "savegame.1");
    {
        const test::OrdinaryUser ordinary;
        EXPECT_EQ(CompactSlots(1, Asker::User).Result, SlotsResult::Done);
    }
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "1"}, {"savegame.1", "2"}, {"savegame.2", "3"}}));
}

TEST_F(SavegameGuards, NobodyBringsHomeWhatIsJustBeingRenumbered) {
    MakeFile(home / "_temp_savegame/savegame.0", SaveBytes("City", 1));
    MessageText why;
    {
        const swap::RenumberScope scope;
        EXPECT_FALSE(swap::BringMovedSavesHome(swap::Rescue::Yes, why));
    }
    EXPECT_EQ(why, "Savegames are being moved just now; try again");
    EXPECT_TRUE(Exists(home / "_temp_savegame/savegame.0"));
}

// A link would let the game write into the archive.
TEST_F(SavegameGuards, ARestoredSavegameHasBytesOfItsOwn) {
    PutArchived(1, 0, 4);
    std::filesystem::create_hard_link(Archived() / "slot1/savegame.0", drive / "second_name");
    EXPECT_EQ(RestoreLastSlot(1, Asker::User).Result, SlotsResult::Done);
    std::ofstream(Slots() / "savegame.0", std::ios::binary | std::ios::in) << "written in place";
    EXPECT_EQ(BytesOf(drive / "second_name"), SaveBytes("City", 4));
}

TEST_F(SavegameGuards, FoldersAndDeadLinksAreStepsOver) {
    PutSlot(2, 7);
    PutSlot(5, 8);
    std::filesystem::create_directories(Slots() / "savegame.0");
    std::filesystem::create_symlink(drive / "nowhere", Slots() / "note1.txt");
    EXPECT_EQ(CompactSlots(1, Asker::User).Result, SlotsResult::Done);
    EXPECT_EQ(BytesOf(Slots() / "savegame.2"), SaveBytes("City", 7));
    EXPECT_EQ(BytesOf(Slots() / "savegame.3"), SaveBytes("City", 8));
    PutArchived(1, 0, 1);
    EXPECT_EQ(RestoreLastSlot(1, Asker::User).Result, SlotsResult::Done);
    EXPECT_EQ(BytesOf(Slots() / "savegame.2"), SaveBytes("City", 1));
    EXPECT_TRUE(std::filesystem::is_directory(Slots() / "savegame.0"));
    std::filesystem::create_directories(Repeated());
    std::filesystem::create_symlink(drive / "nowhere", Repeated() / "savegame.0");
    PutArchived(1, 0, 7, "another seven");
    EXPECT_EQ(RestoreLastSlot(1, Asker::User).Result, SlotsResult::Done);
    EXPECT_EQ(BytesOf(Repeated() / "savegame.1"), SaveBytes("City", 7, "another seven"));
    ExpectNothingMoving();
}

TEST_F(SavegameGuards, ARestoreStopsAtFifteenWithOddNamesToo) {
    for (const char* name : {"bak", "old", "15"})
        MakeFile(Slots() / ("savegame." + std::string(name)), SaveBytes("City", 200 + name[0], name));
    for (int slot = 0; slot < 15; ++slot)
        PutArchived(1, slot, slot + 1);
    EXPECT_EQ(RestoreLastSlot(1, Asker::User).Count, 12);
    EXPECT_EQ(Contents(Slots()).size(), 15U);
    EXPECT_TRUE(Exists(Slots() / "savegame.14"));
    EXPECT_EQ(Contents(Archived() / "slot1").size(), 3U);
}

TEST_F(SavegameGuards, LinksAreNoSlotFolders) {
    MakeFile(drive / "else/savegame.0", SaveBytes("Other", 50));
    std::filesystem::create_directories(Archived());
    std::filesystem::create_directory_symlink(drive / "else", Archived() / "slot1");
    EXPECT_EQ(RestoreLastSlot(1, Asker::User).Result, SlotsResult::Nothing);
    std::filesystem::create_directory_symlink(drive / "else", Archived() / "_slot");
    PutSlot(0, 1);
    PutSlot(1, 2);
    const SlotsOutcome outcome = ArchiveSlots(1, 15, Asker::User);
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "The savegames stay as they are. This folder is in the way: " + kArchive + "_slot");
    EXPECT_TRUE(std::filesystem::is_symlink(Archived() / "_slot"));
    EXPECT_EQ(BytesOf(drive / "else/savegame.0"), SaveBytes("Other", 50));
}

TEST_F(SavegameGuards, WithoutTrleTheSlotsOfItsLevelAreNowhere) {
    ASSERT_TRUE(swap::InstallLevel(1));
    MakeFile(Slots() / "savegame.9", SaveBytes("City", 9)); // of another time
    MakeFile(Slots() / "savegame.8", SaveBytes("City", 8));
    std::filesystem::rename(trle, drive / "unplugged");
    const SlotsOutcome outcome = ArchiveSlots(1, 15, Asker::User);
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "Nothing has been done with the savegames. TRLE is missing, or nobody knows "
              "whose savegames are in it: C:\\trle");
    EXPECT_TRUE(SlotSavegames(core::PlaceOf(1)).empty());
    EXPECT_TRUE(Exists(Slots() / "savegame.9"));
}

TEST_F(SavegameGuards, LevelZeroHasNoSlotsWhileNobodyKnowsWhoseTheyAre) {
    ASSERT_TRUE(swap::InstallLevel(1));
    MakeFile(trle / "savegame.0", SaveBytes("Whose", 1));
    MakeFile(trle / "savegame.1", SaveBytes("Whose", 2));
    for (const auto& entry : std::filesystem::directory_iterator(home))
        if (entry.path().extension() == ".rec") std::filesystem::remove(entry.path());
    MakeFile(trle / "Kelvash.txt", "#LEVEL_NAME=Nobody's#");
    EXPECT_EQ(ArchiveSlots(0, 15, Asker::User).Result, SlotsResult::Refused);
    EXPECT_EQ(BytesOf(trle / "savegame.1"), SaveBytes("Whose", 2));
}

// The level in TRLE may be one of another Archive: its folder is all that the watcher needs.
TEST_F(SavegameGuards, TheWatcherActsOnALevelOfAnotherArchive) {
    ASSERT_TRUE(swap::InstallLevel(1));
    MakeFile(trle / "savegame.0", SaveBytes("City", 1));
    MakeFile(trle / "savegame.1", SaveBytes("City", 2));
    EXPECT_EQ(ArchiveSlots(core::kNoLevel, 15, Asker::User).Result, SlotsResult::Nothing);
    EXPECT_EQ(ArchiveSlots(core::kNoLevel, 15, Asker::Watcher).Result, SlotsResult::Done);
    EXPECT_EQ(Contents(Archived() / "slot1"), (SaveMap{{"savegame.0", "1"}, {"savegame.1", "2"}}));
    EXPECT_EQ(BytesOf(trle / "savegame.0"), SaveBytes("City", 2));
}

TEST_F(SavegameGuards, TheWatcherIsToldWhyAndShownNothing) {
    std::filesystem::rename(LevelPath(1), levels / "LEVEL_0001_away");
    const SlotsOutcome outcome = ArchiveSlots(1, 15, Asker::Watcher);
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "Nothing has been done with the savegames. The level's folder is missing: "
              "C:\\Levels\\LEVEL_0001");
    EXPECT_EQ(ArchiveSlots(77, 15, Asker::Watcher).Message,
              "The level is no longer in the Archive: another Kelvash has removed it");
    EXPECT_TRUE(user.Told().empty());
    const SlotsOutcome nobodys = ArchiveSlots(core::kNoLevel, 15, Asker::Watcher);
    EXPECT_EQ(nobodys.Message,
              "Nothing has been done with the savegames. The folder of the level that is in "
              "TRLE can't be found.");
}

TEST_F(SavegameGuards, ADeleteTakesTheLinkAndLeavesWhatItLeadsTo) {
    PutSlot(0, 1);
    PutSlot(4, 2);
    PutNote(Slots(), 0, "stays");
    std::filesystem::rename(Slots() / "note0.txt", drive / "note");
    std::filesystem::create_symlink(drive / "note", Slots() / "note0.txt");
    const SlotsOutcome outcome = [&] {
        user.WillAnswer("Delete savegame [", "yes");
        return AskDeleteSavegame(1, kSlots + "savegame.0");
    }();
    EXPECT_EQ(outcome.Result, SlotsResult::Done); // the link goes, not what it leads to
    EXPECT_EQ(BytesOf(drive / "note"), "stays");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "2"}}));
}

TEST_F(SavegameGuards, ACopyWithoutANoteLeavesNoneBehind) {
    PutSlot(0, 1);
    MakeFile(drive / "out/savegame.3", SaveBytes("City", 9));
    MakeFile(drive / "out/note3.txt", "of nine");
    EXPECT_TRUE(CopySavegame(kSlots + "savegame.0", "C:\\out\\savegame.3", swap::Placing::Copy));
    EXPECT_EQ(Contents(drive / "out"), (SaveMap{{"savegame.3", "1"}}));
}

TEST_F(SavegameGuards, ACopyLeavesANoteThatIsNobodys) {
    PutSlot(0, 1);
    MakeFile(drive / "out/note3.txt", "somebody's own");
    EXPECT_TRUE(CopySavegame(kSlots + "savegame.0", "C:\\out\\savegame.3", swap::Placing::Copy));
    EXPECT_EQ(Contents(drive / "out"), (SaveMap{{"savegame.3", "1"}, {"note3.txt", "somebody's own"}}));
}

// Answers a file dialog while another program puts another savegame in the place of the chosen one.
class SwappedMeanwhile : public AbsentUser {
  public:
    SwappedMeanwhile(std::string answer, std::function<void()> meanwhile)
        : answer_(std::move(answer)), meanwhile_(std::move(meanwhile)) {
        SetUser(this);
    }
    ~SwappedMeanwhile() override { SetUser(nullptr); }
    std::optional<std::string> SaveFile(const FileDialog&) override { return Answered(); }
    std::optional<std::string> OpenFile(const FileDialog&) override { return Answered(); }
    void Message(MessageStyle, const MessageText& text) override { told = text.text; }
    std::string told;

  private:
    std::string Answered() const {
        meanwhile_();
        return answer_;
    }
    std::string answer_;
    std::function<void()> meanwhile_;
};

TEST_F(SavegameGuards, AnotherOneThanWasChosenIsNotSaved) {
    PutSlot(0, 1);
    std::filesystem::create_directories(drive / "out");
    const SwappedMeanwhile player("C:\\out\\savegame.0", [this] { PutSlot(0, 77, "another"); });
    EXPECT_FALSE(SaveSavegameAs(kSlots + "savegame.0"));
    EXPECT_EQ(player.told,
              "Nothing has been saved. The savegame is gone, or another one has come in its place: " +
                  kSlots + "savegame.0");
    EXPECT_EQ(Contents(drive / "out"), SaveMap());
}

TEST_F(SavegameGuards, NoImageIsLinkedToAnotherOneThanWasChosen) {
    PutSlot(0, 1);
    const std::string shot = "C:\\Levels\\LEVEL_0001\\screenshots\\a.jpg";
    MakeFile(LevelPath(1) / "screenshots/a.jpg", "a");
    ASSERT_TRUE(SetFileDate(shot, 1000));
    const SwappedMeanwhile player(shot, [this] { PutSlot(0, 77, "another"); });
    EXPECT_FALSE(ChooseLinkedImage(1, kSlots + "savegame.0"));
    EXPECT_EQ(player.told,
              "No image has been linked. The savegame is gone, or another one has come in its place: " +
                  kSlots + "savegame.0");
    EXPECT_EQ(FileTime(shot), 1000);
}

TEST_F(SavegameGuards, AMarkInATitleIsShownAsItIs) {
    MakeFile(Slots() / "savegame.0", SaveBytes("The ~2 gate ~3", 1));
    const std::string told = SavegameProperty(kSlots + "savegame.0", {}).text;
    EXPECT_THAT(told, testing::StartsWith("Savegame:    1 The ~2 gate ~3  ("));
    EXPECT_THAT(told, testing::EndsWith(") \r\nPath: \"" + kSlots +
                                        "savegame.0\"\r\nImage: None\r\nDescription: None"));
}

} // namespace
} // namespace kelvash::companion
