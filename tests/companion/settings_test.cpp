#include "companion/settings.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/session.h"
#include "foundation/state.h"
#include "support/swap_home.h"

namespace kelvash::test {
namespace {

using companion::ApplySettings;
using companion::BeginSettings;
using companion::Settings;
using core::profile;
using testing::ElementsAre;
using testing::IsEmpty;

class SettingsLogic : public SwapHome {};

TEST_F(SettingsLogic, ChangeNothingBeforeTheyAreApplied) {
    Settings settings = BeginSettings();
    EXPECT_EQ(settings.Minutes, "5");
    settings.Edited.AutoSave = false;
    settings.Edited.TimerTenths = 1;
    settings.Minutes = "9";
    EXPECT_TRUE(profile.AutoSave);
    EXPECT_EQ(profile.TimerTenths, 5);
    EXPECT_EQ(core::session.TimerInterval, 0);
    EXPECT_TRUE(ApplySettings(settings));
    EXPECT_FALSE(profile.AutoSave);
    EXPECT_EQ(profile.ScreenshotMinutes, 9);
    EXPECT_EQ(core::session.TimerInterval, 100);
    EXPECT_FALSE(Exists(home / "Kelvash.prf"));
}

TEST_F(SettingsLogic, EverySettingReachesTheProfile) {
    Settings settings = BeginSettings();
    core::ProfileRecord& edited = settings.Edited;
    edited.TrleFolder = "C:\\other";
    edited.DownloadFolder = "C:\\zips";
    edited.GraphicsProgram = "C:\\paint.exe";
    edited.PromptCapture = true;
    edited.NoAutoCompile = true;
    edited.CheckEqualLevels = false;
    edited.NoDecompress = false;
    edited.AutoSave = false;
    edited.SavegamesToKeep = 12;
    edited.UrlUpdateReminder = false;
    edited.TimerTenths = 9;
    edited.VerifyImage = false;
    edited.EnableJoystick = false;
    EXPECT_TRUE(ApplySettings(settings));
    EXPECT_EQ(profile.TrleFolder, "C:\\other");
    EXPECT_EQ(profile.DownloadFolder, "C:\\zips");
    EXPECT_EQ(profile.GraphicsProgram, "C:\\paint.exe");
    EXPECT_TRUE(profile.PromptCapture);
    EXPECT_TRUE(profile.NoAutoCompile);
    EXPECT_FALSE(profile.CheckEqualLevels);
    EXPECT_FALSE(profile.NoDecompress);
    EXPECT_FALSE(profile.AutoSave);
    EXPECT_EQ(profile.SavegamesToKeep, 12);
    EXPECT_FALSE(profile.UrlUpdateReminder);
    EXPECT_EQ(profile.TimerTenths, 9);
    EXPECT_FALSE(profile.VerifyImage);
    EXPECT_FALSE(profile.EnableJoystick);
}

TEST_F(SettingsLogic, LeaveTheRestOfTheProfileAlone) {
    const Settings settings = BeginSettings();
    profile.LastArchive = "C:\\new.kva";
    profile.ShowScreenShots = false;
    profile.JoyButtonA = 4;
    profile.FullBackup = false;
    EXPECT_TRUE(ApplySettings(settings));
    EXPECT_EQ(profile.LastArchive, "C:\\new.kva");
    EXPECT_FALSE(profile.ShowScreenShots);
    EXPECT_EQ(profile.JoyButtonA, 4);
    EXPECT_FALSE(profile.FullBackup);
}

TEST_F(SettingsLogic, ACancelPutsTheWholeProfileBack) {
    const Settings settings = BeginSettings();
    profile.JoyButtonA = 4;
    profile.JoystickId = 1;
    profile.AutoSave = false;
    companion::CancelSettings(settings);
    EXPECT_EQ(profile.JoyButtonA, 0);
    EXPECT_EQ(profile.JoystickId, 0);
    EXPECT_TRUE(profile.AutoSave);
}

TEST_F(SettingsLogic, MinutesThatAreNoNumberRefuseEverything) {
    for (const char* minutes : {"", " ", "five", "5m", "-5", "+5", "5.5", "5 5", "2147483648"}) {
        user.Forget();
        Settings settings = BeginSettings();
        settings.Minutes = minutes;
        settings.Edited.AutoSave = false;
        settings.Edited.TimerTenths = 1;
        EXPECT_FALSE(ApplySettings(settings)) << minutes;
        EXPECT_TRUE(profile.AutoSave);
        EXPECT_EQ(profile.TimerTenths, 5);
        EXPECT_EQ(core::session.TimerInterval, 0);
        EXPECT_THAT(user.Told(), ElementsAre("exclamation: You must type a numeric value (digits) in field: "
                                             "Associate savegame with screenshot if ..."));
    }
}

TEST_F(SettingsLogic, TakeMinutesOfAnySize) {
    for (const auto& [typed, minutes] :
         {std::pair{"0", 0}, std::pair{" 007 ", 7}, std::pair{"2147483647", 2147483647}}) {
        Settings settings = BeginSettings();
        settings.Minutes = typed;
        EXPECT_TRUE(ApplySettings(settings)) << typed;
        EXPECT_EQ(profile.ScreenshotMinutes, minutes);
    }
}

TEST_F(SettingsLogic, KeepOddNumbersThatTheProfileHolds) {
    profile.ScreenshotMinutes = -3;
    profile.TimerTenths = 10;
    profile.SavegamesToKeep = 20;
    EXPECT_TRUE(ApplySettings(BeginSettings()));
    EXPECT_EQ(profile.ScreenshotMinutes, -3);
    EXPECT_EQ(profile.TimerTenths, 10);
    EXPECT_EQ(profile.SavegamesToKeep, 20);
    EXPECT_EQ(core::session.TimerInterval, 1000);
}

TEST_F(SettingsLogic, WithoutArchivingTheNumberOfSavegamesStays) {
    Settings settings = BeginSettings();
    settings.Edited.ArchiveSavegames = false;
    settings.Edited.SavegamesToKeep = 14;
    EXPECT_TRUE(ApplySettings(settings));
    EXPECT_FALSE(profile.ArchiveSavegames);
    EXPECT_EQ(profile.SavegamesToKeep, 5);
}

TEST_F(SettingsLogic, ReadTheRestPositionOfAnEnabledJoystick) {
    desktop.joysticks[2] = {30000, 35000, 0};
    profile.JoystickId = 2;
    EXPECT_EQ(companion::joystick_rest.X, 32767);
    Settings settings = BeginSettings();
    settings.Edited.EnableJoystick = false;
    EXPECT_TRUE(ApplySettings(settings));
    EXPECT_EQ(companion::joystick_rest.X, 32767);
    settings.Edited.EnableJoystick = true;
    EXPECT_TRUE(ApplySettings(settings));
    EXPECT_EQ(companion::joystick_rest.X, 30000);
    EXPECT_EQ(companion::joystick_rest.Y, 35000);
    ResetProgramState();
    EXPECT_EQ(companion::joystick_rest.X, 32767);
    EXPECT_EQ(companion::joystick_rest.Y, 32767);
}

TEST_F(SettingsLogic, AMissingJoystickKeepsTheFormerRestPositionAndIsEnabled) {
    companion::joystick_rest = {31000, 31001};
    Settings settings = BeginSettings();
    settings.Edited.EnableJoystick = true;
    EXPECT_TRUE(ApplySettings(settings));
    EXPECT_TRUE(profile.EnableJoystick);
    EXPECT_EQ(companion::joystick_rest.X, 31000);
    EXPECT_EQ(companion::joystick_rest.Y, 31001);
}

TEST_F(SettingsLogic, AutoSaveSwitchedOnWaitsForTheNextChange) {
    profile.AutoSave = false;
    core::ArchiveTouched();
    Settings settings = BeginSettings();
    settings.Edited.AutoSave = true;
    EXPECT_TRUE(ApplySettings(settings));
    EXPECT_FALSE(Exists(home / "test.kva"));
    core::ArchiveTouched();
    EXPECT_TRUE(Exists(home / "test.kva"));
}

TEST_F(SettingsLogic, ATrleFolderIsTestedBeforeItIsTaken) {
    Settings settings = BeginSettings();
    std::filesystem::create_directories(drive / "empty");
    user.WillAnswer("Select Tomb Raider Level Editor path (trle)", "C:\\empty");
    companion::ChooseTrleFolder(settings);
    EXPECT_EQ(user.last_start, "C:\\trle");
    EXPECT_EQ(settings.Edited.TrleFolder, "C:\\trle");
    EXPECT_EQ(user.Told().size(), 1u);

    std::filesystem::rename(trle, drive / "moved");
    user.WillAnswer("Select Tomb Raider Level Editor path (trle)", "C:\\moved");
    companion::ChooseTrleFolder(settings);
    EXPECT_EQ(settings.Edited.TrleFolder, "C:\\moved");
    EXPECT_EQ(profile.TrleFolder, "C:\\trle");
    EXPECT_EQ(user.Told().size(), 1u);
}

TEST_F(SettingsLogic, ChooseAFolderAndAProgram) {
    Settings settings = BeginSettings();
    user.WillAnswer("Select folder where you download level zip files", "C:\\zips");
    companion::ChooseDownloadFolder(settings);
    EXPECT_EQ(user.last_start, "c:\\");
    EXPECT_EQ(settings.Edited.DownloadFolder, "C:\\zips");
    user.WillAnswer("Select graphical program", "C:\\art\\paint.exe");
    companion::ChooseGraphicsProgram(settings);
    EXPECT_EQ(settings.Edited.GraphicsProgram, "C:\\art\\paint.exe");
    user.WillAnswer("Select graphical program", "cancel");
    companion::ChooseGraphicsProgram(settings);
    EXPECT_EQ(user.last_start, "C:\\art");
    EXPECT_EQ(settings.Edited.GraphicsProgram, "C:\\art\\paint.exe");
}

TEST_F(SettingsLogic, RefusePathsThatTheProfileCannotHold) {
    Settings settings = BeginSettings();
    const std::string longest = "C:\\" + std::string(253, 'x');
    user.WillAnswer("Select folder where", longest);
    companion::ChooseDownloadFolder(settings);
    EXPECT_EQ(settings.Edited.DownloadFolder, longest);
    EXPECT_THAT(user.Told(), IsEmpty());

    user.WillAnswer("Select folder where", longest + "x");
    companion::ChooseDownloadFolder(settings);
    EXPECT_EQ(settings.Edited.DownloadFolder, longest);
    EXPECT_EQ(user.Told().back(),
              "critical: This path is too long for the files of Kelvash (at most 256 "
              "characters): " +
                  longest + "x");
    user.WillAnswer("Select folder where", "C:\\\xCE\xBB"); // a Greek letter
    companion::ChooseDownloadFolder(settings);
    EXPECT_EQ(settings.Edited.DownloadFolder, longest);
    EXPECT_EQ(user.Told().back(),
              "critical: This path has characters that the files of Kelvash can not hold "
              "(only those of Windows-1252): C:\\\xCE\xBB");
    user.Forget();
    user.WillAnswer("Select graphical program", "C:\\\xCE\xBB.exe");
    companion::ChooseGraphicsProgram(settings);
    user.WillAnswer("Select Tomb Raider Level Editor path (trle)", "C:\\\xCE\xBB");
    companion::ChooseTrleFolder(settings);
    EXPECT_EQ(settings.Edited.GraphicsProgram, "");
    EXPECT_EQ(settings.Edited.TrleFolder, "C:\\trle");
    EXPECT_EQ(user.Told().size(), 2u);
}

} // namespace
} // namespace kelvash::test
