#include "foundation/record.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace kelvash {
namespace {

using namespace std::string_view_literals;

std::string Written(std::size_t width, const std::function<void(std::span<char>)>& write) {
    std::string bytes(width, '#');
    write({bytes.data(), bytes.size()});
    return bytes;
}

TEST(RecordValue, TextsArePaddedWithBlanks) {
    EXPECT_EQ(Written(5, [](std::span<char> field) { WriteText("ab", field); }), "ab   ");
    EXPECT_EQ(Written(3, [](std::span<char> field) { WriteText("abcde", field); }), "abc");
    EXPECT_EQ(Written(2, [](std::span<char> field) { WriteText("", field); }), "  ");
}

TEST(RecordValue, TextsAreWindows1252) {
    EXPECT_EQ(Written(4, [](std::span<char> field) { WriteText("è€ж", field); }), "\xE8\x80? ");
    EXPECT_EQ(ReadText("caff\xE8  "), "caffè");
}

TEST(RecordValue, ReadingATextTrimsIt) {
    EXPECT_EQ(ReadText("  a b  "), "a b");
    EXPECT_EQ(ReadText("    "), "");
    EXPECT_EQ(ReadText("a\0b "sv), "a\0b"sv);
}

TEST(RecordValue, BooleansAreSixteenBits) {
    EXPECT_EQ(Written(2, [](std::span<char> field) { WriteBoolean(true, field); }), "\xFF\xFF");
    EXPECT_EQ(Written(2, [](std::span<char> field) { WriteBoolean(false, field); }), "\0\0"sv);
    EXPECT_TRUE(ReadBoolean("\xFF\xFF"sv));
    EXPECT_TRUE(ReadBoolean("\0\1"sv)); // anything but 0
    EXPECT_FALSE(ReadBoolean("\0\0"sv));
}

TEST(RecordValue, IntegersAreLittleEndianAndSigned) {
    EXPECT_EQ(Written(4, [](std::span<char> field) { WriteInteger(0x01020304, field); }), "\4\3\2\1");
    EXPECT_EQ(Written(2, [](std::span<char> field) { WriteInteger(-2, field); }), "\xFE\xFF");
    EXPECT_EQ(ReadInteger("\4\3\2\1"sv), 0x01020304);
    EXPECT_EQ(ReadInteger("\xFE\xFF"sv), -2);
    EXPECT_EQ(ReadInteger("\x00\x80"sv), -32768);
    EXPECT_EQ(ReadInteger("\xFF\xFF\xFF\x7F"sv), 2147483647);
    EXPECT_EQ(ReadInteger("\0\0\0\0\0\0\0\x80"sv), std::numeric_limits<std::int64_t>::min());
}

TEST(RecordValue, DoublesAreIeee) {
    EXPECT_EQ(Written(8, [](std::span<char> field) { WriteDouble(1.5, field); }), "\0\0\0\0\0\0\xF8\x3F"sv);
    EXPECT_EQ(ReadDouble("\0\0\0\0\0\0\xF8\x3F"sv), 1.5);
    EXPECT_EQ(ReadDouble("\0\0\0\0\0\0\0\xC0"sv), -2.0);
    EXPECT_TRUE(std::isnan(ReadDouble("\0\0\0\0\0\0\xF8\x7F"sv)));
}

TEST(RecordValue, FitTextIsWhatTheFieldGivesBack) {
    EXPECT_EQ(FitText("abcdef", 3), "abc");
    EXPECT_EQ(FitText("èèèè", 3), "èèè"); // one byte each in the file
    EXPECT_EQ(FitText(" ab cd", 4), "ab");
    EXPECT_EQ(FitText("ж", 5), "?");
}

struct Sample {
    std::string name = "old";
    bool flag = false;
    std::int16_t small = 7;
    std::int32_t number = 8;
    double size = 9;
};

constexpr std::array<Field<Sample>, 5> kSample = {{{"Name", 0, 4, &Sample::name},
                                                   {"Flag", 4, 2, &Sample::flag},
                                                   {"Small", 6, 2, &Sample::small},
                                                   {"Number", 8, 4, &Sample::number},
                                                   {"Size", 12, 8, &Sample::size}}};
constexpr std::string_view kSampleBytes = "ab  \xFF\xFF\xFE\xFF\x10\0\0\0\0\0\0\0\0\0\xF8\x3F"sv;

TEST(RecordTable, EncodesEveryField) {
    std::string bytes(20, '#');
    EncodeRecord(kSample, Sample{"ab", true, -2, 16, 1.5}, {bytes.data(), bytes.size()});
    EXPECT_EQ(bytes, kSampleBytes);
}

TEST(RecordTable, DecodesEveryField) {
    Sample sample;
    DecodeRecord(kSample, kSampleBytes, sample);
    EXPECT_EQ(sample.name, "ab");
    EXPECT_TRUE(sample.flag);
    EXPECT_EQ(sample.small, -2);
    EXPECT_EQ(sample.number, 16);
    EXPECT_EQ(sample.size, 1.5);
}

TEST(RecordTable, FieldsBehindACutKeepWhatTheyWere) {
    for (std::size_t length = 0; length <= kSampleBytes.size(); ++length) {
        Sample sample;
        DecodeRecord(kSample, kSampleBytes.substr(0, length), sample);
        EXPECT_EQ(sample.name, length >= 4 ? "ab" : "old") << length;
        EXPECT_EQ(sample.flag, length >= 6) << length;
        EXPECT_EQ(sample.small, length >= 8 ? -2 : 7) << length;
        EXPECT_EQ(sample.number, length >= 12 ? 16 : 8) << length;
        EXPECT_EQ(sample.size, length >= 20 ? 1.5 : 9) << length;
    }
}

} // namespace
} // namespace kelvash
