#include "ui/form_kit.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QProxyStyle>
#include <QPushButton>
#include <utility>
#include <vector>

#include "support/ui_home.h"
#include "ui/Dialog_GetDir_messages.h"
#include "ui/Dialog_Settings_messages.h"
#include "ui/look.h"

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

// A desktop's way with the buttons at the foot of a dialog.
class DesktopStyle final : public QProxyStyle {
  public:
    DesktopStyle(QDialogButtonBox::ButtonLayout order, bool icons)
        : QProxyStyle(QStringLiteral("Fusion")), order_(order), icons_(icons) {}
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        if (hint == SH_DialogButtonLayout) return order_;
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return icons_ ? 1 : 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }

  private:
    QDialogButtonBox::ButtonLayout order_;
    bool icons_;
};

TEST_F(FormKit, OkAndCancelStandInThePlatformsOrder) {
    const std::vector<std::pair<QDialogButtonBox::ButtonLayout, bool>> platforms = {
        {QDialogButtonBox::WinLayout, true},
        {QDialogButtonBox::KdeLayout, true},
        {QDialogButtonBox::GnomeLayout, false},
        {QDialogButtonBox::MacLayout, false}};
    for (const auto& [order, ok_first] : platforms) {
        DesktopStyle style(order, false);
        QDialog dialog;
        dialog.setStyle(&style);
        auto* const help = new QPushButton(&dialog);
        auto* const ok = new QPushButton(&dialog);
        auto* const cancel = new QPushButton(&dialog);
        QHBoxLayout* const row = ui::FootRow(&dialog, {help, ui::HelpMark::Settings, ok, cancel});
        dialog.setLayout(row);
        EXPECT_EQ(row->indexOf(help), 0);
        EXPECT_EQ(row->indexOf(ok), ok_first ? 2 : 3) << order;
        EXPECT_EQ(row->indexOf(cancel), ok_first ? 3 : 2) << order;
        EXPECT_EQ(help->nextInFocusChain(), ok_first ? ok : cancel) << "the keyboard follows";
        EXPECT_EQ((ok_first ? ok : cancel)->nextInFocusChain(), ok_first ? cancel : ok);
        EXPECT_TRUE(ok->isDefault());
    }
}

TEST_F(FormKit, OkAndCancelHaveIconsWhereTheDesktopsHave) {
    for (const bool icons : {false, true}) {
        DesktopStyle style(QDialogButtonBox::KdeLayout, icons);
        QDialog dialog;
        dialog.setStyle(&style);
        auto* const help = new QPushButton(&dialog);
        auto* const ok = new QPushButton(&dialog);
        auto* const cancel = new QPushButton(&dialog);
        dialog.setLayout(ui::FootRow(&dialog, {help, ui::HelpMark::Settings, ok, cancel}));
        EXPECT_FALSE(help->icon().isNull());
        EXPECT_EQ(ok->icon().isNull(), !icons);
        EXPECT_EQ(cancel->icon().isNull(), !icons);
    }
}

TEST_F(FormKit, AnOnlyAnswerHasTheIconOfWhatItMeans) {
    DesktopStyle style(QDialogButtonBox::KdeLayout, true);
    const auto icon = [](const QPushButton& button) { return button.icon().pixmap(48, 48).toImage(); };
    QDialog agrees, closes;
    agrees.setStyle(&style);
    closes.setStyle(&style);
    auto* const ok = new QPushButton(&agrees);
    agrees.setLayout(ui::FootRow(&agrees, ui::HelpMark::Keyboard, {}, {ok}));
    auto* const help = new QPushButton(&closes);
    auto* const close = new QPushButton(&closes);
    closes.setLayout(ui::FootRow(&closes, {help, ui::HelpMark::Restore, nullptr, close}));
    QPushButton accept(&form), give_up(&form);
    ui::SetIcon(&accept, ui::Glyph::Accept);
    ui::SetIcon(&give_up, ui::Glyph::GiveUp);
    EXPECT_EQ(icon(*ok), icon(accept));
    EXPECT_EQ(icon(*close), icon(give_up));
}

// The colour in the middle of a button's icon.
QColor MiddleOfIcon(const QAbstractButton& button) {
    return button.icon().pixmap(48, 48).toImage().pixelColor(24, 24);
}

TEST_F(FormKit, AnIconHasTheColourOfItsButtonsText) {
    QPushButton plain(&form), main(&form), destructive(&form);
    ui::SetMainAction(&main); // before its icon and after it
    ui::SetCaptions(&form, {{&plain, msg::kGetDirNew, ui::Glyph::Play},
                            {&main, msg::kGetDirNew, ui::Glyph::Play},
                            {&destructive, msg::kGetDirNew, ui::Glyph::Play},
                            ControlCaption::WhatGoes(&destructive, msg::kGetDirNew)});
    EXPECT_EQ(MiddleOfIcon(plain).rgb(), QApplication::palette().color(QPalette::ButtonText).rgb());
    EXPECT_EQ(MiddleOfIcon(main).rgb(), ui::ColourOf(ui::Role::OnAccent).rgb());
    EXPECT_EQ(MiddleOfIcon(destructive).rgb(), ui::ColourOf(ui::Role::Danger).rgb());
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
