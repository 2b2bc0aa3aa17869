#include "companion/savegame_transfer.h"

#include <gmock/gmock.h>

#include "companion/savegame_commands.h"
#include "companion/savegame_mail.h"
#include "foundation/files.h"
#include "support/local_time.h"
#include "support/savegame_home.h"

namespace kelvash::companion {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using test::SaveBytes;
using test::SaveMap;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kSlots = "C:\\Levels\\LEVEL_0001\\backup_savegames\\";
const std::string kArchive = "C:\\Levels\\LEVEL_0001\\savegames\\";

class Importing : public test::SavegameHome {
  protected:
    // Savegames of a folder of somebody else.
    std::vector<std::string> Files(int count) {
        std::vector<std::string> paths;
        for (int i = 0; i < count; ++i) {
            const std::string name = "savegame." + std::to_string(i);
            MakeFile(drive / "in" / name, SaveBytes("City", 100 + i));
            MakeFile(drive / "in" / ("note" + std::to_string(i) + ".txt"), "not taken");
            paths.push_back("C:\\in\\" + name);
        }
        return paths;
    }
};

TEST_F(Importing, FillsTheLowestFreeSlotsWithoutNotes) {
    PutSlot(1, 7);
    const SlotsOutcome outcome = ImportSavegames(1, Files(2));
    EXPECT_EQ(outcome.Result, SlotsResult::Done);
    EXPECT_EQ(outcome.Count, 2);
    EXPECT_EQ(Contents(Slots()),
              (SaveMap{{"savegame.0", "100"}, {"savegame.1", "7"}, {"savegame.2", "101"}}));
}

TEST_F(Importing, ArchivesWhatIsInTheWay) {
    for (int slot = 0; slot < 10; ++slot)
        PutSlot(slot, slot + 1);
    EXPECT_EQ(ImportSavegames(1, Files(6)).Result, SlotsResult::Done);
    EXPECT_EQ(Contents(Archived() / "slot1").size(), 10U);
    EXPECT_EQ(Contents(Slots()).size(), 7U);
    EXPECT_EQ(Contents(Slots())["savegame.0"], "10");
}

TEST_F(Importing, TakesFourteenBesideOne) {
    for (int slot = 0; slot < 3; ++slot)
        PutSlot(slot, slot + 1);
    EXPECT_EQ(ImportSavegames(1, Files(14)).Result, SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()).size(), 15U);
}

TEST_F(Importing, OfFifteenBesideOneSaysThatFourteenIsTheMost) {
    for (int slot = 0; slot < 3; ++slot)
        PutSlot(slot, slot + 1);
    const SlotsOutcome outcome = ImportSavegames(1, Files(15));
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_EQ(outcome.Message, "The savegames of the slots have been archived, but none has been imported.");
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: Too savegames! Max number of savegames to import in a single "
                            "operation is 14"));
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "3"}}));
}

TEST_F(Importing, FifteenIntoEmptySlotsFit) {
    EXPECT_EQ(ImportSavegames(1, Files(15)).Result, SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()).size(), 15U);
}

TEST_F(Importing, TellsWhatIsDone) {
    std::vector<std::string> files = Files(2);
    files.insert(files.begin(), "C:\\gone\\savegame.1");
    files.push_back("C:\\gone\\savegame.2");
    const SlotsOutcome outcome = ImportSavegames(1, files);
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_EQ(outcome.Count, 2);
    EXPECT_EQ(outcome.Message,
              "These savegames have not been imported. There is no room, or I cannot read:"
              "\r\nC:\\gone\\savegame.1\r\nC:\\gone\\savegame.2");
    EXPECT_EQ(Contents(Slots()).size(), 2U);
}

class Exporting : public test::SavegameHome {
  protected:
    Exporting() {
        std::filesystem::create_directories(drive / "out");
        PutSlot(0, 1);
        PutNote(Slots(), 0, "one");
        PutArchived(1, 0, 2);
        PutArchived(2, 0, 3);
        PutNote(Archived() / "slot2", 0, "three");
    }
    const std::vector<std::string> all = {kSlots + "savegame.0", kArchive + "slot1\\savegame.0",
                                          kArchive + "slot2\\savegame.0"};
};

TEST_F(Exporting, CopiesWithoutNotesAndNeverTwoOntoOneName) {
    const SlotsOutcome outcome = ExportSavegames(1, all, "C:\\out", Sources::Keep);
    EXPECT_EQ(outcome.Result, SlotsResult::Done);
    EXPECT_EQ(outcome.Count, 3);
    EXPECT_EQ(Contents(drive / "out"),
              (SaveMap{{"savegame.0", "1"}, {"slot1/savegame.0", "2"}, {"slot2/savegame.0", "3"}}));
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "1"}, {"note0.txt", "one"}}));
}

TEST_F(Exporting, TakesTheNoteAlongWhereTheSourceGoes) {
    EXPECT_EQ(ExportSavegames(1, all, "C:\\out", Sources::Delete).Result, SlotsResult::Done);
    EXPECT_EQ(Contents(drive / "out"), (SaveMap{{"savegame.0", "1"},
                                                {"note0.txt", "one"},
                                                {"slot1/savegame.0", "2"},
                                                {"slot2/savegame.0", "3"},
                                                {"slot2/note0.txt", "three"}}));
    EXPECT_EQ(Contents(Slots()), SaveMap());
    EXPECT_EQ(Contents(Archived()), SaveMap());
}

TEST_F(Exporting, AsksBeforeItReplaces) {
    MakeFile(drive / "out/savegame.0", SaveBytes("Other", 9));
    user.WillAnswer("savegame.0", "no");
    EXPECT_EQ(ExportSavegames(1, {all[0]}, "C:\\out", Sources::Delete).Result, SlotsResult::Nothing);
    EXPECT_EQ(BytesOf(drive / "out/savegame.0"), SaveBytes("Other", 9));
    EXPECT_TRUE(Exists(Slots() / "savegame.0"));
    user.WillAnswer("savegame.0", "yes");
    EXPECT_EQ(ExportSavegames(1, {all[0]}, "C:\\out", Sources::Delete).Result, SlotsResult::Done);
    EXPECT_EQ(BytesOf(drive / "out/savegame.0"), SaveBytes("City", 1));
    EXPECT_FALSE(Exists(Slots() / "savegame.0"));
}

TEST_F(Exporting, ANoteThatCannotGoKeepsTheSource) {
    MakeFile(drive / "out/note0.txt", "another's");
    const SlotsOutcome outcome = ExportSavegames(1, {all[0]}, "C:\\out", Sources::Delete);
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_EQ(outcome.Message,
              "These savegames have been exported, but they stay in the level too: \r\n" + all[0]);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "1"}, {"note0.txt", "one"}}));
    EXPECT_EQ(BytesOf(drive / "out/note0.txt"), "another's");
}

TEST_F(Exporting, IntoItsOwnFolderDeletesNothing) {
    const std::string own = "C:\\Levels\\LEVEL_0001\\backup_savegames";
    const SlotsOutcome outcome = ExportSavegames(1, {all[0]}, own, Sources::Delete);
    EXPECT_EQ(outcome.Result, SlotsResult::Refused);
    EXPECT_EQ(outcome.Message,
              "These savegames have not been exported, because they lie in "
              "C:\\Levels\\LEVEL_0001\\backup_savegames themselves:\r\n" +
                  all[0]);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "1"}, {"note0.txt", "one"}}));
}

TEST_F(Exporting, TellsWhatCannotBeCopied) {
    MakeFile(drive / "out/slot1", "a file in the way");
    const SlotsOutcome outcome = ExportSavegames(1, {all[0], all[1]}, "C:\\out", Sources::Delete);
    EXPECT_EQ(outcome.Result, SlotsResult::Partly);
    EXPECT_EQ(outcome.Message, "These savegames have not been exported to C:\\out:\r\n" + all[1]);
    EXPECT_TRUE(Exists(Archived() / "slot1/savegame.0"));
}

TEST(ChoosingSavegames, OffersThemAlone) {
    test::ScriptedUser user;
    user.WillAnswer("Select savegame to import in current level", "C:\\savegame.0");
    EXPECT_EQ(ChooseSavegameToImport(), "C:\\savegame.0");
    EXPECT_EQ(user.last_filter, "Savegames (savegame.*)|savegame.*");
}

class OneSavegame : public test::SavegameHome {
  protected:
    OneSavegame() {
        PutSlot(0, 12);
        PutSlot(1, 13);
        PutNote(Slots(), 0, "twelve");
        EXPECT_TRUE(SetFileDate(save, test::LocalSeconds(2004, 12, 31, 23, 59, 58)));
    }
    const std::string save = kSlots + "savegame.0";
};

TEST_F(OneSavegame, IsDeletedWithItsNoteAndTheGapCloses) {
    user.WillAnswer("Delete savegame [12 City  (31/12/2004  23:59:58)] ?", "no");
    EXPECT_EQ(AskDeleteSavegame(1, save).Result, SlotsResult::Nothing);
    EXPECT_TRUE(Exists(Slots() / "savegame.0"));
    user.WillAnswer("Delete savegame [12 City  (31/12/2004  23:59:58)] ?", "yes");
    EXPECT_EQ(AskDeleteSavegame(1, save).Result, SlotsResult::Done);
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "13"}}));
}

TEST_F(OneSavegame, OfTheArchiveLeavesTheSlotsAsTheyAre) {
    PutSlot(5, 20);
    PutArchived(1, 0, 1);
    user.WillAnswer("Delete savegame [", "yes");
    EXPECT_EQ(AskDeleteSavegame(1, kArchive + "slot1\\savegame.0").Result, SlotsResult::Done);
    EXPECT_TRUE(Exists(Slots() / "savegame.5"));
    EXPECT_EQ(Contents(Archived()), SaveMap());
}

TEST_F(OneSavegame, IsCopiedWithItsNoteUnderTheNewNumber) {
    std::filesystem::create_directories(drive / "out");
    user.WillAnswer("Save savegame", "C:\\out\\savegame.7");
    EXPECT_TRUE(SaveSavegameAs(save));
    EXPECT_EQ(user.last_start, "\\savegame.0");
    EXPECT_EQ(user.last_filter, "Savegames|savegame.*");
    EXPECT_EQ(Contents(drive / "out"), (SaveMap{{"savegame.7", "12"}, {"note7.txt", "twelve"}}));
    EXPECT_EQ(FileTime("C:\\out\\savegame.7"), FileTime(save));
    user.WillAnswer("Save savegame", save);
    EXPECT_TRUE(SaveSavegameAs(save));
    EXPECT_EQ(BytesOf(Slots() / "savegame.0"), SaveBytes("City", 12));
    user.WillAnswer("Save savegame", "C:\\none\\savegame.7");
    EXPECT_FALSE(SaveSavegameAs(save));
    EXPECT_THAT(user.Told(), ElementsAre("critical: I cann't copy file: " + save));
}

TEST_F(OneSavegame, IsMovedWhereThatIsWanted) {
    std::filesystem::create_directories(drive / "out");
    EXPECT_TRUE(CopySavegame(save, "C:\\out\\savegame.0", swap::Placing::Move));
    EXPECT_EQ(Contents(drive / "out"), (SaveMap{{"savegame.0", "12"}, {"note0.txt", "twelve"}}));
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.1", "13"}}));
}

TEST_F(OneSavegame, TellsAllThatIsKnownOfIt) {
    MakeFile(drive / "shot.jpg", "picture");
    ASSERT_TRUE(SetFileDate("C:\\shot.jpg", test::LocalSeconds(2005, 1, 2, 3, 4, 5)));
    EXPECT_EQ(SavegameProperty(save, "C:\\shot.jpg"),
              "Savegame:   12 City  (31/12/2004  23:59:58) \r\nPath: \"" + save +
                  "\"\r\nImage: \"C:\\shot.jpg\" (02/01/2005 03.04.05)\r\nDescription: \"" + kSlots +
                  "note0.txt\"");
    EXPECT_THAT(SavegameProperty(kSlots + "savegame.1", {}).text,
                testing::EndsWith("savegame.1\"\r\nImage: None\r\nDescription: None"));
}

TEST_F(OneSavegame, IsDescribedInAMail) {
    const Mail mail = SavegameMail({save}, "The City", MailFrom::Selection);
    EXPECT_EQ(mail.Subject, "Savegame 12 - \"City\" of level \"The City\"");
    EXPECT_EQ(mail.Text, "  12 - City  (23:59  31/12/2004) -> savegame.0\r\n");
    EXPECT_THAT(mail.Attachments, ElementsAre(save));
}

TEST_F(OneSavegame, SeveralAreDescribedAsInTheList) {
    ASSERT_TRUE(SetFileDate(kSlots + "savegame.1", test::LocalSeconds(2005, 1, 1, 0, 0, 1)));
    const Mail mail = SavegameMail({save, kSlots + "savegame.1"}, "The City", MailFrom::List);
    EXPECT_EQ(mail.Subject, "2 Savegames of level \"The City\"");
    EXPECT_EQ(mail.Text,
              "  12 City  (31/12/2004  23:59:58)  --> savegame.0\r\n"
              "  13 City  (01/01/2005  00:00:01)  --> savegame.1\r\n");
}

TEST_F(OneSavegame, ListsToChooseFromAreThoseOfTheFolderOrOfTheLevel) {
    PutArchived(1, 0, 1);
    EXPECT_THAT(SavegamesToList(1, ListPurpose::Export, {}),
                ElementsAre(save, kSlots + "savegame.1", kArchive + "slot1\\savegame.0"));
    MakeFile(drive / "in/savegame.4", "x");
    EXPECT_THAT(SavegamesToList(1, ListPurpose::Import, "C:\\in"), ElementsAre("C:\\in\\savegame.4"));
    EXPECT_THAT(SavegamesToList(1, ListPurpose::Import, "C:\\out"), IsEmpty());
    EXPECT_THAT(SavegamesToList(-1, ListPurpose::Mail, {}), IsEmpty());
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: No savegames in folder: C:\\out", "critical: No level selected"));
}

} // namespace
} // namespace kelvash::companion
