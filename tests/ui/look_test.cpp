#include "ui/look.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QCheckBox>
#include <QListWidget>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QTest>
#include <QToolButton>
#include <algorithm>

#include "ui/icons.h"

namespace kelvash::ui {
namespace {

constexpr double kReadable = 4.5;

// The palettes on which every role has to be readable: both of ours, and strange ones of desktops.
std::vector<QPalette> Palettes() {
    QPalette solarized(QColor(0xee, 0xe8, 0xd5), QColor(0xfd, 0xf6, 0xe3));
    solarized.setColor(QPalette::WindowText, QColor(0x65, 0x7b, 0x83)); // 4.1 on its own ground
    QPalette yellow(QColor(0, 0, 0), QColor(0, 0, 0));
    yellow.setColor(QPalette::Base, Qt::black);
    yellow.setColor(QPalette::WindowText, Qt::yellow);
    yellow.setColor(QPalette::Highlight, QColor(0, 0, 0x80));
    return {OwnPalette(false), OwnPalette(true), solarized, yellow};
}

TEST(Look, EveryTextCanBeReadOnEverySurface) {
    int compared = 0;
    for (const QPalette& palette : Palettes())
        for (const Role text : {Role::Text, Role::MutedText, Role::Danger, Role::Success})
            for (const QColor& surface :
                 {ColourOf(Role::Surface, palette), ColourOf(Role::Raised, palette),
                  palette.color(QPalette::Active, QPalette::Button), ChosenGround(palette)}) {
                EXPECT_GE(ContrastOf(ColourOf(text, palette), surface), kReadable)
                    << static_cast<int>(text) << " on " << surface.name().toStdString();
                ++compared;
            }
    EXPECT_EQ(compared, 64);
}

TEST(Look, TextOnTheAccentCanBeRead) {
    for (const QPalette& palette : Palettes())
        EXPECT_GE(ContrastOf(ColourOf(Role::OnAccent, palette), ColourOf(Role::Accent, palette)), kReadable);
}

TEST(Look, WhatWasFoundCanBeReadAndStandsOutFromItsRow) {
    for (const bool dark : {false, true})
        for (const bool chosen : {false, true}) {
            const QPalette palette = OwnPalette(dark);
            const QColor found = FoundGround(palette, chosen);
            EXPECT_GE(ContrastOf(ColourOf(Role::Text, palette), found), kReadable) << dark << chosen;
            const QColor row = chosen ? ChosenGround(palette) : palette.color(QPalette::Base);
            EXPECT_GE(ContrastOf(found, row), 1.3) << dark << chosen;
        }
}

TEST(Look, ContrastIsThatOfTheLuminance) {
    EXPECT_DOUBLE_EQ(ContrastOf(Qt::black, Qt::white), 21);
    EXPECT_DOUBLE_EQ(ContrastOf(Qt::white, Qt::black), 21);
    EXPECT_DOUBLE_EQ(ContrastOf(Qt::red, Qt::red), 1);
    EXPECT_NEAR(ContrastOf(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
}

TEST(Look, TypeHasFourSizesOfTheSystemsFont) {
    EXPECT_LT(FontOf(Type::Caption).pointSizeF(), FontOf(Type::Text).pointSizeF());
    EXPECT_LT(FontOf(Type::Text).pointSizeF(), FontOf(Type::Title).pointSizeF());
    EXPECT_LT(FontOf(Type::Title).pointSizeF(), FontOf(Type::Headline).pointSizeF());
    EXPECT_EQ(FontOf(Type::Headline).family(), FontOf(Type::Text).family());
}

// Pixels that are not the ground's.
int Drawn(const QImage& image, const QColor& ground) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) != ground) ++count;
    return count;
}

TEST(Look, AChosenRowIsTintedByTheAccentWithTheKeyboardOnItOrNot) {
    QListWidget list;
    list.addItem(QStringLiteral("row"));
    list.setCurrentRow(0);
    list.resize(200, 80);
    list.show();
    for (QWidget* focus : {static_cast<QWidget*>(&list), static_cast<QWidget*>(nullptr)}) {
        if (focus != nullptr)
            focus->setFocus(Qt::TabFocusReason);
        else
            list.clearFocus();
        const QRect row = list.visualItemRect(list.item(0));
        const QImage picture = list.viewport()->grab().toImage();
        const QColor shown = picture.pixelColor(row.right() - row.height(), row.center().y());
        const QColor wanted = ui::Mixed(ColourOf(Role::Accent), ColourOf(Role::Raised), 0.22);
        EXPECT_NEAR(shown.red(), wanted.red(), 2);
        EXPECT_NEAR(shown.green(), wanted.green(), 2);
        EXPECT_NEAR(shown.blue(), wanted.blue(), 2);
    }
}

TEST(Look, AnEmptyListOrTextShowsThatItHasTheKeyboard) {
    QWidget form;
    QListWidget list(&form);
    QPlainTextEdit text(&form);
    text.move(0, 100);
    for (QAbstractScrollArea* area :
         {static_cast<QAbstractScrollArea*>(&list), static_cast<QAbstractScrollArea*>(&text)})
        area->resize(120, 80);
    form.resize(200, 200);
    form.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    const auto edge = [&form](const QWidget& area) {
        const QImage shown = form.grab().toImage();
        const QPoint place = area.geometry().topLeft() + QPoint(area.width() / 2, 0);
        return shown.pixelColor(place * shown.devicePixelRatio());
    };
    text.setFocus();
    EXPECT_EQ(edge(text), ColourOf(Role::Accent));
    EXPECT_NE(edge(list), ColourOf(Role::Accent));
    list.setFocus();
    EXPECT_EQ(edge(list), ColourOf(Role::Accent));
    EXPECT_NE(edge(text), ColourOf(Role::Accent));
}

// As on a desktop with colours of its own that goes from light to dark.
TEST(Look, AControlFollowsAChangeOfThePaletteWhileItsFormIsOpen) {
    QWidget form;
    QPushButton button(&form);
    FollowPalette(&button, [](const QPalette& program) {
        QPalette own;
        own.setColor(QPalette::Button, program.color(QPalette::Highlight));
        own.setColor(QPalette::ButtonText, ColourOf(Role::Danger, program));
        return own;
    });
    form.show();
    const QPalette before = QApplication::palette();
    for (const bool dark : {false, true, false}) {
        const QPalette palette = OwnPalette(dark);
        QApplication::setPalette(palette);
        QApplication::processEvents(); // windows are told later
        EXPECT_EQ(button.palette().color(QPalette::Button), palette.color(QPalette::Highlight));
        EXPECT_EQ(button.palette().color(QPalette::ButtonText), ColourOf(Role::Danger, palette));
        EXPECT_EQ(button.palette().color(QPalette::Window), palette.color(QPalette::Window));
    }
    QApplication::setPalette(before);
    QApplication::processEvents();
}

// The strongest contrast to the ground within the mark of an option.
double ContrastOfMark(QAbstractButton& option, QStyle::SubElement mark) {
    option.resize(option.sizeHint());
    const QImage picture = option.grab().toImage();
    QStyleOptionButton drawn;
    drawn.initFrom(&option);
    const QRect place = option.style()->subElementRect(mark, &drawn, &option);
    double contrast = 1;
    for (int y = place.top(); y <= place.bottom(); ++y)
        for (int x = place.left(); x <= place.right(); ++x)
            contrast =
                std::max(contrast, ContrastOf(picture.pixelColor(QPoint(x, y) * picture.devicePixelRatio()),
                                              ColourOf(Role::Surface)));
    return contrast;
}

TEST(Look, MarksOfOptionsStandOutFromTheirGround) {
    constexpr double kSeen = 3; // contrast of what is no text
    for (const bool dark : {false, true}) {
        TakeLook(dark);
        for (const bool on : {false, true}) {
            QCheckBox check;
            check.setChecked(on);
            EXPECT_GE(ContrastOfMark(check, QStyle::SE_CheckBoxIndicator), kSeen) << dark << on;
            QRadioButton choice;
            choice.setChecked(on);
            EXPECT_GE(ContrastOfMark(choice, QStyle::SE_RadioButtonIndicator), kSeen) << dark << on;
        }
    }
    TakeLook(false);
}

// One that holds has the accent's colour, an other one hasn't.
TEST(Look, AMarkTellsWhetherItsOptionHolds) {
    for (const bool dark : {false, true}) {
        TakeLook(dark);
        QCheckBox check;
        check.resize(check.sizeHint());
        QStyleOptionButton drawn;
        drawn.initFrom(&check);
        const QRect place = check.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &drawn, &check);
        const QPoint inside(place.center().x(), place.top() + 3);
        const auto colour = [&] {
            const QImage picture = check.grab().toImage();
            return picture.pixelColor(inside * picture.devicePixelRatio());
        };
        EXPECT_EQ(colour(), ColourOf(Role::Raised));
        check.setChecked(true);
        EXPECT_EQ(colour(), ColourOf(Role::Accent));
    }
    TakeLook(false);
}

// The handle stands out from the groove, which is the ground of what is scrolled.
TEST(Look, AScrollBarsHandleStandsOutFromItsGround) {
    constexpr double kSeen = 3; // contrast of what is no text
    for (const bool dark : {false, true}) {
        TakeLook(dark);
        for (const Qt::Orientation way : {Qt::Vertical, Qt::Horizontal}) {
            QScrollBar bar(way);
            bar.setRange(0, 100);
            bar.setPageStep(50);
            bar.setValue(100);
            bar.resize(way == Qt::Vertical ? QSize(12, 120) : QSize(120, 12));
            const QImage shown = bar.grab().toImage();
            const auto at = [&](int along) {
                const QPoint place = way == Qt::Vertical ? QPoint(6, along) : QPoint(along, 6);
                return shown.pixelColor(place * shown.devicePixelRatio());
            };
            for (const int free : {2, 40, 78}) // arrows would be at the first
                EXPECT_EQ(at(free), ColourOf(Role::Surface)) << dark << free;
            for (const int handle : {86, 100, 114})
                EXPECT_GE(ContrastOf(at(handle), ColourOf(Role::Surface)), kSeen) << dark << handle;
        }
    }
    TakeLook(false);
}

TEST(Look, AScrollBarIsWorkedByTheMouse) {
    QScrollBar bar(Qt::Vertical);
    bar.setRange(0, 100);
    bar.setPageStep(50);
    bar.resize(12, 120);
    bar.show();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {6, 110});
    EXPECT_EQ(bar.value(), 50) << "a page";
    QTest::mousePress(&bar, Qt::LeftButton, {}, {6, 60});
    QTest::mouseMove(&bar, {6, 119});
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, {6, 119});
    EXPECT_EQ(bar.value(), 100);
}

// Some captions begin with a blank, others don't.
TEST(Look, TextsOfOptionsBeginAtOnePlace) {
    const auto begin = [](const QString& caption) {
        QCheckBox box(caption);
        box.resize(200, box.sizeHint().height());
        const QImage shown = box.grab().toImage();
        QStyleOptionButton option;
        option.initFrom(&box);
        const double scale = shown.devicePixelRatio();
        const int mark = box.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &box).right();
        for (int x = static_cast<int>((mark + 3) * scale); x < shown.width(); ++x)
            for (int y = 0; y < shown.height(); ++y)
                if (shown.pixelColor(x, y).lightness() < 90) return x;
        return -1;
    };
    EXPECT_GT(begin(QStringLiteral("HHH")), 0);
    EXPECT_EQ(begin(QStringLiteral(" HHH")), begin(QStringLiteral("HHH")));
}

TEST(Icons, EachGlyphHasADrawing) {
    constexpr int kSide = 32;
    int glyphs = 0;
#define KELVASH_GLYPH(name, file)                                                                 \
    {                                                                                             \
        const QImage image = IconOf(Glyph::name).pixmap(kSide, kSide).toImage();                  \
        EXPECT_GT(Drawn(image, image.pixelColor(0, 0)), 20) << #name " lacks its drawing " #file; \
        ++glyphs;                                                                                 \
    }
#include "ui/icons.inc"
#undef KELVASH_GLYPH
    EXPECT_GT(glyphs, 50);
}

TEST(Icons, AreDrawnInTheColourOfTheirRole) {
    const QImage image = IconOf(Glyph::Play, Role::Danger).pixmap(48, 48).toImage();
    EXPECT_EQ(image.pixelColor(24, 24).rgb(), ColourOf(Role::Danger).rgb());
}

TEST(Icons, HaveThePixelsOfTheScreen) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0})
        EXPECT_EQ(IconOf(Glyph::Add).pixmap(QSize(16, 16), scale).size(), QSize(16, 16) * scale);
}

TEST(Icons, ArePaintedInThePixelsOfTheScreen) {
    constexpr int kSide = 32;
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        const int pixels = static_cast<int>(kSide * scale);
        QImage plain(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
        plain.fill(Qt::transparent);
        QImage scaled = plain;
        scaled.setDevicePixelRatio(scale);
        QPainter on_plain(&plain), on_scaled(&scaled);
        DrawGlyph(on_plain, {0, 0, pixels, pixels}, Glyph::Play, Qt::black);
        DrawGlyph(on_scaled, {0, 0, kSide, kSide}, Glyph::Play, Qt::black);
        on_plain.end();
        on_scaled.end();
        scaled.setDevicePixelRatio(1);
        EXPECT_EQ(scaled, plain) << scale;
    }
}

// Of a drawing that is made larger than it is, much more would be neither one nor the other.
TEST(Icons, AreSharpAtThreeTimesTheirSize) {
    for (const int side : {16, 20, 32, 64}) {
        const QImage image = IconOf(Glyph::Tiles).pixmap(QSize(side, side), 3.0).toImage();
        int edge = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (const int alpha = qAlpha(image.pixel(x, y)); alpha > 10 && alpha < 245) ++edge;
        EXPECT_LT(edge, 8 * image.width()) << side;
    }
}

// Between the right end of a red icon and the left end of the text behind it; below 0 if one isn't there.
double GapOf(QAbstractButton& button) {
    QPixmap red(16, 16);
    red.fill(Qt::red);
    button.setIcon(red);
    button.setIconSize({16, 16});
    button.setText(QStringLiteral("HHHH"));
    button.resize(button.sizeHint());
    const QImage image = button.grab().toImage();
    const int middle = image.height() / 2;
    int icon = -1;
    for (int x = 0; x < image.width(); ++x) {
        const QColor colour = image.pixelColor(x, middle);
        if (colour == QColor(Qt::red)) icon = x;
        if (icon >= 0 && colour.lightness() < 90) return (x - icon - 1) / image.devicePixelRatio();
    }
    return -1;
}

TEST(Look, KeepsTextAwayFromItsIcon) {
    QPushButton push;
    QToolButton tool;
    tool.setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (QAbstractButton* button :
         {static_cast<QAbstractButton*>(&push), static_cast<QAbstractButton*>(&tool)}) {
        EXPECT_GE(GapOf(*button), space::kClose - 1);
        EXPECT_LE(GapOf(*button), space::kNear);
    }
}

} // namespace
} // namespace kelvash::ui
