#include "companion/archive_slots.h"

#include <gmock/gmock.h>

#include "companion/compact_slots.h"
#include "companion/savegames.h"
#include "foundation/files.h"
#include "support/savegame_home.h"
#include "swap/install.h"
#include "trle_state/level_place.h"

namespace kelvash::companion {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using test::SaveBytes;
using test::SaveMap;
using testing::ElementsAre;

class Archiving : public test::SavegameHome {
  protected:
    SlotsResult Archive(int count) { return ArchiveSlots(1, count, Asker::User).Result; }
};

TEST_F(Archiving, ASingleSavegameIsNeverArchived) {
    PutSlot(4, 7);
    EXPECT_EQ(Archive(15), SlotsResult::Nothing);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.4", "7"}}));
    EXPECT_EQ(Contents(Archived()), SaveMap());
    EXPECT_FALSE(Exists(Archived() / "slot1"));
}

TEST_F(Archiving, OfThreeKeepsTheNewestInTheSlots) {
    PutSlot(2, 9);
    PutSlot(5, 3);
    PutSlot(14, 12);
    PutNote(Slots(), 5, "oldest");
    PutNote(Slots(), 14, "newest");
    const SlotsOutcome outcome = ArchiveSlots(1, 15, Asker::User);
    EXPECT_EQ(outcome.Result, SlotsResult::Done);
    EXPECT_EQ(outcome.Count, 3);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "12"}, {"note0.txt", "newest"}}));
    EXPECT_EQ(Contents(Archived()), (SaveMap{{"slot1/savegame.0", "3"},
                                             {"slot1/note0.txt", "oldest"},
                                             {"slot1/savegame.1", "9"},
                                             {"slot1/savegame.2", "12"},
                                             {"slot1/note2.txt", "newest"}}));
    ExpectNothingMoving();
}

TEST_F(Archiving, OfTheOldestLeavesTheOthersRenumbered) {
    for (int slot = 0; slot < 6; ++slot)
        PutSlot(slot, 20 - slot);
    PutNote(Slots(), 0, "is 20");
    EXPECT_EQ(Archive(4), SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()),
              (SaveMap{{"savegame.0", "19"}, {"savegame.1", "20"}, {"note1.txt", "is 20"}}));
    EXPECT_EQ(Contents(Archived()), (SaveMap{{"slot1/savegame.0", "15"},
                                             {"slot1/savegame.1", "16"},
                                             {"slot1/savegame.2", "17"},
                                             {"slot1/savegame.3", "18"}}));
}

TEST_F(Archiving, UsesAFolderThatWasDeletedAgain) {
    PutArchived(1, 0, 1);
    PutArchived(3, 0, 1);
    PutSlot(0, 5);
    PutSlot(1, 6);
    EXPECT_EQ(Archive(1), SlotsResult::Done);
    EXPECT_EQ(Contents(Archived() / "slot2"), (SaveMap{{"savegame.0", "5"}}));
}

TEST_F(Archiving, EqualNumbersComeOutAsTheExchangesLeaveThem) {
    PutSlot(0, 5, "a");
    PutSlot(1, 5, "b");
    PutSlot(2, 3, "c");
    EXPECT_EQ(Archive(2), SlotsResult::Done); // a and c change places, so that b comes before a
    EXPECT_EQ(Contents(Archived() / "slot1"), (SaveMap{{"savegame.0", "3c"}, {"savegame.1", "5b"}}));
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "5a"}}));
}

TEST_F(Archiving, OfWhatCannotBeReadComesFirst) {
    MakeFile(Slots() / "savegame.0", "");
    PutSlot(1, 5);
    EXPECT_EQ(Archive(1), SlotsResult::Done);
    EXPECT_EQ(Contents(Archived() / "slot1"), (SaveMap{{"savegame.0", ""}}));
}

TEST_F(Archiving, NoneIsNothing) {
    PutSlot(0, 5);
    PutSlot(1, 6);
    EXPECT_EQ(Archive(0), SlotsResult::Nothing);
    EXPECT_EQ(ArchiveSlots(trle_state::kNoLevel, 15, Asker::User).Result, SlotsResult::Nothing);
}

TEST_F(Archiving, OfALevelThatIsNowhereIsRefusedWithoutABox) {
    const SlotsOutcome removed = ArchiveSlots(77, 15, Asker::Watcher);
    EXPECT_EQ(removed.Result, SlotsResult::Refused);
    EXPECT_EQ(removed.Message, "The level is no longer in the Archive: another Kelvash has removed it");
    const SlotsOutcome nobodys = ArchiveSlots(trle_state::kNoLevel, 15, Asker::Watcher);
    EXPECT_EQ(nobodys.Result, SlotsResult::Refused);
    EXPECT_EQ(nobodys.Message,
              "Nothing has been done with the savegames. The folder of the level that is in "
              "TRLE can't be found.");
    EXPECT_TRUE(user.Told().empty());
}

TEST_F(Archiving, TakesOddAndTooManySavegames) {
    for (int slot = 0; slot < 18; ++slot)
        PutSlot(slot, slot + 1);
    MakeFile(Slots() / "savegame.bak", SaveBytes("City", 30));
    MakeFile(Slots() / "savegame.01", SaveBytes("City", 31));
    PutNote(Slots(), 1, "of the plain one");
    EXPECT_EQ(Archive(15), SlotsResult::Done);
    EXPECT_EQ(Contents(Archived() / "slot1").size(), 16U);
    EXPECT_EQ(Contents(Archived() / "slot1")["note1.txt"], "of the plain one");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "16"},
                                          {"savegame.1", "17"},
                                          {"savegame.2", "18"},
                                          {"savegame.3", "30"},
                                          {"savegame.4", "31"}}));
}

TEST_F(Archiving, MovesOnlySavegamesAndNotesInTrle) {
    ASSERT_TRUE(swap::InstallLevel(1));
    MakeFile(trle / "savegame.0", SaveBytes("City", 1));
    MakeFile(trle / "savegame.3", SaveBytes("City", 2));
    MakeFile(trle / "notes.txt", "the player's own");
    EXPECT_EQ(Archive(1), SlotsResult::Done);
    EXPECT_EQ(BytesOf(trle / "savegame.0"), SaveBytes("City", 2));
    EXPECT_FALSE(Exists(trle / "savegame.3"));
    EXPECT_TRUE(Exists(trle / "notes.txt"));
    EXPECT_TRUE(Exists(trle / "tomb4.exe"));
}

TEST_F(Archiving, ANoteWithoutItsSavegameGoesAsideBeforeItsNumberIsUsed) {
    PutSlot(3, 1);
    PutSlot(4, 2);
    PutNote(Slots(), 0, "lone");
    EXPECT_EQ(Archive(1), SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "2"}}));
    EXPECT_EQ(Contents(Repeated()), (SaveMap{{"note0.txt", "lone"}}));
}

TEST_F(Archiving, IsRefusedWhereAFileStandsForTheFolder) {
    PutSlot(0, 1);
    PutSlot(1, 2);
    MakeFile(Archived() / "slot1", "a file");
    const SlotsOutcome outcome = ArchiveSlots(1, 15, Asker::User);
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "The savegames stay as they are. I cannot create the folder: "
              "C:\\Levels\\LEVEL_0001\\savegames\\slot1");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "1"}, {"savegame.1", "2"}}));
    EXPECT_EQ(Contents(Archived()), (SaveMap{{"slot1", "a file"}}));
    EXPECT_TRUE(user.Told().empty());
}

TEST_F(Archiving, TellsThatTheWorkingFolderIsInTheWay) {
    PutSlot(2, 1);
    PutSlot(1, 2);
    MakeFile(home / "_temp_savegame", "a file");
    const SlotsOutcome outcome = CompactSlots(1, Asker::User);
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "The savegames stay as they are. Something is in the way that isn't a folder "
              "of Kelvash's own: C:\\Kelvash\\_temp_savegame");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.2", "1"}, {"savegame.1", "2"}}));
    EXPECT_EQ(BytesOf(home / "_temp_savegame"), "a file");
}

TEST_F(Archiving, DoesNotSayThatAllIsAsItWasWhereItIsNot) {
    PutSlot(2, 1);
    PutSlot(3, 2);
    MakeFile(home / "_temp_savegame", "a file");
    const SlotsOutcome outcome = ArchiveSlots(1, 1, Asker::User);
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_EQ(outcome.Message,
              "The savegames have been copied to C:\\Levels\\LEVEL_0001\\savegames\\slot1, but the slots are "
              "not as they should be.\r\nSomething is in the way that isn't a folder of Kelvash's own: "
              "C:\\Kelvash\\_temp_savegame");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.3", "2"}}));
    EXPECT_EQ(Contents(Archived()), (SaveMap{{"slot1/savegame.0", "1"}}));
}

TEST_F(Archiving, LeavesAForeignFolderInTheWorkingFoldersPlace) {
    PutSlot(2, 1);
    PutSlot(1, 2);
    MakeFile(home / "_temp_savegame/mine/deep.txt", "mine");
    EXPECT_EQ(CompactSlots(1, Asker::User).Result, SlotsResult::Refused);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.2", "1"}, {"savegame.1", "2"}}));
    EXPECT_EQ(BytesOf(home / "_temp_savegame/mine/deep.txt"), "mine");
}

TEST_F(Archiving, TellsThatItsRecordCannotBeWritten) {
    PutSlot(2, 1);
    PutSlot(1, 2);
    std::filesystem::create_directories(home / "moved_saves.rec");
    const SlotsOutcome outcome = CompactSlots(1, Asker::User);
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "The savegames stay as they are. I cannot write: C:\\Kelvash\\moved_saves.rec");
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.2", "1"}, {"savegame.1", "2"}}));
}

TEST_F(Archiving, OfALevelWhoseFolderIsGoneSaysSo) {
    ASSERT_TRUE(swap::InstallLevel(1));
    MakeFile(trle / "savegame.0", SaveBytes("City", 1));
    MakeFile(trle / "savegame.3", SaveBytes("City", 2));
    std::filesystem::remove_all(LevelPath(1));
    const SlotsOutcome outcome = ArchiveSlots(1, 15, Asker::Watcher);
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "Nothing has been done with the savegames. The level's folder is missing: "
              "C:\\Levels\\LEVEL_0001");
    EXPECT_TRUE(Exists(trle / "savegame.3"));
}

TEST_F(Archiving, CompactingNumbersAnewInTheOrderOfTime) {
    PutSlot(7, 2);
    PutSlot(3, 9);
    PutSlot(11, 4);
    PutNote(Slots(), 11, "four");
    EXPECT_EQ(CompactSlots(1, Asker::User).Result, SlotsResult::Done);
    EXPECT_EQ(
        Contents(Slots()),
        (SaveMap{{"savegame.0", "2"}, {"savegame.1", "4"}, {"note1.txt", "four"}, {"savegame.2", "9"}}));
    ExpectNothingMoving();
}

TEST_F(Archiving, GoesRoundAFolderInASavegamesPlace) {
    PutSlot(4, 1);
    PutSlot(7, 2);
    PutNote(Slots(), 7, "two");
    std::filesystem::create_directories(Slots() / "savegame.0");
    std::filesystem::create_directories(Slots() / "note2.txt");
    EXPECT_EQ(CompactSlots(1, Asker::User).Result, SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.1", "1"}, {"savegame.3", "2"}, {"note3.txt", "two"}}));
    ExpectNothingMoving();
}

TEST_F(Archiving, OfFilesThatDifferByCaseAloneLosesNone) {
    MakeFile(Slots() / "savegame.3", SaveBytes("City", 2, "a"));
    MakeFile(Slots() / "SAVEGAME.3", SaveBytes("City", 1, "b"));
    if (Contents(Slots()).size() < 2) GTEST_SKIP() << "a disk without regard to case";
    EXPECT_EQ(CompactSlots(1, Asker::User).Result, SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "1b"}, {"savegame.1", "2a"}}));
}

TEST_F(Archiving, CompactingOneMovesItToTheFirst) {
    PutSlot(9, 2);
    PutNote(Slots(), 9, "n");
    EXPECT_EQ(CompactSlots(1, Asker::User).Result, SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "2"}, {"note0.txt", "n"}}));
}

TEST_F(Archiving, KeepsTheDatesThatTieThePictures) {
    PutSlot(9, 2);
    PutSlot(8, 1);
    ASSERT_TRUE(SetFileDate("C:\\Levels\\LEVEL_0001\\backup_savegames\\savegame.9", 1'000'000'000));
    ASSERT_TRUE(SetFileDate("C:\\Levels\\LEVEL_0001\\backup_savegames\\savegame.8", 1'000'000'500));
    EXPECT_EQ(Archive(1), SlotsResult::Done);
    EXPECT_EQ(FileTime("C:\\Levels\\LEVEL_0001\\backup_savegames\\savegame.0"), 1'000'000'000);
    EXPECT_EQ(FileTime("C:\\Levels\\LEVEL_0001\\savegames\\slot1\\savegame.0"), 1'000'000'500);
}

} // namespace
} // namespace kelvash::companion
