// Adding a level and showing its properties: the form over intake::NewLevel.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <functional>

#include "intake/new_level.h"
#include "ui/field_note.h"
#include "ui/form_support.h"
#include "ui/job_door.h"

namespace kelvash::ui {

class FormsUser;

class Dialog_NewLevel final : public QDialog {
    Q_OBJECT

  public:
    // The level must live as long as the form is open.
    Dialog_NewLevel(FormsUser& user, intake::NewLevel& level, QWidget* parent);
    void Set_Caption_Texts();
    // Shows the level as it is now.
    void ImpostaValori();
    // Esc and the window's own button: as Pul_Cancel, the level is left out, or stays as it was; but not
    // before a question if something would be lost.
    void reject() override;

    QLabel* const Label_NameLevel = Make<QLabel>(this, "Label_NameLevel");
    QLineEdit* const Text_NameLevel = Make<QLineEdit>(this, "Text_NameLevel");
    QLabel* const Label_Note = Make<QLabel>(this, "Label_Note");
    QLineEdit* const Text_Note = Make<QLineEdit>(this, "Text_Note");
    FieldNote* const Note_Fields = Make<FieldNote>(this, "Note_Fields");
    QLabel* const Label_MoreInfo = Make<QLabel>(this, "Label_MoreInfo");
    QComboBox* const Combo_MoreInfo = Make<QComboBox>(this, "Combo_MoreInfo");
    QGroupBox* const Frame_Files = Make<QGroupBox>(this, "Frame_Files");
    QListWidget* const List_Files = Make<QListWidget>(this, "List_Files");
    QLabel* const Label_Size = Make<QLabel>(this, "Label_Size");
    QPushButton* const Pul_AddFile = Make<QPushButton>(this, "Pul_AddFile");
    QPushButton* const Pul_AddFolder = Make<QPushButton>(this, "Pul_AddFolder");
    QPushButton* const Pul_SearchLevel = Make<QPushButton>(this, "Pul_SearchLevel");
    QPushButton* const Pul_CompileTom = Make<QPushButton>(this, "Pul_CompileTom");
    QPushButton* const Pul_SetMyLanguage = Make<QPushButton>(this, "Pul_SetMyLanguage");
    QPushButton* const Pul_Remove = Make<QPushButton>(this, "Pul_Remove");
    QPushButton* const Pul_RimuoviTutti = Make<QPushButton>(this, "Pul_RimuoviTutti");
    QPushButton* const Pul_Refresh = Make<QPushButton>(this, "Pul_Refresh");
    QLabel* const Label_Info = Make<QLabel>(this, "Label_Info");
    QProgressBar* const ProgressBar1 = Make<QProgressBar>(this, "ProgressBar1");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  private:
    void Lay();
    QLayout* LayFields();
    void LayFiles();
    void Connect(FormsUser& user);
    using LevelJob = std::function<void(intake::NewLevel&)>;
    // Lets the logic work on the level with what the fields hold, then shows what came of it. Work begins
    // through the door.
    void Work(const LevelJob& job);
    void WorkNow(const LevelJob& job);
    void OpenSelected();
    void EnableButtons();
    bool eventFilter(QObject* watched, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

    intake::NewLevel& level_;
    JobDoor door_{this};
};

} // namespace kelvash::ui
