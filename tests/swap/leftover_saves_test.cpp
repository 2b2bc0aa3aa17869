#include <gmock/gmock.h>

#include "foundation/files.h"
#include "support/savegame_home.h"
#include "swap/install.h"
#include "swap/moved_saves.h"
#include "trle_state/level_owner.h"

namespace kelvash::swap {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using test::SaveBytes;
using test::SaveMap;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

MovedSaves Example() {
    return {"C:\\Levels\\my.kva",
            {"C:\\Levels\\LEVEL_0012", "..\\Levels\\LEVEL_0012", "City, 2", "00ff", 12}};
}

TEST(MovedSavesRecord, HasALineForEach) {
    const std::string bytes = EncodeMovedSaves(Example());
    EXPECT_THAT(bytes, StartsWith("Kelvash moved saves 1\n"
                                  "archive 16:C:\\Levels\\my.kva,\n"
                                  "owner 20:C:\\Levels\\LEVEL_0012,20:..\\Levels\\LEVEL_0012,7:City, "
                                  "2,4:00ff,2:12,\n"
                                  "end 32:"));
    const std::optional<MovedSaves> read = DecodeMovedSaves(bytes);
    ASSERT_TRUE(read);
    EXPECT_EQ(EncodeMovedSaves(*read), bytes);
    EXPECT_EQ(read->Owner.Name, "City, 2");
}

TEST(MovedSavesRecord, CutOrDamagedTellsNothing) {
    const std::string bytes = EncodeMovedSaves(Example());
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(DecodeMovedSaves(bytes.substr(0, length))) << length;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        std::string damaged = bytes;
        damaged[at] = static_cast<char>(damaged[at] ^ 1);
        EXPECT_FALSE(DecodeMovedSaves(damaged)) << at;
    }
    EXPECT_FALSE(DecodeMovedSaves(bytes + "more"));
}

class Leftovers : public test::SavegameHome {
  protected:
    // As a killed renumbering leaves them.
    void Leave(const std::string& name, const std::string& bytes) {
        MakeFile(home / "_temp_savegame" / name, bytes);
    }
    void Record() {
        MakeFile(home / "moved_saves.rec",
                 EncodeMovedSaves({"C:\\Levels\\my.kva", trle_state::OwnerOf(core::PlaceOf(1))}));
    }
    bool BringHome(Rescue rescue = Rescue::Yes) { return BringMovedSavesHome(rescue, why); }
    MessageText why;
};

TEST_F(Leftovers, ComeHomeWithTheirNotesUnderTheirNumbers) {
    PutSlot(0, 1);
    Leave("savegame.3", SaveBytes("City", 3));
    Leave("note3.txt", "three");
    Leave("savegame.bak", SaveBytes("City", 4));
    Leave("Kelvash.tmp", "half");
    Record();
    EXPECT_TRUE(BringHome());
    EXPECT_EQ(
        Contents(Slots()),
        (SaveMap{{"savegame.0", "1"}, {"savegame.3", "3"}, {"note3.txt", "three"}, {"savegame.bak", "4"}}));
    ExpectNothingMoving();
    EXPECT_TRUE(user.Told().empty());
}

TEST_F(Leftovers, ATwinOnlyLeavesAndAnotherOfItsNumberGetsAFreeOne) {
    PutSlot(3, 3);
    PutSlot(4, 4, "new");
    Leave("savegame.3", SaveBytes("City", 3));
    Leave("note3.txt", "three");
    Leave("savegame.4", SaveBytes("City", 4, "old"));
    Record();
    EXPECT_TRUE(BringHome());
    EXPECT_EQ(
        Contents(Slots()),
        (SaveMap{
            {"savegame.0", "4old"}, {"savegame.3", "3"}, {"note3.txt", "three"}, {"savegame.4", "4new"}}));
}

TEST_F(Leftovers, OfALevelInTrleComeThere) {
    ASSERT_TRUE(InstallLevel(1));
    Leave("savegame.3", SaveBytes("City", 3));
    Record();
    EXPECT_TRUE(BringHome());
    EXPECT_EQ(BytesOf(trle / "savegame.3"), SaveBytes("City", 3));
}

TEST_F(Leftovers, WaitForATrleThatIsMissing) {
    ASSERT_TRUE(InstallLevel(1));
    Leave("savegame.3", SaveBytes("City", 3));
    Record();
    std::filesystem::rename(trle, drive / "unplugged");
    EXPECT_FALSE(BringHome());
    EXPECT_EQ(why,
              "Savegames that were moved when Kelvash was ended can't be brought back to their level. "
              "They lie in: C:\\Kelvash\\_temp_savegame");
    EXPECT_TRUE(Exists(home / "_temp_savegame/savegame.3"));
    EXPECT_TRUE(Exists(home / "moved_saves.rec"));
    EXPECT_FALSE(Exists(Slots() / "savegame.3"));
    std::filesystem::rename(drive / "unplugged", trle);
    EXPECT_TRUE(BringHome());
    EXPECT_EQ(BytesOf(trle / "savegame.3"), SaveBytes("City", 3));
}

TEST_F(Leftovers, WithoutARecordAreRescued) {
    Leave("savegame.3", SaveBytes("City", 3));
    EXPECT_FALSE(BringHome(Rescue::No));
    user.MayBeTold("");
    EXPECT_TRUE(BringHome());
    EXPECT_EQ(BytesOf(home / "rescued_saves_1/savegame.3"), SaveBytes("City", 3));
    EXPECT_EQ(BytesOf(home / "rescued_saves_1/rescued_from.txt"),
              "From: the folder C:\\Kelvash\\_temp_savegame, without a word of whose they are\r\n");
    ExpectNothingMoving();
}

TEST_F(Leftovers, OfALevelThatIsGoneAreRescuedInItsName) {
    Leave("savegame.3", SaveBytes("City", 3));
    Record();
    std::filesystem::rename(LevelPath(1), drive / "gone");
    user.MayBeTold("");
    EXPECT_TRUE(BringHome());
    EXPECT_EQ(BytesOf(home / "rescued_saves_1/rescued_from.txt"),
              "From: the level \"City\" of the Archive C:\\Levels\\my.kva, whose folder was "
              "C:\\Levels\\LEVEL_0001\r\n");
    EXPECT_TRUE(Exists(home / "rescued_saves_1/savegame.3"));
}

TEST_F(Leftovers, AreLeftAloneWhileAnOperationIsAtWork) {
    Leave("savegame.3", SaveBytes("City", 3));
    Record();
    {
        const MovingScope scope;
        LookForMovedSaves();
        EXPECT_TRUE(Exists(home / "_temp_savegame/savegame.3"));
    }
    LookForMovedSaves();
    EXPECT_TRUE(Exists(Slots() / "savegame.3"));
}

TEST_F(Leftovers, ARefreshRescuesNothingWithoutAnArchive) {
    Leave("savegame.3", SaveBytes("City", 3));
    core::CloseArchive();
    LookForMovedSaves();
    EXPECT_TRUE(Exists(home / "_temp_savegame/savegame.3"));
    EXPECT_FALSE(Exists(home / "rescued_saves_1"));
}

TEST_F(Leftovers, WhatIsNotTheProgramsOwnStandsInTheWay) {
    const trle_state::LevelOwner owner = trle_state::OwnerOf(core::PlaceOf(1));
    MakeFile(home / "_temp_savegame", "a file");
    EXPECT_FALSE(BeginMoving(owner, why));
    EXPECT_EQ(why,
              "Something is in the way that isn't a folder of Kelvash's "
              "own: C:\\Kelvash\\_temp_savegame");
    std::filesystem::remove(home / "_temp_savegame");
    std::filesystem::create_directories(home / "moved_saves.rec/inner");
    EXPECT_FALSE(BeginMoving(owner, why));
    EXPECT_EQ(why, "I cannot write: C:\\Kelvash\\moved_saves.rec");
    std::filesystem::remove_all(home / "moved_saves.rec");
    EXPECT_TRUE(BeginMoving(owner, why));
    EXPECT_TRUE(Exists(home / "moved_saves.rec"));
    EXPECT_TRUE(EndMoving());
    ExpectNothingMoving();
}

} // namespace
} // namespace kelvash::swap
