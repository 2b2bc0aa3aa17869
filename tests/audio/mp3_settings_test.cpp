#include "audio/mp3_settings.h"

#include <gtest/gtest.h>

#include "foundation/state.h"

namespace kelvash::audio {
namespace {

TEST(Mp3SettingsTest, ARunBeginsWithTheSmallestSound) {
    ResetProgramState();
    EXPECT_EQ(mp3_settings.Mp3Bitrate, 24);
    EXPECT_EQ(mp3_settings.Mp3Channels, 1);
    EXPECT_EQ(mp3_settings.Mp3Frequency, 0);
}

TEST(Mp3SettingsTest, TheEstimateTakes128For36Percent) {
    EXPECT_EQ(Mp3EstimateText(128), "36.00 %");
    EXPECT_EQ(Mp3EstimateText(112), "31.50 %");
    EXPECT_EQ(Mp3EstimateText(40), "11.25 %");
    EXPECT_EQ(Mp3EstimateText(24), "6.75 %");
    EXPECT_EQ(Mp3EstimateText(8), "2.25 %");
}

TEST(Mp3SettingsTest, ChoicesAreShownAsTheyAre) {
    EXPECT_EQ(FrequencyText(0), "Automatic");
    EXPECT_EQ(FrequencyText(22050), "22050");
    EXPECT_EQ(ChannelsText(1), "mono");
    EXPECT_EQ(ChannelsText(2), "stereo");
}

TEST(Mp3SettingsTest, TargetsHaveTexts) {
    EXPECT_EQ(TargetText(AudioKind::Standard, {}), "44100 stereo 16 bits");
    EXPECT_EQ(TargetText(AudioKind::TrleAudio, {}), "44100 stereo 4 bits");
    EXPECT_EQ(TargetText(AudioKind::TrleSamples, {}), "22050 mono 16 bits");
    EXPECT_EQ(TargetText(AudioKind::OtherPcm, {}), "");
    EXPECT_EQ(TargetText(AudioKind::Mp3, {}), "Mp3 24 Kbps mono");
    EXPECT_EQ(TargetText(AudioKind::Mp3, {64, 2, 22050}), "Mp3  22050 64 Kbps stereo");
}

} // namespace
} // namespace kelvash::audio
