// The bar of file work.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>

#include "ui/form_support.h"

namespace kelvash::ui {

// Shown by the user port, modal to everything. Closing it asks the job to stop; the port takes the window
// away when the job has ended.
class Dialog_Progress final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_Progress(QWidget* parent);
    void Set_Caption_Texts();
    void reject() override { Q_EMIT StopWanted(); }

    QLabel* const Label_Info = Make<QLabel>(this, "Label_Info");
    QProgressBar* const ProgressBar1 = Make<QProgressBar>(this, "ProgressBar1");

  Q_SIGNALS:
    void StopWanted();
};

} // namespace kelvash::ui
