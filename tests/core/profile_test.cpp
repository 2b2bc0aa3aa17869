#include "core/profile.h"

#include <gmock/gmock.h>

#include "core/profile_home.h"
#include "support/core_home.h"
#include "support/format_test.h"
#include "support/record_bytes.h"

namespace kelvash::core {
namespace {

using test::Blanks;
using test::BytesOf;
using test::Literal;
using test::MakeFile;
using test::Put;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

ProfileRecord Other() {
    ProfileRecord record;
    record.ShowScreenShots = false;
    record.PromptCapture = true;
    record.NoAutoCompile = true;
    record.CheckEqualLevels = false;
    record.Reserved1 = 0x1234;
    record.LastArchive = "C:\\My \xC3\xA8.kva";
    record.TrleFolder = "C:\\trle";
    record.ConverterName = "conv.exe";
    record.GameExeName = "game.exe";
    record.DownloadFolder = "d:\\down";
    record.NoDecompress = false;
    record.FullBackup = true;
    record.AutoSave = false;
    record.ArchiveSavegames = false;
    record.SavegamesToKeep = 10;
    record.UrlUpdateReminder = false;
    record.ScreenshotMinutes = 60;
    record.GraphicsProgram = "C:\\paint.exe";
    record.TimerTenths = 7;
    record.VerifyImage = false;
    record.EnableJoystick = false;
    record.JoyButtonA = 0x04030201;
    record.JoyFlagA = true;
    record.JoyButtonB = -2;
    record.JoyFlagB = true;
    record.JoystickId = 2;
    record.Reserved2 = 0x5678;
    return record;
}

TEST_F(Profile, OfAFirstRunHasTheseBytes) {
    EXPECT_EQ(EncodeProfile(ProfileRecord()), DefaultBytes());
    EXPECT_EQ(EncodeProfile(ProfileRecord()).size(), 1588U);
}

TEST_F(Profile, WithEveryFieldSetHasTheseBytes) {
    EXPECT_EQ(EncodeProfile(Other()), OtherBytes());
}

TEST_F(Profile, GivesEveryFieldOfTheseBytes) {
    ProfileRecord record;
    EXPECT_TRUE(DecodeProfile(OtherBytes(), record));
    const ProfileRecord other = Other();
    EXPECT_EQ(record.ShowScreenShots, other.ShowScreenShots);
    EXPECT_EQ(record.PromptCapture, other.PromptCapture);
    EXPECT_EQ(record.NoAutoCompile, other.NoAutoCompile);
    EXPECT_EQ(record.CheckEqualLevels, other.CheckEqualLevels);
    EXPECT_EQ(record.Reserved1, other.Reserved1);
    EXPECT_EQ(record.LastArchive, other.LastArchive);
    EXPECT_EQ(record.TrleFolder, other.TrleFolder);
    EXPECT_EQ(record.ConverterName, other.ConverterName);
    EXPECT_EQ(record.GameExeName, other.GameExeName);
    EXPECT_EQ(record.DownloadFolder, other.DownloadFolder);
    EXPECT_EQ(record.NoDecompress, other.NoDecompress);
    EXPECT_EQ(record.FullBackup, other.FullBackup);
    EXPECT_EQ(record.AutoSave, other.AutoSave);
    EXPECT_EQ(record.ArchiveSavegames, other.ArchiveSavegames);
    EXPECT_EQ(record.SavegamesToKeep, other.SavegamesToKeep);
    EXPECT_EQ(record.UrlUpdateReminder, other.UrlUpdateReminder);
    EXPECT_EQ(record.ScreenshotMinutes, other.ScreenshotMinutes);
    EXPECT_EQ(record.GraphicsProgram, other.GraphicsProgram);
    EXPECT_EQ(record.TimerTenths, other.TimerTenths);
    EXPECT_EQ(record.VerifyImage, other.VerifyImage);
    EXPECT_EQ(record.EnableJoystick, other.EnableJoystick);
    EXPECT_EQ(record.JoyButtonA, other.JoyButtonA);
    EXPECT_EQ(record.JoyFlagA, other.JoyFlagA);
    EXPECT_EQ(record.JoyButtonB, other.JoyButtonB);
    EXPECT_EQ(record.JoyFlagB, other.JoyFlagB);
    EXPECT_EQ(record.JoystickId, other.JoystickId);
    EXPECT_EQ(record.Reserved2, other.Reserved2);
}

TEST_F(Profile, IsMissingAtAFirstRun) {
    profile = Other();
    EXPECT_EQ(LoadProfile(), ProfileState::FirstRun);
    EXPECT_EQ(EncodeProfile(profile), DefaultBytes());
}

TEST_F(Profile, OfTheRightLengthIsReadAsItStands) {
    MakeFile(file, OtherBytes());
    EXPECT_EQ(LoadProfile(), ProfileState::Current);
    EXPECT_EQ(EncodeProfile(profile), OtherBytes());
}

TEST_F(Profile, OfAnotherLengthKeepsItsEarlyFieldsAlone) {
    const std::string expected = OtherBytes().substr(0, 1296) + DefaultBytes().substr(1296);
    const std::string longer = OtherBytes() + std::string(500, 'x');
    for (const std::size_t length : {1587U, 1589U, 1296U, 1300U, 2000U}) {
        MakeFile(file, longer.substr(0, length));
        EXPECT_EQ(LoadProfile(), ProfileState::Upgraded) << length;
        EXPECT_EQ(EncodeProfile(profile), expected) << length;
    }
}

TEST_F(Profile, CutAnywhereLeavesTheDefaultsBehind) {
    const std::string whole = OtherBytes();
    for (std::size_t length = 0; length < 1296; ++length) {
        ProfileRecord record;
        EXPECT_FALSE(DecodeProfile(std::string_view(whole).substr(0, length), record));
        ASSERT_TRUE(record.AutoSave) << length;
        ASSERT_EQ(record.FullBackup, length >= 1294) << length;
        ASSERT_EQ(record.TrleFolder, length < 522 ? "" : "C:\\trle") << length;
        ASSERT_EQ(record.ConverterName, length < 778 ? "tom2pc.exe" : "conv.exe") << length;
        ASSERT_EQ(record.SavegamesToKeep, 5) << length;
    }
}

TEST(ProfileFormat, WithstandsCuts) {
    test::ExpectFormat<ProfileRecord>({.bytes = OtherBytes(),
                                       .decode = [](std::string_view bytes) -> std::optional<ProfileRecord> {
                                           ProfileRecord record;
                                           DecodeProfile(bytes, record);
                                           return record;
                                       },
                                       .encode = EncodeProfile,
                                       .takes_cut = [](std::size_t) { return true; }});
}

// It marks a folder as the program's own.
TEST_F(Profile, WithoutAByteIsThatOfAFirstRun) {
    MakeFile(file, "");
    EXPECT_EQ(LoadProfile(), ProfileState::FirstRun);
    EXPECT_EQ(EncodeProfile(profile), DefaultBytes());
    EXPECT_TRUE(WriteProfile());
    EXPECT_EQ(BytesOf(file), DefaultBytes());
}

TEST_F(Profile, ThatHasBecomeEmptyGetsEverythingAgain) {
    MakeFile(file, OtherBytes());
    ASSERT_EQ(LoadProfile(), ProfileState::Current);
    MakeFile(file, "");
    profile = Other();
    profile.SavegamesToKeep = 12;
    ProfileRecord expected = Other();
    expected.SavegamesToKeep = 12;
    EXPECT_TRUE(WriteProfile());
    EXPECT_EQ(BytesOf(file), EncodeProfile(expected));
}

TEST_F(Profile, WithAFolderInItsPlaceIsUnreadable) {
    fs::create_directory(file);
    EXPECT_EQ(LoadProfile(), ProfileState::Unreadable);
    EXPECT_TRUE(ProfileStands()) << "there is nothing to save";
    EXPECT_TRUE(fs::is_directory(file));
}

// --- what another program has written since ---

TEST_F(Profile, KeepsWhatAnotherProgramHasChanged) {
    MakeFile(file, DefaultBytes());
    ASSERT_EQ(LoadProfile(), ProfileState::Current);
    MakeFile(file, OtherBytes());
    profile.SavegamesToKeep = 12;
    EXPECT_TRUE(WriteProfile());
    ProfileRecord expected = Other();
    expected.SavegamesToKeep = 12;
    EXPECT_EQ(BytesOf(file), EncodeProfile(expected));
    EXPECT_EQ(profile.TrleFolder, "C:\\trle") << "the run goes on with what the file holds";
}

TEST_F(Profile, WithoutAChangeOfItsOwnLeavesANewerFileAlone) {
    MakeFile(file, DefaultBytes());
    ASSERT_EQ(LoadProfile(), ProfileState::Current);
    MakeFile(file, OtherBytes());
    EXPECT_TRUE(WriteProfile());
    EXPECT_EQ(BytesOf(file), OtherBytes());
}

TEST_F(Profile, OfTwoFirstRunsKeepsBoth) {
    ASSERT_EQ(LoadProfile(), ProfileState::FirstRun);
    ProfileRecord first;
    first.TrleFolder = "C:\\trle";
    MakeFile(file, EncodeProfile(first));
    profile.DownloadFolder = "C:\\zips";
    EXPECT_TRUE(WriteProfile());
    first.DownloadFolder = "C:\\zips";
    EXPECT_EQ(BytesOf(file), EncodeProfile(first));
}

TEST_F(Profile, IsSavedWhole) {
    profile = Other();
    MakeFile(file, std::string(3000, 'x'));
    EXPECT_TRUE(WriteProfile());
    EXPECT_EQ(BytesOf(file), OtherBytes()) << "no tail of the old file";
}

TEST_F(Profile, ThatIsWriteProtectedIsReplaced) {
    MakeFile(file, "old");
    fs::permissions(file, fs::perms::owner_read);
    const test::OrdinaryUser ordinary;
    EXPECT_TRUE(WriteProfile()) << "the old file goes before the new one is made";
    EXPECT_EQ(BytesOf(file), DefaultBytes());
}

} // namespace
} // namespace kelvash::core
