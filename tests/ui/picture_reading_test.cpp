// Pictures that are none, lie about themselves, or reach for more than themselves.
#include "ui/picture_reading.h"

#include <gmock/gmock.h>

#include <QBuffer>

namespace kelvash::test {
namespace {

constexpr QSize kCover(80, 60);

QByteArray BytesOf(const QSize& size, const char* format) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QBuffer buffer;
    EXPECT_TRUE(picture.save(&buffer, format));
    return buffer.data();
}

TEST(PictureReading, TellsByTheContents) {
    for (const char* format : {"jpg", "bmp", "png"}) {
        EXPECT_EQ(ui::DecodeWhole(BytesOf({320, 240}, format), {160, 90}).size(), QSize(120, 90)) << format;
        EXPECT_EQ(ui::DecodeCover(BytesOf({320, 240}, format), kCover).size(), kCover) << format;
    }
}

TEST(PictureReading, ShowsNothingOfACutPicture) {
    QByteArray cut = BytesOf({320, 240}, "jpg");
    cut.chop(cut.size() / 3);
    EXPECT_TRUE(ui::DecodeWhole(cut, kCover).isNull());
}

TEST(PictureReading, TakesNothingThatNamesOtherFiles) {
    const QByteArray drawing =
        "<svg xmlns='http://www.w3.org/2000/svg' width='80' height='60'>"
        "<rect width='80' height='60' fill='red'/></svg>";
    EXPECT_TRUE(ui::DecodeWhole(drawing, kCover).isNull());
    EXPECT_TRUE(ui::DecodeCover(drawing, kCover).isNull());
    EXPECT_TRUE(ui::DecodeWhole("P3 1 1 255 255 0 0", kCover).isNull());
    EXPECT_TRUE(ui::DecodeWhole({}, kCover).isNull());
}

TEST(PictureReading, ACoverOfASliverIsNoLargerThanACover) {
    for (const QSize& size : {QSize(30000, 1), QSize(1, 30000), QSize(1, 1)}) {
        const QImage cover = ui::DecodeCover(BytesOf(size, "bmp"), kCover);
        EXPECT_EQ(cover.size(), kCover);
        EXPECT_EQ(cover.pixelColor(40, 30), QColor(Qt::red));
    }
}

TEST(PictureReading, ASliverFitsAsAWhole) {
    EXPECT_EQ(ui::DecodeWhole(BytesOf({30000, 1}, "bmp"), kCover).size(), QSize(80, 1));
    EXPECT_EQ(ui::DecodeWhole(BytesOf({1, 30000}, "bmp"), kCover).size(), QSize(1, 60));
    EXPECT_EQ(ui::DecodeWhole(BytesOf({1, 1}, "bmp"), kCover).size(), QSize(60, 60));
}

TEST(PictureReading, ABitmapThatIsCutShortIsNone) {
    const QByteArray whole = BytesOf({320, 240}, "bmp");
    for (const qsizetype length : {whole.size() - 1, whole.size() / 2, qsizetype{60}, qsizetype{2}}) {
        EXPECT_TRUE(ui::DecodeWhole(whole.left(length), kCover).isNull()) << length;
        EXPECT_TRUE(ui::DecodeCover(whole.left(length), kCover).isNull()) << length;
    }
}

} // namespace
} // namespace kelvash::test
