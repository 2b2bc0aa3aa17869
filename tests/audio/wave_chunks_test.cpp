#include "audio/wave_chunks.h"

#include <gtest/gtest.h>

#include "support/foundation_home.h"
#include "support/sound_bytes.h"

namespace kelvash::audio {
namespace {

using test::Little;
using test::TrackBytes;
using test::WaveBytes;

class WaveChunkFiles : public test::FoundationHome {
  protected:
    double Seconds(const std::string& bytes) {
        test::MakeFile(home / "a.wav", bytes);
        return WaveSeconds("C:\\Kelvash\\a.wav");
    }
    bool Plays(const std::string& bytes) {
        test::MakeFile(home / "a.wav", bytes);
        return PlaysInGame("C:\\Kelvash\\a.wav");
    }
};

TEST_F(WaveChunkFiles, PcmPlaysByItsData) {
    EXPECT_DOUBLE_EQ(Seconds(WaveBytes(1, 2, 44100, 16, 22050)), 0.5);
    std::string chunks = WaveBytes(1, 1, 22050, 16, 22050);
    chunks.insert(12, "LIST" + Little(3, 4) + "odd" + '\0');
    EXPECT_DOUBLE_EQ(Seconds(chunks), 1);
}

TEST_F(WaveChunkFiles, WhatIsNoWaveHasNoLength) {
    const std::string wave = WaveBytes(1, 2, 44100, 16, 10);
    EXPECT_EQ(WaveSeconds("C:\\Kelvash\\none.wav"), 0);
    EXPECT_EQ(WaveSeconds("C:\\Kelvash"), 0);
    for (std::size_t size = 0; size < 44; ++size)
        EXPECT_EQ(Seconds(wave.substr(0, size)), 0) << size;
    EXPECT_EQ(Seconds(WaveBytes(1, 2, 0, 16, 10)), 0);
    EXPECT_EQ(Seconds(WaveBytes(1, 0, 44100, 16, 10)), 0);
}

TEST_F(WaveChunkFiles, ALyingLengthEndsWithTheFile) {
    std::string wave = WaveBytes(1, 2, 44100, 16, 44100);
    wave.replace(40, 4, Little(0xFFFFFFFF, 4));
    EXPECT_DOUBLE_EQ(Seconds(wave), 1);
}

TEST_F(WaveChunkFiles, APlausibleCountEndsTheLastBlock) {
    std::string track = TrackBytes(3);
    EXPECT_DOUBLE_EQ(Seconds(track), 3 * 2036 / 44100.0);
    track.replace(78, 4, Little(5000, 4));
    EXPECT_DOUBLE_EQ(Seconds(track), 5000 / 44100.0);
    for (const std::uint32_t count : {0U, 4072U, 6109U, 0xFFFFFFFFU}) {
        track.replace(78, 4, Little(count, 4));
        EXPECT_DOUBLE_EQ(Seconds(track), 3 * 2036 / 44100.0) << count;
    }
}

TEST_F(WaveChunkFiles, TheGamePlaysItsOwnHeadAlone) {
    const std::string track = TrackBytes(2);
    EXPECT_TRUE(Plays(track));
    EXPECT_TRUE(Plays(track + "LIST" + Little(4, 4) + "INFO")); // behind the data
    std::string listed = track;
    listed.insert(70, "LIST" + Little(4, 4) + "INFO");
    EXPECT_FALSE(Plays(listed));
    std::string small_blocks = track;
    small_blocks.replace(32, 2, Little(1024, 2));
    EXPECT_FALSE(Plays(small_blocks));
    std::string other_average = track; // which nobody reads
    other_average.replace(28, 4, Little(44251, 4));
    EXPECT_TRUE(Plays(other_average));
    EXPECT_FALSE(Plays(WaveBytes(2, 2, 44100, 4, 100)));
    EXPECT_FALSE(Plays(WaveBytes(1, 2, 44100, 16, 100)));
}

} // namespace
} // namespace kelvash::audio
