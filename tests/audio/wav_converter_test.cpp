#include "audio/wav_converter.h"

#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "audio/ms_adpcm.h"
#include "audio/wave_bytes.h"
#include "support/foundation_home.h"

namespace kelvash::audio {
namespace {

using namespace std::string_literals;
using test::Chunk;
using test::LittleEndian;
using test::SampleBytes;
using test::WaveBytes;
using test::WaveFormat;
using testing::Each;
using testing::ElementsAre;
using Samples = std::vector<std::int16_t>;
namespace fs = std::filesystem;

class Converting : public test::FoundationHome {
  protected:
    void Put(const std::string& bytes) const { test::MakeFile(drive / "in.wav", bytes); }
    bool Run(std::int16_t mode) { return WavConverter("C:\\in.wav", "C:\\out.wav", mode, error); }
    std::string Result() const { return test::BytesOf(drive / "out.wav"); }

    // The samples of what a wave becomes; its header is the shortest.
    Samples Converted(const std::string& wave, std::int16_t mode) {
        Put(wave);
        EXPECT_TRUE(Run(mode)) << error;
        EXPECT_EQ(error, "");
        return SamplesOf(Result());
    }
    static Samples SamplesOf(const std::string& wave) {
        Samples samples;
        for (std::size_t i = 44; i + 1 < wave.size(); i += 2)
            samples.push_back(static_cast<std::int16_t>(static_cast<unsigned char>(wave[i]) |
                                                        static_cast<unsigned char>(wave[i + 1]) << 8));
        return samples;
    }
    // Fails with that text, and leaves the target as it was and nothing beside it.
    void ExpectRefused(const std::string& wave, const std::string& why, std::int16_t mode = kToStandard) {
        Put(wave);
        test::MakeFile(drive / "out.wav", "old");
        EXPECT_FALSE(Run(mode)) << why;
        EXPECT_EQ(error, why);
        EXPECT_EQ(Result(), "old");
        EXPECT_FALSE(test::Exists(drive / "out.wav.new"));
    }

    std::string error = "not asked yet";
};

Samples Sine(std::size_t frames, double rate, double frequency = 440, double loudness = 10'000) {
    Samples samples;
    for (std::size_t i = 0; i < frames; ++i)
        samples.push_back(static_cast<std::int16_t>(std::lround(
            loudness * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / rate))));
    return samples;
}

// --- what comes out ---

TEST_F(Converting, APcmWaveHasTheShortestHeader) {
    const Samples samples = {1, 2, -3, -4, 32'767, -32'768};
    Put(WaveBytes({}, SampleBytes(samples)));
    ASSERT_TRUE(Run(kToStandard)) << error;
    EXPECT_EQ(Result(),
              "RIFF\x30\x00\x00\x00WAVE"
              "fmt \x10\x00\x00\x00\x01\x00\x02\x00\x44\xAC\x00\x00\x10\xB1\x02\x00\x04\x00\x10\x00"
              "data\x0C\x00\x00\x00"
              "\x01\x00\x02\x00\xFD\xFF\xFC\xFF\xFF\x7F\x00\x80"s);
}

TEST_F(Converting, ASampleForTheGameIsMonoOfHalfTheRate) {
    Put(WaveBytes({.Channels = 1, .Rate = 22'050}, SampleBytes(Samples{5, 6, 7})));
    ASSERT_TRUE(Run(kTo22050Mono)) << error;
    EXPECT_EQ(Result(),
              "RIFF\x2A\x00\x00\x00WAVE"
              "fmt \x10\x00\x00\x00\x01\x00\x01\x00\x22\x56\x00\x00\x44\xAC\x00\x00\x02\x00\x10\x00"
              "data\x06\x00\x00\x00"
              "\x05\x00\x06\x00\x07\x00"s);
}

TEST_F(Converting, ATrackHasItsHeaderAndWholeBlocks) {
    Samples samples;
    for (const std::int16_t sample : Sine(3000, 44'100))
        samples.insert(samples.end(), {sample, static_cast<std::int16_t>(-sample)});
    Put(WaveBytes({}, SampleBytes(samples)));
    ASSERT_TRUE(Run(kTo4Bits)) << error;
    const std::string track = Result();
    EXPECT_EQ(track.size(), 90U + 2 * 2048);
    EXPECT_EQ(track.substr(0, 90), TrackHeader(3000));
    EXPECT_EQ(track.substr(78, 4), "\xB8\x0B\x00\x00"s);

    const Samples back = Converted(track, kFrom4Bits);
    ASSERT_EQ(back.size(), samples.size()) << "fact gives the length";
    double noise = 0;
    for (std::size_t i = 0; i < back.size(); ++i)
        noise += std::pow(back[i] - samples[i], 2);
    EXPECT_LT(std::sqrt(noise / static_cast<double>(back.size())), 30);
}

TEST_F(Converting, TheLastBlockEndsInSilence) {
    Put(WaveBytes({}, SampleBytes(Samples(2 * 2100, 500))));
    ASSERT_TRUE(Run(kTo4Bits)) << error;
    std::string track = Result();
    track.replace(78, 4, LittleEndian(std::uint32_t{2 * 2036})); // all of it
    const Samples all = Converted(track, kFrom4Bits);
    ASSERT_EQ(all.size(), 2U * 2 * 2036);
    for (std::size_t i = 2 * 2400; i < all.size(); ++i)
        EXPECT_LT(std::abs(all[i]), 60) << i;
}

TEST_F(Converting, MoreBlocksThanOneBatchComeInOrder) {
    constexpr std::size_t kFrames = 300 * 2036 + 17;
    Samples samples;
    for (std::size_t i = 0; i < kFrames; ++i)
        samples.insert(samples.end(), 2, static_cast<std::int16_t>(i / 64));
    Put(WaveBytes({}, SampleBytes(samples)));
    ASSERT_TRUE(Run(kTo4Bits)) << error;
    EXPECT_EQ(Result().size(), 90U + 301 * 2048);
    const Samples back = Converted(Result(), kFrom4Bits);
    ASSERT_EQ(back.size(), samples.size());
    for (std::size_t i = 0; i < back.size(); ++i)
        ASSERT_LT(std::abs(back[i] - samples[i]), 40) << i;
}

// --- what goes in ---

TEST_F(Converting, EveryWidthIsTaken) {
    const auto standard = [this](std::uint16_t tag, std::uint16_t bits, const std::string& data) {
        return Converted(WaveBytes({.Tag = tag, .Bits = bits}, data), kToStandard);
    };
    EXPECT_THAT(standard(1, 8, "\x80\xFF\x00\x81"s), ElementsAre(0, 32'512, -32'768, 256));
    EXPECT_THAT(standard(1, 24, "\x00\x01\x00\x00\xFE\xFF\x00\xFF\x7F\x00\x00\x80"s),
                ElementsAre(1, -2, 32'767, -32'768));
    EXPECT_THAT(standard(1, 32, "\x00\x00\x01\x00\x00\x00\xFE\xFF"s), ElementsAre(1, -2));
    const auto single = [](float value) { return LittleEndian(std::bit_cast<std::uint32_t>(value)); };
    const float nothing = std::numeric_limits<float>::quiet_NaN();
    const float endless = std::numeric_limits<float>::infinity();
    EXPECT_THAT(
        standard(3, 32,
                 single(0.5F) + single(-0.25F) + single(3) + single(-2) + single(nothing) + single(endless)),
        ElementsAre(16'384, -8'192, 32'767, -32'768, 0, 32'767));
}

TEST_F(Converting, AnExtensibleFormatIsTaken) {
    const std::string pcm = "\x01\x00\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71"s;
    WaveFormat format{.Tag = 0xFFFE};
    format.Extra = "\x16\x00\x10\x00\x03\x00\x00\x00"s + pcm;
    EXPECT_THAT(Converted(WaveBytes(format, SampleBytes(Samples{1, 2, 3, 4})), kToStandard),
                ElementsAre(1, 2, 3, 4));
}

TEST_F(Converting, OtherChunksArePassedOver) {
    const std::string data = Chunk("data", SampleBytes(Samples{9, 8}));
    const std::string odd = Chunk("LIST", "INFOISFT\x03\x00\x00\x00me\x00"s);
    EXPECT_THAT(Converted(test::Riff(odd + test::FormatChunk({}) + odd + data + odd), kToStandard),
                ElementsAre(9, 8));
    std::string wrong_length = WaveBytes({}, SampleBytes(Samples{9, 8}));
    wrong_length.replace(4, 4, "\x01\x00\x00\x00"s);
    EXPECT_THAT(Converted(wrong_length, kToStandard), ElementsAre(9, 8));
}

TEST_F(Converting, ALengthThatAPipeCouldNotKnowIsThatOfTheFile) {
    std::string wave = WaveBytes({}, SampleBytes(Samples{9, 8, 7, 6}));
    wave.replace(40, 4, "\xFF\xFF\xFF\xFF"s);
    EXPECT_THAT(Converted(wave, kToStandard), ElementsAre(9, 8, 7, 6));
}

TEST_F(Converting, OneChannelBecomesTwoAlike) {
    EXPECT_THAT(Converted(WaveBytes({.Channels = 1}, SampleBytes(Samples{1, -2, 3})), kToStandard),
                ElementsAre(1, 1, -2, -2, 3, 3));
}

TEST_F(Converting, TwoChannelsBecomeTheirMean) {
    const Samples mono = Converted(
        WaveBytes({.Rate = 22'050},
                  SampleBytes(Samples{32'767, 32'767, -32'768, -32'768, 10, 20, 100, -100, 32'767, -32'768})),
        kTo22050Mono);
    ASSERT_EQ(mono.size(), 5U);
    EXPECT_THAT(Samples(mono.begin(), mono.begin() + 4), ElementsAre(32'767, -32'768, 15, 0));
    EXPECT_NEAR(mono[4], -0.5, 1.5) << "dithered";
}

// --- ADPCM of other encoders ---

WaveFormat Adpcm(std::uint16_t channels, std::uint16_t block_bytes, std::uint16_t frames) {
    WaveFormat format{.Tag = 2, .Channels = channels, .Bits = 4, .BlockBytes = block_bytes};
    format.Extra = TrackHeader(1).substr(36, 34);
    format.Extra.replace(2, 2, LittleEndian(frames));
    return format;
}
// Frames (90,180) (100,200) (116,188) (-12,288) (324,388).
const std::string kStereoBlock = "\x00\x01\x10\x00\x20\x00\x64\x00\xC8\x00\x5A\x00\xB4\x00\x1F\x84\x70"s;

TEST_F(Converting, BlocksOfAnySizeAreDecoded) {
    EXPECT_THAT(Converted(WaveBytes(Adpcm(2, 17, 5), kStereoBlock + kStereoBlock.substr(0, 15)), kFrom4Bits),
                ElementsAre(90, 180, 100, 200, 116, 188, -12, 288, 324, 388, 90, 180, 100, 200, 116, 188));
    EXPECT_THAT(Converted(WaveBytes(Adpcm(1, 9, 6), "\x02\xE8\x03\x00\x00\x05\x00\x79\x00"s), kFrom4Bits),
                ElementsAre(5, 5, 0, 0, 7000, 7000, -16'786, -16'786, 0, 0, 0, 0));
}

TEST_F(Converting, CoefficientsAreThoseOfTheFile) {
    WaveFormat format = Adpcm(1, 9, 6);
    format.Extra = "\x08\x00\x06\x00\x01\x00\x80\x00\x80\x00"s; // one pair: 128, 128
    EXPECT_THAT(Converted(WaveBytes(format, "\x00\x10\x00\x64\x00\x32\x00\x10\x00"s), kFrom4Bits),
                ElementsAre(50, 50, 100, 100, 91, 91, 95, 95, 93, 93, 94, 94));
}

TEST_F(Converting, FramesOfABlockThatCannotBeAreCounted) {
    EXPECT_EQ(Converted(WaveBytes(Adpcm(2, 17, 60'000), kStereoBlock), kFrom4Bits).size(), 10U);
    EXPECT_EQ(Converted(WaveBytes(Adpcm(2, 17, 0), kStereoBlock), kFrom4Bits).size(), 10U);
    EXPECT_EQ(Converted(WaveBytes(Adpcm(2, 17, 4), kStereoBlock + kStereoBlock), kFrom4Bits).size(), 16U);
}

TEST_F(Converting, APlausibleFactIsTheLength) {
    const auto frames = [this](std::uint32_t fact) {
        const std::string blocks = kStereoBlock + kStereoBlock + kStereoBlock;
        return Converted(WaveBytes(Adpcm(2, 17, 5), blocks, Chunk("fact", LittleEndian(fact))), kFrom4Bits)
                   .size() /
               2;
    };
    EXPECT_EQ(frames(15), 15U);
    EXPECT_EQ(frames(11), 11U);
    EXPECT_EQ(frames(6), 6U) << "an empty block behind it";
    EXPECT_EQ(frames(5), 15U) << "too short to be true";
    EXPECT_EQ(frames(16), 15U);
    EXPECT_EQ(frames(0), 15U);
}

TEST_F(Converting, ATrackOfOtherBlocksBecomesOneOfTheGame) {
    std::string blocks;
    for (int i = 0; i < 100; ++i)
        blocks += kStereoBlock;
    Put(WaveBytes(Adpcm(2, 17, 5), blocks));
    ASSERT_TRUE(Run(kTo4Bits)) << error;
    EXPECT_EQ(Result().substr(0, 90), TrackHeader(500));
    EXPECT_EQ(Result().size(), 90U + 2048);
}

// --- rates and rounding ---

TEST_F(Converting, TheRateIsChangedOverTheWholeBand) {
    const Samples up =
        Converted(WaveBytes({.Channels = 1, .Rate = 22'050}, SampleBytes(Sine(22'050, 22'050))), kToStandard);
    const Samples wanted = Sine(44'100, 44'100);
    ASSERT_EQ(up.size(), 2U * 44'100);
    double noise = 0;
    for (std::size_t i = 1000; i < 43'000; ++i)
        noise += std::pow(up[2 * i] - wanted[i], 2);
    EXPECT_LT(std::sqrt(noise / 42'000), 1) << "little more than the dither";

    const Samples down = Converted(
        WaveBytes({.Channels = 1, .Rate = 44'100}, SampleBytes(Sine(44'100, 44'100, 15'000))), kTo22050Mono);
    ASSERT_EQ(down.size(), 22'050U);
    for (std::size_t i = 1000; i < 21'000; ++i)
        EXPECT_LE(std::abs(down[i]), 2) << "above half the rate there is nothing";
}

TEST_F(Converting, AnyRateGivesTheSameDuration) {
    for (const std::uint32_t rate : {1'000U, 8'000U, 11'025U, 48'000U, 96'000U, 384'000U}) {
        const WaveFormat format{.Channels = 1, .Rate = rate};
        const std::string wave = WaveBytes(format, SampleBytes(Samples(rate / 5, 1000)));
        EXPECT_EQ(Converted(wave, kTo22050Mono).size(), 4410U) << rate;
        EXPECT_EQ(Converted(wave, kToStandard).size(), 17'640U) << rate;
    }
}

TEST_F(Converting, SilenceStaysSilence) {
    EXPECT_THAT(Converted(WaveBytes({.Rate = 48'000, .Bits = 24}, std::string(30'000, '\0')), kToStandard),
                Each(0));
    Samples tone = Sine(22'050, 22'050);
    tone.insert(tone.end(), 22'050, 0);
    const Samples both =
        Converted(WaveBytes({.Channels = 1, .Rate = 22'050}, SampleBytes(tone)), kToStandard);
    EXPECT_THAT(Samples(both.begin() + 2 * 46'000, both.end()), Each(0));
}

TEST_F(Converting, LostBitsAreDitheredAlikeEachTime) {
    std::string data;
    for (int i = 0; i < 20'000; ++i)
        data += "\x40\x02\x00"s; // 2.25 of 16 bits
    const std::string wave = WaveBytes({.Bits = 24}, data + data.substr(0, data.size() % 2));
    const Samples first = Converted(wave, kToStandard);
    double sum = 0;
    bool others = false;
    for (const std::int16_t sample : first) {
        EXPECT_NEAR(sample, 2.25, 1.5);
        sum += sample;
        others = others || sample == 1 || sample == 3;
    }
    EXPECT_NEAR(sum / static_cast<double>(first.size()), 2.25, 0.02);
    EXPECT_TRUE(others);
    EXPECT_EQ(Converted(wave, kToStandard), first);
}

TEST_F(Converting, ASquareOfFullScaleDoesNotWrap) {
    Samples square;
    for (int i = 0; i < 8'000; ++i)
        square.push_back(i % 100 < 50 ? 32'767 : -32'768);
    for (const std::uint32_t rate : {22'050U, 32'000U, 96'000U}) {
        const Samples converted =
            Converted(WaveBytes({.Channels = 1, .Rate = rate}, SampleBytes(square)), kToStandard);
        const auto frames = converted.size() / 2;
        for (std::size_t i = 0; i < frames; ++i) {
            const double phase = std::fmod(static_cast<double>(i) * rate / 44'100, 100);
            if (phase > 3 && phase < 47) {
                EXPECT_GT(converted[2 * i], 20'000) << rate << " " << i;
            } else if (phase > 53 && phase < 97) {
                EXPECT_LT(converted[2 * i], -20'000) << rate << " " << i;
            }
        }
    }
}

// --- what is refused ---

TEST_F(Converting, WhatIsNoWaveIsRefused) {
    const std::string unknown = "It is no wave file, or one of a kind that can't be read";
    const std::string wave = WaveBytes({}, SampleBytes(Samples{1, 2}));
    for (std::size_t size = 0; size < 44; ++size)
        ExpectRefused(wave.substr(0, size), unknown);
    ExpectRefused("ID3\x03 and more of an mp3 file, long enough for a header", unknown);
    ExpectRefused(test::Riff(Chunk("data", "1234") + test::FormatChunk({})), unknown);
    ExpectRefused(WaveBytes({.Tag = 0x1234}, "1234"), unknown);
    ExpectRefused(WaveBytes({.Tag = 2, .Bits = 4, .BlockBytes = 13}, kStereoBlock), unknown);
}

TEST_F(Converting, WhatIsCutOffIsRefused) {
    const std::string cut = "The wave file is cut off: it holds less than its header says";
    const std::string wave = WaveBytes({}, SampleBytes(Samples{1, 2, 3, 4}));
    for (std::size_t size = 44; size < wave.size(); ++size)
        ExpectRefused(wave.substr(0, size), cut);
    const std::string track = WaveBytes(Adpcm(2, 17, 5), kStereoBlock + kStereoBlock);
    ExpectRefused(track.substr(0, track.size() - 2), cut, kFrom4Bits);
    std::string lying = wave;
    lying.replace(40, 4, "\x00\x00\x00\x70"s);
    ExpectRefused(lying, cut);
}

TEST_F(Converting, NoSamplesAreRefused) {
    const std::string empty = "The wave file holds no samples";
    ExpectRefused(WaveBytes({}, ""), empty);
    ExpectRefused(WaveBytes({}, "123"), empty);
    ExpectRefused(WaveBytes(Adpcm(2, 17, 5), ""), empty, kFrom4Bits);
    ExpectRefused(WaveBytes(Adpcm(2, 17, 5), "1234567890123"), empty, kFrom4Bits);
}

TEST_F(Converting, ADamagedBlockIsTold) {
    std::string blocks = kStereoBlock + kStereoBlock;
    blocks[17] = 7; // a pair that isn't there
    ExpectRefused(WaveBytes(Adpcm(2, 17, 5), blocks), "The wave file is damaged", kFrom4Bits);
}

TEST_F(Converting, RatesAndChannelsOutsideTheRuleAreRefused) {
    const auto wave = [](std::uint16_t channels, std::uint32_t rate) {
        return WaveBytes({.Channels = channels, .Rate = rate}, std::string(240, '\x01'));
    };
    ExpectRefused(wave(0, 44'100), "The wave file has 0 channels; only mono and stereo can be converted");
    ExpectRefused(wave(3, 44'100), "The wave file has 3 channels; only mono and stereo can be converted");
    ExpectRefused(wave(2, 999), "The wave file has 999 Hz; only 1000 to 384000 Hz can be converted");
    ExpectRefused(wave(2, 384'001), "The wave file has 384001 Hz; only 1000 to 384000 Hz can be converted");
    ExpectRefused(wave(2, 0xFFFF'FFFF),
                  "The wave file has 4294967295 Hz; only 1000 to 384000 Hz can be converted");
}

TEST_F(Converting, AResultOverFourGigabytesIsRefused) {
    Put(WaveBytes({.Channels = 1, .Rate = 1'000, .Bits = 8}, ""));
    constexpr std::uint32_t kSamples = 24'400'000;
    std::string head = test::BytesOf(drive / "in.wav");
    head.replace(40, 4, LittleEndian(kSamples));
    Put(head);
    fs::resize_file(drive / "in.wav", 44 + kSamples); // takes no room
    EXPECT_FALSE(Run(kToStandard));
    EXPECT_EQ(error, "The result would be larger than 4 GB, which no wave file can be");
    EXPECT_FALSE(test::Exists(drive / "out.wav"));
}

TEST_F(Converting, OtherModesAreRefused) {
    const std::string wave = WaveBytes({}, SampleBytes(Samples{1, 2}));
    ExpectRefused(wave, "There is no conversion with the number 0", 0);
    ExpectRefused(wave, "There is no conversion with the number 5", 5);
    ExpectRefused(wave, "There is no conversion with the number -1", -1);
}

TEST_F(Converting, AMissingSourceIsTold) {
    EXPECT_FALSE(WavConverter("C:\\none.wav", "C:\\out.wav", kToStandard, error));
    EXPECT_EQ(error, "There is no such file");
    fs::create_directory(drive / "folder.wav");
    EXPECT_FALSE(WavConverter("C:\\folder.wav", "C:\\out.wav", kToStandard, error));
    EXPECT_EQ(error, "There is no such file");
}

TEST_F(Converting, ATargetThatCannotBeWrittenIsTold) {
    Put(WaveBytes({}, SampleBytes(Samples{1, 2})));
    EXPECT_FALSE(WavConverter("C:\\in.wav", "C:\\missing\\out.wav", kToStandard, error));
    EXPECT_EQ(error, "The result can't be written");
    fs::create_directory(drive / "folder.wav");
    EXPECT_FALSE(WavConverter("C:\\in.wav", "C:\\folder.wav", kToStandard, error));
    EXPECT_EQ(error, "The result can't be written");
}

TEST_F(Converting, ASourceMayBeItsOwnTarget) {
    Put(WaveBytes({.Channels = 1}, SampleBytes(Samples{1, 2})));
    ASSERT_TRUE(WavConverter("C:\\in.wav", "C:\\in.wav", kToStandard, error)) << error;
    EXPECT_THAT(SamplesOf(test::BytesOf(drive / "in.wav")), ElementsAre(1, 1, 2, 2));
}

} // namespace
} // namespace kelvash::audio
