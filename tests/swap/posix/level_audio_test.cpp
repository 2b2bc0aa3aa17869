#include "swap/level_audio.h"

#include <gmock/gmock.h>

#include "audio/wave_chunks.h"
#include "core/archive.h"
#include "support/audio_tools.h"
#include "support/sound_bytes.h"
#include "support/swap_home.h"
#include "swap/compression.h"
#include "swap/install.h"

namespace kelvash::swap {
namespace {

using audio::AudioKind;
using test::BytesOf;
using test::Exists;
using test::MakeFile;
using test::TrackBytes;
using test::WaveBytes;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class LevelAudio : public test::SwapHome {
  protected:
    LevelAudio() {
        test::PutAudioTools(home);
        MakeFile(drive / "in/005.wav", TrackBytes(40)); // 1.8 seconds
        MakeFile(drive / "in/006.wav", WaveBytes(1, 2, 44100, 16, 44100));
        MakeFile(drive / "in/city.tr4", "CITY");
    }
    static constexpr const char* kIn = "C:\\in";
};

TEST_F(LevelAudio, TracksGoToMp3AndBack) {
    EXPECT_EQ(ChangeTracks(kIn, kIn, AudioKind::Mp3).Result, Tracks::Ready);
    EXPECT_THAT(NamesIn(drive / "in"), ElementsAre("005.mp3", "006.mp3", "city.tr4"));
    EXPECT_EQ(ChangeTracks(kIn, kIn, AudioKind::TrleAudio).Result, Tracks::Ready);
    EXPECT_THAT(NamesIn(drive / "in"), ElementsAre("005.wav", "006.wav", "city.tr4"));
    EXPECT_TRUE(audio::PlaysInGame("C:\\in\\005.wav"));
    EXPECT_NEAR(audio::WaveSeconds("C:\\in\\005.wav"), 40 * 2036 / 44100.0, 0.2);
    EXPECT_TRUE(audio::PlaysInGame("C:\\in\\006.wav"));
}

TEST_F(LevelAudio, NamesThatClashStayAsTheyAre) {
    MakeFile(drive / "in/005.mp3", "another");
    MakeFile(drive / "in/006.mp3.zl", "packed");
    EXPECT_EQ(ChangeTracks(kIn, kIn, AudioKind::Mp3).Result, Tracks::Ready);
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: These audio files stay as they are, because the "
                                         "converted one would take the place of another file:\r\n005.wav\r\n"
                                         "006.wav"));
    EXPECT_EQ(BytesOf(drive / "in/005.mp3"), "another");
    EXPECT_EQ(BytesOf(drive / "in/005.wav"), TrackBytes(40));
}

TEST_F(LevelAudio, ATrackWhoseNewFormIsShorterStays) {
    test::PutScript(home, "lame.exe", "/usr/bin/lame -b 64 in.wav out.mp3 && truncate -s 3000 out.mp3");
    const TracksOutcome outcome = ChangeTracks(kIn, kIn, AudioKind::Mp3);
    EXPECT_EQ(outcome.Result, Tracks::Failed);
    EXPECT_EQ(outcome.Error, "The new form of a track isn't whole, so the track stays as it is: 005.wav");
    EXPECT_THAT(NamesIn(drive / "in"), ElementsAre("005.wav", "006.wav", "city.tr4"));
}

TEST_F(LevelAudio, AFailureLeavesEveryTrackInItsOldForm) {
    test::PutScript(home, "lame.exe",
                    "if [ -e ../once ]; then exit 1; fi; touch ../once; exec /usr/bin/lame \"$@\"");
    user.WillAnswer("Would you like continue audio conversion?", "yes");
    EXPECT_EQ(ChangeTracks(kIn, kIn, AudioKind::Mp3).Result, Tracks::Failed);
    EXPECT_THAT(NamesIn(drive / "in"), ElementsAre("005.wav", "006.wav", "city.tr4"));
}

TEST_F(LevelAudio, ALevelIsStoredWithMp3TracksAndPlaysWithFourBits) {
    AddLevel(1, "Song", {});
    core::archive.Header.EncodeWavInMp3 = true;
    ASSERT_TRUE(CompressLevelFiles(kIn, core::PlaceAt(1)));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("005.mp3", "006.mp3", "city.tr4"));
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_TRUE(audio::PlaysInGame("C:\\trle\\audio\\005.wav"));
    EXPECT_TRUE(audio::PlaysInGame("C:\\trle\\audio\\006.wav"));
    EXPECT_FALSE(Exists(trle / "audio/005.mp3"));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("005.mp3", "006.mp3", "city.tr4"));
}

TEST_F(LevelAudio, PackedMp3TracksAreUnpackedAndDecoded) {
    AddLevel(1, "Song", {});
    core::archive.Header.EncodeWavInMp3 = true;
    core::archive.Header.CompressFiles = true;
    ASSERT_TRUE(CompressLevelFiles(kIn, core::PlaceAt(1)));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("005.mp3.zl", "006.mp3.zl", "city.tr4.zl"));
    std::string temp;
    ASSERT_TRUE(DecompressLevelFiles(core::FilesFolder(core::PlaceAt(1).Folder), temp, true));
    EXPECT_THAT(NamesIn(home / "_temp_Dec"), ElementsAre("005.wav", "006.wav", "city.tr4"));
}

TEST_F(LevelAudio, OldLevelsFollowTheArchivesSettings) {
    AddLevel(1, "Song", {{"005.wav", TrackBytes(40)}, {"city.tr4", "CITY"}});
    user.WillAnswer("Do you want change compress status of old level files?", "yes");
    EXPECT_TRUE(ApplyCompressionSettings({false, true}));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("005.mp3", "city.tr4"));
    user.WillAnswer("Do you want change compress status of old level files?", "yes");
    EXPECT_TRUE(ApplyCompressionSettings({false, false}));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("005.wav", "city.tr4"));
    EXPECT_TRUE(audio::PlaysInGame("C:\\Levels\\LEVEL_0001\\FILES\\005.wav"));
    EXPECT_FALSE(Exists(home / "_temp_Compr"));
    EXPECT_THAT(user.Told(), Contains(HasSubstr("New size [files] folders = ")));
}

TEST_F(LevelAudio, AStopOfTheChangeLeavesTheTracksAndTheRestGoesOnLater) {
    AddLevel(1, "Song", {{"005.wav", TrackBytes(40)}, {"city.tr4", "CITY"}});
    test::PutScript(home, "lame.exe", "touch started; exec sleep 60");
    user.when_pumped = [this] {
        user.stop_if_offered = user.stop_if_offered || Exists(home / "_temp_mp3_1" / "started");
    };
    user.WillAnswer("Do you want change compress status of old level files?", "yes");
    EXPECT_FALSE(ApplyCompressionSettings({false, true}));
    EXPECT_THAT(user.Told(), Contains("plain: Break user: conversion cancelled"));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("005.wav", "city.tr4"));
    EXPECT_FALSE(Exists(home / "_temp_Compr"));
    user.when_pumped = {};
    user.stop_if_offered = false;
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_TRUE(Exists(trle / "audio/005.wav"));
}

TEST_F(LevelAudio, ATrackThatCannotBeDecodedKeepsTheLevelFromPlaying) {
    AddLevel(1, "Song", {{"005.mp3", "no mp3"}, {"city.tr4", "CITY"}});
    user.WillAnswer("Would you like continue audio conversion?", "no");
    std::string temp;
    EXPECT_FALSE(DecompressLevelFiles(core::FilesFolder(core::PlaceAt(1).Folder), temp, true));
    ASSERT_EQ(user.Told().size(), 1U);
    EXPECT_THAT(user.Told().front(), HasSubstr("critical: Failed conversion: Error decoding '005.mp3' : "));
    EXPECT_EQ(BytesOf(LevelPath(1) / "FILES/005.mp3"), "no mp3");
    EXPECT_FALSE(Exists(home / "_temp_Dec"));
}

} // namespace
} // namespace kelvash::swap
