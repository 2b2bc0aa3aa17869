// A save that comes into the TRLE root while the others are being put away.
#include <gmock/gmock.h>

#include <chrono>

#include "support/swap_home.h"
#include "swap/install.h"
#include "swap/remove.h"
#include "swap/saves.h"

namespace kelvash::swap {

using trle_state::ReadSwapRecord;
using trle_state::SwapRecord;
namespace {

using testing::ElementsAre;
using testing::EndsWith;

namespace fs = std::filesystem;

class Saves : public test::SwapHome {};

TEST_F(Saves, ThatComeLateAreNotDeletedWithThoseThatAreAway) {
    AddLevel(1, "City", {{"city.tr4", "CITY"}});
    ASSERT_TRUE(InstallLevel(1));
    test::MakeFile(trle / "savegame.0", "of the root");
    // Somebody else's in the stash, so that one of the two is rescued, which is told.
    test::MakeFile(StashPath(1) / "savegame.0", "of somebody");
    fs::last_write_time(StashPath(1) / "savegame.0",
                        fs::file_time_type::clock::now() - std::chrono::hours(1));
    SwapRecord record = ReadSwapRecord().Record;
    user.when_told = [this] { test::MakeFile(trle / "savegame.9", "late"); };
    EXPECT_EQ(StashLevelFiles("C:\\Levels\\LEVEL_0001", record, true), StashResult::Done);
    EXPECT_EQ(user.Told().size(), 1U);
    EXPECT_EQ(test::BytesOf(trle / "savegame.9"), "late");
    EXPECT_FALSE(test::Exists(trle / "savegame.0"));
    EXPECT_EQ(test::BytesOf(StashPath(1) / "savegame.0"), "of the root");
}

TEST_F(Saves, AreListedInTheOrderOfTheThreePatterns) {
    for (const char* name : {"note2.txt", "Shot3.jpg", "SAVEGAME.1", "note1.txt", "shot1.jpg", "savegame.0"})
        test::MakeFile(trle / name, "");
    EXPECT_THAT(ListSaves(),
                ElementsAre(EndsWith("\\savegame.0"), EndsWith("\\SAVEGAME.1"), EndsWith("\\shot1.jpg"),
                            EndsWith("\\Shot3.jpg"), EndsWith("\\note1.txt"), EndsWith("\\note2.txt")));
}

} // namespace
} // namespace kelvash::swap
