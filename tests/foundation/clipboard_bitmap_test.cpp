#include "foundation/clipboard_bitmap.h"

#include <gtest/gtest.h>

namespace kelvash {
namespace {

// A head of 40 bytes: one pixel, so many bits, packed so, so many colours.
std::string Head(char bits, char packing, std::string colours) {
    colours.resize(4);
    return std::string("\x28\0\0\0\1\0\0\0\1\0\0\0\1\0", 14) + bits + '\0' + packing + std::string(15, '\0') +
           colours + std::string(4, '\0');
}

// Where the file says that the pixels begin; -1 if there is none.
int PixelsOf(const std::string& dib) {
    const std::optional<std::string> file = FileOfDib(dib);
    return file ? static_cast<unsigned char>((*file)[10]) + 256 * static_cast<unsigned char>((*file)[11])
                : -1;
}

const std::string kRoom(2000, 'p');

TEST(ClipboardBitmap, GetsTheHeadOfAFile) {
    EXPECT_EQ(FileOfDib(Head(24, 0, "") + "rgb"),
              std::string("BM\x39\0\0\0\0\0\0\0\x36\0\0\0", 14) + Head(24, 0, "") + "rgb");
}

TEST(ClipboardBitmap, HasItsPixelsBehindMasksAndPalette) {
    EXPECT_EQ(PixelsOf(Head(24, 0, "") + kRoom), 54);
    EXPECT_EQ(PixelsOf(Head(32, 3, "") + kRoom), 66);
    EXPECT_EQ(PixelsOf(Head(32, 6, "") + kRoom), 70);
    EXPECT_EQ(PixelsOf(Head(8, 0, "") + kRoom), 54 + 1024);
    EXPECT_EQ(PixelsOf(Head(8, 0, "\2") + kRoom), 54 + 8);
    EXPECT_EQ(PixelsOf(Head(4, 0, "\xFF\xFF\xFF\xFF") + kRoom), 54 + 64) << "no more than four bits can name";
}

TEST(ClipboardBitmap, IsNoneWhereItIsCutOrOld) {
    EXPECT_EQ(PixelsOf(Head(24, 0, "")), -1);
    EXPECT_EQ(PixelsOf(Head(8, 0, "") + "p"), -1);
    EXPECT_EQ(PixelsOf(""), -1);
    std::string old = Head(24, 0, "") + kRoom;
    old[0] = 12;
    EXPECT_EQ(PixelsOf(old), -1);
}

TEST(ClipboardBitmap, LosesTheHeadOfAFileAndWhatLiesBeforeItsPixels) {
    const std::string head = Head(24, 0, "");
    EXPECT_EQ(DibOfFile(std::string("BM\0\0\0\0\0\0\0\0\x36\0\0\0", 14) + head + "rgb"), head + "rgb");
    EXPECT_EQ(DibOfFile(std::string("BM\0\0\0\0\0\0\0\0\x38\0\0\0", 14) + head + "..rgb"), head + "rgb");
    EXPECT_FALSE(DibOfFile(std::string("BM\0\0\0\0\0\0\0\0\x35\0\0\0", 14) + head + "rgb").has_value());
    EXPECT_FALSE(DibOfFile(std::string("BM\0\0\0\0\0\0\0\0\x39\0\0\0", 14) + head + "rgb").has_value());
    EXPECT_FALSE(DibOfFile("BM").has_value());
    EXPECT_FALSE(DibOfFile("").has_value());
}

} // namespace
} // namespace kelvash
