// Pictures on a full disk and within bounds of memory.
#include "swap/picture.h"

#include <gmock/gmock.h>

#include "foundation/files.h"
#include "support/bitmaps.h"
#include "support/child_process.h"
#include "support/test_home.h"
#include "swap/picture_bytes.h"

namespace kelvash::swap {
namespace {

namespace fs = std::filesystem;
using test::MakeBitmap;
using test::Packing;

TEST(Picture, ReservesNothingForAHugeStatedSize) {
    std::string plain = MakeBitmap({});
    SetU32(plain, 18, 30000);
    SetU32(plain, 22, 30000);
    std::string packed = MakeBitmap({.bits = 8, .packing = Packing::Rle8});
    SetU32(packed, 18, 30000);
    SetU32(packed, 22, 30000);
    std::string jpeg = ForeignJpeg(TJPF_RGB, TJSAMP_420, 0);
    const std::size_t frame = jpeg.find("\xFF\xC0");
    ASSERT_NE(frame, std::string::npos);
    jpeg.replace(frame + 5, 4, "\x75\x30\x75\x30");
    const auto convert = [&] {
        return !JpegFromBitmap(plain).has_value() && !JpegFromBitmap(packed).has_value() &&
               !BitmapFromJpeg(jpeg).has_value();
    };
    const test::ChildResult result = test::InChild(convert);
    EXPECT_TRUE(result.answer);
    EXPECT_LT(result.grown, 50'000'000);
}

using PictureFile = test::TestHome;

TEST_F(PictureFile, RefusesAFileBeyondTheBoundsWithoutReadingIt) {
    test::MakeFile(drive / "load.bmp", MakeBitmap({}));
    fs::resize_file(drive / "load.bmp", 2'000'000'000);
    const auto convert = [] { return !BitmapToJpeg("C:\\load.bmp", "C:\\load.jpg"); };
    const test::ChildResult result = test::InChild(convert);
    EXPECT_TRUE(result.answer);
    EXPECT_LT(result.grown, 50'000'000);
}

TEST_F(PictureFile, LeavesNothingOnAFullDisk) {
    test::MakeFile(drive / "load.bmp", MakeBitmap({}));
    ASSERT_TRUE(BitmapToJpeg("C:\\load.bmp", "C:\\load.jpg"));
    const auto convert = [] {
        test::LimitFiles(100);
        return !BitmapToJpeg("C:\\load.bmp", "C:\\new.jpg") && !JpegToBitmap("C:\\load.jpg", "C:\\new.bmp");
    };
    EXPECT_TRUE(test::InChild(convert).answer);
    EXPECT_THAT(ListFiles("C:", "*"), testing::ElementsAre("C:\\load.bmp", "C:\\load.jpg"));
}

} // namespace
} // namespace kelvash::swap
