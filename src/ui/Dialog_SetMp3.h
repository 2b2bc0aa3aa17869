// How the waves of a level are encoded for its package, with a test on a wave of one's choice.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>

#include "audio/mp3_choice.h"
#include "ui/form_support.h"
#include "ui/job_door.h"

namespace kelvash::ui {

// What is chosen stands in audio::mp3_settings once it has been accepted.
class Dialog_SetMp3 final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_SetMp3(QWidget* parent);
    void Set_Caption_Texts();
    void ImpostaValori(const audio::Mp3Choice& choice = {});

    QLabel* const Label_Note = Make<QLabel>(this, "Label_Note");
    QLabel* const Label_BitRate = Make<QLabel>(this, "Label_BitRate");
    QComboBox* const Combo_BitRate = Make<QComboBox>(this, "Combo_BitRate");
    QLabel* const Label_Canali = Make<QLabel>(this, "Label_Canali");
    QComboBox* const Combo_Canali = Make<QComboBox>(this, "Combo_Canali");
    QLabel* const Label_Frequenza = Make<QLabel>(this, "Label_Frequenza");
    QComboBox* const Combo_Frequenza = Make<QComboBox>(this, "Combo_Frequenza");
    QLabel* const Label_InfoMp3 = Make<QLabel>(this, "Label_InfoMp3");
    QLabel* const Label_SourceMp3 = Make<QLabel>(this, "Label_SourceMp3");
    QPushButton* const Pul_Restore = Make<QPushButton>(this, "Pul_Restore");
    QPushButton* const Pul_TestMp3 = Make<QPushButton>(this, "Pul_TestMp3");
    QCheckBox* const Check_InsertUtiliy = Make<QCheckBox>(this, "Check_InsertUtiliy");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Start = Make<QPushButton>(this, "Pul_Start");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  private:
    void Lay();

    JobDoor door_{this};
};

} // namespace kelvash::ui
