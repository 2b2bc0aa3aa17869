// What the sound device gets, written to a file in its place.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "foundation/platform/platform.h"
#include "foundation/platform/posix_tones.h"
#include "support/foundation_home.h"
#include "support/platform.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;
using platform::ToneSamples;

int Crossings(const std::vector<std::int16_t>& samples) {
    int count = 0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        if (samples[i - 1] < 0 && samples[i] >= 0) ++count;
    return count;
}

TEST(Tone, HasItsLengthAndPitch) {
    const std::vector<std::int16_t> samples = ToneSamples(200, 150);
    EXPECT_EQ(samples.size(), 3307U);
    EXPECT_NEAR(Crossings(samples), 30, 1); // 200 Hz for 0.15 s
    EXPECT_EQ(samples.front(), 0);
    EXPECT_EQ(samples.back(), 0) << "it ends without a click";
    EXPECT_GT(*std::max_element(samples.begin(), samples.end()), 7900);
}

TEST(Tone, IsNothingWhereNothingCanBeHeard) {
    EXPECT_TRUE(ToneSamples(0, 150).empty());
    EXPECT_TRUE(ToneSamples(-5, 150).empty());
    EXPECT_TRUE(ToneSamples(20'000, 150).empty());
    EXPECT_TRUE(ToneSamples(200, 0).empty());
    EXPECT_EQ(ToneSamples(200, 2'000'000'000).size(), 220'500U);
}

class SoundDevice : public testing::Test {
  protected:
    SoundDevice() {
        test::SetEnvironment("SDL_AUDIODRIVER", "disk");
        test::SetEnvironment("SDL_DISKAUDIOFILE", (folder / "sound.raw").string());
    }
    ~SoundDevice() override {
        test::SetEnvironment("SDL_AUDIODRIVER", "");
        fs::remove_all(folder);
    }
    // What was played, without the silence.
    std::vector<std::int16_t> Played() const {
        if (!fs::exists(folder / "sound.raw")) return {};
        const std::string bytes = test::BytesOf(folder / "sound.raw");
        std::vector<std::int16_t> samples;
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
            const auto low = static_cast<unsigned char>(bytes[i]),
                       high = static_cast<unsigned char>(bytes[i + 1]);
            if (const auto sample = static_cast<std::int16_t>(low | high << 8); sample != 0)
                samples.push_back(sample);
        }
        return samples;
    }
    fs::path folder = test::MakeTemporaryFolder();
};

TEST_F(SoundDevice, TonesComeOneBehindTheOther) {
    {
        platform::Tones tones;
        tones.Play(300, 100);
        tones.Play(100, 150);
        const auto enough = [this] { return Played().size() > 5400; };
        for (int i = 0; i < 500 && !enough(); ++i)
            platform::Sleep(0.01);
    }
    const std::vector<std::int16_t> played = Played();
    EXPECT_NEAR(static_cast<double>(played.size()), 5512, 60); // 0.25 s but for the samples that are 0
    EXPECT_NEAR(Crossings(played), 45, 2);                     // 30 and 15
}

TEST_F(SoundDevice, TheEndDropsWhatIsntPlayed) {
    test::SetEnvironment("SDL_DISKAUDIODELAY", "200"); // a slow device
    platform::Tones tones;
    for (int i = 0; i < 100; ++i)
        tones.Play(300, 10'000);
}

TEST(NoSoundDevice, IsSilence) {
    test::SetEnvironment("SDL_AUDIODRIVER", "no such driver");
    platform::Tones tones;
    tones.Play(300, 100);
    test::SetEnvironment("SDL_AUDIODRIVER", "");
}

} // namespace
} // namespace kelvash
