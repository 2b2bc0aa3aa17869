// Pictures come in the size at which they are shown: painting scales none.
#include "ui/picture_view.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "support/ui_home.h"
#include "ui/level_banner.h"

namespace kelvash::test {
namespace {

class PictureViewTest : public UiHome<TestHome> {
  protected:
    // Red on the left, blue on the right.
    QString Picture(const QSize& size, const char* name) const {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QPainter painter(&picture);
        painter.fillRect(size.width() / 2, 0, size.width(), size.height(), Qt::blue);
        painter.end();
        const QString path = QString::fromStdString((home / name).string());
        EXPECT_TRUE(picture.save(path));
        return path;
    }
    static void Show(ui::PictureView& view, const QSize& size) {
        view.resize(size);
        view.show();
    }
    // What of the size the screen has pixels for.
    static QSize Pixels(const QSize& size, const QWidget& view) {
        return (QSizeF(size) * view.devicePixelRatioF()).toSize();
    }
};

TEST_F(PictureViewTest, ReadsAPictureAsLargeAsItIsShown) {
    ui::PictureView view(nullptr);
    Show(view, {400, 200});
    view.ShowFile(Picture({1600, 1200}, "large.bmp"), {});
    WaitUntil([&] { return view.HasPicture(); });
    const QSize shown = view.PictureSize();
    EXPECT_EQ(shown.height(), Pixels({400, 200}, view).height());
    EXPECT_NEAR(shown.width(), shown.height() * 4 / 3, 1);
}

TEST_F(PictureViewTest, EnlargesASmallOne) {
    ui::PictureView view(nullptr);
    Show(view, {400, 300});
    view.ShowFile(Picture({40, 30}, "small.png"), {});
    WaitUntil([&] { return view.HasPicture(); });
    EXPECT_EQ(view.PictureSize(), Pixels({400, 300}, view));
}

TEST_F(PictureViewTest, ReadsItAnewForAnotherSize) {
    ui::PictureView view(nullptr);
    Show(view, {400, 300});
    view.ShowFile(Picture({800, 600}, "shot.jpg"), {});
    WaitUntil([&] { return view.HasPicture(); });
    for (const QSize& size : {QSize(320, 240), QSize(600, 450), QSize(640, 480)}) {
        view.resize(size);
        WaitUntil([&] { return view.PictureSize() == Pixels(size, view); });
        EXPECT_TRUE(view.HasPicture());
    }
}

TEST_F(PictureViewTest, StandsInTheMiddleToThePixel) {
    ui::PictureView view(nullptr);
    Show(view, {400, 200});
    view.ShowFile(Picture({100, 100}, "square.bmp"), {});
    WaitUntil([&] { return view.HasPicture(); });
    const QImage shown = view.grab().toImage();
    const double scale = shown.devicePixelRatio();
    const auto at = [&](int x, int y) {
        return shown.pixelColor(static_cast<int>(x * scale), static_cast<int>(y * scale));
    };
    EXPECT_EQ(at(101, 100), QColor(Qt::red));
    EXPECT_EQ(at(198, 2), QColor(Qt::red));
    EXPECT_EQ(at(202, 197), QColor(Qt::blue));
    EXPECT_EQ(at(298, 100), QColor(Qt::blue));
    EXPECT_NE(at(97, 100), QColor(Qt::red));
    EXPECT_NE(at(303, 100), QColor(Qt::blue));
}

TEST_F(PictureViewTest, AnotherFileTakesThePlaceOfOneThatIsStillRead) {
    const QString first = Picture({2000, 1500}, "first.bmp"), second = Picture({80, 60}, "second.bmp");
    ui::PictureView view(nullptr);
    Show(view, {200, 150});
    view.ShowFile(first, {});
    QTest::qWait(20);
    view.ShowFile(second, {});
    view.resize(280, 210);
    WaitUntil([&] { return view.PictureSize() == Pixels({280, 210}, view); });
    QTest::qWait(100);
    EXPECT_EQ(view.PictureSize(), Pixels({280, 210}, view));
    EXPECT_EQ(view.accessibleName().toStdString(), "second.bmp");
}

TEST_F(PictureViewTest, TheBannersPictureFollowsItsSize) {
    ui::LevelBanner banner(nullptr);
    banner.resize(400, 100);
    banner.show();
    banner.ShowLevel(QStringLiteral("City"), {}, Picture({800, 600}, "city.bmp"));
    for (const QSize& size : {QSize(400, 100), QSize(500, 200), QSize(300, 150)}) {
        banner.resize(size);
        WaitUntil([&] { return banner.PictureSize() == Pixels(size, banner); });
    }
}

} // namespace
} // namespace kelvash::test
