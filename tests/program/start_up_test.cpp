// The start up to the Archive: desktop, files, profile, TRLE and its backup.
#include "program/start_up.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "companion/settings.h"
#include "foundation/lock.h"
#include "foundation/registration.h"
#include "program/end.h"
#include "program/start_up_home.h"
#include "swap/backup.h"

namespace kelvash::program {
namespace {

using test::BytesOf;
using test::Exists;
using test::kFull;
using test::kLoad;
using test::kNewFolder;
using test::kOriginal;
using test::kUpgrade;
using test::MakeFile;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace fs = std::filesystem;

using StartUpTest = test::StartUpHome;

// --- the first run ---

TEST_F(StartUpTest, AsksForEverythingInOrderAtAFirstRun) {
    WillMakeAFirstArchive();
    StartUp("");
    EXPECT_THAT(user.Asked(), ElementsAre("Dialog_TrovaTrle", StartsWith(kOriginal), StartsWith(kFull),
                                          "Dialog_NewArc", kNewFolder));
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_TRUE(core::ArchiveIsOpen());
    EXPECT_EQ(core::profile.TrleFolder, "C:\\trle");
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\LevelArchive.kva");
    EXPECT_EQ(fs::file_size(home / "LevelArchive.kva"), 2180U);
    EXPECT_TRUE(Exists(home / "backup_trle" / "DATA" / "title.tr4"));
    EXPECT_TRUE(fs::is_directory(home / "LEVEL_0000" / "FILES"));
    EXPECT_EQ(core::archive.Table[0].MoreInfoFile, "manual.pdf");
    EXPECT_EQ(core::archive.Table[0].FilesSize, 26) << "the manual: 'original manual/manual.pdf'";
    EXPECT_TRUE(core::session.RunTestMovie);
    EXPECT_FALSE(core::session.UpgradeWarning);
    EXPECT_TRUE(core::session.IsNtFamily);
    EXPECT_EQ(core::session.TimerInterval, 500);
    EXPECT_TRUE(Exists(home / "Kelvash.prf")) << "a kill may follow";
}

// The steps that a start tells of, each with the number of questions that came before it.
class StartUpSteps : public StartUpTest {
  protected:
    using Told = std::vector<std::pair<FirstStep, std::size_t>>;
    Told Start() {
        Told told;
        StartUp("", [&](FirstStep step) { told.emplace_back(step, user.Asked().size()); });
        return told;
    }
};

TEST_F(StartUpSteps, AreToldBeforeTheirQuestions) {
    WillMakeAFirstArchive();
    EXPECT_EQ(Start(), (Told{{FirstStep::TrleFolder, 0},
                             {FirstStep::Backup, 1},
                             {FirstStep::Archive, 3},
                             {FirstStep::Over, 5}}));
}

TEST_F(StartUpSteps, EndWithTheOneThatWasGivenUp) {
    WillFindTrle();
    user.WillAnswer(kOriginal, "no");
    EXPECT_EQ(Start(), (Told{{FirstStep::TrleFolder, 0}, {FirstStep::Backup, 1}}));
    EXPECT_FALSE(core::ArchiveIsOpen());
    EXPECT_THAT(user.Told(), ElementsAre(StartsWith("critical: Tips:"),
                                         StartsWith("critical: You must perform a new setup")));
}

TEST_F(StartUpSteps, AreThoseOfAFirstStartAlone) {
    LiveIn();
    EXPECT_EQ(Start(), Told());
    EXPECT_TRUE(core::ArchiveIsOpen());
}

TEST_F(StartUpTest, LeavesTheDesktopAloneAtALaterRun) {
    LiveIn();
    StartUp("");
    EXPECT_FALSE(Exists(root / "data" / "applications"));
    EXPECT_FALSE(core::session.RunTestMovie);
    EXPECT_FALSE(core::session.UpgradeWarning);
}

TEST_F(StartUpTest, RunsOnce) {
    LiveIn();
    StartUp("");
    core::profile.LastArchive = "unchanged";
    desktop.animation = true;
    StartUp("\"C:\\Kelvash\\other.kva\"");
    EXPECT_EQ(core::profile.LastArchive, "unchanged");
    EXPECT_TRUE(desktop.animation);
    EXPECT_THAT(user.Asked(), IsEmpty());
}

// --- files of the application's folder ---

TEST_F(StartUpTest, BringsGoPifBackFromItsSpare) {
    LiveIn();
    MakeFile(home / "go.pif.bin", "spare");
    StartUp("");
    EXPECT_EQ(BytesOf(home / "go.pif"), "spare");
    EXPECT_FALSE(Exists(home / "go.pif.bin"));
}

TEST_F(StartUpTest, KeepsAGoPifThatIsThere) {
    LiveIn();
    MakeFile(home / "go.pif.bin", "spare");
    MakeFile(home / "go.pif", "own");
    StartUp("");
    EXPECT_EQ(BytesOf(home / "go.pif"), "own");
    EXPECT_EQ(BytesOf(home / "go.pif.bin"), "spare");
}

// --- the profile ---

TEST_F(StartUpTest, SwitchesTheWindowAnimationOffUntilTheEnd) {
    LiveIn();
    StartUp("");
    EXPECT_FALSE(desktop.animation);
    EXPECT_TRUE(SaveProfile());
    EXPECT_TRUE(desktop.animation);
}

TEST_F(StartUpTest, LeavesAnAnimationOffThatWasOff) {
    LiveIn();
    desktop.animation = false;
    StartUp("");
    EXPECT_TRUE(SaveProfile());
    EXPECT_FALSE(desktop.animation);
}

TEST_F(StartUpTest, LimitsTheTimerToTenTenths) {
    record.TimerTenths = 11;
    LiveIn();
    StartUp("");
    EXPECT_EQ(core::profile.TimerTenths, 10);
    EXPECT_EQ(core::session.TimerInterval, 1000);
}

TEST_F(StartUpTest, KeepsATimerBelowTheLimit) {
    record.TimerTenths = 3;
    LiveIn();
    StartUp("");
    EXPECT_EQ(core::profile.TimerTenths, 3);
    EXPECT_EQ(core::session.TimerInterval, 300);
}

TEST_F(StartUpTest, NeverStopsTheTimer) {
    record.TimerTenths = -4;
    LiveIn();
    StartUp("");
    EXPECT_EQ(core::session.TimerInterval, 100);
}

TEST_F(StartUpTest, SwitchesAMissingJoystickOffForGood) {
    record.JoystickId = 1;
    LiveIn();
    desktop.joysticks[0] = {};
    StartUp("");
    EXPECT_FALSE(core::profile.EnableJoystick);
    EXPECT_TRUE(SaveProfile());
    EXPECT_EQ(BytesOf(home / "Kelvash.prf").substr(1570, 2), std::string(2, '\0'));
}

TEST_F(StartUpTest, KeepsAJoystickThatIsThere) {
    record.JoystickId = 1;
    LiveIn();
    desktop.joysticks[1] = {.x = 30000, .y = 36000};
    StartUp("");
    EXPECT_TRUE(core::profile.EnableJoystick);
    EXPECT_EQ(companion::joystick_rest.X, 30000) << "where it stands at the start is its rest";
    EXPECT_EQ(companion::joystick_rest.Y, 36000);
}

TEST_F(StartUpTest, TakesThePlaceOfAJoystickForItsRest) {
    LiveIn();
    desktop.joysticks[0] = {30000, 35000, 0};
    StartUp("");
    EXPECT_EQ(companion::joystick_rest.X, 30000);
    EXPECT_EQ(companion::joystick_rest.Y, 35000);
}

TEST_F(StartUpTest, DoesNotSwitchAJoystickOn) {
    record.EnableJoystick = false;
    LiveIn();
    desktop.joysticks[0] = {};
    StartUp("");
    EXPECT_FALSE(core::profile.EnableJoystick);
}

// --- an upgrade ---

TEST_F(StartUpTest, RestoresFullyAfterAnUpgradeOnAYes) {
    LiveIn();
    MakeFile(home / "Kelvash.prf", core::EncodeProfile(record) + "x");
    MakeFile(trle / "foreign.dat", "of a level");
    MakeFile(trle / "script.dat", "of a level");
    user.WillAnswer(kUpgrade, "yes");
    StartUp("");
    EXPECT_FALSE(Exists(trle / "foreign.dat"));
    EXPECT_EQ(BytesOf(trle / "script.dat"), "original script.dat");
    EXPECT_THAT(
        user.Told(),
        ElementsAre(StartsWith("exclamation: Files of the TRLE folder that the backup doesn't hold made "
                               "way: 2.\r\nThey have been kept in: C:\\Kelvash\\kept_files\\"),
                    "plain: Restored original Tomb Raider Level Editor configuration"));
    const std::vector<std::string>& shown = user.Shown();
    const auto first = std::find(shown.begin(), shown.end(), "Removing files of old level from TRLE folder");
    ASSERT_NE(first, shown.end());
    ASSERT_NE(first, shown.begin());
    EXPECT_EQ(*(first - 1), "") << "the dialog is open before its first label";
    EXPECT_THAT(shown, Contains("Restore finished"));
}

// --- TRLE and its original ---

TEST_F(StartUpTest, EndsWithoutTrle) {
    record.TrleFolder = "C:\\gone";
    LiveIn();
    user.WillGiveUp<trle::TrleFolderChoice>();
    StartUp("");
    EXPECT_THAT(user.Told(), ElementsAre("critical: This program cann't run without Tomb Raider Level "
                                         "Editor\r\nNow, Kelvash ends"));
    ExpectNoArchive();
}

TEST_F(StartUpTest, EndsWhenTrleIsNotOriginal) {
    LiveIn();
    fs::remove_all(home / "backup_trle");
    fs::remove_all(home / "LEVEL_0000");
    user.WillAnswer(kOriginal, "no");
    StartUp("");
    EXPECT_THAT(user.Told(), ElementsAre(StartsWith("critical: Tips: "),
                                         StartsWith("critical: You must perform a new setup")));
    EXPECT_FALSE(Exists(home / "LEVEL_0000"));
    ExpectNoArchive();
    // Whatever is opened then, the door to install and restore stays shut.
    user.WillAnswer(kLoad, "C:\\Kelvash\\last.kva");
    EXPECT_TRUE(core::LoadArchiveDialog());
    user.WillAnswer("There is no valid backup of the original files", "cancel");
    EXPECT_EQ(swap::RequireBackup(), swap::Door::Closed);
    EXPECT_FALSE(Exists(home / "backup_trle"));
}

TEST_F(StartUpTest, NeverTakesAFolderWithAMarkerForOriginal) {
    LiveIn();
    fs::remove_all(home / "backup_trle");
    MakeFile(trle / "Kelvash.txt", "");
    StartUp("");
    EXPECT_THAT(user.Told(),
                ElementsAre(StartsWith("critical: In the Tomb Raider Level Editor folder C:\\trle "
                                       "there is a custom level")));
    EXPECT_FALSE(Exists(home / "backup_trle"));
    ExpectNoArchive();
}

TEST_F(StartUpTest, EndsTheMakingOfABackupThatWasCutShort) {
    LiveIn();
    fs::rename(home / "backup_trle", home / "backup_trle_new");
    MakeFile(home / "backup_trle_new.txt", "#TRLE_FOLDER=C:\\trle\r\n#KIND=full\r\n");
    StartUp("");
    EXPECT_TRUE(core::ArchiveIsOpen());
    EXPECT_TRUE(Exists(home / "backup_trle/tomb4.exe"));
    EXPECT_FALSE(Exists(home / "backup_trle_new.txt"));
    EXPECT_TRUE(Exists(home / "backup_trle.txt"));
}

// What another program is restoring at this moment is no folder that lacks files.
TEST_F(StartUpTest, DoesNotJudgeATrleFolderThatAnotherProgramWorksOn) {
    LiveIn();
    fs::remove(trle / "script.dat");
    fs::remove(trle / "tomb4.exe");
    fs::create_directory(RuntimeFolder() / (FolderIdentity("C:\\trle") + ".lock"));
    EXPECT_FALSE(StartUp("")) << "the program is to end";
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_EQ(user.Told().size(), 1U);
    EXPECT_FALSE(Exists(trle / "tomb4.exe"));
}

TEST_F(StartUpTest, NeedsNoLockForATrleFolderThatIsWhole) {
    LiveIn();
    fs::create_directory(RuntimeFolder() / (FolderIdentity("C:\\trle") + ".lock"));
    StartUp("");
    EXPECT_TRUE(core::ArchiveIsOpen());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(StartUpTest, EndsWithoutLevelZero) {
    LiveIn();
    fs::remove_all(home / "LEVEL_0000");
    MakeFile(home / "LEVEL_0000", "a file in the way");
    StartUp("");
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error creating level 0000 (Trle original configuration"));
    ExpectNoArchive();
}

// --- level 0000 ---

TEST_F(StartUpTest, FillsLevelZero) {
    core::profile.TrleFolder = "C:\\trle";
    MakeFile(home / "backup_trle" / "SAVEGAME.3", "saved");
    MakeFile(home / "backup_trle" / "script.dat", "not this");
    MakeFile(trle / "manual" / "readme", "no extension");
    MakeFile(trle / "manual" / "deep" / "not.this", "");
    EXPECT_TRUE(CreateLevelZero());
    EXPECT_TRUE(core::session.LevelZeroCreated);
    const fs::path folder = home / "LEVEL_0000";
    std::vector<std::string> made;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        made.push_back(fs::relative(entry.path(), folder).generic_string());
    EXPECT_THAT(made,
                testing::UnorderedElementsAre("SAVEGAMES", "BACKUP_SAVEGAMES", "BACKUP_SAVEGAMES/SAVEGAME.3",
                                              "FILES", "FILES/manual.pdf", "FILES/readme", "SCREENSHOTS",
                                              "SCREENSHOTS/Tomb Raider Level Editor.bmp"));
    EXPECT_EQ(BytesOf(folder / "SCREENSHOTS" / "Tomb Raider Level Editor.bmp"), "original load.bmp");
    EXPECT_EQ(BytesOf(folder / "BACKUP_SAVEGAMES" / "SAVEGAME.3"), "saved");
    EXPECT_EQ(BytesOf(folder / "FILES" / "manual.pdf"), "original manual/manual.pdf");
}

TEST_F(StartUpTest, LeavesALevelZeroThatIsThere) {
    core::profile.TrleFolder = "C:\\trle";
    fs::create_directory(home / "LEVEL_0000");
    EXPECT_TRUE(CreateLevelZero());
    EXPECT_TRUE(fs::is_empty(home / "LEVEL_0000"));
    EXPECT_FALSE(core::session.LevelZeroCreated);
}

TEST_F(StartUpTest, MakesLevelZeroOfATrleWithoutManualAndPicture) {
    core::profile.TrleFolder = "C:\\trle";
    fs::remove_all(trle / "manual");
    fs::remove(trle / "load.bmp");
    EXPECT_TRUE(CreateLevelZero());
    EXPECT_TRUE(fs::is_empty(home / "LEVEL_0000" / "FILES"));
}

// --- the registry ---

TEST_F(StartUpTest, EndsWithSettingsThatCannotBeRead) {
    fs::create_directory(home / "Kelvash.prf");
    EXPECT_FALSE(StartUp("")) << "the program is to end";
    EXPECT_THAT(user.Told(), ElementsAre(HasSubstr("The settings can't be read")));
    EXPECT_TRUE(SaveProfile());
}

} // namespace
} // namespace kelvash::program
