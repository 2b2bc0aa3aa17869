#include "ui/Dialog_Restore.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "swap/restore.h"
#include "ui/Dialog_Restore_messages.h"
#include "ui/form_kit.h"
#include "ui/forms_user.h"
#include "ui/look.h"

namespace kelvash::ui {

Dialog_Restore::Dialog_Restore(FormsUser& user, QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Restore"));
    Set_Caption_Texts();
    Lay();
    connect(Pul_Fast, &QPushButton::clicked, this, [this] { door_.Try([this] { Fast(); }); });
    connect(Pul_Full, &QPushButton::clicked, this, [this] { door_.Try([this] { Full(); }); });
    connect(Pul_Cancel, &QPushButton::clicked, this, &Dialog_Restore::reject);
    FollowJobs(user, BarPlace::CallerForm, Label_Info, ProgressBar1, IdleBar::Hides);
}

void Dialog_Restore::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kRestoreCaption},
                       {Label_Choose, msg::kRestoreChoose},
                       {Pul_Fast, msg::kRestoreFast, Glyph::Fast},
                       {Label_Fast, msg::kRestoreFastText},
                       {Pul_Full, msg::kRestoreFull, Glyph::Restore},
                       {Label_Full, msg::kRestoreFullText},
                       {Pul_Cancel, msg::kRestoreCancel},
                       {Pul_Help, msg::kRestoreHelp},
                       ControlCaption::WhatGoes(Pul_Full, msg::kRestoreGoes)});
}

void Dialog_Restore::Lay() {
    auto* const kinds = new QGridLayout;
    kinds->addWidget(Pul_Fast, 0, 0, Qt::AlignTop);
    kinds->addWidget(Label_Fast, 0, 1);
    kinds->addWidget(Pul_Full, 1, 0, Qt::AlignTop);
    kinds->addWidget(Label_Full, 1, 1);
    kinds->setColumnStretch(1, 1);
    kinds->setSpacing(fontMetrics().height());
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Choose);
    layout->addLayout(kinds);
    layout->addWidget(Label_Info);
    layout->addWidget(ProgressBar1);
    layout->addSpacing(space::kClose);
    layout->addLayout(FootRow(this, {Pul_Help, HelpMark::Restore, nullptr, Pul_Cancel}));
    for (QLabel* label : {Label_Fast, Label_Full})
        Explain(label);
    Label_Info->setWordWrap(true);
    Label_Info->hide();
    Pul_Fast->setDefault(true);
    SetMainAction(Pul_Fast);
    layout->addStrut(fontMetrics().averageCharWidth() * 92);
}

void Dialog_Restore::SetRunning(bool running) {
    for (QPushButton* button : {Pul_Fast, Pul_Full, Pul_Help, Pul_Cancel})
        button->setEnabled(!running);
    Label_Info->setVisible(running); // idle, it and the bar would be an empty room
}

void Dialog_Restore::reject() {
    if (door_.IsFree()) QDialog::reject();
}

void Dialog_Restore::Fast() {
    SetRunning(true);
    Restored = swap::FastRestore();
    SetRunning(false);
    if (Restored)
        accept();
    else
        Pul_Fast->setFocus(); // greyed, it had lost the keyboard
}

void Dialog_Restore::Full() {
    SetRunning(true);
    Bar bar{BarPlace::CallerForm, -1};
    Restored = swap::FullRestore(bar, false);
    SetRunning(false);
    accept();
}

} // namespace kelvash::ui
