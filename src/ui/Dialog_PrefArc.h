// How the open Archive keeps the files of its levels.
#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>

#include "ui/form_support.h"
#include "ui/path_label.h"

namespace kelvash::ui {

class Dialog_PrefArc final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_PrefArc(QWidget* parent);
    void Set_Caption_Texts();
    // Shows the settings of the open Archive.
    void ImpostaValori();

    QLabel* const Label_Info = Make<QLabel>(this, "Label_Info");
    QLabel* const Label_Archive = Make<QLabel>(this, "Label_Archive");
    PathLabel* const Label_PathArchive = Make<PathLabel>(this, "Label_PathArchive");
    QCheckBox* const Check_CompressFiles = Make<QCheckBox>(this, "Check_CompressFiles");
    QCheckBox* const Check_EncodeWavInMp3 = Make<QCheckBox>(this, "Check_EncodeWavInMp3");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  private:
    void Lay();
    void Accept();
};

} // namespace kelvash::ui
