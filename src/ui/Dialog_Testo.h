// Shows a text with a search, goes to a place in it by a mark or by the index of its topics. Lines of the
// help's format are read as such: see WithoutMarks.
#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <optional>
#include <string>

#include "ui/form_support.h"
#include "ui/help_text.h"

namespace kelvash::ui {

class TopicHighlighter;

class Dialog_Testo final : public QDialog {
    Q_OBJECT

  public:
    static constexpr int kNoMark = 0; // opens at the top

    explicit Dialog_Testo(QWidget* parent);
    void Set_Caption_Texts();
    // An empty caption leaves the form's own. The text is shown from the mark on, once the form is on the
    // screen; from the top if it doesn't have the mark.
    void ImpostaValori(const std::string& caption, const std::string& text, int mark);
    // True if that is the text that it has been given.
    bool Shows(const std::string& text) const;
    // Goes to a mark of the text; to its top without one.
    void GoToMark(int mark);

    QLineEdit* const Text_Trova = Make<QLineEdit>(this, "Text_Trova");
    QPushButton* const Pul_Trova = Make<QPushButton>(this, "Pul_Trova");
    QPushButton* const Pul_Dopo = Make<QPushButton>(this, "Pul_Dopo");
    QPushButton* const Pul_Prima = Make<QPushButton>(this, "Pul_Prima");
    QCheckBox* const Check_ParolaIntera = Make<QCheckBox>(this, "Check_ParolaIntera");
    QPlainTextEdit* const Text_File = Make<QPlainTextEdit>(this, "Text_File");
    QPushButton* const Pul_Index = Make<QPushButton>(this, "Pul_Index");
    QPushButton* const Pul_Ok = Make<QPushButton>(this, "Pul_Ok");
    QTimer* const Timer1 = new QTimer(this);

  private:
    void Lay();
    void ConnectKeys();
    void TakeColours();
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

    // Between the bytes of help_.text and the UTF-16 units of the control.
    int ShownPosition(std::size_t position) const;
    std::size_t TextPosition(int shown) const;

    void EnableSearch();
    QTextCursor CurrentPlace() const;
    std::optional<TextMatch> Match(std::size_t from, SearchDirection direction) const;
    void Find();
    void FindNext();
    void FindPrevious();
    void ShowMatch(const std::optional<TextMatch>& match);
    void ShowIndex();
    void GoTo(std::size_t position); // of text_

    std::string text_; // as it stands in the file
    ShownHelp help_;
    QString shown_;
    int mark_ = kNoMark;
    bool shown_once_ = false;
    TopicHighlighter* highlighter_ = nullptr;
};

} // namespace kelvash::ui
