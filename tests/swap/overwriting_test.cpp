// What an install overwrites is noted in marker and record, is kept, and comes back if nothing took its
// place.
#include <gmock/gmock.h>

#include "core/profile.h"
#include "support/swap_home.h"
#include "swap/install.h"
#include "swap/kept_files.h"
#include "swap/overwriting_home.h"
#include "swap/remove.h"
#include "swap/restore.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::CurrentLevelCode;
using trle_state::ReadSwapRecord;
using trle_state::SwapRecord;
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

constexpr const char* kMadeWay = "Files of the TRLE folder that the backup doesn't hold made way: 1.";

std::string Program(const std::string& name) {
    return Config(1042, 0x200, name);
}

TEST_F(Overwriting, OfAPlayersShotByAMediaFileIsListedAndKept) {
    AddLevel(1, "City", {{"a.tr4", ""}, {"shot1.jpg", "of the level"}, {"m.mcf", Title("shot1.jpg")}},
             {{"shot1.jpg", "of the player"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_THAT(Marker(), HasSubstr("#OVERWROTEN_FILES=\\shot1.jpg#\r\n"
                                    "#COPIED_FILES=\\shot1.jpg|\\m.mcf|\\data\\a.tr4#\r\n"));
    EXPECT_EQ(test::BytesOf(trle / "shot1.jpg"), "of the level");
    EXPECT_EQ(Kept("shot1.jpg"), "of the player");
    EXPECT_THAT(user.Told(), ElementsAre(HasSubstr(kMadeWay)));
    user.Forget();
    ASSERT_TRUE(InstallLevel(0));
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(Kept("shot1.jpg"), "of the player") << "the level's own isn't kept";
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Overwriting, ByAFileOfTheStashGoesWithTheLevel) {
    user.MayBeTold(kMadeWay);
    AddLevel(1, "City", {{"a.tr4", ""}}, {{"script.dat", "of the stash"}, {"savegame.0", "s"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(trle / "script.dat"), "of the stash");
    EXPECT_THAT(Marker(), HasSubstr("#OVERWROTEN_FILES=#\r\n#COPIED_FILES=\\data\\a.tr4#\r\n"));
    const SwapRecord record = ReadSwapRecord().Record;
    ASSERT_EQ(record.OverwrittenBySaves.size(), 1U);
    EXPECT_EQ(record.OverwrittenBySaves.front().Target, "\\script.dat");
    EXPECT_EQ(record.Saves.size(), 2U);
    EXPECT_EQ(Kept("script.dat"), "") << "the backup has it";
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "script.dat"), "original script.dat");
    EXPECT_EQ(Kept("script.dat"), "of the stash");
}

TEST_F(Overwriting, ByAFileOfTheStashKeepsTheUsersOwn) {
    AddLevel(1, "City", {{"a.tr4", ""}}, {{"readme.txt", "of the stash"}});
    test::MakeFile(trle / "readme.txt", "mine");
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(trle / "readme.txt"), "of the stash");
    EXPECT_EQ(Kept("readme.txt"), "mine");
    EXPECT_THAT(user.Told(), ElementsAre(HasSubstr(kMadeWay)));
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "readme.txt"), "of the stash");
}

TEST_F(Overwriting, NeverHitsTheGameOrTheMarker) {
    AddLevel(1, "City", {{"a.tr4", ""}}, {{"tomb4.exe", "foreign"}, {"Kelvash.txt", "#LEVEL_CODE=0007#"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(trle / "tomb4.exe"), "original tomb4.exe");
    EXPECT_EQ(CurrentLevelCode(), 1);
    EXPECT_THAT(user.Told(), ElementsAre("critical: Not all saves of the level could be copied into the TRLE "
                                         "folder. They are still in: "
                                         "C:\\Levels\\LEVEL_0001\\backup_savegames"));
}

TEST_F(Overwriting, ByTheGameOfAMediaConfigurationIsToldAndLeftOut) {
    AddLevel(1, "City", {{"a.tr4", ""}, {"TOMB4.exe", "foreign"}, {"m.mcf", Program("TOMB4.exe")}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(trle / "tomb4.exe"), "original tomb4.exe");
    EXPECT_THAT(Marker(), HasSubstr("#COPIED_FILES=\\m.mcf|\\data\\a.tr4#\r\n"));
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: This level brings a game program of its own "
                                         "(tomb4.exe). It has been left out, that of the TRLE folder stays"));
}

TEST_F(Overwriting, ByAMediaProgramIsUndoneFromTheMarkerAlone) {
    AddLevel(1, "City", {{"city.tr4", "CITY"}, {"film.exe", "player"}, {"m.mcf", Program("film.exe")}});
    ASSERT_TRUE(InstallLevel(1));
    ASSERT_TRUE(test::Exists(trle / "film.exe"));
    ForgetRecord();
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_FALSE(test::Exists(trle / "film.exe"));
    EXPECT_FALSE(test::Exists(trle / "data" / "city.tr4"));
}

TEST_F(Overwriting, OfProgramsThatAMarkerAloneClaimsIsNotUndone) {
    AddLevel(1, "City", {{"city.tr4", "CITY"}});
    fs::remove(backup / "winroomedit.exe");
    test::MakeFile(trle / "setup.isu", "log");
    test::MakeFile(trle / "Kelvash.txt",
                   "#LEVEL_CODE=0001#\r\n#LEVEL_NAME=City#\r\n#OVERWROTEN_FILES=\\winroomedit.exe#\r\n"
                   "#COPIED_FILES=\\winroomedit.exe|\\tomb4.exe|\\setup.isu|\\data\\city.tr4#\r\n");
    ASSERT_TRUE(InstallLevel(0));
    for (const char* name : {"winroomedit.exe", "tomb4.exe", "setup.isu"})
        EXPECT_TRUE(test::Exists(trle / name)) << name;
}

TEST_F(Overwriting, OfWhatCannotBeKeptDoesNotHappen) {
    AddLevel(1, "City", {{"city.tr4", "CITY"}});
    test::MakeFile(trle / "data" / "city.tr4", "my own level");
    BlockKeeping();
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(trle / "data" / "city.tr4"), "my own level");
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: These files of the level could not be copied into the TRLE "
                            "folder:\r\n\\data\\city.tr4",
                            Failed("C:\\trle\\data\\city.tr4")));
}

TEST_F(Overwriting, WaitsForAnOriginalWhosePlaceHoldsWhatCannotBeKept) {
    user.MayBeTold("A change of the TRLE folder had been cut short");
    user.MayBeTold(kMadeWay);
    AddLevel(1, "Citta", {{"c.tr4", ""}, {"italian.dat", "it"}});
    ASSERT_TRUE(InstallLevel(1)); // displaces english.dat
    test::MakeFile(trle / "english.dat", "mine");
    BlockKeeping();
    EXPECT_FALSE(InstallLevel(0));
    EXPECT_THAT(user.Told(), ElementsAre(Failed("C:\\trle\\english.dat")));
    EXPECT_EQ(test::BytesOf(trle / "english.dat"), "mine");
    EXPECT_TRUE(IsCutShort());
    fs::remove(home / "kept_files");
    EXPECT_TRUE(InstallLevel(0));
    EXPECT_EQ(test::BytesOf(trle / "english.dat"), "original english.dat");
    EXPECT_EQ(Kept("english.dat"), "mine");
}

TEST_F(Overwriting, ByAFullRestoreLeavesWhatCannotBeKept) {
    test::MakeFile(trle / "my list.txt", "mine");
    test::MakeFile(trle / "script.dat", "my script");
    BlockKeeping();
    Bar bar;
    EXPECT_FALSE(FullRestore(bar, false));
    EXPECT_EQ(test::BytesOf(trle / "my list.txt"), "mine");
    EXPECT_EQ(test::BytesOf(trle / "script.dat"), "my script");
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: These original files could not be brought back. It is tried again at the "
                    "next start:\r\nC:\\trle\\script.dat",
                    Failed("C:\\trle\\my list.txt\r\nC:\\trle\\script.dat"),
                    "plain: Restored original Tomb Raider Level Editor configuration"));
}

} // namespace
} // namespace kelvash::swap
