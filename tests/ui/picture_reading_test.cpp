// Pictures that are none, lie about themselves, or reach for more than themselves.
#include "ui/picture_reading.h"

#include <gmock/gmock.h>

#include <QBuffer>
#include <QPainter>
#include <map>
#include <vector>

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

// Red on the left, blue on the right, held so by the camera.
QByteArray HeldSo(char orientation) {
    QImage picture({320, 240}, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QPainter(&picture).fillRect(160, 0, 160, 240, Qt::blue);
    QBuffer buffer;
    EXPECT_TRUE(picture.save(&buffer, "jpg"));
    QByteArray exif(
        "\xFF\xE1\0\x22"
        "Exif\0\0MM\0*\0\0\0\x08\0\1\x01\x12\0\3\0\0\0\1\0",
        29);
    exif += orientation;
    exif += QByteArray(6, '\0');
    QByteArray bytes = buffer.data();
    return bytes.insert(2, exif);
}

TEST(PictureReading, APictureStandsUprightInEachPlace) {
    const std::vector<std::pair<char, std::string>> red_at = {{1, "left"},   {2, "right"}, {3, "right"},
                                                              {4, "left"},   {5, "top"},   {6, "top"},
                                                              {7, "bottom"}, {8, "bottom"}};
    for (const auto& [orientation, side] : red_at) {
        const QByteArray bytes = HeldSo(orientation);
        for (const QImage& shown : {ui::DecodeWhole(bytes, {120, 120}), ui::DecodeCover(bytes, {120, 120})}) {
            const int right = shown.width() - 10, bottom = shown.height() - 10;
            const std::map<std::string, QPoint> places = {
                {"left", {9, 40}}, {"right", {right, 40}}, {"top", {40, 9}}, {"bottom", {40, bottom}}};
            const QColor colour = shown.pixelColor(places.at(side));
            EXPECT_GT(colour.red(), 200) << int{orientation};
            EXPECT_LT(colour.blue(), 60) << int{orientation};
        }
    }
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
