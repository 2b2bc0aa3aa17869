#include "ui/form_kit.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <utility>

#include "ui/form_support.h"
#include "ui/forms_user.h"
#include "ui/look.h"
#include "ui/screen_keeper.h"

namespace kelvash::ui {

namespace {

void SetTitle(QWidget* form, const QString& text) {
    form->setWindowTitle(text);
}

template <class Control>
void SetText(QWidget* control, const QString& text) {
    static_cast<Control*>(control)->setText(text);
}

} // namespace

ControlCaption::ControlCaption(QWidget* control, MessageId text, Setter set)
    : control_(control), text_(text), set_(set) {}

ControlCaption::ControlCaption(QDialog* form, MessageId title) : ControlCaption(form, title, &SetTitle) {}

ControlCaption::ControlCaption(QMainWindow* form, MessageId title) : ControlCaption(form, title, &SetTitle) {}

ControlCaption::ControlCaption(QGroupBox* frame, MessageId title)
    : ControlCaption(frame, title, [](QWidget* control, const QString& text) {
          static_cast<QGroupBox*>(control)->setTitle(text);
      }) {}

ControlCaption::ControlCaption(QAbstractButton* button, MessageId text)
    : ControlCaption(button, text, &SetText<QAbstractButton>) {}

ControlCaption::ControlCaption(QAbstractButton* button, MessageId text, Glyph icon)
    : ControlCaption(button, text) {
    icon_ = icon;
}

ControlCaption::ControlCaption(QLabel* label, MessageId text, MessageArgs args)
    : ControlCaption(label, text, &SetText<QLabel>) {
    args_ = std::move(args);
}

ControlCaption::ControlCaption(QLabel* label, MessageId text, QWidget* field)
    : ControlCaption(label, text, &SetText<QLabel>) {
    field_ = field;
}

ControlCaption ControlCaption::Hint(QLineEdit* field, MessageId text) {
    return {field, text, [](QWidget* control, const QString& hint) {
                static_cast<QLineEdit*>(control)->setPlaceholderText(hint);
            }};
}

ControlCaption ControlCaption::Spoken(QWidget* control, MessageId text) {
    return {control, text, [](QWidget* spoken, const QString& name) { spoken->setAccessibleName(name); }};
}

ControlCaption ControlCaption::WhatGoes(QAbstractButton* button, MessageId text) {
    return {button, text, [](QWidget* control, const QString& what) {
                SetDestructive(static_cast<QAbstractButton*>(control));
                control->setToolTip(what);
                control->setAccessibleDescription(what);
            }};
}

void ControlCaption::Set() const {
    const QString text = Caption(text_, args_);
    set_(control_, text);
    if (icon_) SetIcon(static_cast<QAbstractButton*>(control_), *icon_);
    if (field_ == nullptr) return;
    static_cast<QLabel*>(control_)->setBuddy(field_);
    // Screen readers are told the label of a field by Qt, but not that of a list.
    if (qobject_cast<QAbstractItemView*>(field_) != nullptr) field_->setAccessibleName(text);
}

void SetCaptions(QWidget* form, std::initializer_list<ControlCaption> captions) {
    for (const ControlCaption& caption : captions)
        caption.Set();
    AssignMnemonics(form);
}

QHBoxLayout* Row(std::initializer_list<QWidget*> controls) {
    auto* const row = new QHBoxLayout;
    for (QWidget* control : controls)
        row->addWidget(control);
    return row;
}

QHBoxLayout* Line(std::initializer_list<QWidget*> controls) {
    QHBoxLayout* const line = Row(controls);
    line->addStretch();
    return line;
}

QHBoxLayout* FootRow(std::initializer_list<QWidget*> left, std::initializer_list<QWidget*> right) {
    QHBoxLayout* const row = Line(left);
    for (QWidget* control : right)
        row->addWidget(control);
    return row;
}

namespace {

bool OkStandsFirst(const QWidget* form) {
    const int order = form->style()->styleHint(QStyle::SH_DialogButtonLayout, nullptr, form);
    return order == QDialogButtonBox::WinLayout || order == QDialogButtonBox::KdeLayout;
}

// "OK" and "Cancel" have icons on the desktops where they have them everywhere.
void TakeAnswerIcons(const QWidget* form, const QPushButton* willing,
                     std::initializer_list<QPushButton*> answers) {
    if (form->style()->styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons, nullptr, form) == 0) return;
    for (QPushButton* answer : answers)
        if (answer->icon().isNull()) SetIcon(answer, answer == willing ? Glyph::Accept : Glyph::GiveUp);
}

// `willing` is null where all of them only close the form.
QHBoxLayout* LayAnswers(QDialog* form, HelpMark page, std::initializer_list<QWidget*> left,
                        std::initializer_list<QPushButton*> answers, const QPushButton* willing) {
    ConnectHelpKey(form, page);
    if (answers.size() > 1) {
        (*answers.begin())->setDefault(true);
        SetMainAction(*answers.begin());
    }
    TakeAnswerIcons(form, willing, answers);
    QHBoxLayout* const row = Line(left);
    const int place =
        OkStandsFirst(form) ? -1 : row->count(); // of the next: behind the others or before them
    QPushButton* former = nullptr;
    for (QPushButton* answer : answers) {
        row->insertWidget(place, answer);
        if (former != nullptr && place >= 0) QWidget::setTabOrder(answer, former);
        former = answer;
    }
    KeepOnScreen(form, row);
    return row;
}

} // namespace

QHBoxLayout* FootRow(QDialog* form, HelpMark page, std::initializer_list<QWidget*> left,
                     std::initializer_list<QPushButton*> answers) {
    return LayAnswers(form, page, left, answers, *answers.begin());
}

QHBoxLayout* FootRow(QDialog* form, const FootButtons& buttons) {
    SetIcon(buttons.help, Glyph::Help);
    ConnectHelp(buttons.help, form, buttons.page);
    if (buttons.ok == nullptr)
        return LayAnswers(form, buttons.page, {buttons.help}, {buttons.cancel}, nullptr);
    return FootRow(form, buttons.page, {buttons.help}, {buttons.ok, buttons.cancel});
}

QLabel* Explain(QLabel* label, const QAbstractButton* option) {
    SetExplaining(label);
    label->setWordWrap(option == nullptr);
    // Below the option's text, not below its mark.
    if (option != nullptr)
        label->setIndent(option->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, option) +
                         option->style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, option));
    return label;
}

void SayOrHide(QLabel* line, const QString& text) {
    line->setText(text);
    line->setVisible(!text.isEmpty());
}

namespace {

// Words in a bar, behind its number; where there is no room for them the tool tip has them.
void SetWords(QProgressBar* bar, const QString& words) {
    const QString number = QStringLiteral("%p%");
    const QString both = number + QStringLiteral("  \u00b7  ") + words;
    const bool fits = bar->fontMetrics().horizontalAdvance(both) < bar->width() - 2 * space::kClose;
    bar->setFormat(words.isEmpty() || !fits ? number : both);
    bar->setToolTip(words);
}

} // namespace

void FollowJobs(FormsUser& user, BarPlace place, QLabel* label, QProgressBar* bar, IdleBar idle) {
    user.AddDisplay({place, label,
                     [bar, idle](int percent) {
                         bar->setValue(percent);
                         if (idle == IdleBar::Hides) bar->setVisible(percent > 0);
                     },
                     [bar](const QString& words) { SetWords(bar, words); }});
    for (const QObject* const shown : {static_cast<QObject*>(label), static_cast<QObject*>(bar)})
        QObject::connect(shown, &QObject::destroyed, &user, [&user, label] { user.RemoveDisplay(label); });
    if (idle == IdleBar::Hides) bar->hide();
}

} // namespace kelvash::ui
