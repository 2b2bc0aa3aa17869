// What holds for every binary format, tried on one sound example of it: it is written again to the byte, may
// be cut anywhere, and its counts may lie. docs/formats.md describes the bytes.
//
//     test::ExpectFormat<Thing>({.bytes = "...", .decode = ..., .encode = ..., .takes_cut = ..., .counts =
//     {...}});
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::test {

// A number of the example that says how much of something follows.
template <class Value>
struct StatedCount {
    std::size_t offset;
    std::size_t width;                              // bytes, up to 4
    std::function<std::size_t(const Value&)> items; // how many a value has got
    std::size_t most;                               // how many the example's bytes have room for
};

template <class Value>
struct Format {
    std::string bytes; // the example
    // The value of bytes; nothing for those that are refused.
    std::function<std::optional<Value>(std::string_view)> decode;
    // The bytes of a value; none for a format that is only read.
    std::function<std::string(const Value&)> encode{};
    // True for the lengths below the whole that are taken; without it there are none.
    std::function<bool(std::size_t length)> takes_cut{};
    std::vector<StatedCount<Value>> counts{};
};

namespace format_detail {

// Reads from a copy that ends where its memory does, so that the sanitizers see a step behind the end.
template <class Value>
std::optional<Value> Decode(const Format<Value>& format, std::string_view bytes) {
    const std::vector<char> copy(bytes.begin(), bytes.end());
    return format.decode({copy.data(), copy.size()});
}

// What was read of damaged bytes is sound all the same: written, it reads as itself.
template <class Value>
void ExpectSound(const Format<Value>& format, const std::optional<Value>& value) {
    if (!value || !format.encode) return;
    const std::string bytes = format.encode(*value);
    const std::optional<Value> again = Decode(format, bytes);
    ASSERT_TRUE(again.has_value());
    EXPECT_EQ(format.encode(*again), bytes);
}

inline std::string WithNumber(std::string bytes, std::size_t offset, std::size_t width,
                              std::uint32_t number) {
    for (std::size_t i = 0; i < width; ++i)
        bytes.at(offset + i) = static_cast<char>(number >> (8 * i) & 0xFF);
    return bytes;
}

} // namespace format_detail

template <class Value>
void ExpectReencoded(const Format<Value>& format) {
    const std::optional<Value> value = format_detail::Decode(format, format.bytes);
    ASSERT_TRUE(value.has_value());
    if (format.encode) {
        EXPECT_EQ(format.encode(*value), format.bytes);
    }
}

template <class Value>
void ExpectCutAnywhere(const Format<Value>& format) {
    for (std::size_t length = 0; length < format.bytes.size(); ++length) {
        const std::string_view cut = std::string_view(format.bytes).substr(0, length);
        const std::optional<Value> value = format_detail::Decode(format, cut);
        ASSERT_EQ(value.has_value(), format.takes_cut && format.takes_cut(length)) << "cut at " << length;
        format_detail::ExpectSound(format, value);
    }
}

template <class Value>
void ExpectLiesInVain(const Format<Value>& format) {
    for (const StatedCount<Value>& count : format.counts) {
        const std::optional<Value> honest = format_detail::Decode(format, format.bytes);
        ASSERT_TRUE(honest && count.items(*honest) > 0) << "the example says nothing of what is counted";
        ASSERT_LE(count.items(*honest), count.most);
        const std::uint32_t top = std::uint32_t{1} << (8 * count.width - 1);
        for (const std::uint32_t lie : {0U, 1U, 2U, 3U, 5U, 100U, 255U, top - 1, top, top + 1, 2 * top - 1}) {
            const std::string bytes = format_detail::WithNumber(format.bytes, count.offset, count.width, lie);
            const std::optional<Value> value = format_detail::Decode(format, bytes);
            if (value) {
                EXPECT_LE(count.items(*value), count.most) << lie << " at " << count.offset;
            }
            format_detail::ExpectSound(format, value);
        }
    }
}

template <class Value>
void ExpectFormat(const Format<Value>& format) {
    ExpectReencoded(format);
    ExpectCutAnywhere(format);
    ExpectLiesInVain(format);
}

} // namespace kelvash::test
