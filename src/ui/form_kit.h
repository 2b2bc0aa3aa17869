// What forms are put together from, so that all of them read and work alike: the table of their captions, the
// row of buttons at their foot, the label and the bar that follow a job.
#pragma once

#include <QBoxLayout>
#include <initializer_list>
#include <optional>

#include "foundation/messages.h"
#include "foundation/user.h"
#include "ui/help.h"
#include "ui/icons.h"

class QAbstractButton;
class QDialog;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMainWindow;
class QObject;
class QProgressBar;
class QPushButton;
class QWidget;

namespace kelvash::ui {

class FormsUser;

// A line of a form's captions: a control, the message that it shows, and a button's icon.
class ControlCaption {
  public:
    ControlCaption(QDialog* form, MessageId title);
    ControlCaption(QMainWindow* form, MessageId title);
    ControlCaption(QGroupBox* frame, MessageId title);
    ControlCaption(QAbstractButton* button, MessageId text);
    ControlCaption(QAbstractButton* button, MessageId text, Glyph icon);
    ControlCaption(QLabel* label, MessageId text, MessageArgs args);
    // The label of a field or a list: its letter leads there, and a screen reader says it there.
    ControlCaption(QLabel* label, MessageId text, QWidget* field = nullptr);

    // What a field shows as long as it is empty.
    static ControlCaption Hint(QLineEdit* field, MessageId text);
    // What a screen reader says of a control that has no caption, or one that tells too little by itself.
    static ControlCaption Spoken(QWidget* control, MessageId text);
    // Marks a button by which something goes; its tool tip says what.
    static ControlCaption WhatGoes(QAbstractButton* button, MessageId text);

    void Set() const;

  private:
    using Setter = void (*)(QWidget* control, const QString& text);
    ControlCaption(QWidget* control, MessageId text, Setter set);

    QWidget* control_;
    MessageId text_;
    MessageArgs args_;
    QWidget* field_ = nullptr;
    std::optional<Glyph> icon_; // of a button alone
    Setter set_;
};

// Sets the captions of a form and gives them their letters. A form's Set_Caption_Texts is this one call.
void SetCaptions(QWidget* form, std::initializer_list<ControlCaption> captions);

// Controls side by side; in a line what room is left stays behind them.
QHBoxLayout* Row(std::initializer_list<QWidget*> controls);
QHBoxLayout* Line(std::initializer_list<QWidget*> controls);

// The row at the foot of a form: some controls at the left, others at the right.
QHBoxLayout* FootRow(std::initializer_list<QWidget*> left, std::initializer_list<QWidget*> right);

// The usual one. At the right what ends the form, in the platform's order; the first is what the form is
// there for, and of several what Enter means. F1 opens the page. The form stays within its screen.
QHBoxLayout* FootRow(QDialog* form, HelpMark page, std::initializer_list<QWidget*> left,
                     std::initializer_list<QPushButton*> answers);

struct FootButtons {
    QPushButton* help;
    HelpMark page;
    QPushButton* ok; // null in a form that only closes
    QPushButton* cancel;
};
// The same with "Help" at the left, which opens the page too, "OK" and "Cancel" at the right. What OK and
// Cancel do is the form's own.
QHBoxLayout* FootRow(QDialog* form, const FootButtons& buttons);

// Has a label explain a part of a form, or in one line an option, which it is to stand below.
QLabel* Explain(QLabel* label, const QAbstractButton* option = nullptr);

// A line that takes no room as long as it has nothing to say.
void SayOrHide(QLabel* line, const QString& text);

enum class IdleBar { Stays, Hides };
// Has a label and a bar show what the jobs tell at a place, for as long as both live and no form that is
// opened later has one for that place.
void FollowJobs(FormsUser& user, BarPlace place, QLabel* label, QProgressBar* bar, IdleBar idle);

} // namespace kelvash::ui
