#include "ui/first_start.h"

#include <QApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/first_start_messages.h"
#include "ui/help.h"
#include "ui/icons.h"
#include "ui/look.h"

namespace kelvash::ui {

namespace {

// In average characters and lines of text.
constexpr int kCardWidth = 40;
constexpr int kStageLines = 26;

constexpr double kPale = 0.35; // of the raised ground in a card whose turn it isn't

QString WordOf(StepState state) {
    switch (state) {
        case StepState::Done:
            return Caption(msg::kFirstDone);
        case StepState::Now:
            return Caption(msg::kFirstNow);
        case StepState::ToCome:
            break;
    }
    return Caption(msg::kFirstToCome);
}

} // namespace

StepCard::StepCard(int number, MessageId title, MessageId text, QWidget* parent)
    : QWidget(parent), number_(number) {
    title_->setText(Caption(title));
    text_->setText(Caption(text));
    SetType(title_, Type::Title);
    SetExplaining(text_);
    SetExplaining(state_label_);
    text_->setWordWrap(true);
    text_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* const words = new QVBoxLayout(this);
    words->setContentsMargins(Sign().right() + space::kNear, space::kNear, space::kNear, space::kNear);
    words->setSpacing(space::kTight);
    words->addWidget(title_);
    words->addWidget(state_label_);
    words->addWidget(text_, 1);
    SetState(StepState::ToCome);
}

void StepCard::SetState(StepState state) {
    state_ = state;
    state_label_->setText(WordOf(state));
    setAccessibleName(title_->text());
    setAccessibleDescription(state_label_->text());
    update();
}

QRect StepCard::Sign() const {
    const int side = fontMetrics().height() * 2;
    return {space::kNear, space::kNear, side, side};
}

void StepCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QColor raised = ColourOf(Role::Raised, palette());
    const QColor accent = ColourOf(Role::Accent, palette());
    const QColor muted = ColourOf(Role::MutedText, palette());
    const bool now = state_ == StepState::Now;
    if (now) FillRounded(painter, rect(), accent);
    const int edge = now ? space::kTight / 2 : 0;
    FillRounded(painter, rect().adjusted(edge, edge, -edge, -edge),
                now ? raised : Mixed(raised, ColourOf(Role::Surface, palette()), kPale));
    if (state_ == StepState::Done) {
        DrawGlyph(painter, Sign(), Glyph::Done, ColourOf(Role::Success, palette()));
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(now ? accent : muted);
    if (now) painter.setBrush(accent);
    painter.drawEllipse(Sign());
    painter.setPen(now ? ColourOf(Role::OnAccent, palette()) : muted);
    painter.setFont(FontOf(Type::Title));
    painter.drawText(Sign(), Qt::AlignCenter, QString::number(number_));
}

FirstStart::FirstStart(QWidget* parent)
    : QWidget(parent, Qt::Window),
      cards_{new StepCard(1, msg::kFirstTrle, msg::kFirstTrleText, this),
             new StepCard(2, msg::kFirstBackup, msg::kFirstBackupText, this),
             new StepCard(3, msg::kFirstArchive, msg::kFirstArchiveText, this)} {
    setObjectName(QStringLiteral("FirstStart"));
    setWindowTitle(Caption(msg::kFirstTitle));
    Label_Title->setText(windowTitle());
    Label_Intro->setText(Caption(msg::kFirstIntro));
    SetType(Label_Title, Type::Headline);
    Label_Intro->setWordWrap(true);
    auto* const steps = new QHBoxLayout;
    for (StepCard* card : cards_)
        steps->addWidget(card, 1);
    steps->setSpacing(space::kNear);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(space::kWide, space::kWide, space::kWide, space::kWide);
    column->setSpacing(space::kApart);
    column->addWidget(Label_Title);
    column->addWidget(Label_Intro);
    column->addLayout(steps);
    column->addStretch(1);
    const QRect room = screen()->availableGeometry();
    const int width = fontMetrics().averageCharWidth() * kCardWidth * 3;
    const int height = heightForWidth(width) + fontMetrics().height() * kStageLines;
    resize(QSize(width, height).boundedTo(room.size() * 19 / 20));
    move(room.center() - rect().center());
    qApp->installEventFilter(this);
    ConnectHelpKey(this, HelpMark::FirstStart);
}

FirstStart::~FirstStart() {
    qApp->removeEventFilter(this);
}

void FirstStart::Begin(program::FirstStep step) {
    for (std::size_t i = 0; i < cards_.size(); ++i) {
        const auto at = static_cast<std::size_t>(step);
        cards_.at(i)->SetState(i < at ? StepState::Done : i == at ? StepState::Now : StepState::ToCome);
    }
}

StepState FirstStart::StateOf(program::FirstStep step) const {
    return cards_.at(static_cast<std::size_t>(step))->State();
}

QRect FirstStart::Stage() const {
    const int top = cards_.front()->geometry().bottom() + space::kWide;
    return {QPoint(0, top), QPoint(width() - 1, height() - 1)};
}

// A question would be put on the steps that it belongs to. A message box finds its size while it is shown.
bool FirstStart::eventFilter(QObject* watched, QEvent* event) {
    const bool is_placed = event->type() == QEvent::Show || event->type() == QEvent::Resize;
    auto* const question = is_placed ? qobject_cast<QDialog*>(watched) : nullptr;
    if (question == nullptr || question->parentWidget() != this || event->spontaneous()) return false;
    QRect place(QPoint(), question->size());
    const QRect stage = Stage();
    place.moveCenter(stage.center());
    place.moveTop(std::max(place.top(), stage.top()));
    place.moveTopLeft(mapToGlobal(place.topLeft()));
    const QRect room = screen()->availableGeometry();
    place.moveBottom(std::min(place.bottom(), room.bottom()));
    place.moveTop(std::max(place.top(), room.top()));
    question->move(place.topLeft());
    return false;
}

} // namespace kelvash::ui
