// Asks at the first start whether to load an Archive or to create one.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>

#include "ui/form_support.h"

namespace kelvash::ui {

class Dialog_NewArc final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_NewArc(QWidget* parent);
    void Set_Caption_Texts();

    bool MakeNew = false; // which button has ended the form

    QLabel* const Label_Info = Make<QLabel>(this, "Label_Info");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_New = Make<QPushButton>(this, "Pul_New");
    QPushButton* const Pul_Load = Make<QPushButton>(this, "Pul_Load");
};

} // namespace kelvash::ui
