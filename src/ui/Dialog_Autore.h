// What a level says of its author.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <functional>
#include <string>
#include <vector>

#include "intake/author_notes.h"
#include "ui/field_note.h"
#include "ui/form_support.h"

namespace kelvash::ui {

class Dialog_Autore final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_Autore(QWidget* parent);
    void Set_Caption_Texts();
    // Shows the notes of a level, given by its place in the table.
    void ImpostaValori(std::int32_t level_index);

    QLabel* const Label_NomeAutore = Make<QLabel>(this, "Label_NomeAutore");
    QLineEdit* const Text_NomeAutore = Make<QLineEdit>(this, "Text_NomeAutore");
    FieldNote* const Note_Fields = Make<FieldNote>(this, "Note_Fields");
    QLabel* const Label_Email = Make<QLabel>(this, "Label_Email");
    QComboBox* const Combo_Email = Make<QComboBox>(this, "Combo_Email");
    QPushButton* const Pul_NewEmail = Make<QPushButton>(this, "Pul_NewEmail");
    QPushButton* const Pul_ChangeEmail = Make<QPushButton>(this, "Pul_ChangeEmail");
    QPushButton* const Pul_DelEmail = Make<QPushButton>(this, "Pul_DelEmail");
    QPushButton* const Pul_SendMail = Make<QPushButton>(this, "Pul_SendMail");
    QLabel* const Label_Siti = Make<QLabel>(this, "Label_Siti");
    QComboBox* const Combo_Siti = Make<QComboBox>(this, "Combo_Siti");
    QPushButton* const Pul_New_Sito = Make<QPushButton>(this, "Pul_New_Sito");
    QPushButton* const Pul_ModSito = Make<QPushButton>(this, "Pul_ModSito");
    QPushButton* const Pul_DelSito = Make<QPushButton>(this, "Pul_DelSito");
    QPushButton* const Pul_GoSito = Make<QPushButton>(this, "Pul_GoSito");
    QLabel* const Label_NoteAutore = Make<QLabel>(this, "Label_NoteAutore");
    QPlainTextEdit* const Text_NoteAutore = Make<QPlainTextEdit>(this, "Text_NoteAutore");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  private:
    using Edit = bool (*)(intake::AuthorNotes&, std::int32_t item);
    void Lay();
    void ConnectEdit(QPushButton* button, QComboBox* combo, Edit edit);
    void ShowLists();
    void Accept();

    intake::AuthorNotes notes_;
};

} // namespace kelvash::ui
