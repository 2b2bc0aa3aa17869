#include "foundation/record.h"

#include <gtest/gtest.h>

namespace kelvash {
namespace {

using namespace std::string_view_literals;

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
    ByteWriter bytes;
    bytes.Bytes("in front");
    EncodeRecord(kSample, Sample{"ab", true, -2, 16, 1.5}, bytes);
    EXPECT_EQ(bytes.Take(), "in front" + std::string(kSampleBytes));
}

TEST(RecordTable, IsALayoutWithoutGapsAndOfTheTypesWidths) {
    EXPECT_TRUE(IsLayout(kSample, 20));
    EXPECT_FALSE(IsLayout(kSample, 21)) << "a byte that no field has";
    auto gap = kSample;
    gap[2].offset = 7;
    EXPECT_FALSE(IsLayout(gap, 20));
    auto wide = kSample;
    wide[4].width = 9;
    EXPECT_FALSE(IsLayout(wide, 21)) << "a double has 8 bytes";
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
