// The settings of the program.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <vector>

#include "companion/settings.h"
#include "ui/field_note.h"
#include "ui/form_support.h"
#include "ui/path_label.h"

namespace kelvash::ui {

class Dialog_Settings final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_Settings(QWidget* parent);
    void Set_Caption_Texts();
    // Shows the settings of the profile as it is now.
    void ImpostaValori();
    // Puts the profile back to what it was at ImpostaValori.
    void reject() override;

    QGroupBox* const Frame_Folders = Make<QGroupBox>(this, "Frame_Folders");
    QLabel* const Label_TitlePathTrle = Make<QLabel>(this, "Label_TitlePathTrle");
    PathLabel* const Label_PathTrle = Make<PathLabel>(this, "Label_PathTrle");
    QPushButton* const Pul_SfogliaPathTrle = Make<QPushButton>(this, "Pul_SfogliaPathTrle");
    FieldNote* const Note_Trle = Make<FieldNote>(this, "Note_Trle");
    QLabel* const Label_TitleLoadDir = Make<QLabel>(this, "Label_TitleLoadDir");
    PathLabel* const Label_DefaultLoadDir = Make<PathLabel>(this, "Label_DefaultLoadDir");
    QPushButton* const Pul_SfogliaLoadDir = Make<QPushButton>(this, "Pul_SfogliaLoadDir");
    QLabel* const Label_TitleEditor = Make<QLabel>(this, "Label_TitleEditor");
    PathLabel* const Label_EditorGrafico = Make<PathLabel>(this, "Label_EditorGrafico");
    QPushButton* const Pul_ScegliEditor = Make<QPushButton>(this, "Pul_ScegliEditor");
    QLabel* const Label_TitleBackup = Make<QLabel>(this, "Label_TitleBackup");
    QLabel* const Label_FullBackup = Make<QLabel>(this, "Label_FullBackup");

    QGroupBox* const Frame_Playing = Make<QGroupBox>(this, "Frame_Playing");
    QRadioButton* const Opt_NonPrompt = Make<QRadioButton>(this, "Opt_NonPrompt");
    QRadioButton* const Opt_PromptCapture = Make<QRadioButton>(this, "Opt_PromptCapture");
    QCheckBox* const Check_VerifyImage = Make<QCheckBox>(this, "Check_VerifyImage");
    QCheckBox* const Check_ArchiviaSavegame = Make<QCheckBox>(this, "Check_ArchiviaSavegame");
    QComboBox* const Combo_NSavegame = Make<QComboBox>(this, "Combo_NSavegame");
    QLabel* const Label_NSavegame = Make<QLabel>(this, "Label_NSavegame");
    QLabel* const Label_Associate = Make<QLabel>(this, "Label_Associate");
    QLineEdit* const Text_MinutiDifferenza = Make<QLineEdit>(this, "Text_MinutiDifferenza");
    FieldNote* const Note_Minutes = Make<FieldNote>(this, "Note_Minutes");
    QLabel* const Label_Minutes = Make<QLabel>(this, "Label_Minutes");
    QLabel* const Label_Interval = Make<QLabel>(this, "Label_Interval");
    QComboBox* const Combo_Decimi = Make<QComboBox>(this, "Combo_Decimi");
    QCheckBox* const Check_EnableJoystick = Make<QCheckBox>(this, "Check_EnableJoystick");
    QPushButton* const Pul_SetJoy = Make<QPushButton>(this, "Pul_SetJoy");

    QGroupBox* const Frame_Archive = Make<QGroupBox>(this, "Frame_Archive");
    QCheckBox* const Check_AutoSave = Make<QCheckBox>(this, "Check_AutoSave");
    QLabel* const Label_AutoSave = Make<QLabel>(this, "Label_AutoSave");
    QCheckBox* const Check_TestCOntrollaUguali = Make<QCheckBox>(this, "Check_TestCOntrollaUguali");
    QCheckBox* const Check_NoAutoCompila = Make<QCheckBox>(this, "Check_NoAutoCompila");
    QCheckBox* const Check_NonDecomprimere = Make<QCheckBox>(this, "Check_NonDecomprimere");
    QLabel* const Label_NonDecomprimere = Make<QLabel>(this, "Label_NonDecomprimere");
    QCheckBox* const Check_AggiornamentoUrl = Make<QCheckBox>(this, "Check_AggiornamentoUrl");

    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  private:
    struct Box {
        QCheckBox* box;
        bool core::ProfileRecord::*field;
    };
    std::vector<Box> Boxes() const;
    void Lay();
    void LayFolders();
    void LayPlaying();
    void LayArchive();
    void ShowPaths();
    void Accept();

    companion::Settings settings_;
};

} // namespace kelvash::ui
