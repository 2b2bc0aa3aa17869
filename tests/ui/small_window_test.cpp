// The main form on a small screen, or on one of large scale: it doesn't scroll as a whole.
#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>

#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

class SmallWindow : public PrincipaleHome {
  protected:
    // What is left of a screen without the frame of a window.
    void TakeSize(const QSize& size) {
        form.resize(size);
        for (int i = 0; i < 3; ++i)
            QTest::qWait(20); // what reflows asks for its room again
        ASSERT_EQ(form.size(), size);
    }
    QScrollArea* Area(const char* name) const {
        return form.findChild<QScrollArea*>(QString::fromLatin1(name));
    }
    static int Hidden(const QScrollBar* bar) { return bar->maximum() - bar->minimum(); }
    void ExpectOnlyThePageScrolls() {
        EXPECT_EQ(Hidden(Area("Scroll")->horizontalScrollBar()), 0);
        EXPECT_EQ(Hidden(Area("Scroll")->verticalScrollBar()), 0);
        EXPECT_EQ(Hidden(Area("Scroll_Page")->horizontalScrollBar()), 0);
        for (const QWidget* control :
             {static_cast<QWidget*>(form.Combo_Livelli), static_cast<QWidget*>(form.Text_Search),
              static_cast<QWidget*>(form.Pul_Tiles)})
            EXPECT_TRUE(IsInSight(control)) << control->objectName().toStdString();
    }
    // All of it, on the screen.
    static bool IsInSight(const QWidget* control) {
        return control->isVisible() && control->visibleRegion().boundingRect() == control->rect();
    }
};

TEST_F(SmallWindow, Of1024By600ShowsBothSides) {
    TakeSize({1000, 540});
    ExpectOnlyThePageScrolls();
    EXPECT_EQ(Hidden(Area("Scroll_Page")->verticalScrollBar()), 0);
    for (const QWidget* control : {form.Pul_Play, form.Pul_MoreInfo, form.Pul_Author, form.Pul_AddShots})
        EXPECT_TRUE(IsInSight(control)) << control->objectName().toStdString();
}

TEST_F(SmallWindow, HasEverySavegameCommandWithinReach) {
    core::SelectLevel(1);
    form.ShowPanel(false);
    TakeSize({1000, 540});
    ExpectOnlyThePageScrolls();
    QScrollArea* const page = Area("Scroll_Page");
    EXPECT_TRUE(IsInSight(form.Pul_Play));
    for (QPushButton* button : {form.Pul_RestoreSaveGame, form.Pul_ChangeScreenshot}) {
        page->ensureWidgetVisible(button);
        EXPECT_TRUE(IsInSight(button)) << button->objectName().toStdString();
    }
}

// As of 1360 x 860 at 200 %.
TEST_F(SmallWindow, OfHalfThatWidthShrinksTheLibraryInstead) {
    core::SelectLevel(1);
    for (const bool shots : {true, false}) {
        form.ShowPanel(shots);
        TakeSize({650, 390});
        ExpectOnlyThePageScrolls();
        EXPECT_TRUE(IsInSight(form.Pul_Play));
        EXPECT_TRUE(IsInSight(form.Pul_Author));
    }
    TakeSize({1200, 700});
    EXPECT_EQ(form.Text_Search->mapTo(&form, QPoint()).y(), form.Pul_Search->mapTo(&form, QPoint()).y())
        << "in one row again";
}

TEST_F(SmallWindow, BeginsItsStatusLineWhereAllElseBegins) {
    form.Say(QStringLiteral("done"));
    EXPECT_EQ(form.Label_Info->mapTo(&form, form.Label_Info->contentsRect().topLeft()).x(),
              form.Frame_Livelli->mapTo(&form, QPoint()).x());
}

} // namespace
} // namespace kelvash::test
