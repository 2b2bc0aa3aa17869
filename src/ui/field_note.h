// A line below some fields that says at once what is wrong with what stands in them; hidden while nothing is.
#pragma once

#include <QLabel>
#include <QTimer>
#include <functional>
#include <vector>

class QLineEdit;

namespace kelvash::ui {

class FieldNote final : public QLabel {
    Q_OBJECT

  public:
    explicit FieldNote(QWidget* parent);

    // What is wrong with a text that was typed; empty if nothing is.
    using Judge = std::function<QString(const QString& text)>;
    // Judges a field whenever its text has changed, a moment after the last letter. Of several fields the one
    // that was added first is told.
    void Watch(QLineEdit* field, Judge judge);
    // For what isn't typed.
    void Say(const QString& fault);

  private:
    struct Field {
        QLineEdit* edit;
        Judge judge;
    };
    void JudgeAll();
    void changeEvent(QEvent* event) override;
    void TakeColour();
    void MakeRoom();

    std::vector<Field> fields_;
    QTimer pause_; // while somebody types, half a word isn't wrong yet
};

} // namespace kelvash::ui
