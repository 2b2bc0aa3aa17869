// Gives TRLE's original configuration back: fast, by taking the level out, or in full, from the backup.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include "foundation/user.h"
#include "ui/form_support.h"
#include "ui/job_door.h"

namespace kelvash::ui {

class FormsUser;

class Dialog_Restore final : public QDialog {
    Q_OBJECT

  public:
    Dialog_Restore(FormsUser& user, QWidget* parent);
    void Set_Caption_Texts();
    // Closing is refused while a restore runs.
    void reject() override;

    bool Restored = false; // a restore has been carried out

    QLabel* const Label_Choose = Make<QLabel>(this, "Label_Choose");
    QPushButton* const Pul_Fast = Make<QPushButton>(this, "Pul_Fast");
    QLabel* const Label_Fast = Make<QLabel>(this, "Label_Fast");
    QPushButton* const Pul_Full = Make<QPushButton>(this, "Pul_Full");
    QLabel* const Label_Full = Make<QLabel>(this, "Label_Full");
    QLabel* const Label_Info = Make<QLabel>(this, "Label_Info");
    QProgressBar* const ProgressBar1 = Make<QProgressBar>(this, "ProgressBar1");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  private:
    void Lay();
    void Fast();
    void Full();
    void SetRunning(bool running);

    JobDoor door_{this};
};

} // namespace kelvash::ui
