#include "ui/progress_text.h"

#include <gmock/gmock.h>

#include <QProgressBar>

#include "support/ui_home.h"
#include "ui/Dialog_Progress.h"
#include "ui/form_kit.h"

namespace kelvash::test {
namespace {

using ui::ProgressWords;
using ui::TimeLeft;

TEST(TimeLeft, SaysNothingInTheFirstThreeSeconds) {
    TimeLeft left;
    EXPECT_EQ(left.At(100, 0), std::nullopt);
    EXPECT_EQ(left.At(102.9, 0.5), std::nullopt);
    EXPECT_EQ(left.At(103, 0.5), 5);
}

TEST(TimeLeft, SaysNothingAsLongAsHardlyAnythingIsDone) {
    TimeLeft left;
    EXPECT_EQ(left.At(0, 0), std::nullopt);
    EXPECT_EQ(left.At(60, 0.005), std::nullopt);
    EXPECT_EQ(left.At(60, 0.02), 3000) << "49 minutes";
}

TEST(TimeLeft, RoundsUp) {
    const auto told = [](double share) {
        TimeLeft left;
        left.At(0, 0);
        return left.At(10, share);
    };
    EXPECT_EQ(told(0.99), 5);
    EXPECT_EQ(told(0.5), 10);
    EXPECT_EQ(told(0.48), 15);
    EXPECT_EQ(told(0.15), 60) << "56.7 seconds";
    EXPECT_EQ(told(0.1), 120) << "90 seconds";
    EXPECT_EQ(told(0.01), 1200) << "16.5 minutes";
}

TEST(TimeLeft, CountsDownWhileThePaceIsAboutTheSame) {
    TimeLeft left;
    left.At(0, 0);
    EXPECT_EQ(left.At(10, 0.2), 40);
    // A little slower, then a little faster: the end that was told stands.
    EXPECT_EQ(left.At(15, 0.28), 35);
    EXPECT_EQ(left.At(20, 0.42), 30);
    EXPECT_EQ(left.At(30, 0.6), 20);
    EXPECT_EQ(left.At(40, 0.8), 10);
}

TEST(TimeLeft, NeverGoesUpWhileThePaceIsAboutTheSame) {
    TimeLeft left;
    left.At(0, 0);
    int last = 1'000'000;
    for (int second = 4; second < 100; ++second) {
        // A twentieth up and down.
        const double share = second / 100.0 * (second % 2 == 0 ? 1.05 : 0.95);
        const auto told = left.At(second, std::min(share, 1.0));
        if (!told || second > 90) continue;
        EXPECT_LE(*told, last) << second;
        last = *told;
    }
}

TEST(TimeLeft, TakesANewPaceUp) {
    TimeLeft left;
    left.At(0, 0);
    EXPECT_EQ(left.At(10, 0.5), 10);
    EXPECT_EQ(left.At(30, 0.5), 30) << "it stands still";
}

TEST(TimeLeft, BeginsAnewWithTheNextJob) {
    TimeLeft left;
    left.At(0, 0);
    EXPECT_EQ(left.At(10, 0.5), 10);
    EXPECT_EQ(left.At(11, 0.1), std::nullopt);
    EXPECT_EQ(left.At(15, 0.5), 5);
}

std::string Words(const Amount& amount) {
    ProgressWords words;
    return words.Take(amount, 0).value_or(QStringLiteral("nothing")).toStdString();
}

TEST(ProgressWords, TellWhatIsCounted) {
    EXPECT_EQ(Words({12, 340, Counted::Items}), "12 of 340");
    EXPECT_EQ(Words({3.5 * 1024 * 1024, 239.2 * 1024 * 1024, Counted::Bytes}), "4 of 240 MB");
    EXPECT_EQ(Words({0.5, 1, Counted::Nothing}), "");
    EXPECT_EQ(Words({0, 1, Counted::Items}), "") << "one thing isn't counted";
}

TEST(ProgressWords, TellHowLongItStillTakes) {
    ProgressWords words;
    EXPECT_EQ(words.Take({0, 340, Counted::Items}, 0)->toStdString(), "0 of 340");
    EXPECT_EQ(words.Take({34, 340, Counted::Items}, 10)->toStdString(), "34 of 340, about 2 min left");
    EXPECT_EQ(words.Take({170, 340, Counted::Items}, 20)->toStdString(), "170 of 340, about 20 seconds left");
    EXPECT_EQ(words.Take({340, 340, Counted::Items}, 40)->toStdString(), "340 of 340");
}

TEST(ProgressWords, CanBeRead) {
    ProgressWords words;
    EXPECT_TRUE(words.Take({1, 340, Counted::Items}, 0).has_value());
    EXPECT_FALSE(words.Take({2, 340, Counted::Items}, 0.1).has_value());
    EXPECT_TRUE(words.Take({3, 340, Counted::Items}, 0.2).has_value());
    EXPECT_TRUE(words.Take({340, 340, Counted::Items}, 0.25).has_value()) << "the end is always told";
}

class ShownProgress : public UiHome<TestHome> {
  protected:
    ShownProgress() {
        forms.SetPatience(0);
        forms.SetClock([this] { return now; });
    }
    double now = 0;
};

TEST_F(ShownProgress, TheWindowTellsHowMuchIsDone) {
    ProgressDialog job(BarPlace::StoppableDialog, "Copying");
    const auto* const window = qobject_cast<ui::Dialog_Progress*>(QApplication::activeModalWidget());
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->Pul_Stop->isVisible());
    EXPECT_EQ(window->Label_Amount->text().toStdString(), "");
    const int height = window->height();
    ProgressPercent(job.bar, 1, 340);
    now = 10;
    ProgressPercent(job.bar, 34, 340);
    EXPECT_EQ(window->Label_Amount->text().toStdString(), "34 of 340, about 2 min left");
    QApplication::processEvents();
    EXPECT_EQ(window->height(), height) << "the window doesn't jump";
}

TEST_F(ShownProgress, ABarOfAFormTellsItTooAndForgetsIt) {
    QWidget form;
    auto* const label = new QLabel(&form);
    auto* const bar = new QProgressBar(&form);
    bar->resize(bar->fontMetrics().averageCharWidth() * 60, bar->height());
    ui::FollowJobs(forms, BarPlace::CallerForm, label, bar, ui::IdleBar::Stays);
    const JobScope job;
    Bar progress{BarPlace::CallerForm};
    ProgressPercent(progress, 1, 340);
    now = 10;
    ProgressPercent(progress, 34, 340);
    bar->setTextVisible(true);
    EXPECT_EQ(bar->text().toStdString(), "10%  ·  34 of 340, about 2 min left");
    EXPECT_EQ(bar->toolTip().toStdString(), "34 of 340, about 2 min left");
    bar->resize(bar->fontMetrics().averageCharWidth() * 20, bar->height());
    now = 20;
    ProgressPercent(progress, 68, 340);
    EXPECT_EQ(bar->text().toStdString(), "20%") << "there is no room for it";
    EXPECT_EQ(bar->toolTip().toStdString(), "68 of 340, about 2 min left");
    progress.percent = -1;
    now = 30;
    ProgressPercent(progress, 0, 340);
    EXPECT_EQ(bar->text().toStdString(), "0%");
    EXPECT_EQ(bar->toolTip().toStdString(), "");
}

} // namespace
} // namespace kelvash::test
