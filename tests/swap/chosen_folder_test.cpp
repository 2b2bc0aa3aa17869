// The user chooses another TRLE folder at the door of an install or a restore: the operation begins anew
// there.
#include <gmock/gmock.h>

#include "core/profile.h"
#include "support/swap_home.h"
#include "swap/install.h"
#include "swap/restore.h"
#include "trle/find_trle.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::CurrentLevelCode;
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace fs = std::filesystem;

// The backup is of C:\other, in which level 2 is; C:\trle is the folder in use and has another game.
class ChosenFolder : public test::SwapHome {
  protected:
    ChosenFolder() : other(drive / "other") {
        fs::copy(trle, other, fs::copy_options::recursive);
        AddLevel(1, "City", {{"city.tr4", "CITY"}});
        AddLevel(2, "Coast", {{"coast.tr4", "COAST"}});
        core::profile.TrleFolder = "C:\\other";
        EXPECT_TRUE(InstallLevel(2));
        test::MakeFile(other / "savegame.1", "coast save");
        core::profile.TrleFolder = "C:\\trle";
        test::MakeFile(trle / "tomb4.exe", "another game");
        test::MakeFile(trle / "savegame.0", "original save");
        test::MakeFile(home / "backup_trle.txt",
                       "#TRLE_FOLDER=C:\\other\r\n#TOMB4=00000000 1\r\n#KIND=full\r\n");
        before = NamesIn(trle);
        user.WillAnswer("not of the Tomb Raider Level Editor folder C:\\trle", "no");
    }
    void ExpectTheFirstFolderAsItWas() {
        EXPECT_EQ(NamesIn(trle), before);
        EXPECT_EQ(test::BytesOf(trle / "savegame.0"), "original save");
        EXPECT_EQ(test::BytesOf(trle / "tomb4.exe"), "another game");
        EXPECT_THAT(NamesIn(trle / "data"), ElementsAre("title.tr4", "tut1.tr4", "uklogo.pak"));
    }
    void ExpectCoastIsOut() {
        EXPECT_FALSE(test::Exists(other / "data" / "coast.tr4"));
        EXPECT_FALSE(test::Exists(other / "savegame.1"));
        EXPECT_THAT(NamesIn(StashPath(2)), ElementsAre("savegame.1"));
        EXPECT_EQ(test::BytesOf(StashPath(2) / "savegame.1"), "coast save");
    }
    void WillChooseTheOther() {
        user.WillFill<trle::TrleFolderChoice>([](trle::TrleFolderChoice& choice) {
            choice.Folder = "C:\\other";
            return true;
        });
    }
    fs::path other;
    std::vector<std::string> before;
};

TEST_F(ChosenFolder, IsInstalledInWithItsOwnRemoval) {
    WillChooseTheOther();
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(core::profile.TrleFolder, "C:\\other");
    EXPECT_EQ(CurrentLevelCode(), 1);
    EXPECT_EQ(test::BytesOf(other / "data" / "city.tr4"), "CITY");
    ExpectCoastIsOut();
    ExpectTheFirstFolderAsItWas();
}

TEST_F(ChosenFolder, IsRestoredWithItsOwnRemoval) {
    WillChooseTheOther();
    Bar bar;
    ASSERT_TRUE(FullRestore(bar, false));
    EXPECT_EQ(CurrentLevelCode(), 0);
    ExpectCoastIsOut();
    ExpectTheFirstFolderAsItWas();
    EXPECT_FALSE(test::Exists(other / "Kelvash.txt"));
}

TEST_F(ChosenFolder, ThatIsNotChosenEndsItWithNothingChanged) {
    user.WillGiveUp<trle::TrleFolderChoice>();
    EXPECT_FALSE(InstallLevel(1));
    EXPECT_EQ(core::profile.TrleFolder, "C:\\trle");
    ExpectTheFirstFolderAsItWas();
    EXPECT_TRUE(test::Exists(other / "data" / "coast.tr4"));
    EXPECT_EQ(test::BytesOf(other / "savegame.1"), "coast save");
    EXPECT_FALSE(test::Exists(trle / "Kelvash.txt"));
}

} // namespace
} // namespace kelvash::swap
