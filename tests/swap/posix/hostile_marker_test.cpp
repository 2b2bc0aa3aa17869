// Markers that name a link, and one that the user may not read.
#include <gmock/gmock.h>

#include "swap/hostile_marker_home.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {
namespace {

using trle_state::CurrentLevelCode;
namespace fs = std::filesystem;

TEST_F(HostileMarker, DeletesALinkAndNotWhatItNames) {
    fs::create_symlink(drive / "x", trle / "link.dat");
    MarkWith("\\link.dat", "");
    EXPECT_EQ(RemovePreviousLevel(2), 1);
    EXPECT_FALSE(test::Exists(trle / "link.dat"));
    EXPECT_EQ(test::BytesOf(drive / "x"), "outside");
}

TEST_F(HostileMarker, ThatCannotBeReadCountsAsAbsentForTheCurrentLevel) {
    MarkWith("\\script.dat", "");
    fs::permissions(trle / "Kelvash.txt", fs::perms::none);
    const test::OrdinaryUser ordinary;
    EXPECT_EQ(CurrentLevelCode(), 0);
    EXPECT_EQ(RemovePreviousLevel(2), -1);
    EXPECT_TRUE(test::Exists(trle / "script.dat"));
}

} // namespace
} // namespace kelvash::swap
