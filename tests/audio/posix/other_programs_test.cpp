// Waves that another program has written, and what it makes of ours.
#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <vector>

#include "audio/ms_adpcm.h"
#include "audio/wav_converter.h"
#include "audio/wave_bytes.h"
#include "support/foundation_home.h"

namespace kelvash::audio {
namespace {

using Samples = std::vector<std::int16_t>;

class WavesOfSox : public test::FoundationHome {
  protected:
    void SetUp() override {
        if (std::system("command -v sox >/dev/null") != 0) GTEST_SKIP() << "no sox";
        Samples samples;
        for (int i = 0; i < kFrames; ++i)
            for (const double frequency : {440.0, 660.0})
                samples.push_back(static_cast<std::int16_t>(
                    std::lround(9'000 * std::sin(2 * std::numbers::pi * frequency * i / 44'100))));
        wave = test::WaveBytes({}, test::SampleBytes(samples));
        test::MakeFile(drive / "in.wav", wave);
    }
    // "sox ARGUMENTS" in the folder of C:.
    void Sox(const std::string& arguments) const {
        ASSERT_EQ(std::system(("cd '" + drive.string() + "' && sox -D " + arguments).c_str()), 0);
    }
    bool Convert(const std::string& from, const std::string& to, std::int16_t mode) {
        return WavConverter("C:\\" + from, "C:\\" + to, mode, error);
    }
    // The difference to in.wav, in 16-bit units, so many frames off its ends.
    double NoiseOf(const std::string& name, std::size_t off_ends = 0) const {
        const std::string bytes = test::BytesOf(drive / name);
        EXPECT_EQ(bytes.size(), wave.size());
        double noise = 0;
        for (std::size_t i = 44 + 4 * off_ends; i + 1 + 4 * off_ends < std::min(bytes.size(), wave.size());
             i += 2)
            noise += std::pow(SampleAt(bytes, i) - SampleAt(wave, i), 2);
        return std::sqrt(noise / (2 * kFrames));
    }
    static std::int16_t SampleAt(const std::string& bytes, std::size_t at) {
        return static_cast<std::int16_t>(static_cast<unsigned char>(bytes[at]) |
                                         static_cast<unsigned char>(bytes[at + 1]) << 8);
    }

    static constexpr int kFrames = 30'001;
    std::string wave, error;
};

TEST_F(WavesOfSox, ItsTracksHaveTheHeaderOfOurs) {
    Sox("in.wav -e ms-adpcm track.wav");
    std::string header = test::BytesOf(drive / "track.wav").substr(0, 90);
    header.replace(28, 4, test::LittleEndian(44'359)); // it rounds the bytes a second up
    EXPECT_EQ(header, TrackHeader(kFrames));
    ASSERT_TRUE(Convert("track.wav", "out.wav", kFrom4Bits)) << error;
    EXPECT_LT(NoiseOf("out.wav"), 20);
}

TEST_F(WavesOfSox, ItReadsOurTracksAsWeDo) {
    ASSERT_TRUE(Convert("in.wav", "track.wav", kTo4Bits)) << error;
    ASSERT_TRUE(Convert("track.wav", "ours.wav", kFrom4Bits)) << error;
    Sox("track.wav -e signed -b 16 sox.wav");
    EXPECT_LT(NoiseOf("ours.wav"), 20);
    const std::string ours = test::BytesOf(drive / "ours.wav"), theirs = test::BytesOf(drive / "sox.wav");
    EXPECT_EQ(theirs.substr(0, ours.size()).substr(44), ours.substr(44));
}

TEST_F(WavesOfSox, EveryWidthIsTaken) {
    for (const std::string width : {"-b 16", "-b 24", "-b 32", "-e float -b 32", "-e float -b 64"}) {
        Sox("in.wav " + width + " wide.wav");
        ASSERT_TRUE(Convert("wide.wav", "out.wav", kToStandard)) << width << ": " << error;
        EXPECT_EQ(NoiseOf("out.wav"), 0) << width << ": no bit is lost, so no dither";
    }
    Sox("in.wav -e unsigned -b 8 eight.wav");
    ASSERT_TRUE(Convert("eight.wav", "out.wav", kToStandard)) << error;
    EXPECT_LT(NoiseOf("out.wav"), 80);
    for (const std::string coding : {"-e u-law", "-e a-law", "-e ima-adpcm"}) {
        Sox("in.wav " + coding + " small.wav");
        ASSERT_TRUE(Convert("small.wav", "out.wav", kToStandard)) << coding << ": " << error;
        EXPECT_GT(test::BytesOf(drive / "out.wav").size(), wave.size() - 4) << coding;
    }
}

TEST_F(WavesOfSox, ThereAndBackOverAnotherRate) {
    Sox("in.wav -b 24 -r 96000 high.wav");
    ASSERT_TRUE(Convert("high.wav", "out.wav", kToStandard)) << error;
    EXPECT_LT(NoiseOf("out.wav", 1'000), 1);
}

} // namespace
} // namespace kelvash::audio
