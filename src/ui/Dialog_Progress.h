// The bar of file work.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include "ui/form_support.h"

namespace kelvash::ui {

// Shown by the user port, modal to everything. Where the job can be stopped, its button and closing the
// window ask it to; any other window can't be closed. The port takes it away when the job has ended.
class Dialog_Progress final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_Progress(QWidget* parent);
    void Set_Caption_Texts();
    // Offers the button or not.
    void ImpostaValori(bool can_stop) { Pul_Stop->setVisible(can_stop); }
    void reject() override {
        if (!Pul_Stop->isHidden()) Q_EMIT StopWanted();
    }

    QLabel* const Label_Info = Make<QLabel>(this, "Label_Info");
    QProgressBar* const ProgressBar1 = Make<QProgressBar>(this, "ProgressBar1");
    // What is done, of how much, and how long still.
    QLabel* const Label_Amount = Make<QLabel>(this, "Label_Amount");
    QPushButton* const Pul_Stop = Make<QPushButton>(this, "Pul_Stop");

  Q_SIGNALS:
    void StopWanted();
};

} // namespace kelvash::ui
