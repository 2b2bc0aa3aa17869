#include "program/play.h"

#include <gmock/gmock.h>

#include "support/swap_home.h"

namespace kelvash::program {
namespace {

using testing::ElementsAre;

using Play = test::SwapHome;

TEST_F(Play, TellsAGameThatCannotBeStarted) {
    AddLevel(1, "City", {{"c.tr4", ""}});
    for (const std::filesystem::path& folder : {trle, backup}) // no program at all, but that of the backup
        test::MakeFile(folder / "tomb4.exe", "");
    EXPECT_FALSE(PlayLevel(1));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error attempting to launch program tomb4.exe"));
}

TEST_F(Play, TellsAFailedInstall) {
    AddLevel(1, "Empty", {});
    user.WillAnswer("NO .tr4 file", "no");
    EXPECT_FALSE(PlayLevel(1));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while installing files to play new level"));
}

} // namespace
} // namespace kelvash::program
