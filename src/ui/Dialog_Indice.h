// The index of a text's topics: the main ones or the sub-topics, one of which can be gone to.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <optional>
#include <string>
#include <vector>

#include "ui/form_support.h"
#include "ui/help_text.h"

namespace kelvash::ui {

class Dialog_Indice final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_Indice(QWidget* parent);
    void Set_Caption_Texts();
    // Builds the index of a text, which opens with the main topics.
    void ImpostaValori(const std::string& text);

    // The place of the chosen topic in the text, in bytes, after Accepted.
    std::optional<std::size_t> Position;

    QRadioButton* const Opt_Main = Make<QRadioButton>(this, "Opt_Main");
    QRadioButton* const Opt_Sub = Make<QRadioButton>(this, "Opt_Sub");
    QLineEdit* const Text_Find = Make<QLineEdit>(this, "Text_Find");
    QPushButton* const Pul_Find = Make<QPushButton>(this, "Pul_Find");
    QListWidget* const List_Indice = Make<QListWidget>(this, "List_Indice");
    QLabel* const Label_Items = Make<QLabel>(this, "Label_Items");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  private:
    void Lay();
    bool eventFilter(QObject* watched, QEvent* event) override;
    const std::vector<HelpTopic>& Topics() const; // those of the chosen kind
    void ShowTopics();
    int SelectedRow() const; // -1 without a selection
    void Find();
    void Choose();

    std::vector<HelpTopic> main_topics_;
    std::vector<HelpTopic> sub_topics_;
};

} // namespace kelvash::ui
