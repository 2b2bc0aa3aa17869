// What the user has put into the TRLE folder himself isn't lost by a swap.
#include "swap/kept_files.h"

#include <gmock/gmock.h>

#include "core/profile.h"
#include "support/swap_home.h"
#include "swap/install.h"
#include "swap/kept_files_home.h"
#include "swap/remove.h"
#include "swap/restore.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::LevelIsWhole;
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

TEST_F(KeptFile, NoneIsMadeOfWhatTheBackupHolds) {
    ASSERT_TRUE(InstallLevel(1));
    ASSERT_TRUE(InstallLevel(0));
    EXPECT_FALSE(test::Exists(home / "kept_files"));
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(KeptFile, IsWhatALevelWouldOverwrite) {
    test::MakeFile(trle / "data" / "city.tr4", "my own level");
    test::MakeFile(trle / "script.dat", "my script");
    test::MakeFile(trle / "english.dat", "my texts, displaced");
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(Kept("city.tr4"), "my own level");
    EXPECT_EQ(Kept("script.dat"), "my script");
    EXPECT_EQ(Kept("english.dat"), "my texts, displaced");
    EXPECT_THAT(user.Told(),
                ElementsAre(HasSubstr("exclamation: Files of the TRLE folder that the backup doesn't "
                                      "hold made way: 3.\r\nThey have been kept in: "
                                      "C:\\Kelvash\\kept_files\\20")));
    EXPECT_EQ(test::BytesOf(trle / "script.dat"), "city script");
}

TEST_F(KeptFile, IsWhatWasChangedWhileTheLevelWasIn) {
    ASSERT_TRUE(InstallLevel(1));
    test::MakeFile(trle / "script.dat", "compiled anew");
    test::MakeFile(trle / "load.bmp", "rewritten by the game");
    ASSERT_TRUE(InstallLevel(2));
    EXPECT_EQ(Kept("script.dat"), "compiled anew");
    EXPECT_EQ(Kept("load.bmp"), "");
    EXPECT_EQ(test::BytesOf(trle / "script.dat"), test::BytesOf(backup / "script.dat"));
}

TEST_F(KeptFile, IsAWaveUnderACompactBackupAndCanComeBack) {
    core::profile.FullBackup = false;
    const std::string original = test::BytesOf(backup / "audio" / "045.wav");
    fs::remove_all(backup / "audio");
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_EQ(test::BytesOf(home / "kept_files" / "audio" / "045.wav"), original);
    user.WillAnswer(
        "1 wave files of the TRLE folder that made way for a level are kept in "
        "C:\\Kelvash\\kept_files\\audio",
        "yes");
    EXPECT_TRUE(FastRestore());
    EXPECT_EQ(test::BytesOf(trle / "audio" / "045.wav"), original);
    EXPECT_FALSE(test::Exists(home / "kept_files" / "audio" / "045.wav"));
}

TEST_F(KeptFile, IsWhatAFullRestoreWouldDelete) {
    test::MakeFile(trle / "my list.txt", "mine");
    test::MakeFile(trle / "script" / "english.txt", "my texts");
    test::MakeFile(trle / "audio" / "my song.wav", "my song");
    test::MakeFile(trle / "data" / "own.tr4", "my level");
    user.WillAnswer("1 wave files", "no");
    Bar bar;
    EXPECT_TRUE(FullRestore(bar, false));
    EXPECT_EQ(Kept("my list.txt"), "mine");
    EXPECT_EQ(Kept("english.txt"), "my texts");
    EXPECT_EQ(Kept("own.tr4"), "my level");
    EXPECT_EQ(test::BytesOf(home / "kept_files" / "audio" / "my song.wav"), "my song");
    EXPECT_FALSE(test::Exists(trle / "my list.txt"));
    EXPECT_THAT(user.Asked(), ElementsAre(HasSubstr("1 wave files")));
}

TEST_F(KeptFile, BringsBackWhatALevelOverwroteWhenTheBackupIsGone) {
    test::MakeFile(trle / "data" / "coast.tr4", "my own level");
    ASSERT_TRUE(InstallLevel(2));
    test::MakeFile(trle / "savegame.0", "coast save");
    fs::remove_all(backup);
    EXPECT_EQ(RemovePreviousLevel(-1), 2);
    EXPECT_EQ(test::BytesOf(trle / "data" / "coast.tr4"), "my own level");
    EXPECT_EQ(test::BytesOf(StashPath(2) / "savegame.0"), "coast save");
}

} // namespace
} // namespace kelvash::swap
