#include "companion/restore_slots.h"

#include <gmock/gmock.h>

#include "companion/savegames.h"
#include "support/savegame_home.h"
#include "swap/install.h"

namespace kelvash::companion {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using test::SaveBytes;
using test::SaveMap;
using testing::ElementsAre;

class Restoring : public test::SavegameHome {
  protected:
    SlotsResult RestoreLast() { return RestoreLastSlot(1, Asker::User).Result; }
    // What savegames.trs says.
    std::string Counter() const { return BytesOf(Archived() / "savegames.trs").substr(1026); }
};

TEST_F(Restoring, BringsTheLastFolderBackInTheOrderOfTime) {
    PutSlot(0, 10);
    PutSlot(1, 12);
    PutNote(Slots(), 1, "twelve");
    PutArchived(1, 0, 1);
    PutArchived(2, 0, 11);
    PutArchived(2, 1, 13);
    PutNote(Archived() / "slot2", 0, "eleven");
    const SlotsOutcome outcome = RestoreLastSlot(1, Asker::User);
    EXPECT_EQ(outcome.Result, SlotsResult::Done);
    EXPECT_EQ(outcome.Count, 2);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "10"},
                                          {"savegame.1", "11"},
                                          {"note1.txt", "eleven"},
                                          {"savegame.2", "12"},
                                          {"note2.txt", "twelve"},
                                          {"savegame.3", "13"}}));
    EXPECT_TRUE(Exists(Archived() / "slot2")); // empty; it goes at the next restore
    EXPECT_EQ(RestoreLast(), SlotsResult::Done);
    EXPECT_FALSE(Exists(Archived() / "slot2"));
    EXPECT_EQ(Contents(Slots())["savegame.0"], "1");
    ExpectNothingMoving();
}

TEST_F(Restoring, WithFourteenInTheSlotsTakesJustTheNewest) {
    for (int slot = 0; slot < 14; ++slot)
        PutSlot(slot, slot + 1);
    PutArchived(1, 0, 101);
    PutArchived(1, 1, 103);
    PutArchived(1, 2, 102);
    EXPECT_EQ(RestoreLast(), SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()).size(), 15U);
    EXPECT_EQ(Contents(Slots())["savegame.14"], "103");
    EXPECT_EQ(Contents(Archived() / "slot1"), (SaveMap{{"savegame.0", "101"}, {"savegame.2", "102"}}));
}

// The count of free places is raised at each move, so it never ends a restore: the free names do.
TEST_F(Restoring, FillsAllFifteenSlots) {
    PutSlot(0, 50);
    for (int slot = 0; slot < 15; ++slot)
        PutArchived(1, slot, slot + 1);
    const SlotsOutcome outcome = RestoreLastSlot(1, Asker::User);
    EXPECT_EQ(outcome.Count, 14);
    EXPECT_EQ(Contents(Slots()).size(), 15U);
    EXPECT_EQ(Contents(Archived() / "slot1"), (SaveMap{{"savegame.0", "1"}}));
}

TEST_F(Restoring, StopsAtFullSlots) {
    for (int slot = 0; slot < 15; ++slot)
        PutSlot(slot, slot + 1);
    PutArchived(1, 0, 101);
    EXPECT_EQ(RestoreLast(), SlotsResult::Nothing);
    EXPECT_EQ(Contents(Archived() / "slot1"), (SaveMap{{"savegame.0", "101"}}));
    EXPECT_FALSE(Exists(Archived() / "savegames.trs"));
}

TEST_F(Restoring, WithoutAnArchivedSavegameIsNothing) {
    PutSlot(0, 1);
    EXPECT_EQ(RestoreLast(), SlotsResult::Nothing);
    std::filesystem::create_directories(Archived() / "slot1");
    std::filesystem::create_directories(Archived() / "slot2");
    EXPECT_EQ(RestoreLast(), SlotsResult::Nothing);
    EXPECT_FALSE(Exists(Archived() / "slot1"));
    EXPECT_FALSE(Exists(Archived() / "slot2"));
}

TEST_F(Restoring, AFolderGoesOnlyIfItIsTrulyEmpty) {
    PutArchived(1, 0, 7);
    MakeFile(Archived() / "slot2/note3.txt", "a note without its savegame");
    std::filesystem::create_directories(Archived() / "slot3/inner");
    EXPECT_EQ(RestoreLast(), SlotsResult::Done);
    EXPECT_TRUE(Exists(Archived() / "slot2/note3.txt"));
    EXPECT_TRUE(Exists(Archived() / "slot3/inner"));
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "7"}}));
}

TEST_F(Restoring, ATwinIsDeletedAndItsNoteGoesToTheOneThatStays) {
    PutSlot(0, 5);
    PutArchived(1, 3, 5);
    PutNote(Archived() / "slot1", 3, "of the twin");
    const SlotsOutcome outcome = RestoreLastSlot(1, Asker::User);
    EXPECT_EQ(outcome.Count, 1);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "5"}, {"note0.txt", "of the twin"}}));
    EXPECT_EQ(Contents(Archived() / "slot1"), SaveMap());
    EXPECT_FALSE(Exists(Repeated()));
}

TEST_F(Restoring, TheNoteOfATwinOfOneWithANoteIsKept) {
    PutSlot(0, 5);
    PutNote(Slots(), 0, "its own");
    PutArchived(1, 3, 5);
    PutNote(Archived() / "slot1", 3, "of the twin");
    EXPECT_EQ(RestoreLast(), SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "5"}, {"note0.txt", "its own"}}));
    EXPECT_EQ(Contents(Archived() / "slot1"), SaveMap());
    EXPECT_EQ(Contents(Repeated()), (SaveMap{{"note0.txt", "of the twin"}}));
}

TEST_F(Restoring, WhatHasOnlyTheNumberOfAnotherIsKept) {
    PutSlot(0, 5, "new game");
    PutArchived(1, 3, 5, "old game");
    PutNote(Archived() / "slot1", 3, "worth much");
    MakeFile(Repeated() / "savegame.0", "was there");
    EXPECT_EQ(RestoreLast(), SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "5new game"}}));
    EXPECT_EQ(Contents(Archived() / "slot1"), SaveMap());
    EXPECT_EQ(
        Contents(Repeated()),
        (SaveMap{{"savegame.0", "was there"}, {"savegame.1", "5old game"}, {"note1.txt", "worth much"}}));
    EXPECT_THAT(KeptSavegames(core::PlaceOf(1)), ElementsAre("C:\\Levels\\LEVEL_0001\\REPEATED\\savegame.0",
                                                             "C:\\Levels\\LEVEL_0001\\REPEATED\\savegame.1"));
}

TEST_F(Restoring, OfTwoOfOneNumberInTheFolderTheFirstComes) {
    PutArchived(1, 0, 5, "a");
    PutArchived(1, 1, 5, "b");
    EXPECT_EQ(RestoreLast(), SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "5a"}}));
    EXPECT_EQ(Contents(Repeated()), (SaveMap{{"savegame.0", "5b"}}));
}

TEST_F(Restoring, WritesARecordThatOnlyFalls) {
    PutSlot(0, 5);
    PutArchived(1, 0, 1);
    PutArchived(1, 1, 5);
    EXPECT_EQ(RestoreLast(), SlotsResult::Done); // one moved, one deleted
    EXPECT_EQ(BytesOf(Archived() / "savegames.trs"),
              std::string(1026, '\0') + std::string("\xFE\xFF\xFF\xFF", 4));
    PutArchived(1, 0, 2);
    EXPECT_EQ(RestoreLast(), SlotsResult::Done);
    EXPECT_EQ(Counter(), "\xFD\xFF\xFF\xFF");
}

TEST_F(Restoring, ActsOnTrleWhereTheLevelIsIn) {
    ASSERT_TRUE(swap::InstallLevel(1));
    MakeFile(trle / "savegame.3", SaveBytes("City", 9));
    PutArchived(1, 0, 4);
    EXPECT_EQ(RestoreLast(), SlotsResult::Done);
    EXPECT_EQ(BytesOf(trle / "savegame.0"), SaveBytes("City", 4));
    EXPECT_EQ(BytesOf(trle / "savegame.1"), SaveBytes("City", 9));
    EXPECT_FALSE(Exists(trle / "savegame.3"));
}

TEST_F(Restoring, OfNothingIsNothing) {
    for (int slot = 0; slot < 14; ++slot)
        PutSlot(slot, slot + 1);
    std::filesystem::create_directories(Slots() / "savegame.14");
    PutArchived(1, 0, 50);
    EXPECT_EQ(RestoreLast(), SlotsResult::Nothing);
    EXPECT_TRUE(Exists(Archived() / "slot1/savegame.0"));
}

class ToSlots : public Restoring {
  protected:
    SlotsOutcome Copy(const std::string& path) { return RestoreToSlots(1, path); }
    static constexpr const char* kArchived = "C:\\Levels\\LEVEL_0001\\savegames\\slot1\\savegame.2";
};

TEST_F(ToSlots, CopiesWithTheNoteAndPutsTheSlotsInOrder) {
    PutSlot(0, 3);
    PutSlot(2, 8);
    PutArchived(1, 2, 5);
    PutNote(Archived() / "slot1", 2, "five");
    EXPECT_EQ(Copy(kArchived).Result, SlotsResult::Done);
    EXPECT_EQ(
        Contents(Slots()),
        (SaveMap{{"savegame.0", "3"}, {"savegame.1", "5"}, {"note1.txt", "five"}, {"savegame.2", "8"}}));
    EXPECT_EQ(Contents(Archived()), (SaveMap{{"slot1/savegame.2", "5"}, {"slot1/note2.txt", "five"}}));
}

TEST_F(ToSlots, AsksToFreeFullSlots) {
    for (int slot = 0; slot < 15; ++slot)
        PutSlot(slot, slot + 1);
    PutArchived(1, 2, 100);
    const std::string question =
        "All Tomb Raider slots are full. If you wish copy current savegame in tomb raider slots you must "
        "archive savegame from tomb raider slots to [Old Recorded Savegames] list.\r\nDo you want archive "
        "savegames and free tomb raider slots?";
    user.WillAnswer(question, "no");
    EXPECT_EQ(Copy(kArchived).Result, SlotsResult::Nothing);
    EXPECT_EQ(Contents(Slots()).size(), 15U);
    user.WillAnswer(question, "yes");
    EXPECT_EQ(Copy(kArchived).Result, SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "15"}, {"savegame.1", "100"}}));
    EXPECT_EQ(Contents(Archived() / "slot2").size(), 15U);
}

TEST_F(ToSlots, TellsWhatCannotBeRead) {
    PutSlot(0, 3);
    const SlotsOutcome outcome = Copy("C:\\gone\\savegame.4");
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "The slots stay as they are. There is no room, or I cannot read: C:\\gone\\savegame.4");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "3"}}));
}

TEST_F(ToSlots, TellsThatTheSlotsAreNotInOrder) {
    PutSlot(0, 8);
    PutArchived(1, 2, 5);
    MakeFile(home / "_temp_savegame", "a file");
    const SlotsOutcome outcome = Copy(kArchived);
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_EQ(outcome.Message,
              "The savegame has been copied into the slots, but they could not be put in order.\r\n"
              "Something is in the way that isn't a folder of Kelvash's own: "
              "C:\\Kelvash\\_temp_savegame");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "8"}, {"savegame.1", "5"}}));
}

} // namespace
} // namespace kelvash::companion
