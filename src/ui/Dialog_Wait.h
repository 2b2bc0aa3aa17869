// A line of text during a wait.
#pragma once

#include <QDialog>
#include <QLabel>

#include "ui/form_support.h"

namespace kelvash::ui {

// Shown by the user port, which also takes it away: a wait can't be closed.
class Dialog_Wait final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_Wait(QWidget* parent);
    void Set_Caption_Texts();
    void reject() override {}

    QLabel* const Label_Mex = Make<QLabel>(this, "Label_Mex");
};

} // namespace kelvash::ui
