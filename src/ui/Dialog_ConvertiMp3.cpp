#include "ui/Dialog_ConvertiMp3.h"

#include <QShowEvent>
#include <QVBoxLayout>

#include "ui/Dialog_ConvertiMp3_messages.h"
#include "ui/form_kit.h"
#include "ui/forms_user.h"

namespace kelvash::ui {

Dialog_ConvertiMp3::Dialog_ConvertiMp3(FormsUser& user, audio::AudioJob& job, QWidget* parent)
    : QDialog(parent), user_(user), job_(job) {
    setObjectName(QStringLiteral("Dialog_ConvertiMp3"));
    setWindowModality(Qt::ApplicationModal);
    Set_Caption_Texts();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Log);
    layout->addWidget(ProgressBar1);
    layout->addLayout(FootRow({}, {Pul_Stop}));
    layout->addStrut(fontMetrics().averageCharWidth() * 76);
    Label_Log->setWordWrap(true);
    Label_Log->setMinimumHeight(fontMetrics().lineSpacing() * 2);
    Timer1->setSingleShot(true);
    FollowJobs(user, BarPlace::CallerForm, Label_Log, ProgressBar1, IdleBar::Stays);
    connect(Timer1, &QTimer::timeout, this, &Dialog_ConvertiMp3::Run);
    connect(Pul_Stop, &QPushButton::clicked, this, &Dialog_ConvertiMp3::Stop);
}

void Dialog_ConvertiMp3::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kConvertiMp3Caption}, {Pul_Stop, msg::kConvertiMp3Stop, Glyph::Stop}});
}

void Dialog_ConvertiMp3::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!event->spontaneous()) Timer1->start(0);
}

void Dialog_ConvertiMp3::Run() {
    audio::RunAudioJob(job_, BarPlace::CallerForm);
    accept();
}

void Dialog_ConvertiMp3::Stop() {
    Pul_Stop->setEnabled(false);
    user_.RequestStop();
}

} // namespace kelvash::ui
