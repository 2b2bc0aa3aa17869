// Has the TRLE folder found: the first thing that a new user is asked.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <string>

#include "trle/find_trle.h"
#include "ui/field_note.h"
#include "ui/form_support.h"
#include "ui/path_label.h"

namespace kelvash::ui {

class Dialog_TrovaTrle final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_TrovaTrle(QWidget* parent);
    void Set_Caption_Texts();
    void ImpostaValori(const trle::TrleFolderChoice& choice);

    std::string Folder; // shown; the chosen one once the form has been accepted

    QLabel* const Label_Info = Make<QLabel>(this, "Label_Info");
    QLabel* const Label_Title = Make<QLabel>(this, "Label_Title");
    PathLabel* const Label_Path = Make<PathLabel>(this, "Label_Path");
    FieldNote* const Note_Path = Make<FieldNote>(this, "Note_Path");
    QPushButton* const Pul_Sfoglia = Make<QPushButton>(this, "Pul_Sfoglia");
    QPushButton* const Pul_InstallTrleCD = Make<QPushButton>(this, "Pul_InstallTrleCD");
    QPushButton* const Pul_InstallCompresso = Make<QPushButton>(this, "Pul_InstallCompresso");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  private:
    void Lay();
    void ShowFolder();
    QString Fault() const;
    void Browse();
};

} // namespace kelvash::ui
