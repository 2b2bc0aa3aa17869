#include "swap/picture.h"

#include <gmock/gmock.h>
#include <turbojpeg.h>

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include "foundation/files.h"
#include "support/bitmaps.h"
#include "support/format_test.h"
#include "support/test_home.h"
#include "swap/bitmap_file.h"
#include "swap/picture_bytes.h"

namespace kelvash::swap {
namespace {

namespace fs = std::filesystem;
using test::BitmapHead;
using test::BitmapKind;
using test::Colour;
using test::kBlocks;
using test::kHeight;
using test::kTwoColourBlocks;
using test::kWidth;
using test::MakeBitmap;
using test::Packing;

constexpr std::size_t kStride = 112; // 37 pixels of 3 bytes, to a multiple of 4

// The head of every bitmap that comes out: 54 + 35 rows of 112 bytes, 24 bits, 40-byte head.
const std::string kHead24(
    "BM\x86\x0F\0\0\0\0\0\0\x36\0\0\0"
    "\x28\0\0\0\x25\0\0\0\x23\0\0\0\1\0\x18\0\0\0\0\0\x50\x0F\0\0"
    "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
    54);

using BlockColours = std::array<Colour, 4>;

// Expects the four blocks in a bitmap of 24 bits. Next to the blocks' borders JPEG blends the colours.
void ExpectBlocks(const std::string& bitmap, const BlockColours& blocks, int tolerance) {
    ASSERT_EQ(bitmap.size(), 54 + kStride * kHeight);
    EXPECT_EQ(bitmap.substr(0, 54), kHead24);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            if (std::abs(x - test::kEdge) < 3 || std::abs(y - test::kEdge) < 3) continue;
            const std::size_t at =
                54 + static_cast<std::size_t>(kHeight - 1 - y) * kStride + static_cast<std::size_t>(x) * 3;
            const Colour& want = blocks[static_cast<std::size_t>(test::BlockAt(x, y))];
            const auto value = [&bitmap](std::size_t offset) {
                return static_cast<int>(static_cast<unsigned char>(bitmap[offset]));
            };
            ASSERT_NEAR(value(at), want.blue, tolerance) << x << ' ' << y;
            ASSERT_NEAR(value(at + 1), want.green, tolerance) << x << ' ' << y;
            ASSERT_NEAR(value(at + 2), want.red, tolerance) << x << ' ' << y;
        }
    }
}

// Expects that the bitmap becomes a JPEG that shows the picture.
void ExpectConverted(const BitmapKind& kind, const BlockColours& blocks, int tolerance = 5) {
    const std::optional<std::string> jpeg = JpegFromBitmap(MakeBitmap(kind));
    ASSERT_TRUE(jpeg.has_value());
    const std::optional<std::string> bitmap = BitmapFromJpeg(*jpeg);
    ASSERT_TRUE(bitmap.has_value());
    ExpectBlocks(*bitmap, blocks, tolerance);
}

std::string Describe(const BitmapKind& kind) {
    return std::to_string(kind.bits) + " bits, head " + std::to_string(static_cast<int>(kind.head)) +
           ", packing " + std::to_string(static_cast<int>(kind.packing)) +
           (kind.top_down ? ", top down" : "");
}

TEST(Picture, WritesBaselineJpegOfQuality90AndHalvedColour) {
    const std::optional<std::string> jpeg = JpegFromBitmap(MakeBitmap({}));
    ASSERT_TRUE(jpeg.has_value());
    EXPECT_EQ(jpeg->substr(0, 11), std::string("\xFF\xD8\xFF\xE0\0\x10JFIF\0", 11));
    EXPECT_EQ(jpeg->substr(jpeg->size() - 2), "\xFF\xD9");
    const std::size_t tables = jpeg->find("\xFF\xDB");
    ASSERT_NE(tables, std::string::npos);
    // The standard's luminance table 16 11 10 16 24 40 51 61 ... scaled by 20 %, in zigzag order.
    EXPECT_EQ(jpeg->substr(tables, 13), std::string("\xFF\xDB\0\x43\0\3\2\2\3\2\2\3\3", 13));
    const std::size_t frame = jpeg->find("\xFF\xC0");
    ASSERT_NE(frame, std::string::npos);
    // 8 bits, 35 rows of 37, three components: 2x2, 1x1, 1x1.
    EXPECT_EQ(jpeg->substr(frame, 19),
              std::string("\xFF\xC0\0\x11\x08\0\x23\0\x25\3\1\x22\0\2\x11\1\3\x11\1", 19));
}

TEST(Picture, ReadsBitmapsOfEveryDepthHeadAndRowOrder) {
    for (const int bits : {1, 4, 8, 16, 24, 32}) {
        for (const BitmapHead head : {BitmapHead::Core, BitmapHead::Info, BitmapHead::Info2,
                                      BitmapHead::Info3, BitmapHead::Os2, BitmapHead::V4, BitmapHead::V5}) {
            for (const bool top_down : {false, true}) {
                BitmapKind kind{.head = head, .bits = bits};
                kind.top_down = top_down && head != BitmapHead::Core;
                SCOPED_TRACE(Describe(kind));
                ExpectConverted(kind, bits == 1 ? kTwoColourBlocks : kBlocks, bits == 16 ? 12 : 5);
            }
        }
    }
}

TEST(Picture, ReadsBitMasksOfEveryKind) {
    struct Masks {
        int bits;
        std::uint32_t red, green, blue;
    };
    const std::vector<Masks> all = {
        {16, 0xF800, 0x07E0, 0x001F},          {16, 0x7C00, 0x03E0, 0x001F},
        {16, 0x001F, 0x07E0, 0xF800},          {16, 0x0F00, 0x00F0, 0x000F},
        {32, 0x00FF0000, 0x0000FF00, 0xFF},    {32, 0xFF, 0x0000FF00, 0x00FF0000},
        {32, 0xFF000000, 0x00FF0000, 0xFF00},  {32, 0x3FF00000, 0x000FFC00, 0x000003FF},
        {32, 0x0000F800, 0x000007E0, 0x00001F}};
    for (const Masks& masks : all) {
        for (const BitmapHead head : {BitmapHead::Info, BitmapHead::Info2, BitmapHead::V4, BitmapHead::V5}) {
            for (const Packing packing : {Packing::BitFields, Packing::AlphaBitFields}) {
                BitmapKind kind{.head = head, .bits = masks.bits, .packing = packing};
                kind.red_mask = masks.red;
                kind.green_mask = masks.green;
                kind.blue_mask = masks.blue;
                SCOPED_TRACE(Describe(kind) + ", red " + std::to_string(masks.red));
                ExpectConverted(kind, kBlocks, masks.bits == 16 ? 12 : 8);
            }
        }
    }
}

TEST(Picture, ReadsRunLengthPackedBitmaps) {
    for (const BitmapHead head : {BitmapHead::Info, BitmapHead::Os2, BitmapHead::V4, BitmapHead::V5}) {
        for (const bool skips : {false, true}) {
            BitmapKind kind{.head = head, .bits = 8, .packing = Packing::Rle8};
            kind.rle_skips = skips;
            ExpectConverted(kind, kBlocks);
            kind.bits = 4;
            kind.packing = Packing::Rle4;
            ExpectConverted(kind, kBlocks);
        }
    }
}

TEST(Picture, ReadsShortPalettes) {
    BlockColours last_is_black = kBlocks;
    last_is_black[3] = {0, 0, 0};
    for (const int bits : {4, 8}) {
        for (const BitmapHead head : {BitmapHead::Core, BitmapHead::Info, BitmapHead::Os2, BitmapHead::V5}) {
            for (const bool states : {true, false}) {
                BitmapKind kind{.head = head, .bits = bits};
                kind.states_colours = states;
                kind.colours = 4;
                SCOPED_TRACE(Describe(kind) + (states ? ", stated" : ", not stated"));
                ExpectConverted(kind, kBlocks);
                kind.colours = 3;
                ExpectConverted(kind, last_is_black);
            }
        }
    }
}

TEST(Picture, OverlooksWhatOtherProgramsLeaveInBitmaps) {
    ExpectConverted({.fourth = 255, .gap = 0, .tail = 2}, kBlocks);
    ExpectConverted({.bits = 32, .fourth = 255}, kBlocks);
    ExpectConverted({.bits = 32, .fourth = 7}, kBlocks);
    ExpectConverted({.gap = 10}, kBlocks);
    ExpectConverted({.bits = 8, .gap = 6, .tail = 3}, kBlocks);
    ExpectConverted({.states_offset = false}, kBlocks);
    ExpectConverted({.bits = 8, .states_offset = false}, kBlocks);
    ExpectConverted({.head = BitmapHead::Core, .bits = 4, .states_offset = false}, kBlocks);
    ExpectConverted({.bits = 8, .colours = 300}, kBlocks); // more entries than 8 bits can name
    ExpectConverted({.bits = 24, .colours = 10}, kBlocks);
    BitmapKind masked{.bits = 16, .packing = Packing::BitFields, .states_offset = false};
    masked.red_mask = 0xF800;
    masked.green_mask = 0x07E0;
    masked.blue_mask = 0x001F;
    ExpectConverted(masked, kBlocks, 12);
}

TEST(Picture, ReadsTheSmallestBitmap) {
    const std::string one_pixel(
        "BM\x3A\0\0\0\0\0\0\0\x36\0\0\0"
        "\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x20\0\0\0\0\0\0\0\0\0"
        "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "\x20\x40\xC0\0",
        58);
    const std::optional<std::string> jpeg = JpegFromBitmap(one_pixel);
    ASSERT_TRUE(jpeg.has_value());
    const std::optional<std::string> bitmap = BitmapFromJpeg(*jpeg);
    ASSERT_TRUE(bitmap.has_value());
    ASSERT_EQ(bitmap->size(), 58U);
    EXPECT_NEAR(static_cast<unsigned char>((*bitmap)[54]), 0x20, 5);
    EXPECT_NEAR(static_cast<unsigned char>((*bitmap)[55]), 0x40, 5);
    EXPECT_NEAR(static_cast<unsigned char>((*bitmap)[56]), 0xC0, 5);
}

TEST(Picture, RefusesABitmapCutAtAnyLength) {
    for (const BitmapKind& kind :
         {BitmapKind{}, BitmapKind{.head = BitmapHead::Core, .bits = 1},
          BitmapKind{.bits = 8, .packing = Packing::Rle8}, BitmapKind{.bits = 4, .packing = Packing::Rle4}}) {
        const std::string bitmap = MakeBitmap(kind);
        SCOPED_TRACE(Describe(kind));
        for (std::size_t length = 0; length < bitmap.size(); ++length)
            ASSERT_FALSE(JpegFromBitmap(bitmap.substr(0, length)).has_value()) << length;
    }
}

// Any bitmap that is taken comes out in one plain form, which comes out as it is.
TEST(PlainBitmapFormat, WithstandsCutsAndLies) {
    for (const BitmapKind& kind : {BitmapKind{}, BitmapKind{.bits = 8}}) {
        SCOPED_TRACE(Describe(kind));
        const std::optional<std::string> plain = PlainBitmap(MakeBitmap(kind));
        ASSERT_TRUE(plain.has_value());
        const auto pixels = [](const std::string& bitmap) { return bitmap.size(); };
        test::ExpectFormat<std::string>({.bytes = *plain,
                                         .decode = PlainBitmap,
                                         .encode = [](const std::string& bitmap) { return bitmap; },
                                         .counts = {{18, 4, pixels, plain->size()},
                                                    {22, 4, pixels, plain->size()},
                                                    {46, 4, pixels, plain->size()}}});
    }
}

TEST(Picture, RefusesABitmapThatLiesAboutItself) {
    const std::string good = MakeBitmap({.bits = 8});
    struct Lie {
        const char* what;
        std::size_t at;
        std::uint32_t value;
    };
    for (const Lie& lie :
         {Lie{"head of 41 bytes", 14, 41}, Lie{"head without end", 14, 0xFFFFFFFF}, Lie{"no width", 18, 0},
          Lie{"no height", 22, 0}, Lie{"negative width", 18, 0xFFFFFFDB},
          Lie{"lowest height", 22, 0x80000000}, Lie{"wider than the file", 18, 41},
          Lie{"higher than the file", 22, 36}, Lie{"7 bits", 28, 7}, Lie{"0 bits", 28, 0},
          Lie{"Rle4 of 8 bits", 30, 2}, Lie{"masks of 8 bits", 30, 3}, Lie{"a packed JPEG", 30, 4},
          Lie{"a strange packing", 30, 77}, Lie{"pixels behind the end", 10, 0x7FFFFFFF},
          Lie{"palette without end", 10, 0xFFFFFFFF}}) {
        std::string bitmap = good;
        SetU32(bitmap, lie.at, lie.value);
        EXPECT_FALSE(JpegFromBitmap(bitmap).has_value()) << lie.what;
    }
    std::string other = good;
    other[1] = 'A';
    EXPECT_FALSE(JpegFromBitmap(other).has_value());
    EXPECT_FALSE(
        JpegFromBitmap(MakeBitmap({.bits = 16, .packing = Packing::BitFields})).has_value()); // no masks
}

// A colour count beyond all sense only makes the palette end where the pixels begin.
TEST(Picture, SurvivesAnEndlessPalette) {
    std::string bitmap = MakeBitmap({.bits = 8});
    SetU32(bitmap, 46, 0xFFFFFFFF);
    EXPECT_TRUE(JpegFromBitmap(bitmap).has_value());
    SetU32(bitmap, 10, 0);
    EXPECT_FALSE(JpegFromBitmap(bitmap).has_value());
}

TEST(Picture, ReadsGreyAndProgressiveAndFullColourJpegs) {
    for (const std::string& jpeg :
         {ForeignJpeg(TJPF_GRAY, TJSAMP_GRAY, 0), ForeignJpeg(TJPF_RGB, TJSAMP_444, TJFLAG_PROGRESSIVE),
          ForeignJpeg(TJPF_RGB, TJSAMP_422, 0), ForeignJpeg(TJPF_RGB, TJSAMP_440, 0)}) {
        const std::optional<std::string> bitmap = BitmapFromJpeg(jpeg);
        ASSERT_TRUE(bitmap.has_value());
        ASSERT_EQ(bitmap->size(), 54U + 32 * 96);
        for (std::size_t at = 54; at < bitmap->size(); ++at)
            ASSERT_NEAR(static_cast<unsigned char>((*bitmap)[at]), 100, 2);
    }
}

TEST(Picture, RefusesAJpegForPrinters) {
    EXPECT_FALSE(BitmapFromJpeg(ForeignJpeg(TJPF_CMYK, TJSAMP_444, 0)).has_value());
}

TEST(Picture, RefusesAJpegCutAtAnyLength) {
    for (const int flags : {0, TJFLAG_PROGRESSIVE}) {
        const std::string jpeg = ForeignJpeg(TJPF_RGB, TJSAMP_420, flags);
        for (std::size_t length = 0; length < jpeg.size() - 2; ++length)
            ASSERT_FALSE(BitmapFromJpeg(jpeg.substr(0, length)).has_value()) << length;
    }
}

TEST(Picture, RefusesWhatIsNoJpeg) {
    EXPECT_FALSE(BitmapFromJpeg("").has_value());
    EXPECT_FALSE(BitmapFromJpeg("\xFF\xD8\xFF\xD9").has_value());
    EXPECT_FALSE(BitmapFromJpeg(MakeBitmap({})).has_value());
}

TEST(Picture, RefusesAJpegOutOfBounds) {
    std::string jpeg = ForeignJpeg(TJPF_GRAY, TJSAMP_GRAY, 0, 30001, 8);
    EXPECT_FALSE(BitmapFromJpeg(jpeg).has_value());
    jpeg = ForeignJpeg(TJPF_GRAY, TJSAMP_GRAY, 0, 8, 30001);
    EXPECT_FALSE(BitmapFromJpeg(jpeg).has_value());
    EXPECT_TRUE(BitmapFromJpeg(ForeignJpeg(TJPF_GRAY, TJSAMP_GRAY, 0, 30000, 8)).has_value());
}

using PictureFile = test::TestHome;

TEST_F(PictureFile, ConvertsBothWays) {
    test::MakeFile(drive / "load.bmp", MakeBitmap({.tail = 2}));
    ASSERT_TRUE(BitmapToJpeg("C:\\load.bmp", "C:\\load.jpg"));
    EXPECT_EQ(test::BytesOf(drive / "load.jpg").substr(0, 3), "\xFF\xD8\xFF");
    ASSERT_TRUE(JpegToBitmap("C:\\load.jpg", "C:\\new.bmp"));
    ExpectBlocks(test::BytesOf(drive / "new.bmp"), kBlocks, 5);
}

TEST_F(PictureFile, LeavesAnOldTargetWhenItFails) {
    const std::string bitmap = MakeBitmap({});
    test::MakeFile(drive / "load.bmp", bitmap.substr(0, 100));
    test::MakeFile(drive / "load.jpg", "old");
    EXPECT_FALSE(BitmapToJpeg("C:\\load.bmp", "C:\\load.jpg"));
    EXPECT_EQ(test::BytesOf(drive / "load.jpg"), "old");
    EXPECT_FALSE(JpegToBitmap("C:\\load.jpg", "C:\\load.bmp"));
    EXPECT_EQ(test::BytesOf(drive / "load.bmp"), bitmap.substr(0, 100));
    EXPECT_FALSE(BitmapToJpeg("C:\\load.bmp", "C:\\new.jpg"));
    EXPECT_FALSE(test::Exists(drive / "new.jpg"));
}

TEST_F(PictureFile, RefusesMissingFilesAndFolders) {
    test::MakeFile(drive / "load.bmp", MakeBitmap({}));
    EXPECT_FALSE(BitmapToJpeg("C:\\nothing.bmp", "C:\\new.jpg"));
    EXPECT_FALSE(BitmapToJpeg("C:", "C:\\new.jpg"));
    EXPECT_FALSE(BitmapToJpeg("C:\\load.bmp", "C:\\missing\\load.jpg"));
    EXPECT_FALSE(JpegToBitmap("C:\\nothing.jpg", "C:\\new.bmp"));
    EXPECT_THAT(ListFiles("C:", "*"), testing::ElementsAre("C:\\load.bmp"));
}

} // namespace
} // namespace kelvash::swap
