#include "swap/moved_saves.h"

#include <gtest/gtest.h>

#include "core/archive.h"
#include "support/swap_home.h"
#include "trle_state/level_owner.h"

namespace kelvash::swap {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;

class MovedSavegamesLinks : public test::SwapHome {
  protected:
    MovedSavegamesLinks() { AddLevel(1, "City", {{"city.tr4", "city"}}); }
};

TEST_F(MovedSavegamesLinks, ALinkInTheFoldersPlaceIsNotFollowed) {
    MakeFile(drive / "elsewhere/savegame.3", "somebody's own");
    std::filesystem::create_directory_symlink(drive / "elsewhere", home / "_temp_savegame");
    MessageText why;
    EXPECT_TRUE(BringMovedSavesHome(Rescue::Yes, why));
    EXPECT_FALSE(BeginMoving(trle_state::OwnerOf(core::PlaceOf(1)), why));
    EXPECT_EQ(why,
              "Something is in the way that isn't a folder of Kelvash's "
              "own: C:\\Kelvash\\_temp_savegame");
    EXPECT_EQ(BytesOf(drive / "elsewhere/savegame.3"), "somebody's own");
    EXPECT_FALSE(Exists(home / "moved_saves.rec"));
}

// A run that was killed between two calls leaves the partial file as a second name of a savegame.
TEST_F(MovedSavegamesLinks, APartialFileTakesNothingOfTheSavegameThatItIs) {
    namespace fs = std::filesystem;
    MakeFile(StashPath(1) / "savegame.3", "three");
    MessageText why;
    ASSERT_TRUE(BeginMoving(trle_state::OwnerOf(core::PlaceOf(1)), why));
    fs::create_hard_link(StashPath(1) / "savegame.3", home / "_temp_savegame/Kelvash.tmp");
    fs::permissions(StashPath(1) / "savegame.3", fs::perms::owner_read);
    EXPECT_TRUE(BringMovedSavesHome(Rescue::Yes, why));
    EXPECT_EQ(fs::status(StashPath(1) / "savegame.3").permissions(), fs::perms::owner_read);
    EXPECT_EQ(BytesOf(StashPath(1) / "savegame.3"), "three");
    EXPECT_FALSE(Exists(home / "_temp_savegame"));
}

} // namespace
} // namespace kelvash::swap
