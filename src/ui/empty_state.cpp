#include "ui/empty_state.h"

#include <QVBoxLayout>
#include <algorithm>

#include "ui/look.h"

namespace kelvash::ui {

EmptyState::EmptyState(QWidget* parent) : QWidget(parent), buttons_(new QHBoxLayout) {
    auto* const column = new QVBoxLayout(this);
    drawing_->setTextFormat(Qt::PlainText);
    drawing_->setAlignment(Qt::AlignCenter);
    sentence_->setAlignment(Qt::AlignCenter);
    sentence_->setWordWrap(true);
    sentence_->setTextFormat(Qt::PlainText);
    sentence_->setForegroundRole(QPalette::PlaceholderText);
    column->addStretch();
    column->addWidget(drawing_);
    column->addWidget(sentence_);
    column->addLayout(buttons_);
    column->addStretch();
    column->setSpacing(space::kApart);
}

void EmptyState::Add(QPushButton* button) {
    buttons_->addWidget(button, 0, Qt::AlignCenter);
    all_.push_back(button);
}

void EmptyState::Say(Glyph glyph, const QString& sentence, std::initializer_list<QPushButton*> helping) {
    const int side = fontMetrics().height() * 3;
    drawing_->setPixmap(IconOf(glyph, Role::MutedText).pixmap(QSize(side, side), devicePixelRatio()));
    sentence_->setText(sentence);
    for (QPushButton* button : all_)
        button->setVisible(std::find(helping.begin(), helping.end(), button) != helping.end());
}

} // namespace kelvash::ui
