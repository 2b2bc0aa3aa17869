// What a list or a page shows where it has nothing to show: a drawing, a sentence, and the buttons that help.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <initializer_list>
#include <vector>

#include "ui/icons.h"

class QHBoxLayout;

namespace kelvash::ui {

class EmptyState final : public QWidget {
    Q_OBJECT

  public:
    explicit EmptyState(QWidget* parent);

    // Only those of the buttons that are named here are shown.
    void Say(Glyph glyph, const QString& sentence, std::initializer_list<QPushButton*> helping);
    // A button for later use.
    void Add(QPushButton* button);
    // Takes the place of what has nothing to show, or gives it back.
    void StandFor(QWidget* content, bool nothing);
    QString Sentence() const { return sentence_->text(); }
    Glyph Drawn() const;

  private:
    void resizeEvent(QResizeEvent* event) override;
    void MakeRoom();

    class Drawing;
    Drawing* drawing_;
    QLabel* const sentence_ = new QLabel(this);
    QHBoxLayout* buttons_;
    std::vector<QPushButton*> all_;
};

} // namespace kelvash::ui
