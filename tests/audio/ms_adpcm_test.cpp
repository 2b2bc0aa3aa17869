#include "audio/ms_adpcm.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace kelvash::audio {
namespace {

using namespace std::string_literals;
using testing::Each;
using testing::ElementsAre;
using Samples = std::vector<std::int16_t>;

AdpcmFormat Format(std::size_t channels, std::size_t block_bytes) {
    return {channels,
            block_bytes,
            AdpcmFramesIn(block_bytes, channels),
            {kAdpcmCoefficients.begin(), kAdpcmCoefficients.end()}};
}

Samples Decoded(const AdpcmFormat& format, std::string_view block, bool good = true) {
    Samples samples(AdpcmFramesIn(block.size(), format.Channels) * format.Channels, 7);
    EXPECT_EQ(DecodeAdpcmBlock(format, block, samples), good);
    return samples;
}

std::string Encoded(const Samples& samples) {
    return EncodeTrackBlocks(samples);
}

double SignalToNoise(const Samples& samples) {
    const Samples decoded = Decoded(Format(2, kTrackBlockBytes), Encoded(samples));
    double signal = 0, noise = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        signal += std::pow(samples[i], 2);
        noise += std::pow(samples[i] - decoded[i], 2);
    }
    return 10 * std::log10(signal / noise);
}

Samples Frames(double (*left)(double), double (*right)(double)) {
    Samples samples;
    for (std::size_t i = 0; i < kTrackBlockFrames; ++i)
        for (const auto channel : {left, right})
            samples.push_back(static_cast<std::int16_t>(std::lround(channel(static_cast<double>(i)))));
    return samples;
}

TEST(MsAdpcm, ABlockHoldsTwoFramesAndTwoNibblesAByte) {
    EXPECT_EQ(AdpcmFramesIn(2048, 2), 2036U);
    EXPECT_EQ(AdpcmFramesIn(1024, 2), 1012U);
    EXPECT_EQ(AdpcmFramesIn(1024, 1), 2036U);
    EXPECT_EQ(AdpcmFramesIn(14, 2), 2U);
    EXPECT_EQ(AdpcmFramesIn(13, 2), 0U);
    EXPECT_EQ(AdpcmFramesIn(0, 1), 0U);
}

TEST(MsAdpcm, AStereoBlockIsDecodedAsComputedByHand) {
    const std::string block =
        "\x00\x01"         // the sample before; its line on
        "\x10\x00\x20\x00" // steps 16, 32
        "\x64\x00\xC8\x00" // second samples 100, 200
        "\x5A\x00\xB4\x00" // first samples 90, 180
        "\x1F\x84\x70"s;
    EXPECT_THAT(Decoded(Format(2, 17), block), ElementsAre(90, 180, 100, 200, 116, 188, -12, 288, 324, 388));
}

TEST(MsAdpcm, AMonoBlockIsDecodedAsComputedByHand) {
    const std::string block = "\x02\xE8\x03\x00\x00\x05\x00\x79\x00"s; // nothing is predicted, step 1000
    EXPECT_THAT(Decoded(Format(1, 9), block), ElementsAre(5, 0, 7000, -16786, 0, 0));
}

TEST(MsAdpcm, WhatLeavesTheRangeStaysAtItsEnds) {
    const std::string block = "\x00\xE8\x03\x00\x7D\x00\x7D\x77\x88\x88"s; // from 32000 up by 7 steps
    EXPECT_THAT(Decoded(Format(1, 10), block),
                ElementsAre(32000, 32000, 32767, 32767, -13241, -32768, -32768, -32768));
}

TEST(MsAdpcm, ABlockIsDecodedAsFarAsItGoes) {
    const std::string block = "\x00\x01\x10\x00\x20\x00\x64\x00\xC8\x00\x5A\x00\xB4\x00\x1F\x84\x70"s;
    const AdpcmFormat format = Format(2, 17);
    EXPECT_THAT(Decoded(format, block.substr(0, 15)), ElementsAre(90, 180, 100, 200, 116, 188));
    EXPECT_THAT(Decoded(format, block.substr(0, 13), false), ElementsAre());
    Samples one(2);
    EXPECT_TRUE(DecodeAdpcmBlock(format, block, one));
    EXPECT_THAT(one, ElementsAre(90, 180));
}

TEST(MsAdpcm, CoefficientsThatAreNotThereAreRefused) {
    EXPECT_THAT(Decoded(Format(1, 9), "\x07\xE8\x03\x00\x00\x05\x00\x79\x00"s, false), Each(0));
    AdpcmFormat one = Format(1, 9);
    one.Coefficients = {{128, 128}};
    EXPECT_THAT(Decoded(one, "\x00\x10\x00\x64\x00\x32\x00\x10\x00"s), ElementsAre(50, 100, 91, 95, 93, 94));
}

TEST(MsAdpcm, TheHeaderOfATrackIsTheOneThatTheGameSkips) {
    EXPECT_EQ(TrackHeader(5000),
              "RIFF\x52\x18\x00\x00WAVE"
              "fmt \x32\x00\x00\x00\x02\x00\x02\x00\x44\xAC\x00\x00\x47\xAD\x00\x00\x00\x08\x04\x00"
              "\x20\x00\xF4\x07\x07\x00"
              "\x00\x01\x00\x00\x00\x02\x00\xFF\x00\x00\x00\x00\xC0\x00\x40\x00"
              "\xF0\x00\x00\x00\xCC\x01\x30\xFF\x88\x01\x18\xFF"
              "fact\x04\x00\x00\x00\x88\x13\x00\x00"
              "data\x00\x18\x00\x00"s);
}

TEST(MsAdpcm, SilenceIsSilence) {
    const std::string block = Encoded(Samples(kTrackBlockFrames * 2, 0));
    EXPECT_EQ(block.substr(2), "\x10\x00\x10\x00"s + std::string(kTrackBlockBytes - 6, '\0'));
    EXPECT_THAT(Decoded(Format(2, kTrackBlockBytes), block), Each(0));
}

TEST(MsAdpcm, ALineIsEncodedToTheBit) {
    const Samples samples = Frames([](double i) { return 3 * i; }, [](double i) { return -5 * i + 100; });
    const std::string block = Encoded(samples);
    EXPECT_EQ(block, "\x01\x01\x10\x00\x10\x00\x03\x00\x5F\x00\x00\x00\x64\x00"s +
                         std::string(kTrackBlockBytes - 14, '\0'));
    EXPECT_EQ(Decoded(Format(2, kTrackBlockBytes), block), samples);
}

TEST(MsAdpcm, EachChannelHasTheCoefficientsThatSuitIt) {
    const auto sine = [](double i) { return 12'000 * std::sin(i * 0.0627); };
    const auto noise = [](double i) { return 9'000 * std::sin(i * i * 12.9898); };
    EXPECT_GT(SignalToNoise(Frames(sine, sine)), 50);
    EXPECT_GT(SignalToNoise(Frames(noise, noise)), 17);
    const std::string block = Encoded(Frames(sine, noise));
    EXPECT_NE(block[0], block[1]);
}

TEST(MsAdpcm, BlocksDoNotDependOnEachOther) {
    const Samples a = Frames([](double i) { return 9'000 * std::sin(i * 0.05); }, [](double i) { return i; });
    const Samples b = Frames([](double i) { return 5'000 * std::sin(i * i); }, [](double) { return -7.0; });
    Samples three = a;
    three.insert(three.end(), b.begin(), b.end());
    three.insert(three.end(), a.begin(), a.end());
    EXPECT_EQ(Encoded(three), Encoded(a) + Encoded(b) + Encoded(a));
    EXPECT_EQ(Encoded({}), "");
}

TEST(MsAdpcm, TheLoudestIsEncodedWithoutWrapping) {
    const auto square = [](double i) { return std::fmod(i, 100) < 50 ? 32'767.0 : -32'768.0; };
    const Samples samples = Frames(square, square);
    const Samples decoded = Decoded(Format(2, kTrackBlockBytes), Encoded(samples));
    for (std::size_t i = 0; i < samples.size(); ++i)
        if (i % 100 > 60) {
            EXPECT_GT(samples[i] * decoded[i], 0) << i;
        }
    EXPECT_GT(SignalToNoise(samples), 12);
}

} // namespace
} // namespace kelvash::audio
