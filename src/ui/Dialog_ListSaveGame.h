// Has several savegames chosen, to be imported, exported or sent.
#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <string>
#include <vector>

#include "companion/savegame_transfer.h"
#include "ui/form_support.h"
#include "ui/job_door.h"

namespace kelvash::ui {

class Dialog_ListSaveGame final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_ListSaveGame(QWidget* parent);
    void Set_Caption_Texts();
    // Lists the savegames of a folder to import them, or those of the selected level to export them or, with
    // `mail`, to send them. The last flag means nothing. False, after a message, if there is nothing to list.
    [[nodiscard]] bool ImpostaValori(const std::string& folder, bool import, bool mail, bool unused);

    // The level's savegames may be others than before.
    bool Changed = false;

    QLabel* const Label_List = Make<QLabel>(this, "Label_List");
    QListWidget* const List_Shot = Make<QListWidget>(this, "List_Shot");
    QPushButton* const Pul_All = Make<QPushButton>(this, "Pul_All");
    QCheckBox* const Check_Elimina = Make<QCheckBox>(this, "Check_Elimina");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");
    QPushButton* const Pul_Annulla = Make<QPushButton>(this, "Pul_Annulla");

  private:
    void Lay();
    void Take();
    void Import(const std::vector<std::string>& files);
    void Export(const std::vector<std::string>& files);
    void Mail(const std::vector<std::string>& files);

    JobDoor door_{this};
    companion::ListPurpose purpose_ = companion::ListPurpose::Export;
    std::vector<std::string> files_; // by row
};

} // namespace kelvash::ui
