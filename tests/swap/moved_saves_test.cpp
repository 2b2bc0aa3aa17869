// Savegames that a killed run has left in the working folder.
#include "swap/moved_saves.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "foundation/files.h"
#include "support/swap_home.h"
#include "swap/install.h"
#include "swap/rescued_saves.h"
#include "swap/savegame_files.h"
#include "trle_state/level_owner.h"

namespace kelvash::swap {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::ElementsAre;
using testing::HasSubstr;

class MovedSavegames : public test::SwapHome {
  protected:
    MovedSavegames() { AddLevel(1, "City", {{"city.tr4", "city"}}); }

    // As an operation leaves it when it is killed.
    void LeaveBehind(const std::map<std::string, std::string>& files) {
        MessageText why;
        ASSERT_TRUE(BeginMoving(trle_state::OwnerOf(core::PlaceOf(1)), why));
        for (const auto& [name, bytes] : files)
            MakeFile(home / "_temp_savegame" / name, bytes);
    }
    bool BringHome() {
        MessageText why;
        return BringMovedSavesHome(Rescue::Yes, why);
    }
    void ExpectGone() const {
        EXPECT_FALSE(Exists(home / "_temp_savegame"));
        EXPECT_FALSE(Exists(home / "moved_saves.rec"));
    }
};

TEST_F(MovedSavegames, HaveARecordOfTheirOwner) {
    LeaveBehind({});
    const std::string bytes = BytesOf(home / "moved_saves.rec");
    EXPECT_TRUE(bytes.starts_with(
        "Kelvash moved saves 1\narchive 19:C:\\Kelvash\\test.kva,\n"
        "owner 20:C:\\Levels\\LEVEL_0001,20:..\\Levels\\LEVEL_0001,4:City,0:,1:1,\nend 32:"))
        << bytes;
    const std::optional<MovedSaves> moved = DecodeMovedSaves(bytes);
    ASSERT_TRUE(moved);
    EXPECT_EQ(moved->Owner.Name, "City");
    EXPECT_EQ(moved->Archive, "C:\\Kelvash\\test.kva");
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(DecodeMovedSaves(bytes.substr(0, length))) << length;
}

TEST_F(MovedSavegames, ComeHomeUnderTheirOwnNumbers) {
    LeaveBehind({{"savegame.3", "three"}, {"note3.txt", "its note"}, {"savegame.bak", "odd"}});
    EXPECT_TRUE(BringHome());
    EXPECT_THAT(NamesIn(StashPath(1)), ElementsAre("note3.txt", "savegame.3", "savegame.bak"));
    EXPECT_EQ(BytesOf(StashPath(1) / "note3.txt"), "its note");
    ExpectGone();
}

TEST_F(MovedSavegames, GoToTheRootWhileTheLevelIsIn) {
    ASSERT_TRUE(InstallLevel(1));
    LeaveBehind({{"savegame.3", "three"}});
    EXPECT_TRUE(BringHome());
    EXPECT_EQ(BytesOf(trle / "savegame.3"), "three");
    EXPECT_FALSE(Exists(StashPath(1) / "savegame.3"));
}

TEST_F(MovedSavegames, ComeHomeBeforeASwap) {
    AddLevel(2, "Coast", {{"coast.tr4", "coast"}});
    ASSERT_TRUE(InstallLevel(1));
    LeaveBehind({{"savegame.3", "three"}});
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(BytesOf(StashPath(1) / "savegame.3"), "three");
    EXPECT_FALSE(Exists(trle / "savegame.3"));
    ExpectGone();
}

TEST_F(MovedSavegames, ThatAreHomeAlreadyOnlyLeave) {
    MakeFile(StashPath(1) / "savegame.0", "three");
    LeaveBehind({{"savegame.3", "three"}, {"note3.txt", "its note"}});
    EXPECT_TRUE(BringHome());
    EXPECT_THAT(NamesIn(StashPath(1)), ElementsAre("note0.txt", "savegame.0"));
    EXPECT_EQ(BytesOf(StashPath(1) / "note0.txt"), "its note");
    ExpectGone();
}

TEST_F(MovedSavegames, OneThatIsThereStandsForOneOnly) {
    MakeFile(StashPath(1) / "savegame.0", "twin");
    LeaveBehind({{"savegame.3", "twin"}, {"savegame.4", "twin"}});
    EXPECT_TRUE(BringHome());
    EXPECT_THAT(NamesIn(StashPath(1)), ElementsAre("savegame.0", "savegame.4"));
}

TEST_F(MovedSavegames, WhoseNumberIsTakenGetTheLowestFreeOne) {
    MakeFile(StashPath(1) / "savegame.3", "the game's new one");
    MakeFile(StashPath(1) / "savegame.0", "zero");
    LeaveBehind({{"savegame.3", "three"}, {"note3.txt", "its note"}});
    EXPECT_TRUE(BringHome());
    EXPECT_EQ(BytesOf(StashPath(1) / "savegame.3"), "the game's new one");
    EXPECT_EQ(BytesOf(StashPath(1) / "savegame.1"), "three");
    EXPECT_EQ(BytesOf(StashPath(1) / "note1.txt"), "its note");
}

TEST_F(MovedSavegames, WithoutARecordAreRescued) {
    MakeFile(home / "_temp_savegame/savegame.3", "whose");
    EXPECT_TRUE(BringHome());
    EXPECT_EQ(BytesOf(home / "rescued_saves_1/savegame.3"), "whose");
    EXPECT_THAT(ListRescuedSaves().front().From,
                "the folder C:\\Kelvash\\_temp_savegame, without a word of whose they are");
    EXPECT_THAT(user.Told().front(), HasSubstr("rescued_saves_1"));
    ExpectGone();
}

TEST_F(MovedSavegames, WhoseLevelIsGoneAreRescued) {
    LeaveBehind({{"savegame.3", "three"}});
    std::filesystem::remove_all(LevelPath(1));
    MessageText why;
    EXPECT_FALSE(BringMovedSavesHome(Rescue::No, why));
    EXPECT_EQ(why,
              "Savegames that were moved when Kelvash was ended can't be brought back to their level. They "
              "lie in: C:\\Kelvash\\_temp_savegame");
    EXPECT_TRUE(Exists(home / "_temp_savegame/savegame.3"));
    EXPECT_TRUE(BringHome());
    EXPECT_EQ(ListRescuedSaves().front().From,
              "the level \"City\" of the Archive C:\\Kelvash\\test.kva, whose "
              "folder was C:\\Levels\\LEVEL_0001");
    EXPECT_FALSE(user.Told().empty());
}

TEST_F(MovedSavegames, ADamagedRecordLosesNothing) {
    LeaveBehind({{"savegame.3", "three"}});
    MakeFile(home / "moved_saves.rec", "damaged");
    EXPECT_TRUE(BringHome());
    EXPECT_EQ(BytesOf(home / "rescued_saves_1/savegame.3"), "three");
    EXPECT_FALSE(user.Told().empty());
}

TEST_F(MovedSavegames, AreLookedForByWhoeverListsThem) {
    LeaveBehind({{"savegame.3", "three"}});
    {
        const MovingScope at_work;
        LookForMovedSaves();
        EXPECT_TRUE(Exists(home / "_temp_savegame/savegame.3"));
    }
    LookForMovedSaves();
    EXPECT_TRUE(Exists(StashPath(1) / "savegame.3"));
    ExpectGone();
}

TEST_F(MovedSavegames, NotesAreThoseOfThePlainNumber) {
    MakeFile(StashPath(1) / "savegame.01", "odd");
    MakeFile(StashPath(1) / "savegame.1", "plain");
    MakeFile(StashPath(1) / "savegame.bak", "odd");
    MakeFile(StashPath(1) / "note0.txt", "of bak");
    MakeFile(StashPath(1) / "note1.txt", "of one");
    MakeFile(StashPath(1) / "note7.txt", "lone");
    const std::string stash = "C:\\Levels\\LEVEL_0001\\backup_savegames";
    std::map<std::string, std::string> notes;
    for (const SavegameFile& save : ListSavegameFiles(stash))
        notes[save.Path.substr(stash.size() + 1)] =
            save.Note.empty() ? std::string() : save.Note.substr(stash.size() + 1);
    EXPECT_EQ(notes, (std::map<std::string, std::string>{
                         {"savegame.01", ""}, {"savegame.1", "note1.txt"}, {"savegame.bak", "note0.txt"}}));
    EXPECT_THAT(ListLoneNotes(stash), ElementsAre(stash + "\\note7.txt"));
    EXPECT_EQ(FreeNumber(stash, 0), 2); // the note of savegame.bak would seem to be that of savegame.0
}

} // namespace
} // namespace kelvash::swap
