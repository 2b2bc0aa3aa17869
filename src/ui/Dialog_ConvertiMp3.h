// A conversion of audio files at work: what is done just now, and how far it is.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include "audio/audio_job.h"
#include "ui/form_support.h"

namespace kelvash::ui {

class FormsUser;

// Begins the job once it is shown and closes itself behind it. Its button, and closing it, stop the job.
class Dialog_ConvertiMp3 final : public QDialog {
    Q_OBJECT

  public:
    Dialog_ConvertiMp3(FormsUser& user, audio::AudioJob& job, QWidget* parent);
    void Set_Caption_Texts();
    void reject() override { Stop(); }

    QLabel* const Label_Log = Make<QLabel>(this, "Label_Log");
    QProgressBar* const ProgressBar1 = Make<QProgressBar>(this, "ProgressBar1");
    QPushButton* const Pul_Stop = Make<QPushButton>(this, "Pul_Stop");
    QTimer* const Timer1 = new QTimer(this);

  private:
    void showEvent(QShowEvent* event) override;
    void Run();
    void Stop();

    FormsUser& user_;
    audio::AudioJob& job_;
};

} // namespace kelvash::ui
