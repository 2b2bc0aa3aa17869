#include "core/start_up.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/registration.h"
#include "support/test_home.h"
#include "support/trle_sandbox.h"
#include "swap/backup.h"

namespace kelvash::core {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace fs = std::filesystem;

constexpr const char* kFindTrle = "Dialog_TrovaTrle\nFolder of Tomb Raider Level Editor\n";
constexpr const char* kOriginal = "Kelvash needs the original Tomb Raider Level Editor files";
constexpr const char* kFull = "Do you want a full backup?";
constexpr const char* kNewArc = "Dialog_NewArc\n First execution: Missing last archive\n";
constexpr const char* kNewFolder = "Select main folder for new archive";
constexpr const char* kDifferent = "Do you want load a different archive?";
constexpr const char* kLoad = "Load Tomb Raider Level Archive";
constexpr const char* kUpgrade =
    "Warning: in previous version 1.3, there was a bug in remove level files phase. Now, it should be "
    "necessary "
    "perform a full restore in trle folder to remove multiple files\r\nExecute now a full restore?";

class StartUpTest : public test::TestHome {
  protected:
    StartUpTest() {
        test::MakeTrle(trle);
        fs::create_directories(drive / "Levels");
        record.TrleFolder = "C:\\trle";
        record.LastArchive = "C:\\Kelvash\\last.kva";
    }

    // The world of a later run: a profile, a backup, level 0000 and an Archive whose folders are `folder`.
    void LiveIn(const std::string& folder = "C:\\Levels") {
        MakeFile(home / "Kelvash.prf", EncodeProfile(record));
        fs::copy(trle, home / "backup_trle", fs::copy_options::recursive);
        fs::create_directories(home / "LEVEL_0000" / "FILES");
        MakeArchive("last.kva", folder);
    }
    // An Archive with level 0000 and level 5.
    void MakeArchive(const std::string& name, const std::string& folder) {
        std::string bytes(546, '\0');
        bytes[0] = 1;
        bytes.replace(4, 512, std::string(512, ' '));
        bytes.replace(4, folder.size(), folder);
        bytes.replace(260, folder.size(), folder);
        bytes[516] = 2;
        for (const char code : {'\0', '\5'}) {
            std::string level(1634, ' ');
            level.replace(0, 6, "Level ");
            level.replace(1360, 8, std::string(8, '\0'));
            level[1360] = code;
            level.replace(1624, 10, std::string(10, '\0'));
            bytes += level;
        }
        MakeFile(home / name, bytes);
    }
    void WillMakeAFirstArchive() {
        user.WillAnswer(kFindTrle, "C:\\trle");
        user.WillAnswer(kOriginal, "yes");
        user.WillAnswer(kFull, "no");
        user.WillAnswer(kNewArc, "Pul_New");
        user.WillAnswer(kNewFolder, "C:\\Levels");
    }
    void ExpectNoArchive() {
        EXPECT_FALSE(ArchiveIsOpen());
        EXPECT_EQ(archive.Header.LevelCount, 0);
        EXPECT_FALSE(archive.ArchiveChanged);
        EXPECT_TRUE(level_list.Items.empty());
    }

    fs::path trle = drive / "trle";
    ProfileRecord record;
};

// --- the first run ---

TEST_F(StartUpTest, AsksForEverythingInOrderAtAFirstRun) {
    WillMakeAFirstArchive();
    StartUp("");
    EXPECT_THAT(user.Asked(), ElementsAre(StartsWith(kFindTrle), StartsWith(kOriginal), StartsWith(kFull),
                                          StartsWith(kNewArc), kNewFolder));
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_TRUE(ArchiveIsOpen());
    EXPECT_EQ(profile.TrleFolder, "C:\\trle");
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\LevelArchive.kva");
    EXPECT_EQ(fs::file_size(home / "LevelArchive.kva"), 2180U);
    EXPECT_TRUE(Exists(home / "backup_trle" / "DATA" / "title.tr4"));
    EXPECT_TRUE(fs::is_directory(home / "LEVEL_0000" / "FILES"));
    EXPECT_EQ(archive.Levels[0].MoreInfoFile, "manual.pdf");
    EXPECT_EQ(archive.Levels[0].FilesSize, 26) << "the manual: 'original manual/manual.pdf'";
    EXPECT_TRUE(session.RunTestMovie);
    EXPECT_FALSE(session.UpgradeWarning);
    EXPECT_TRUE(session.IsNtFamily);
    EXPECT_EQ(session.TimerInterval, 500);
    EXPECT_FALSE(Exists(home / "Kelvash.prf")) << "the profile is only written at the end";
}

TEST_F(StartUpTest, EntersTheDesktopAtAFirstRun) {
    WillMakeAFirstArchive();
    StartUp("");
    EXPECT_TRUE(Exists(root / "data" / "applications" / "Kelvash 1.4.desktop"));
    EXPECT_TRUE(Exists(root / "data" / "applications" / "kelvash-kva.desktop"));
}

TEST_F(StartUpTest, LeavesTheDesktopAloneAtALaterRun) {
    LiveIn();
    StartUp("");
    EXPECT_FALSE(Exists(root / "data" / "applications"));
    EXPECT_FALSE(session.RunTestMovie);
    EXPECT_FALSE(session.UpgradeWarning);
}

TEST_F(StartUpTest, RunsOnce) {
    LiveIn();
    StartUp("");
    profile.LastArchive = "unchanged";
    desktop.animation = true;
    StartUp("\"C:\\Kelvash\\other.kva\"");
    EXPECT_EQ(profile.LastArchive, "unchanged");
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

TEST_F(StartUpTest, PutsTheWaveLibraryIntoTheSystemFolderOnce) {
    LiveIn();
    MakeFile(home / "lib_wave.dll", "library");
    fs::create_directories(drive / "windows" / "system32");
    StartUp("");
    EXPECT_EQ(BytesOf(drive / "windows" / "system32" / "lib_wave.dll"), "library");
}

TEST_F(StartUpTest, KeepsAWaveLibraryOfTheSystem) {
    LiveIn();
    MakeFile(home / "lib_wave.dll", "library");
    MakeFile(drive / "windows" / "system32" / "LIB_WAVE.DLL", "newer");
    StartUp("");
    EXPECT_EQ(BytesOf(drive / "windows" / "system32" / "LIB_WAVE.DLL"), "newer");
    EXPECT_FALSE(Exists(drive / "windows" / "system32" / "lib_wave.dll"));
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
    EXPECT_EQ(profile.TimerTenths, 10);
    EXPECT_EQ(session.TimerInterval, 1000);
}

TEST_F(StartUpTest, KeepsATimerBelowTheLimit) {
    record.TimerTenths = 3;
    LiveIn();
    StartUp("");
    EXPECT_EQ(profile.TimerTenths, 3);
    EXPECT_EQ(session.TimerInterval, 300);
}

TEST_F(StartUpTest, NeverStopsTheTimer) {
    record.TimerTenths = -4;
    LiveIn();
    StartUp("");
    EXPECT_EQ(session.TimerInterval, 100);
}

TEST_F(StartUpTest, SwitchesAMissingJoystickOffForGood) {
    record.JoystickId = 1;
    LiveIn();
    desktop.joysticks[0] = {};
    StartUp("");
    EXPECT_FALSE(profile.EnableJoystick);
    EXPECT_TRUE(SaveProfile());
    EXPECT_EQ(BytesOf(home / "Kelvash.prf").substr(1570, 2), std::string(2, '\0'));
}

TEST_F(StartUpTest, KeepsAJoystickThatIsThere) {
    record.JoystickId = 1;
    LiveIn();
    desktop.joysticks[1] = {};
    StartUp("");
    EXPECT_TRUE(profile.EnableJoystick);
}

TEST_F(StartUpTest, DoesNotSwitchAJoystickOn) {
    record.EnableJoystick = false;
    LiveIn();
    desktop.joysticks[0] = {};
    StartUp("");
    EXPECT_FALSE(profile.EnableJoystick);
}

// --- an upgrade ---

TEST_F(StartUpTest, AsksForAFullRestoreAfterAnUpgrade) {
    LiveIn();
    MakeFile(home / "Kelvash.prf", EncodeProfile(record).substr(0, 1587));
    user.WillAnswer(kUpgrade, "no");
    StartUp("");
    EXPECT_THAT(user.Asked(), ElementsAre(kUpgrade));
    EXPECT_THAT(user.Shown(), testing::Not(Contains("Restore finished")));
    EXPECT_TRUE(session.UpgradeWarning);
    EXPECT_TRUE(session.RunTestMovie);
    EXPECT_TRUE(Exists(root / "data" / "applications" / "Kelvash 1.4.desktop"));
    EXPECT_FALSE(Exists(root / "data" / "applications" / "kelvash-kva.desktop"));
    EXPECT_TRUE(ArchiveIsOpen());
}

TEST_F(StartUpTest, RestoresFullyAfterAnUpgradeOnAYes) {
    LiveIn();
    MakeFile(home / "Kelvash.prf", EncodeProfile(record) + "x");
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
    user.WillAnswer(kFindTrle, "cancel");
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
    EXPECT_TRUE(LoadArchiveDialog());
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
    EXPECT_TRUE(ArchiveIsOpen());
    EXPECT_TRUE(Exists(home / "backup_trle/tomb4.exe"));
    EXPECT_FALSE(Exists(home / "backup_trle_new.txt"));
    EXPECT_TRUE(Exists(home / "backup_trle.txt"));
}

TEST_F(StartUpTest, RefusesAnArchiveWhosePathTheProfileCannotHold) {
    LiveIn();
    const std::string path = "C:\\\xCE\xBB\\last.kva";
    fs::create_directories(drive / "\xCE\xBB");
    fs::copy(home / "last.kva", drive / "\xCE\xBB/last.kva");
    user.WillAnswer(kDifferent, "no");
    StartUp("\"" + path + "\"");
    EXPECT_THAT(user.Told(), ElementsAre(StartsWith("critical: This path has characters that the files of "
                                                    "Kelvash can not hold")));
    ExpectNoArchive();
}

TEST_F(StartUpTest, EndsWithoutLevelZero) {
    LiveIn();
    fs::remove_all(home / "LEVEL_0000");
    MakeFile(home / "LEVEL_0000", "a file in the way");
    StartUp("");
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error creating level 0000 (Trle original configuration"));
    ExpectNoArchive();
}

TEST_F(StartUpTest, FindsTrleInTheRegistry) {
    record.TrleFolder = "";
    LiveIn();
    test::SetEnvironment("WINEPREFIX", (root / "prefix").string());
    MakeFile(
        root / "prefix" / "system.reg",
        "WINE REGISTRY Version 2\n\n"
        "[Software\\\\Microsoft\\\\Windows\\\\CurrentVersion\\\\App Paths\\\\winroomedit.exe] 1700000000\n"
        "@=\"C:\\\\trle\\\\winroomedit.exe\"\n");
    user.WillAnswer(kFindTrle, "Pul_Ok");
    StartUp("");
    EXPECT_EQ(profile.TrleFolder, "C:\\trle");
    EXPECT_TRUE(ArchiveIsOpen());
}

// --- the last Archive ---

TEST_F(StartUpTest, OpensTheLastArchiveWithoutAQuestion) {
    LiveIn();
    StartUp("");
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_TRUE(ArchiveIsOpen());
    EXPECT_EQ(archive.Header.LevelCount, 2);
    EXPECT_FALSE(session.LevelZeroCreated);
    EXPECT_FALSE(archive.ArchiveLoadRefused);
}

TEST_F(StartUpTest, TellsAMissingLastArchiveAndEndsOnANo) {
    record.LastArchive = "C:\\Kelvash\\gone.kva";
    LiveIn();
    user.WillAnswer(kDifferent, "no");
    StartUp("");
    EXPECT_THAT(user.Told(), ElementsAre("critical: Last archive not found: C:\\Kelvash\\gone.kva"));
    EXPECT_EQ(profile.LastArchive, "");
    ExpectNoArchive();
}

TEST_F(StartUpTest, TakesADifferentArchive) {
    user.MayBeTold("Last archive not found: C:\\Kelvash\\gone.kva");
    record.LastArchive = "C:\\Kelvash\\gone.kva";
    LiveIn();
    user.WillAnswer(kDifferent, "yes");
    user.WillAnswer(kLoad, "C:\\Kelvash\\last.kva");
    StartUp("");
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\last.kva");
    EXPECT_TRUE(ArchiveIsOpen());
    EXPECT_THAT(user.Asked(), ElementsAre(kDifferent, kLoad)) << "no first execution then";
}

TEST_F(StartUpTest, EndsWhenTheDifferentArchiveIsCancelled) {
    user.MayBeTold("Last archive not found: C:\\Kelvash\\gone.kva");
    record.LastArchive = "C:\\Kelvash\\gone.kva";
    LiveIn();
    user.WillAnswer(kDifferent, "yes");
    user.WillAnswer(kLoad, "cancel");
    StartUp("");
    ExpectNoArchive();
    EXPECT_EQ(profile.LastArchive, "");
}

TEST_F(StartUpTest, TellsALastArchiveThatCannotBeRead) {
    LiveIn();
    fs::permissions(home / "last.kva", fs::perms::none);
    user.WillAnswer(kDifferent, "no");
    const test::OrdinaryUser ordinary;
    StartUp("");
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error loading last archive: C:\\Kelvash\\last.kva"));
    EXPECT_EQ(profile.LastArchive, "");
    ExpectNoArchive();
}

TEST_F(StartUpTest, KeepsARefusedArchiveForTheNextStart) {
    LiveIn("X:\\Gone");
    user.WillAnswer("Select folder: Gone", "cancel");
    user.WillAnswer(kDifferent, "no");
    StartUp("");
    EXPECT_THAT(user.Told(), ElementsAre(StartsWith("exclamation: Warning: not found main folder")));
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\last.kva");
    ExpectNoArchive();
}

TEST_F(StartUpTest, TakesADifferentArchiveForARefusedOne) {
    user.MayBeTold("not found main folder of current archive");
    LiveIn("X:\\Gone");
    MakeArchive("other.kva", "C:\\Levels");
    user.WillAnswer("Select folder: Gone", "cancel");
    user.WillAnswer(kDifferent, "yes");
    user.WillAnswer(kLoad, "C:\\Kelvash\\other.kva");
    StartUp("");
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\other.kva");
    EXPECT_FALSE(archive.ArchiveLoadRefused);
    EXPECT_TRUE(ArchiveIsOpen());
}

// --- no last Archive ---

TEST_F(StartUpTest, LoadsAFirstArchive) {
    record.LastArchive = "";
    LiveIn();
    user.WillAnswer(kNewArc, "Pul_Load");
    user.WillAnswer(kLoad, "C:\\Kelvash\\last.kva");
    StartUp("");
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\last.kva");
    EXPECT_TRUE(ArchiveIsOpen());
}

TEST_F(StartUpTest, LoadsAFirstArchiveAlsoWhenTheFormIsClosed) {
    record.LastArchive = "";
    LiveIn();
    user.WillAnswer(kNewArc, "cancel");
    user.WillAnswer(kLoad, "C:\\Kelvash\\last.kva");
    StartUp("");
    EXPECT_TRUE(ArchiveIsOpen());
}

TEST_F(StartUpTest, MakesANewArchiveWhenNoneIsLoaded) {
    record.LastArchive = "";
    LiveIn();
    user.WillAnswer(kNewArc, "Pul_Load");
    user.WillAnswer(kLoad, "cancel");
    user.WillAnswer(kNewFolder, "C:\\Levels");
    StartUp("");
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\LevelArchive.kva");
    EXPECT_EQ(archive.Header.LevelCount, 1);
}

TEST_F(StartUpTest, EndsWithoutAnArchiveWhenTheNewOneIsCancelled) {
    record.LastArchive = "";
    LiveIn();
    user.WillAnswer(kNewArc, "Pul_New");
    user.WillAnswer(kNewFolder, "cancel");
    StartUp("");
    ExpectNoArchive();
    EXPECT_EQ(profile.LastArchive, "");
}

TEST_F(StartUpTest, CountsAFreshLevelZeroIntoTheLastArchive) {
    LiveIn();
    fs::remove_all(home / "LEVEL_0000");
    StartUp("");
    EXPECT_TRUE(session.LevelZeroCreated);
    EXPECT_EQ(archive.Levels[0].FilesSize, 26) << "'original manual/manual.pdf'";
    EXPECT_EQ(archive.Levels[0].SavesSize, 17) << "'original load.bmp'";
    EXPECT_EQ(BytesOf(home / "last.kva")[546 + 1624], 26) << "saved";
}

// --- the command line ---

TEST(CommandLineText, IsReadTokenByToken) {
    EXPECT_EQ(ParseCommandLine("").Archive, "");
    EXPECT_EQ(ParseCommandLine("  \"archive.kva\"  ").Archive, "archive.kva");
    EXPECT_EQ(ParseCommandLine("\"C:\\My Levels\\A.KVA\"").Archive, "C:\\My Levels\\A.KVA");
    EXPECT_EQ(ParseCommandLine("C:\\a.kva").Archive, "") << "only tokens in quotes count";
    EXPECT_EQ(ParseCommandLine("\"C:\\a.kva").Archive, "C:\\a.kva");
    EXPECT_EQ(ParseCommandLine("\"C:\\a.kvas\" \"kva\"").Archive, "");
    EXPECT_EQ(ParseCommandLine("\"C:\\x\\TRLE\"").TrleSource, "C:\\x\\TRLE");
    EXPECT_EQ(ParseCommandLine("\"trle\"").TrleSource, "trle");
    EXPECT_EQ(ParseCommandLine("\"C:\\mytrle\"").TrleSource, "");
    const CommandLine both = ParseCommandLine("x \"C:\\trle\" y \"C:\\a.kva\"");
    EXPECT_EQ(both.Archive, "C:\\a.kva");
    EXPECT_EQ(both.TrleSource, "C:\\trle");
    EXPECT_EQ(ParseCommandLine("\"C:\\a.kva\" \"\" \"C:\\b.kva\"").Archive, "C:\\a.kva")
        << "an empty token ends";
}

TEST_F(StartUpTest, OpensTheArchiveOfTheCommandLineNowAndLater) {
    LiveIn();
    MakeArchive("other.kva", "C:\\Levels");
    StartUp("\"C:\\Kelvash\\other.kva\"");
    EXPECT_TRUE(ArchiveIsOpen());
    EXPECT_TRUE(SaveProfile());
    EXPECT_THAT(BytesOf(home / "Kelvash.prf").substr(10), StartsWith("C:\\Kelvash\\other.kva   "));
}

TEST_F(StartUpTest, OpensTheNativePathOfTheCommandLine) {
    LiveIn();
    MakeArchive("other.kva", "C:\\Levels");
    StartUp("\"" + (home / "other.kva").string() + "\"");
    EXPECT_EQ(profile.LastArchive, "C:\\Kelvash\\other.kva");
    EXPECT_TRUE(ArchiveIsOpen());
}

TEST_F(StartUpTest, TellsAFailedInstallationFromTheCommandLine) {
    LiveIn();
    StartUp("\"C:\\Kelvash\\trle\"");
    EXPECT_THAT(user.Told(), Contains("critical: Failed trle setup from folder"));
    EXPECT_TRUE(archive.ArchiveLoadRefused);
    ExpectNoArchive();
}

// --- level 0000 ---

TEST_F(StartUpTest, FillsLevelZero) {
    profile.TrleFolder = "C:\\trle";
    MakeFile(home / "backup_trle" / "SAVEGAME.3", "saved");
    MakeFile(home / "backup_trle" / "script.dat", "not this");
    MakeFile(trle / "manual" / "readme", "no extension");
    MakeFile(trle / "manual" / "deep" / "not.this", "");
    EXPECT_TRUE(CreateLevelZero());
    EXPECT_TRUE(session.LevelZeroCreated);
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
    profile.TrleFolder = "C:\\trle";
    fs::create_directory(home / "LEVEL_0000");
    EXPECT_TRUE(CreateLevelZero());
    EXPECT_TRUE(fs::is_empty(home / "LEVEL_0000"));
    EXPECT_FALSE(session.LevelZeroCreated);
}

TEST_F(StartUpTest, MakesLevelZeroOfATrleWithoutManualAndPicture) {
    profile.TrleFolder = "C:\\trle";
    fs::remove_all(trle / "manual");
    fs::remove(trle / "load.bmp");
    EXPECT_TRUE(CreateLevelZero());
    EXPECT_TRUE(fs::is_empty(home / "LEVEL_0000" / "FILES"));
}

// --- the registry ---

TEST_F(StartUpTest, RegistersWhereTheProgramsAre) {
    LiveIn();
    test::SetEnvironment("WINEPREFIX", (root / "prefix").string());
    MakeFile(root / "prefix" / "system.reg", "WINE REGISTRY Version 2\n");
    StartUp("");
    const std::string key = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\";
    EXPECT_THAT(ReadRegistryValue(key + "Kelvash.exe"), AllOf(StartsWith("Z:\\"), EndsWith("\\core_tests")));
    EXPECT_EQ(ReadRegistryValue(key + "winroomedit.exe"), "C:\\trle\\winroomedit.exe");
    EXPECT_THAT(BytesOf(root / "prefix" / "system.reg"),
                AllOf(HasSubstr("@=\"C:\\\\trle\\\\winroomedit.exe\"\n\"Path\"=\"C:\\\\trle\"\n"),
                      HasSubstr("\\\\core_tests\"\n\"Path\"=\"Z:\\\\")));
}

TEST_F(StartUpTest, DoesNotRegisterARoomEditorThatIsNotThere) {
    LiveIn();
    fs::remove(trle / "winroomedit.exe");
    test::SetEnvironment("WINEPREFIX", (root / "prefix").string());
    MakeFile(root / "prefix" / "system.reg", "WINE REGISTRY Version 2\n");
    StartUp("");
    EXPECT_THAT(BytesOf(root / "prefix" / "system.reg"), testing::Not(HasSubstr("winroomedit")));
}

TEST_F(StartUpTest, PutsTheBackupIntoTheApplicationsFolder) {
    EXPECT_EQ(BackupFolder(), "C:\\Kelvash\\backup_trle");
}

} // namespace
} // namespace kelvash::core
