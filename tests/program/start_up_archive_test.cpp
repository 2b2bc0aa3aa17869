// The Archive that the start opens: the last one, a first one, that of the command line.
#include <gmock/gmock.h>

#include "foundation/native_text.h"
#include "foundation/registration.h"
#include "program/end.h"
#include "program/start_up.h"
#include "program/start_up_home.h"

namespace kelvash::program {
namespace {

using test::BytesOf;
using test::kDifferent;
using test::kLoad;
using test::kNewFolder;
using test::kUpgrade;
using test::MakeFile;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace fs = std::filesystem;

using StartUpArchive = test::StartUpHome;

// --- the last Archive ---

TEST_F(StartUpArchive, OpensTheLastArchiveWithoutAQuestion) {
    LiveIn();
    StartUp("");
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_TRUE(core::ArchiveIsOpen());
    EXPECT_EQ(core::archive.Table.Size(), 2);
    EXPECT_FALSE(core::session.LevelZeroCreated);
    EXPECT_FALSE(core::archive.ArchiveLoadRefused);
}

TEST_F(StartUpArchive, TellsAMissingLastArchiveAndEndsOnANo) {
    record.LastArchive = "C:\\Kelvash\\gone.kva";
    LiveIn();
    user.WillAnswer(kDifferent, "no");
    StartUp("");
    EXPECT_THAT(user.Told(), ElementsAre("critical: Last archive not found: C:\\Kelvash\\gone.kva"));
    EXPECT_EQ(core::profile.LastArchive, "");
    ExpectNoArchive();
}

TEST_F(StartUpArchive, TakesADifferentArchive) {
    user.MayBeTold("Last archive not found: C:\\Kelvash\\gone.kva");
    record.LastArchive = "C:\\Kelvash\\gone.kva";
    LiveIn();
    user.WillAnswer(kDifferent, "yes");
    user.WillAnswer(kLoad, "C:\\Kelvash\\last.kva");
    StartUp("");
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\last.kva");
    EXPECT_TRUE(core::ArchiveIsOpen());
    EXPECT_THAT(user.Asked(), ElementsAre(kDifferent, kLoad)) << "no first execution then";
}

TEST_F(StartUpArchive, EndsWhenTheDifferentArchiveIsCancelled) {
    user.MayBeTold("Last archive not found: C:\\Kelvash\\gone.kva");
    record.LastArchive = "C:\\Kelvash\\gone.kva";
    LiveIn();
    user.WillAnswer(kDifferent, "yes");
    user.WillAnswer(kLoad, "cancel");
    StartUp("");
    ExpectNoArchive();
    EXPECT_EQ(core::profile.LastArchive, "");
}

TEST_F(StartUpArchive, KeepsARefusedArchiveForTheNextStart) {
    LiveIn("X:\\Gone");
    user.WillAnswer("Select folder: Gone", "cancel");
    user.WillAnswer(kDifferent, "no");
    StartUp("");
    EXPECT_THAT(user.Told(), ElementsAre(StartsWith("exclamation: Warning: not found main folder")));
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\last.kva");
    ExpectNoArchive();
}

TEST_F(StartUpArchive, TakesADifferentArchiveForARefusedOne) {
    user.MayBeTold("not found main folder of current archive");
    LiveIn("X:\\Gone");
    MakeArchive("other.kva", "C:\\Levels");
    user.WillAnswer("Select folder: Gone", "cancel");
    user.WillAnswer(kDifferent, "yes");
    user.WillAnswer(kLoad, "C:\\Kelvash\\other.kva");
    StartUp("");
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\other.kva");
    EXPECT_FALSE(core::archive.ArchiveLoadRefused);
    EXPECT_TRUE(core::ArchiveIsOpen());
}

TEST_F(StartUpArchive, RefusesAnArchiveWhosePathTheProfileCannotHold) {
    LiveIn();
    const std::string path = "C:\\\xCE\xBB\\last.kva";
    fs::create_directories(drive / NativeFromText("\xCE\xBB"));
    fs::copy(home / "last.kva", drive / NativeFromText("\xCE\xBB/last.kva"));
    user.WillAnswer(kDifferent, "no");
    StartUp("\"" + path + "\"");
    EXPECT_THAT(user.Told(), ElementsAre(StartsWith("critical: This path has characters that the files of "
                                                    "Kelvash can not hold")));
    ExpectNoArchive();
}

// --- no last Archive ---

TEST_F(StartUpArchive, LoadsAFirstArchive) {
    record.LastArchive = "";
    LiveIn();
    WillChooseToMakeOne(false);
    user.WillAnswer(kLoad, "C:\\Kelvash\\last.kva");
    StartUp("");
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\last.kva");
    EXPECT_TRUE(core::ArchiveIsOpen());
}

TEST_F(StartUpArchive, LoadsAFirstArchiveAlsoWhenTheFormIsClosed) {
    record.LastArchive = "";
    LiveIn();
    user.WillGiveUp<FirstArchiveChoice>();
    user.WillAnswer(kLoad, "C:\\Kelvash\\last.kva");
    StartUp("");
    EXPECT_TRUE(core::ArchiveIsOpen());
}

TEST_F(StartUpArchive, MakesANewArchiveWhenNoneIsLoaded) {
    record.LastArchive = "";
    LiveIn();
    WillChooseToMakeOne(false);
    user.WillAnswer(kLoad, "cancel");
    user.WillAnswer(kNewFolder, "C:\\Levels");
    StartUp("");
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\LevelArchive.kva");
    EXPECT_EQ(core::archive.Table.Size(), 1);
}

TEST_F(StartUpArchive, GoesOnWithoutAnArchiveWhenTheNewOneIsCancelled) {
    record.LastArchive = "";
    LiveIn();
    MakeFile(home / "Kelvash.prf", core::EncodeProfile(record).substr(0, 1587));
    test::SetEnvironment("WINEPREFIX", (root / "prefix").string());
    MakeFile(root / "prefix" / "system.reg", "WINE REGISTRY Version 2\n");
    WillChooseToMakeOne(true);
    user.WillAnswer(kNewFolder, "cancel");
    user.WillAnswer(kUpgrade, "no");
    StartUp("");
    ExpectNoArchive();
    EXPECT_EQ(core::profile.LastArchive, "");
    EXPECT_EQ(ReadRegistryValue("SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\winroomedit.exe"),
              "C:\\trle\\winroomedit.exe");
}

TEST_F(StartUpArchive, MakesNoNewOneInThePlaceOfAFirstOneWhoseFolderIsGivenUp) {
    user.MayBeTold("not found main folder of current archive");
    record.LastArchive = "";
    LiveIn("X:\\Gone");
    WillChooseToMakeOne(false);
    user.WillAnswer(kLoad, "C:\\Kelvash\\last.kva");
    user.WillAnswer("Select folder: Gone", "cancel");
    StartUp("");
    EXPECT_THAT(user.Asked(), ElementsAre("Dialog_NewArc", kLoad, "Select folder: Gone"));
    ExpectNoArchive();
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\last.kva") << "it is tried again at the next start";
}

TEST_F(StartUpArchive, CountsAFreshLevelZeroIntoTheLastArchive) {
    LiveIn();
    fs::remove_all(home / "LEVEL_0000");
    StartUp("");
    EXPECT_TRUE(core::session.LevelZeroCreated);
    EXPECT_EQ(core::archive.Table[0].FilesSize, 26) << "'original manual/manual.pdf'";
    EXPECT_EQ(core::archive.Table[0].SavesSize, 17) << "'original load.bmp'";
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
    EXPECT_EQ(ParseCommandLine("\"C:\\mytrle\"").TrleSource, "");
    EXPECT_EQ(ParseCommandLine("\"/nowhere/of/mine/trle\"").TrleSource, "/nowhere/of/mine/trle");
    EXPECT_EQ(ParseCommandLine("\"/nowhere/of/mytrle\"").TrleSource, "");
    const CommandLine both = ParseCommandLine("x \"C:\\trle\" y \"C:\\a.kva\"");
    EXPECT_EQ(both.Archive, "C:\\a.kva");
    EXPECT_EQ(both.TrleSource, "C:\\trle");
    EXPECT_EQ(ParseCommandLine("\"C:\\a.kva\" \"\" \"C:\\b.kva\"").Archive, "C:\\a.kva")
        << "an empty token ends";
}

TEST_F(StartUpArchive, OpensTheArchiveOfTheCommandLineNowAndLater) {
    LiveIn();
    MakeArchive("other.kva", "C:\\Levels");
    StartUp("\"C:\\Kelvash\\other.kva\"");
    EXPECT_TRUE(core::ArchiveIsOpen());
    EXPECT_TRUE(SaveProfile());
    EXPECT_THAT(BytesOf(home / "Kelvash.prf").substr(10), StartsWith("C:\\Kelvash\\other.kva   "));
}

TEST_F(StartUpArchive, TellsAFailedInstallationFromTheCommandLine) {
    LiveIn();
    StartUp("\"C:\\Kelvash\\trle\"");
    EXPECT_THAT(user.Told(), Contains("critical: Failed trle setup from folder"));
    EXPECT_TRUE(core::archive.ArchiveLoadRefused);
    ExpectNoArchive();
}

// --- the Archive that another start wishes ---

TEST_F(StartUpArchive, WishedOneWaitsForTheOpenOneToBeSaved) {
    LiveIn();
    MakeArchive("other.kva", "C:\\Levels");
    StartUp("");
    core::archive.ArchiveChanged = true;
    fs::create_directory(home / "last.kva.new");
    OpenWishedArchive((home / "other.kva").string());
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while saving archive: C:\\Kelvash\\last.kva"));
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\last.kva");
    EXPECT_TRUE(core::archive.ArchiveChanged);
}

} // namespace
} // namespace kelvash::program
