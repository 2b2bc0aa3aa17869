#include "ui/field_note.h"

#include <QEvent>
#include <QLayout>
#include <QLineEdit>
#include <QScreen>
#include <algorithm>
#include <utility>

#include "ui/look.h"

namespace kelvash::ui {

namespace {

constexpr int kPause = 250; // milliseconds

} // namespace

FieldNote::FieldNote(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    SetType(this, Type::Caption);
    TakeColour();
    hide();
    pause_.setSingleShot(true);
    pause_.setInterval(kPause);
    connect(&pause_, &QTimer::timeout, this, &FieldNote::JudgeAll);
}

void FieldNote::Watch(QLineEdit* field, Judge judge) {
    fields_.push_back({field, std::move(judge)});
    connect(field, &QLineEdit::textChanged, &pause_, qOverload<>(&QTimer::start));
}

void FieldNote::JudgeAll() {
    QString told;
    for (const Field& field : fields_) {
        const QString fault = field.judge(field.edit->text());
        field.edit->setAccessibleDescription(fault);
        if (told.isEmpty()) told = fault;
    }
    Say(told);
}

void FieldNote::Say(const QString& fault) {
    setText(fault);
    setVisible(!fault.isEmpty());
    MakeRoom();
}

// A window doesn't get higher by itself for a text of several lines.
void FieldNote::MakeRoom() {
    QLayout* const layout = window()->layout();
    if (!isVisible() || layout == nullptr || !layout->hasHeightForWidth()) return;
    layout->activate(); // the layouts within it reckon with the former text until then
    const int least = layout->totalMinimumHeightForWidth(window()->width());
    if (window()->height() < least)
        window()->resize(window()->width(), std::min(least, screen()->availableSize().height()));
}

void FieldNote::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) TakeColour();
}

// Only where it differs: a new palette is a change of it.
void FieldNote::TakeColour() {
    const QColor danger = ColourOf(Role::Danger);
    if (palette().color(QPalette::WindowText) == danger) return;
    QPalette own; // of which all other colours stay those of the program
    own.setColor(QPalette::WindowText, danger);
    setPalette(own);
}

} // namespace kelvash::ui
