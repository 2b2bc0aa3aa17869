#include "companion/savegames.h"

#include <gmock/gmock.h>

#include "foundation/date_text.h"
#include "foundation/files.h"
#include "support/local_time.h"
#include "support/swap_home.h"
#include "swap/install.h"

namespace kelvash::companion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A savegame as the game begins it: the title padded with NULs, then the number.
std::string Save(const std::string& title, const std::string& number) {
    return title + std::string(75 - title.size(), '\0') + number + std::string(100, '\7');
}

class Savegames : public test::SwapHome {
  protected:
    Savegames() { AddLevel(1, "City", {{"city.tr4", "city"}}, {{"savegame.0", "stashed"}}); }
    std::int32_t Read(const std::string& bytes, std::string& title) {
        test::MakeFile(drive / "savegame.0", bytes);
        return ReadSavegameInfo("C:\\savegame.0", title);
    }
};

TEST_F(Savegames, HaveATitleAndARunningNumber) {
    std::string title;
    EXPECT_EQ(Read(Save("The Lost City", std::string("\x02\x01", 2)), title), 258);
    EXPECT_EQ(title, "The Lost City");
}

TEST_F(Savegames, HaveANumberWithASign) {
    std::string title;
    EXPECT_EQ(Read(Save("x", "\xFE\xFF"), title), -2);
}

TEST_F(Savegames, EndTheirTitleAtACommaOrALineEnd) {
    std::string title;
    Read(Save(" Angkor, the temple", "\1\1"), title);
    EXPECT_EQ(title, "Angkor");
    Read(Save("Angkor\r\nWat", "\1\1"), title);
    EXPECT_EQ(title, "Angkor");
    Read(Save("Stra\xDF"
              "e",
              "\1\1"),
         title);
    EXPECT_EQ(title, "Straße");
}

TEST_F(Savegames, ThatAreCutShortHaveTheNumberZero) {
    std::string title;
    EXPECT_EQ(Read("Angkor", title), 0);
    EXPECT_EQ(title, "Angkor");
    EXPECT_EQ(Read(Save("Angkor", "\1\1").substr(0, 76), title), 0);
}

TEST_F(Savegames, ThatCantBeReadSaySo) {
    std::string title;
    EXPECT_EQ(ReadSavegameInfo("C:\\none", title), 0);
    EXPECT_EQ(title, "<NOT READABLE>");
    EXPECT_EQ(Read("", title), 0);
    EXPECT_EQ(title, "<NOT READABLE>");
}

TEST_F(Savegames, AreShownWithNumberTitleAndDate) {
    test::MakeFile(drive / "savegame.3", Save("City of the Dead", std::string("\x0C\x00", 2)));
    ASSERT_TRUE(SetFileDate("C:\\savegame.3", 1'000'000'000));
    const std::string date = FormatDate("dd/mm/yyyy  hh:nn:ss", 1'000'000'000);
    EXPECT_EQ(SavegameLine("C:\\savegame.3"), "  12 City of the Dead  (" + date + ") ");
}

TEST_F(Savegames, ThatCantBeReadAreShownWithTheirDate) {
    test::MakeFile(drive / "savegame.3", "");
    ASSERT_TRUE(SetFileDate("C:\\savegame.3", test::LocalSeconds(2004, 12, 31, 23, 59, 58)));
    EXPECT_EQ(SavegameLine("C:\\savegame.3"), "   0 <NOT READABLE>  (31/12/2004  23:59:58) ");
}

TEST_F(Savegames, InTheSlotsAreTheStashUntilTheLevelIsIn) {
    EXPECT_EQ(SlotFolder(core::PlaceOf(1)), "C:\\Levels\\LEVEL_0001\\backup_savegames");
    EXPECT_THAT(SlotSavegames(core::PlaceOf(1)),
                ElementsAre("C:\\Levels\\LEVEL_0001\\backup_savegames\\savegame.0"));
    ASSERT_TRUE(swap::InstallLevel(1));
    test::MakeFile(trle / "savegame.5", "new");
    EXPECT_THAT(SlotSavegames(core::PlaceOf(1)), ElementsAre("C:\\trle\\savegame.0", "C:\\trle\\savegame.5"));
}

TEST_F(Savegames, AreArchivedAtAnyDepth) {
    EXPECT_THAT(ArchivedSavegames(core::PlaceOf(1)), IsEmpty());
    test::MakeFile(LevelPath(1) / "SAVEGAMES/slot1/savegame.0", "a");
    test::MakeFile(LevelPath(1) / "SAVEGAMES/slot1/note0.txt", "a note");
    test::MakeFile(LevelPath(1) / "SAVEGAMES/slot2/old/SaveGame.1", "b");
    EXPECT_THAT(ArchivedSavegames(core::PlaceOf(1)),
                ElementsAre("C:\\Levels\\LEVEL_0001\\savegames\\slot1\\savegame.0",
                            "C:\\Levels\\LEVEL_0001\\savegames\\slot2\\old\\SaveGame.1"));
}

} // namespace
} // namespace kelvash::companion
