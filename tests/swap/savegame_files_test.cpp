#include "swap/savegame_files.h"

#include <gmock/gmock.h>

#include "support/savegame_home.h"

namespace kelvash::swap {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using test::SaveBytes;
using test::SaveMap;
using testing::ElementsAre;

const std::string kLevel = "C:\\Levels\\LEVEL_0001";
const std::string kIn = "C:\\in";

class SavegameFiles : public test::SavegameHome {
  protected:
    void Put(const std::string& name, const std::string& bytes = "x") {
        MakeFile(drive / "in" / name, bytes);
    }
};

TEST_F(SavegameFiles, NumbersAreThoseOfTheExtension) {
    EXPECT_EQ(SlotNumber("C:\\trle\\savegame.14"), 14);
    EXPECT_EQ(SlotNumber("C:\\trle\\savegame.014"), 14);
    EXPECT_EQ(SlotNumber("C:\\trle\\savegame.3.1"), 1);
    EXPECT_EQ(SlotNumber("C:\\trle\\savegame.bak"), 0);
    EXPECT_EQ(SlotNumber("C:\\tr.le\\savegame"), 0);
    EXPECT_EQ(SlotNumber("C:\\trle\\savegame.99999999999"), 2147483647);
}

TEST_F(SavegameFiles, NotesHaveAPlainNumber) {
    EXPECT_TRUE(IsNoteName("note12.txt"));
    EXPECT_TRUE(IsNoteName("NOTE0.TXT"));
    for (const char* name : {"note.txt", "note01.txt", "note1.txt.bak", "notes1.txt", "note1x.txt"})
        EXPECT_FALSE(IsNoteName(name)) << name;
}

TEST_F(SavegameFiles, TheNoteIsThatOfThePlainNumber) {
    for (const char* name : {"savegame.01", "savegame.1", "savegame.3.1", "note1.txt"})
        Put(name);
    for (const SavegameFile& save : ListSavegameFiles(kIn))
        EXPECT_EQ(save.Note, save.Path == kIn + "\\savegame.1" ? kIn + "\\note1.txt" : "") << save.Path;
    EXPECT_TRUE(OwnsItsNote(kIn + "\\savegame.1"));
    EXPECT_FALSE(OwnsItsNote(kIn + "\\savegame.01"));
    EXPECT_FALSE(OwnsItsNote(kIn + "\\savegame.3.1"));
    EXPECT_FALSE(OwnsItsNote(kIn + "\\savegame.7"));
    EXPECT_TRUE(ListLoneNotes(kIn).empty());
}

TEST_F(SavegameFiles, WithoutAPlainOneItIsThatOfTheFirst) {
    for (const char* name : {"savegame.001", "savegame.01", "note1.txt", "note2.txt"})
        Put(name);
    EXPECT_TRUE(OwnsItsNote(kIn + "\\savegame.001"));
    EXPECT_FALSE(OwnsItsNote(kIn + "\\savegame.01"));
    EXPECT_THAT(ListLoneNotes(kIn), ElementsAre(kIn + "\\note2.txt"));
}

TEST_F(SavegameFiles, ANumberIsFreeWhereNothingStands) {
    Put("savegame.0");
    std::filesystem::create_directories(drive / "in/savegame.1");
    std::filesystem::create_directories(drive / "in/savegame.2");
    std::filesystem::create_directories(drive / "in/note3.txt");
    Put("note4.txt"); // alone: it gives way
    EXPECT_EQ(FreeNumber(kIn, 0), 4);
    EXPECT_TRUE(IsBlocked(kIn, 1));
    EXPECT_TRUE(IsBlocked(kIn, 2));
    EXPECT_TRUE(IsBlocked(kIn, 3));
    EXPECT_FALSE(IsBlocked(kIn, 0));
}

TEST_F(SavegameFiles, BehindTheHighestNumberComesTheLowest) {
    Put("savegame.2147483647");
    EXPECT_EQ(FreeNumber(kIn, 2147483647), 0);
}

TEST_F(SavegameFiles, ALoneNoteGoesAsideBeforeItsNumberIsUsed) {
    Put("savegame.5", SaveBytes("City", 5));
    Put("note5.txt", "five");
    PutNote(Slots(), 0, "alone");
    const SavegameFile save{kIn + "\\savegame.5", kIn + "\\note5.txt"};
    ASSERT_TRUE(PlacePair(save, kLevel + "\\backup_savegames", 0, kLevel, Placing::Copy));
    EXPECT_EQ(Contents(Slots()), (SaveMap{{"savegame.0", "5"}, {"note0.txt", "five"}}));
    EXPECT_EQ(Contents(Repeated()), (SaveMap{{"note0.txt", "alone"}}));
    EXPECT_EQ(Contents(drive / "in"), (SaveMap{{"savegame.5", "5"}, {"note5.txt", "five"}}));
    ASSERT_TRUE(LeavePair(save));
    EXPECT_EQ(Contents(drive / "in"), SaveMap());
}

TEST_F(SavegameFiles, NothingIsReplacedInRepeated) {
    MakeFile(Repeated() / "savegame.0", SaveBytes("City", 1));
    PutNote(Repeated(), 1, "another's");
    Put("savegame.5", SaveBytes("City", 5));
    Put("note5.txt", "five");
    ASSERT_TRUE(MoveToRepeated({kIn + "\\savegame.5", kIn + "\\note5.txt"}, kLevel));
    EXPECT_EQ(
        Contents(Repeated()),
        (SaveMap{
            {"savegame.0", "1"}, {"note1.txt", "another's"}, {"savegame.2", "5"}, {"note2.txt", "five"}}));
    EXPECT_EQ(Contents(drive / "in"), SaveMap());
}

TEST_F(SavegameFiles, AFileNamedRepeatedKeepsAllWhereItIs) {
    MakeFile(Repeated(), "a file");
    Put("savegame.5", SaveBytes("City", 5));
    EXPECT_FALSE(MoveToRepeated({kIn + "\\savegame.5"}, kLevel));
    EXPECT_TRUE(Exists(drive / "in/savegame.5"));
}

TEST_F(SavegameFiles, ANotePassesToTheTwinThatHasNone) {
    Put("note5.txt", "five");
    PutSlot(3, 5);
    ASSERT_TRUE(PassNote(kIn + "\\note5.txt", {kLevel + "\\backup_savegames\\savegame.3"}, kLevel));
    EXPECT_EQ(BytesOf(Slots() / "note3.txt"), "five");
    EXPECT_FALSE(Exists(drive / "in/note5.txt"));
    EXPECT_TRUE(PassNote({}, {kLevel + "\\backup_savegames\\savegame.3"}, kLevel));
}

} // namespace
} // namespace kelvash::swap
