#include "audio/wave_header.h"

#include <gtest/gtest.h>

#include <array>

#include "support/foundation_home.h"
#include "support/sound_bytes.h"

namespace kelvash::audio {
namespace {

using test::MakeFile;
using test::WaveBytes;

class WaveHeaders : public test::FoundationHome {
  protected:
    std::int16_t Step(const std::string& bytes, AudioKind target) {
        MakeFile(home / "a.wav", bytes);
        return AnalyseWavFormat("C:\\Kelvash\\a.wav", target, description, kind);
    }
    bool IsNoTrack(const std::string& name, const std::string& bytes = {}) {
        MakeFile(home / name, bytes);
        return IsNotAudioTrack("C:\\Kelvash\\" + name, warned);
    }

    std::string description;
    AudioKind kind = AudioKind::None;
    bool warned = true;
};

const std::string kStandardWave = WaveBytes(1, 2, 44100, 16);
const std::string kTrackWave = WaveBytes(2, 2, 44100, 4);
const std::string kSampleWave = WaveBytes(1, 1, 22050, 16);
const std::string kOtherWave = WaveBytes(1, 1, 11025, 8);

TEST_F(WaveHeaders, FieldsStandWhereTheFormatHasThem) {
    const WavHeader header = DecodeWavHeader(std::string(
        "RIFF\x04\x03\x02\x01WAVEfmt \x12\x00\x00\x00\x01\x00\x02\x00\x44\xAC\x00\x00\x10\xB1\x02\x00"
        "\x04\x00\x10\x00",
        36));
    EXPECT_EQ(header.RiffTag, "RIFF");
    EXPECT_EQ(header.RiffLength, 0x01020304U);
    EXPECT_EQ(header.WaveFmtTag, "WAVEfmt");
    EXPECT_EQ(header.FmtLength, 18U);
    EXPECT_EQ(header.FormatTag, 1);
    EXPECT_EQ(header.Channels, 2);
    EXPECT_EQ(header.SampleRate, 44100U);
    EXPECT_EQ(header.ByteRate, 176400U);
    EXPECT_EQ(header.BlockAlign, 4);
    EXPECT_EQ(header.BitsPerSample, 16);
}

TEST_F(WaveHeaders, WhatIsMissingIsZero) {
    WavHeader header;
    EXPECT_FALSE(ReadWavHeader("C:\\Kelvash\\none.wav", header));
    EXPECT_EQ(header.SampleRate, 0U);
    EXPECT_FALSE(ReadWavHeader("C:\\Kelvash", header));
    for (std::size_t size = 0; size < 36; ++size) {
        MakeFile(home / "short.wav", kStandardWave.substr(0, size));
        // The upper byte of the bits is 0 anyway.
        EXPECT_EQ(ReadWavHeader("C:\\Kelvash\\short.wav", header), size == 35) << size;
        EXPECT_EQ(header.Channels, size > 22 ? 2 : 0) << size;
        EXPECT_EQ(header.SampleRate, size > 25 ? 44100U : size > 24 ? 0x44U : 0U) << size;
    }
}

TEST_F(WaveHeaders, OnlyPcmOfTheFourValuesIsStandard) {
    WavHeader header;
    MakeFile(home / "a.wav", "junk" + kStandardWave.substr(4));
    EXPECT_TRUE(ReadWavHeader("C:\\Kelvash\\a.wav", header)); // tags aren't looked at
    for (const std::string& bytes :
         {WaveBytes(3, 2, 44100, 16), WaveBytes(1, 1, 44100, 16), WaveBytes(1, 2, 44101, 16),
          WaveBytes(1, 2, 44100, 8), WaveBytes(0xFFFE, 2, 44100, 16)}) {
        MakeFile(home / "a.wav", bytes);
        EXPECT_FALSE(ReadWavHeader("C:\\Kelvash\\a.wav", header));
    }
}

TEST_F(WaveHeaders, EveryCellOfTheStepTable) {
    const std::array<const std::string*, 4> waves = {&kStandardWave, &kTrackWave, &kSampleWave, &kOtherWave};
    constexpr std::array<std::array<int, 4>, 4> kSteps = {
        {{0, 2, 4, 5}, {1, 0, -1, 5}, {3, -1, 0, 5}, {3, -1, 4, 5}}};
    constexpr std::array<AudioKind, 4> kTargets = {AudioKind::Standard, AudioKind::TrleAudio,
                                                   AudioKind::TrleSamples, AudioKind::Mp3};
    for (std::size_t wave = 0; wave < waves.size(); ++wave)
        for (std::size_t target = 0; target < kTargets.size(); ++target) {
            EXPECT_EQ(Step(*waves[wave], kTargets[target]), kSteps[wave][target]) << wave << target;
            EXPECT_EQ(static_cast<std::size_t>(kind), wave + 1);
        }
}

TEST_F(WaveHeaders, UnknownWavesLeadNowhere) {
    for (const AudioKind target :
         {AudioKind::Standard, AudioKind::TrleAudio, AudioKind::TrleSamples, AudioKind::Mp3}) {
        EXPECT_EQ(Step(WaveBytes(3, 2, 44100, 32), target), -1);
        EXPECT_EQ(kind, AudioKind::Unknown);
        EXPECT_EQ(description, "UNKNOWN 44100Hz stereo 32 bits");
    }
    EXPECT_EQ(Step("", AudioKind::Mp3), -1);
    EXPECT_EQ(description, "UNKNOWN 0Hz   0 bits");
}

TEST_F(WaveHeaders, DescriptionsTellTypeRateChannelsAndBits) {
    Step(kStandardWave, AudioKind::Mp3);
    EXPECT_EQ(description, "PCM 44100Hz stereo 16 bits");
    Step(kTrackWave, AudioKind::Mp3);
    EXPECT_EQ(description, "ADPCM 44100Hz stereo 4 bits");
    Step(kOtherWave, AudioKind::Mp3);
    EXPECT_EQ(description, "PCM 11025Hz mono 8 bits");
    Step(WaveBytes(1, 6, 48000, 24), AudioKind::Mp3);
    EXPECT_EQ(description, "PCM 48000Hz 6 channels 24 bits");
}

TEST_F(WaveHeaders, TheTagOfTheThreeKindsIsNotLookedAt) {
    EXPECT_EQ(Step(WaveBytes(0xFFFE, 2, 44100, 16), AudioKind::TrleAudio), 2);
    EXPECT_EQ(kind, AudioKind::Standard);
    EXPECT_EQ(description, "UNKNOWN 44100Hz stereo 16 bits");
    EXPECT_EQ(Step(WaveBytes(1, 2, 44100, 8), AudioKind::TrleAudio), -1);
    EXPECT_EQ(kind, AudioKind::OtherPcm);
}

TEST_F(WaveHeaders, StepsHaveNames) {
    EXPECT_EQ(StepName(0), "decoding mp3");
    EXPECT_EQ(StepName(1), "converting wav to 44100 stereo 16 bits");
    EXPECT_EQ(StepName(2), "converting wav to 44100 stereo 4 bits");
    EXPECT_EQ(StepName(3), "converting wav to 44100 stereo 16 bits");
    EXPECT_EQ(StepName(4), "converting wav to 22050 mono 16 bits");
    EXPECT_EQ(StepName(5), "encoding wav in mp3 format");
}

TEST_F(WaveHeaders, NumbersAreTracksWhateverTheirExtension) {
    EXPECT_FALSE(IsNoTrack("033.ogg"));
    EXPECT_FALSE(IsNoTrack("100.mp3"));
    EXPECT_TRUE(IsNoTrack("100a.mp3"));
    EXPECT_FALSE(IsNotAudioTrack("C:\\Kelvash\\.mp3", warned)); // an empty name
    EXPECT_FALSE(warned);
}

TEST_F(WaveHeaders, WavesAreTracksByTheirBits) {
    EXPECT_TRUE(IsNoTrack("033.wav", kStandardWave));
    EXPECT_TRUE(IsNoTrack("034.wav"));
    EXPECT_FALSE(IsNoTrack("035.WAV", kTrackWave));
    EXPECT_FALSE(warned);
}

TEST_F(WaveHeaders, ATrackWithoutANumberIsTold) {
    EXPECT_FALSE(IsNoTrack("005-secret.wav", kTrackWave));
    EXPECT_TRUE(warned);
    EXPECT_EQ(
        user.Told(),
        std::vector<std::string>{
            "critical: Warning: wav file '005-secret.wav' has internal format specific for trle [audio] "
            "folder (ADPMC 4bit), but its name is not numeric (trace number). \r\nYou should contact "
            "level's author to signal this bug.\r\nThis wav file will be ignored"});
}

} // namespace
} // namespace kelvash::audio
