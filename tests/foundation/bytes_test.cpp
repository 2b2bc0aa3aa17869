#include "foundation/bytes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kelvash {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

template <class Number>
std::string Written(Number value) {
    ByteWriter bytes;
    bytes.Put<Number>(value);
    return bytes.Take();
}

std::string WrittenText(std::string_view text, std::size_t width) {
    ByteWriter bytes;
    bytes.Text(text, width);
    return bytes.Take();
}

TEST(Bytes, TextsArePaddedWithBlanksAndCut) {
    EXPECT_EQ(WrittenText("ab", 5), "ab   ");
    EXPECT_EQ(WrittenText("abcde", 3), "abc");
    EXPECT_EQ(WrittenText("", 2), "  ");
}

TEST(Bytes, TextsAreWindows1252) {
    EXPECT_EQ(WrittenText("è€ж", 4), "\xE8\x80? ");
    EXPECT_EQ(ByteReader("caff\xE8  ").Text(7), "caffè");
}

TEST(Bytes, ReadingATextTrimsIt) {
    EXPECT_EQ(ByteReader("  a b  ").Text(7), "a b");
    EXPECT_EQ(ByteReader("    ").Text(4), "");
    EXPECT_EQ(ByteReader("a\0b "sv).Text(4), "a\0b"sv);
}

TEST(Bytes, BooleansAreSixteenBits) {
    ByteWriter bytes;
    bytes.Boolean(true);
    bytes.Boolean(false);
    EXPECT_EQ(bytes.Take(), "\xFF\xFF\0\0"sv);
    ByteReader reader("\xFF\xFF\0\1\0\0"sv); // anything but 0 is true
    EXPECT_TRUE(reader.Boolean());
    EXPECT_TRUE(reader.Boolean());
    EXPECT_FALSE(reader.Boolean());
    EXPECT_FALSE(reader.Failed());
}

TEST(Bytes, IntegersAreLittleEndian) {
    EXPECT_EQ(Written<std::int32_t>(0x01020304), "\4\3\2\1");
    EXPECT_EQ(Written<std::int16_t>(-2), "\xFE\xFF");
    EXPECT_EQ(Written<std::uint8_t>(200), "\xC8");
    EXPECT_EQ(Written<std::uint64_t>(1), "\1\0\0\0\0\0\0\0"sv);
    EXPECT_EQ(ByteReader("\4\3\2\1"sv).Get<std::int32_t>(), 0x01020304);
    EXPECT_EQ(ByteReader("\xFE\xFF"sv).Get<std::int16_t>(), -2);
    EXPECT_EQ(ByteReader("\xFE\xFF"sv).Get<std::uint16_t>(), 65534);
    EXPECT_EQ(ByteReader("\x00\x80"sv).Get<std::int16_t>(), -32768);
    EXPECT_EQ(ByteReader("\xFF\xFF\xFF\xFF"sv).Get<std::uint32_t>(), 4294967295U);
    EXPECT_EQ(ByteReader("\0\0\0\0\0\0\0\x80"sv).Get<std::int64_t>(),
              std::numeric_limits<std::int64_t>::min());
}

TEST(Bytes, DoublesAreIeee) {
    EXPECT_EQ(Written(1.5), "\0\0\0\0\0\0\xF8\x3F"sv);
    EXPECT_EQ(ByteReader("\0\0\0\0\0\0\0\xC0"sv).Get<double>(), -2.0);
    EXPECT_TRUE(std::isnan(ByteReader("\0\0\0\0\0\0\xF8\x7F"sv).Get<double>()));
}

TEST(Bytes, CountedTextsBearTheirLength) {
    ByteWriter bytes;
    bytes.CountedText("a è");
    EXPECT_EQ(bytes.Take(), "\3\0a \xE8"sv);
    bytes.CountedText(std::string(40'000, 'x'));
    EXPECT_EQ(bytes.Take(), "\xFF\x7F" + std::string(32'767, 'x'));
    ByteReader reader("\3\0 b \0\0x"sv);
    EXPECT_EQ(reader.CountedText(), " b ") << "as it stands";
    EXPECT_EQ(reader.CountedText(), "");
    EXPECT_EQ(reader.Left(), 1U);
}

TEST(Bytes, ThatEndEarlyFailTheReaderForGood) {
    ByteReader reader("\1\0\2"sv);
    EXPECT_EQ(reader.Get<std::int16_t>(), 1);
    EXPECT_EQ(reader.Get<std::int16_t>(), 0);
    EXPECT_TRUE(reader.Failed());
    EXPECT_EQ(reader.Get<std::uint8_t>(), 0) << "the last byte isn't given either";
    EXPECT_EQ(reader.Bytes(0), "");
    EXPECT_EQ(reader.Text(1), "");
    EXPECT_TRUE(reader.Failed());
}

TEST(Bytes, OfAnyKindEndEarlyAtEveryLength) {
    const auto fails = [](std::size_t length, auto take) {
        const std::string bytes = "\2\0abcdefgh"s.substr(0, length);
        ByteReader reader(bytes);
        take(reader);
        return reader.Failed();
    };
    for (std::size_t length = 0; length < 10; ++length) {
        EXPECT_EQ(fails(length, [](ByteReader& reader) { reader.Get<double>(); }), length < 8);
        EXPECT_EQ(fails(length, [](ByteReader& reader) { reader.Get<std::int32_t>(); }), length < 4);
        EXPECT_EQ(fails(length, [](ByteReader& reader) { reader.Text(7); }), length < 7);
        EXPECT_EQ(fails(length, [](ByteReader& reader) { reader.CountedText(); }), length < 4);
        EXPECT_EQ(fails(length, [](ByteReader& reader) { reader.Skip(3); }), length < 3);
    }
}

TEST(Bytes, WithALengthBelowZeroFail) {
    ByteReader reader("\xFF\xFFxyz"sv);
    EXPECT_EQ(reader.CountedText(), "");
    EXPECT_TRUE(reader.Failed());
}

TEST(Bytes, HoldNoMoreItemsThanAreThere) {
    const ByteReader reader("0123456789"sv);
    EXPECT_TRUE(reader.Holds(0, 3));
    EXPECT_TRUE(reader.Holds(3, 3));
    EXPECT_FALSE(reader.Holds(4, 3));
    EXPECT_FALSE(reader.Holds(-1, 3));
    EXPECT_EQ(reader.Held(2, 3), 2U);
    EXPECT_EQ(reader.Held(4, 3), 3U);
    EXPECT_EQ(reader.Held(-1, 3), 0U);
    for (const std::int64_t lie :
         {std::numeric_limits<std::int64_t>::max(), std::int64_t{1} << 62, std::int64_t{0x7FFFFFFF}}) {
        EXPECT_FALSE(reader.Holds(lie, 8));
        EXPECT_EQ(reader.Held(lie, 8), 1U);
    }
    EXPECT_FALSE(reader.Holds(std::numeric_limits<std::int64_t>::min(), 8));
}

TEST(Bytes, FitTextIsWhatTheFieldGivesBack) {
    EXPECT_EQ(FitText("abcdef", 3), "abc");
    EXPECT_EQ(FitText("èèèè", 3), "èèè"); // one byte each in the file
    EXPECT_EQ(FitText(" ab cd", 4), "ab");
    EXPECT_EQ(FitText("ж", 5), "?");
}

} // namespace
} // namespace kelvash
