#include "companion/savegame_notes.h"

#include <gmock/gmock.h>

#include "companion/savegame_search.h"
#include "support/savegame_home.h"

namespace kelvash::companion {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::ElementsAre;

class SavegameNotes : public test::SavegameHome {
  protected:
    SavegameNotes() { PutSlot(3, 1); }
    const std::string save = "C:\\Levels\\LEVEL_0001\\backup_savegames\\savegame.3";
};

TEST_F(SavegameNotes, LieBesideTheirSavegames) {
    EXPECT_EQ(NotePathOf(save), "C:\\Levels\\LEVEL_0001\\backup_savegames\\note3.txt");
    EXPECT_EQ(OwnNoteOf(save), "");
}

TEST_F(SavegameNotes, AreWrittenInWindows1252) {
    EXPECT_TRUE(WriteNote(save, "Caff\xC3\xA8 \xE2\x82\xAC\r\nsecond"));
    EXPECT_EQ(BytesOf(Slots() / "note3.txt"), "Caff\xE8 \x80\r\nsecond\r\n");
    EXPECT_EQ(ReadNote(save), "Caff\xC3\xA8 \xE2\x82\xAC\r\nsecond");
}

TEST_F(SavegameNotes, ThatItCannotHoldAreWrittenInUtf8) {
    EXPECT_TRUE(WriteNote(save, "\xE2\x99\xA5 Lara"));
    EXPECT_EQ(BytesOf(Slots() / "note3.txt"), "\xEF\xBB\xBF\xE2\x99\xA5 Lara\r\n");
    EXPECT_EQ(ReadNote(save), "\xE2\x99\xA5 Lara");
}

TEST_F(SavegameNotes, ThatLookLikeAMarkComeBackAsTheyWere) {
    EXPECT_TRUE(WriteNote(save, "\xC3\xAF\xC2\xBB\xC2\xBF text"));
    EXPECT_EQ(ReadNote(save), "\xC3\xAF\xC2\xBB\xC2\xBF text");
}

TEST_F(SavegameNotes, OfAnyBytesAreRead) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    MakeFile(Slots() / "note3.txt", bytes);
    const std::string text = ReadNote(save);
    EXPECT_EQ(text.substr(0, 9), "\x01\x02\x03\x04\x05\x06\x07\x08\x09");
    EXPECT_TRUE(text.ends_with("\xC3\xBF"));
}

TEST_F(SavegameNotes, OfBlanksAreDeleted) {
    MakeFile(Slots() / "note3.txt", "old\r\n");
    EXPECT_TRUE(WriteNote(save, "   "));
    EXPECT_FALSE(Exists(Slots() / "note3.txt"));
    EXPECT_TRUE(WriteNote(save, ""));
}

TEST_F(SavegameNotes, BelongToThePlainNumber) {
    MakeFile(Slots() / "savegame.03", "odd");
    MakeFile(Slots() / "note3.txt", "plain\r\n");
    EXPECT_EQ(ReadNote(save), "plain");
    EXPECT_EQ(ReadNote("C:\\Levels\\LEVEL_0001\\backup_savegames\\savegame.03"), "");
    EXPECT_FALSE(WriteNote("C:\\Levels\\LEVEL_0001\\backup_savegames\\savegame.03", "mine"));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: The description could not be saved. This savegame is gone, or "
                            "its number is another's: C:\\Levels\\LEVEL_0001\\backup_savegames\\"
                            "savegame.03"));
    EXPECT_EQ(ReadNote(save), "plain");
}

TEST_F(SavegameNotes, OfAnOddlyNamedArchivedOneAreItsOwn) {
    MakeFile(Archived() / "old/my savegame.7", "x");
    const std::string odd = "C:\\Levels\\LEVEL_0001\\savegames\\old\\my savegame.7";
    EXPECT_TRUE(WriteNote(odd, "from a friend"));
    EXPECT_EQ(ReadNote(odd), "from a friend");
}

TEST_F(SavegameNotes, ThatCannotBeWrittenStayAsTheyWere) {
    std::filesystem::create_directories(Slots() / "note3.txt");
    EXPECT_FALSE(WriteNote(save, "new"));
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: The description could not be saved. There is no room, or I cannot write: "
                    "C:\\Levels\\LEVEL_0001\\backup_savegames\\note3.txt"));
}

class NoteSearch : public test::SavegameHome {
  protected:
    NoteSearch() {
        for (int slot = 0; slot < 4; ++slot) {
            PutArchived(1, slot, slot);
            list.push_back("C:\\Levels\\LEVEL_0001\\savegames\\slot1\\savegame." + std::to_string(slot));
        }
        PutNote(Archived() / "slot1", 1, "The LIBRARY, upper floor");
        PutNote(Archived() / "slot1", 3, "library again");
    }
    std::vector<std::string> list;
};

TEST_F(NoteSearch, FindsTheNextBehindTheSelectionAndWraps) {
    user.WillAnswer("Find savegame\nSearch savegame whereby description", "library");
    EXPECT_EQ(FindSavegameNote(list, std::nullopt), 1U);
    EXPECT_EQ(FindSavegameAgain(list, 1, SearchWay::Forward), 3U);
    EXPECT_EQ(FindSavegameAgain(list, 3, SearchWay::Forward), 1U);
    EXPECT_EQ(FindSavegameAgain(list, 3, SearchWay::Back), 1U);
    EXPECT_EQ(FindSavegameAgain(list, 1, SearchWay::Back), 3U);
    EXPECT_EQ(FindSavegameAgain(list, std::nullopt, SearchWay::Back), 3U);
}

TEST_F(NoteSearch, SaysWhenNoNoteHoldsTheText) {
    user.WillAnswer("Find savegame", "the sea");
    EXPECT_EQ(FindSavegameNote(list, 0), std::nullopt);
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: Not found"));
}

TEST_F(NoteSearch, FindsTheOnlyOneAgain) {
    user.WillAnswer("Find savegame", "upper");
    EXPECT_EQ(FindSavegameNote(list, 1), 1U);
}

TEST_F(NoteSearch, WithoutATextDoesNothing) {
    EXPECT_EQ(FindSavegameAgain(list, 0, SearchWay::Forward), std::nullopt);
    user.WillAnswer("Find savegame", "");
    EXPECT_EQ(FindSavegameNote(list, 0), std::nullopt);
    user.WillAnswer("Find savegame", "cancel");
    EXPECT_EQ(FindSavegameNote(list, 0), std::nullopt);
    EXPECT_TRUE(user.Told().empty());
}

TEST_F(NoteSearch, WithoutSavegamesSaysSo) {
    EXPECT_EQ(FindSavegameNote({}, std::nullopt), std::nullopt);
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: In current level there are NO recorded savegames"));
}

TEST_F(SavegameNotes, OneThatIsChangedMeanwhileIsAskedAbout) {
    MakeFile(Slots() / "note3.txt", "at first\r\n");
    const SeenNote seen = LookAtNote(save);
    EXPECT_EQ(seen.Text, "at first");
    MakeFile(Slots() / "note3.txt", "~2 by another\r\n");
    user.WillAnswer(
        "Another program has changed this description meanwhile. Now it is:\r\n~2 by another\r\n"
        "Do you want to replace it with what you have typed?",
        "no");
    EXPECT_FALSE(WriteNote(save, "mine", seen));
    EXPECT_EQ(BytesOf(Slots() / "note3.txt"), "~2 by another\r\n");
    EXPECT_TRUE(WriteNote(save, "~2 by another", seen)); // it says so already
    user.WillAnswer("Another program has changed this description meanwhile.", "yes");
    EXPECT_TRUE(WriteNote(save, "mine", seen));
    EXPECT_EQ(BytesOf(Slots() / "note3.txt"), "mine\r\n");
    std::filesystem::remove(Slots() / "note3.txt");
    EXPECT_TRUE(WriteNote(save, "mine again", seen)); // nothing is lost
}

} // namespace
} // namespace kelvash::companion
