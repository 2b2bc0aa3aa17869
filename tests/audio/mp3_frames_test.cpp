#include "audio/mp3_frames.h"

#include <gtest/gtest.h>

#include "support/foundation_home.h"
#include "support/sound_bytes.h"

namespace kelvash::audio {
namespace {

using test::Mp3Bytes;

class Mp3Frames : public test::FoundationHome {
  protected:
    std::int32_t Estimate(const std::string& bytes) {
        test::MakeFile(home / "a.mp3", bytes);
        return Mp3DurationSeconds("C:\\Kelvash\\a.mp3");
    }
    double Seconds(const std::string& bytes) {
        test::MakeFile(home / "a.mp3", bytes);
        return Mp3TrueSeconds("C:\\Kelvash\\a.mp3");
    }
    // A file of that many bytes that begins with a frame of these two.
    static std::string Starting(unsigned second, unsigned third, std::size_t size) {
        std::string bytes(size, '\0');
        bytes[0] = '\xFF';
        bytes[1] = static_cast<char>(second);
        bytes[2] = static_cast<char>(third);
        return bytes;
    }
};

TEST_F(Mp3Frames, TheEstimateIsTheLengthAtTheFirstRateLessASecond) {
    EXPECT_EQ(Estimate(Starting(0xFB, 0x90, 160000)), 9);         // 128 kbit/s
    EXPECT_EQ(Estimate("ID3" + Starting(0xFB, 0x90, 159997)), 9); // junk counts
    EXPECT_EQ(Estimate(Starting(0xFB, 0x90, 168000)), 10);        // 9.5, to the even number
    EXPECT_EQ(Estimate(Starting(0xFB, 0x90, 184000)), 10);        // 10.5
}

TEST_F(Mp3Frames, EveryTableIsThatOfItsVersionAndLayer) {
    constexpr std::size_t kSize = 480000;
    EXPECT_EQ(Estimate(Starting(0xFF, 0xE0, kSize)), 8);   // MPEG-1 layer I, 448
    EXPECT_EQ(Estimate(Starting(0xFD, 0xE0, kSize)), 9);   // layer II, 384
    EXPECT_EQ(Estimate(Starting(0xFB, 0xE0, kSize)), 11);  // layer III, 320
    EXPECT_EQ(Estimate(Starting(0xF7, 0xE0, kSize)), 14);  // MPEG-2 layer I, 256
    EXPECT_EQ(Estimate(Starting(0xF5, 0x10, kSize)), 479); // layer II, 8
    EXPECT_EQ(Estimate(Starting(0xF3, 0xE0, kSize)), 23);  // layer III, 160
    EXPECT_EQ(Estimate(Starting(0xE3, 0x80, kSize)), 59);  // MPEG-2.5 layer III, 64
    EXPECT_EQ(Estimate(Starting(0xE7, 0xD0, kSize)), 16);  // its layer I, 224
}

TEST_F(Mp3Frames, ShortOnesAndThoseWithoutAFrame) {
    EXPECT_EQ(Mp3DurationSeconds("C:\\Kelvash\\none.mp3"), 1);
    EXPECT_EQ(Mp3DurationSeconds("C:\\Kelvash"), 1);
    EXPECT_EQ(Estimate(Starting(0xFB, 0x90, 16000)), 1); // 0 becomes 1
    EXPECT_EQ(Estimate(Starting(0xFB, 0x90, 24000)), 1); // 0.5 is 0
    EXPECT_EQ(Estimate(Starting(0xFB, 0x90, 4000)), -1);
    EXPECT_EQ(Estimate(""), 1);
    EXPECT_EQ(Estimate("\xFF\xFB\x90"), 1); // three bytes are no head
    EXPECT_EQ(Estimate(std::string(300000, 'x')), 1);
    EXPECT_EQ(Estimate(Starting(0xFB, 0x00, 16000)), 1); // free format states no rate
}

TEST_F(Mp3Frames, WhatIsReservedIsNoFrame) {
    // The second frame of each is of 8 kbit/s.
    const std::string small = Starting(0xF3, 0x10, 3000);
    for (const auto& [second, third] :
         {std::pair{0xEBU, 0x90U}, {0xF9U, 0x90U}, {0xFBU, 0xF0U}, {0xFBU, 0x9CU}, {0xDBU, 0x90U}})
        EXPECT_EQ(Estimate(Starting(second, third, 3) + small), 2) << second << ' ' << third;
    EXPECT_EQ(Estimate("\xFF" + Starting(0xFB, 0x10, 8000)), 1); // each byte is looked at anew
}

TEST_F(Mp3Frames, AFrameIsFoundAtTheBorderOfWhatIsReadAtOnce) {
    for (std::size_t junk = 131068; junk < 131076; ++junk)
        EXPECT_EQ(Estimate(std::string(junk, 'x') + Starting(0xF3, 0x10, 3000)), (junk + 3000) / 1000 - 1);
}

TEST_F(Mp3Frames, FramesAreCounted) {
    EXPECT_NEAR(Seconds(Mp3Bytes(100)), 100 * 1152.0 / 44100, 1e-9);
    EXPECT_NEAR(Seconds("junk in front" + Mp3Bytes(100) + "TAG and more"), 100 * 1152.0 / 44100, 1e-9);
    EXPECT_NEAR(Seconds(Mp3Bytes(100).substr(0, 417 * 99 + 200)), 99 * 1152.0 / 44100, 1e-9); // cut off
    EXPECT_EQ(Seconds(""), 0);
    EXPECT_EQ(Seconds(std::string(5000, 'x')), 0);
    EXPECT_EQ(Mp3TrueSeconds("C:\\Kelvash\\none.mp3"), 0);
}

TEST_F(Mp3Frames, TheWaveThatComesOfItIsOfFourBytesASample) {
    Seconds(Mp3Bytes(100));
    EXPECT_EQ(Mp3DecodedSize("C:\\Kelvash\\a.mp3"), 44 + 100 * 1152 * 4);
}

TEST_F(Mp3Frames, APictureInATagIsPassedOver) {
    const std::string tag = std::string("ID3\x03\x00\x00\x00\x00\x17\x64", 10) + // 3044 bytes
                            Starting(0xE5, 0x30, 3044);
    EXPECT_NEAR(Seconds(tag + Mp3Bytes(50)), 50 * 1152.0 / 44100, 1e-9);
    EXPECT_NEAR(Seconds("ID3\x03\x01\x01\x7F\x7F\x7F\x7F" + Mp3Bytes(50)), 50 * 1152.0 / 44100, 1e-9);
}

TEST_F(Mp3Frames, AnEncodersTableIsNoSound) {
    std::string table = Mp3Bytes(1);
    table.replace(36, 4, "Xing");
    EXPECT_NEAR(Seconds(table + Mp3Bytes(10)), 10 * 1152.0 / 44100, 1e-9);
    table.replace(36, 4, "VBRI");
    EXPECT_NEAR(Seconds(table + Mp3Bytes(10)), 10 * 1152.0 / 44100, 1e-9);
}

TEST_F(Mp3Frames, RatesMayVaryFromFrameToFrame) {
    std::string bytes;
    for (int i = 0; i < 20; ++i)
        bytes += Mp3Bytes(1) + "\xFF\xFB\x50" + std::string(205, '\0'); // 64 kbit/s
    EXPECT_NEAR(Seconds(bytes), 40 * 1152.0 / 44100, 1e-9);
}

TEST_F(Mp3Frames, FreeFormatGoesByTheDistanceOfItsFrames) {
    std::string bytes;
    for (int i = 0; i < 30; ++i)
        bytes += std::string("\xFF\xFB\x00", 3) + std::string(500, '\0');
    EXPECT_NEAR(Seconds(bytes), 30 * 1152.0 / 44100, 1e-9);
}

} // namespace
} // namespace kelvash::audio
