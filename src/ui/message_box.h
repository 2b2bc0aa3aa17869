// The box in which messages are told and questions asked.
//
// The first line of a long text is its headline. The text can be selected, by mouse and keyboard, and copied
// whole: paths and names stand in it that are wanted elsewhere. What a screen has no room for is scrolled to;
// the answers are always within reach.
#pragma once

#include <QClipboard>
#include <QMessageBox>
#include <string>

namespace kelvash::ui {

class MessageBox final : public QMessageBox {
    Q_OBJECT

  public:
    MessageBox(Icon icon, const QString& title, StandardButtons buttons, QWidget* parent);

    // A text of the logic, shown to the letter.
    void Say(const std::string& text);
    // What Enter means, NoButton for nothing, and what closing the box means: only its buttons end a box
    // where nothing is harmless.
    void SetAnswers(StandardButton willing, StandardButton harmless);

  protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    QList<QLabel*> Texts() const;
    QString WholeText() const;
    void KeepTextsTogether();
    void FitIntoScreen();
    void CopyText() const;
    void CleanClipboard(QClipboard::Mode mode) const;

    bool closable_ = true;
    bool scrolls_ = false;
};

} // namespace kelvash::ui
