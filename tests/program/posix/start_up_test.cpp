// What the start enters into the desktop, and a Wine prefix.
#include "program/start_up.h"

#include <gmock/gmock.h>

#include "foundation/registration.h"
#include "program/end.h"
#include "program/start_up_home.h"
#include "swap/backup.h"

namespace kelvash::program {
namespace {

using test::BytesOf;
using test::Exists;
using test::kUpgrade;
using test::MakeFile;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

using StartUpTest = test::StartUpHome;

TEST_F(StartUpTest, EntersTheDesktopAtAFirstRun) {
    WillMakeAFirstArchive();
    StartUp("");
    EXPECT_TRUE(Exists(root / "data" / "applications" / "Kelvash 1.4.desktop"));
    EXPECT_TRUE(Exists(root / "data" / "applications" / "kelvash-kva.desktop"));
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

TEST_F(StartUpTest, AsksForAFullRestoreAfterAnUpgrade) {
    LiveIn();
    MakeFile(home / "Kelvash.prf", core::EncodeProfile(record).substr(0, 1587));
    user.WillAnswer(kUpgrade, "no");
    StartUp("");
    EXPECT_THAT(user.Asked(), ElementsAre(kUpgrade));
    EXPECT_THAT(user.Shown(), testing::Not(Contains("Restore finished")));
    EXPECT_TRUE(core::session.UpgradeWarning);
    EXPECT_TRUE(core::session.RunTestMovie);
    EXPECT_TRUE(Exists(root / "data" / "applications" / "Kelvash 1.4.desktop"));
    EXPECT_FALSE(Exists(root / "data" / "applications" / "kelvash-kva.desktop"));
    EXPECT_TRUE(core::ArchiveIsOpen());
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
    user.WillFill<trle::TrleFolderChoice>([](trle::TrleFolderChoice&) { return true; }); // as it stands
    StartUp("");
    EXPECT_EQ(core::profile.TrleFolder, "C:\\trle");
    EXPECT_TRUE(core::ArchiveIsOpen());
}

TEST_F(StartUpTest, RegistersWhereTheProgramsAre) {
    LiveIn();
    test::SetEnvironment("WINEPREFIX", (root / "prefix").string());
    MakeFile(root / "prefix" / "system.reg", "WINE REGISTRY Version 2\n");
    StartUp("");
    const std::string key = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\";
    EXPECT_THAT(ReadRegistryValue(key + "Kelvash.exe"),
                AllOf(StartsWith("Z:\\"), EndsWith("\\program_tests")));
    EXPECT_EQ(ReadRegistryValue(key + "winroomedit.exe"), "C:\\trle\\winroomedit.exe");
    EXPECT_THAT(BytesOf(root / "prefix" / "system.reg"),
                AllOf(HasSubstr("@=\"C:\\\\trle\\\\winroomedit.exe\"\n\"Path\"=\"C:\\\\trle\"\n"),
                      HasSubstr("\\\\program_tests\"\n\"Path\"=\"Z:\\\\")));
}

TEST_F(StartUpTest, DoesNotRegisterARoomEditorThatIsNotThere) {
    LiveIn();
    fs::remove(trle / "winroomedit.exe");
    test::SetEnvironment("WINEPREFIX", (root / "prefix").string());
    MakeFile(root / "prefix" / "system.reg", "WINE REGISTRY Version 2\n");
    StartUp("");
    EXPECT_THAT(BytesOf(root / "prefix" / "system.reg"), testing::Not(HasSubstr("winroomedit")));
}

} // namespace
} // namespace kelvash::program
