#include "ui/form_kit.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>

#include "support/ui_home.h"
#include "ui/Dialog_GetDir_messages.h"
#include "ui/Dialog_Settings_messages.h"

namespace kelvash::test {
namespace {

using ui::ControlCaption;

class FormKit : public UiHome<TestHome> {
  protected:
    QDialog form;
};

TEST_F(FormKit, CaptionsGoToTheirControlsWithTheirLetters) {
    QGroupBox frame(&form);
    QPushButton button(&form);
    QLabel label(&form);
    QLineEdit field(&form);
    ui::SetCaptions(&form, {{&form, msg::kGetDirCaption},
                            {&frame, msg::kSettingsPlaying},
                            {&button, msg::kGetDirNew},
                            {&label, msg::kGetDirNewName, &field}});
    EXPECT_EQ(frame.title().toStdString(), "Playing");
    EXPECT_TRUE(button.text().startsWith(QLatin1Char('&')));
    EXPECT_EQ(label.buddy(), &field);
    EXPECT_TRUE(label.text().contains(QLatin1Char('&')));
    EXPECT_FALSE(form.windowTitle().isEmpty());
}

TEST_F(FormKit, ALabelIsTheSpokenNameOfItsList) {
    QLabel label(&form);
    QListWidget list(&form);
    ui::SetCaptions(&form, {{&label, msg::kSettingsPlaying, &list}});
    EXPECT_EQ(list.accessibleName().toStdString(), "Playing");
}

TEST_F(FormKit, ASpokenNameLeavesTheCaption) {
    QPushButton button(&form);
    ui::SetCaptions(&form, {{&button, msg::kSettingsBrowseTrle},
                            ControlCaption::Spoken(&button, msg::kSettingsSpokenTrle)});
    EXPECT_EQ(Plain(button.text()), "Browse ...");
    EXPECT_EQ(button.accessibleName().toStdString(), "Browse for the folder of the Level Editor");
}

TEST_F(FormKit, TheFootRowMakesOkTheDefault) {
    auto* const help = new QPushButton(&form);
    auto* const ok = new QPushButton(&form);
    auto* const cancel = new QPushButton(&form);
    QHBoxLayout* const row = ui::FootRow(&form, {help, ui::HelpMark::Settings, ok, cancel});
    form.setLayout(row);
    EXPECT_TRUE(ok->isDefault());
    EXPECT_EQ(row->indexOf(help), 0);
    EXPECT_EQ(row->indexOf(ok), 2) << "behind the room in the middle";
    EXPECT_EQ(row->indexOf(cancel), 3);
}

TEST_F(FormKit, LabelAndBarFollowTheJobsOfTheirPlace) {
    QLabel label(&form);
    QProgressBar bar(&form);
    ui::FollowJobs(forms, BarPlace::CallerForm, &label, &bar, ui::IdleBar::Hides);
    EXPECT_TRUE(bar.isHidden());
    forms.SetLabel(BarPlace::MainWindow, "elsewhere");
    forms.SetBar(BarPlace::MainWindow, 10);
    EXPECT_EQ(label.text().toStdString(), "");
    EXPECT_TRUE(bar.isHidden());
    forms.SetLabel(BarPlace::CallerForm, "here");
    forms.SetBar(BarPlace::CallerForm, 42);
    EXPECT_EQ(label.text().toStdString(), "here");
    EXPECT_EQ(bar.value(), 42);
    EXPECT_FALSE(bar.isHidden());
    forms.SetBar(BarPlace::CallerForm, 0);
    EXPECT_TRUE(bar.isHidden());
}

TEST_F(FormKit, OfSeveralFormsTheLastOneShowsTheJobs) {
    QLabel below(&form);
    QProgressBar bar_below(&form);
    ui::FollowJobs(forms, BarPlace::CallerForm, &below, &bar_below, ui::IdleBar::Stays);
    {
        QDialog other;
        auto* const above = new QLabel(&other);
        auto* const bar_above = new QProgressBar(&other);
        ui::FollowJobs(forms, BarPlace::CallerForm, above, bar_above, ui::IdleBar::Stays);
        forms.SetLabel(BarPlace::CallerForm, "copying");
        forms.SetBar(BarPlace::CallerForm, 30);
        EXPECT_EQ(above->text().toStdString(), "copying");
        EXPECT_EQ(bar_above->value(), 30);
        EXPECT_EQ(below.text().toStdString(), "");
        EXPECT_LE(bar_below.value(), 0);
    }
    forms.SetLabel(BarPlace::CallerForm, "storing");
    forms.SetBar(BarPlace::CallerForm, 60);
    EXPECT_EQ(below.text().toStdString(), "storing");
    EXPECT_EQ(bar_below.value(), 60);
}

} // namespace
} // namespace kelvash::test
