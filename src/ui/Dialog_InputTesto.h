// Has a text of several lines typed.
#pragma once

#include <QDialog>
#include <QPlainTextEdit>
#include <QPushButton>
#include <string>

#include "ui/form_support.h"

namespace kelvash::ui {

class Dialog_InputTesto final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_InputTesto(QWidget* parent);
    void Set_Caption_Texts();
    // An empty caption leaves the form's own. Lines of the text end in any way.
    void ImpostaValori(const std::string& caption, const std::string& text);

    // The typed text, after Accepted. Its lines are separated by CR LF.
    std::string Testo;

    QPlainTextEdit* const Text1 = Make<QPlainTextEdit>(this, "Text1");
    QPushButton* const Pul_Svuota = Make<QPushButton>(this, "Pul_Svuota");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");
    QPushButton* const Pul_Annulla = Make<QPushButton>(this, "Pul_Annulla");

  private:
    void Lay();
    void Accept();
};

} // namespace kelvash::ui
