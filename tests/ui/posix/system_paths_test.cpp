// Paths and links of the system itself. On Windows those look like the program's own, so that nobody can tell
// which of them a test means.
#include <gmock/gmock.h>

#include "foundation/messages.h"
#include "ui/forms_user.h"
#include "ui/getdir_home.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

using PathsOfTheSystem = GetDirHome;

TEST_F(PathsOfTheSystem, TakesATypedNativePath) {
    Open("C:\\");
    Type(form.Text_PathDir, (drive / "Games" / "gamma").string());
    Enter(form.Text_PathDir);
    EXPECT_EQ(Shown(), "C:\\Games\\gamma");
}

TEST_F(PathsOfTheSystem, FollowsNoLinkIntoAFolderAboveIt) {
    fs::create_directory_symlink(drive / "Games", drive / "Games" / "again");
    fs::create_directory_symlink(drive / "Zips", drive / "Games" / "zips");
    fs::create_directories(drive / "Zips" / "inside");
    Open("C:\\Games");
    QTreeWidgetItem* const games = form.Dir1->currentItem();
    ASSERT_THAT(Below(games), ElementsAre("again", "Alpha", "beta", "gamma", "zips"));
    games->child(0)->setExpanded(true);
    EXPECT_EQ(games->child(0)->childCount(), 0);
    games->child(4)->setExpanded(true);
    EXPECT_THAT(Below(games->child(4)), ElementsAre("inside"));
    // By hand it can be reached all the same.
    Type(form.Text_PathDir, "C:\\Games\\again\\beta");
    Press(&form, "Pul_Ok");
    EXPECT_EQ(form.Folder, "C:\\Games\\again\\beta");
}

TEST_F(PathsOfTheSystem, TellsAFileThatNoDriveReaches) {
    MakeFile(drive / "back\\slash.zip", "zip");
    robot.WillChooseFile("Choose", drive / "back\\slash.zip");
    robot.WillPress("No drive reaches this path: " + (drive / "back\\slash.zip").string(), "OK");
    EXPECT_EQ(forms.OpenFile({MessageText("Choose"), "Zip files|*.zip", "C:\\", {}}), std::nullopt);
}

} // namespace
} // namespace kelvash::test
