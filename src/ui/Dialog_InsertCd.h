// Asks for a disc and the drive in which it lies.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>

#include "cd/cd_access.h"
#include "ui/form_support.h"

namespace kelvash::ui {

class Dialog_InsertCd final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_InsertCd(QWidget* parent);
    void Set_Caption_Texts();
    void ImpostaValori(const cd::CdDriveChoice& choice);

    QLabel* const Label_Mex = Make<QLabel>(this, "Label_Mex");
    QLabel* const Label_Unita = Make<QLabel>(this, "Label_Unita");
    QComboBox* const Combo_Unita = Make<QComboBox>(this, "Combo_Unita");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");
};

} // namespace kelvash::ui
