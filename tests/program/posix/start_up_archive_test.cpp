// Archives that a command line names by native paths, and one that the user may not read.
#include <gmock/gmock.h>

#include "foundation/registration.h"
#include "program/end.h"
#include "program/start_up.h"
#include "program/start_up_home.h"

namespace kelvash::program {
namespace {

using test::kDifferent;
using testing::ElementsAre;
namespace fs = std::filesystem;

using StartUpArchive = test::StartUpHome;

TEST_F(StartUpArchive, TellsALastArchiveThatCannotBeRead) {
    LiveIn();
    fs::permissions(home / "last.kva", fs::perms::none);
    user.WillAnswer(kDifferent, "no");
    const test::OrdinaryUser ordinary;
    StartUp("");
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error loading last archive: C:\\Kelvash\\last.kva"));
    EXPECT_EQ(core::profile.LastArchive, "");
    ExpectNoArchive();
}

TEST_F(StartUpArchive, OpensTheNativePathOfTheCommandLine) {
    LiveIn();
    MakeArchive("other.kva", "C:\\Levels");
    StartUp("\"" + (home / "other.kva").string() + "\"");
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\other.kva");
    EXPECT_TRUE(core::ArchiveIsOpen());
}

TEST_F(StartUpArchive, TakesTheNativePathOfATrleSource) {
    EXPECT_EQ(ParseCommandLine('"' + (drive / "games/TRLE").string() + '"').TrleSource, "C:\\games\\TRLE");
    LiveIn();
    EXPECT_FALSE(StartUp('"' + trle.string() + '"')) << "the program is to end";
    EXPECT_THAT(user.Told(), ElementsAre("critical: Failed trle setup from folder"));
}

TEST_F(StartUpArchive, WishedOneThatIsNoneIsTold) {
    LiveIn();
    StartUp("");
    core::archive.ArchiveLoadRefused = true; // of an Archive before
    OpenWishedArchive((home / "gone.kva").string());
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error loading archive: C:\\Kelvash\\gone.kva"));
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\last.kva");
    EXPECT_TRUE(core::ArchiveIsOpen());
}

} // namespace
} // namespace kelvash::program
