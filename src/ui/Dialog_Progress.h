// The bar of file work.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include "ui/form_support.h"

namespace kelvash::ui {

// Shown by the user port, modal to everything. The button of a job that can be stopped, and closing the
// window, ask the job to stop; the port takes the window away when the job has ended.
class Dialog_Progress final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_Progress(QWidget* parent);
    void Set_Caption_Texts();
    // Offers the button or not.
    void ImpostaValori(bool can_stop) { Pul_Stop->setVisible(can_stop); }
    void reject() override { Q_EMIT StopWanted(); }

    QLabel* const Label_Info = Make<QLabel>(this, "Label_Info");
    QProgressBar* const ProgressBar1 = Make<QProgressBar>(this, "ProgressBar1");
    QPushButton* const Pul_Stop = Make<QPushButton>(this, "Pul_Stop");

  Q_SIGNALS:
    void StopWanted();
};

} // namespace kelvash::ui
