// Shown while files are compressed or decompressed.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>

#include "ui/form_support.h"

namespace kelvash::ui {

// Shown by the user port, modal to everything, which also takes it away: it can't be closed.
class Dialog_Zip final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_Zip(QWidget* parent);
    void Set_Caption_Texts();
    void reject() override {}

    QLabel* const Label_Info = Make<QLabel>(this, "Label_Info");
    QProgressBar* const ZlibTool1 = Make<QProgressBar>(this, "ZlibTool1");
    // What is done, of how much, and how long still.
    QLabel* const Label_Amount = Make<QLabel>(this, "Label_Amount");
};

} // namespace kelvash::ui
