#include "ui/empty_state.h"

#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/look.h"

namespace kelvash::ui {

// A glyph on a disc that hints at the accent.
class EmptyState::Drawing final : public QWidget {
  public:
    explicit Drawing(QWidget* parent) : QWidget(parent) {
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    }
    void Show(Glyph glyph) {
        glyph_ = glyph;
        update();
    }
    Glyph Shown() const { return glyph_; }
    QSize sizeHint() const override { return Square(kLines); }
    QSize minimumSizeHint() const override { return Square(kFewestLines); }

  private:
    // In lines of text.
    static constexpr int kLines = 5;
    static constexpr int kFewestLines = 3;
    static constexpr double kHint = 0.14;

    QSize Square(int lines) const {
        const int side = fontMetrics().height() * lines;
        return {side, side};
    }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const int side = std::min(width(), height());
        QRect disc(0, 0, side, side);
        disc.moveCenter(rect().center());
        const QColor accent = ColourOf(Role::Accent, palette());
        painter.setPen(Qt::NoPen);
        painter.setBrush(Mixed(accent, ColourOf(Role::Surface, palette()), kHint));
        painter.drawEllipse(disc);
        QRect glyph(0, 0, disc.width() / 2, disc.width() / 2);
        glyph.moveCenter(disc.center());
        DrawGlyph(painter, glyph, glyph_, accent);
    }

    Glyph glyph_ = Glyph::Nothing;
};

EmptyState::EmptyState(QWidget* parent)
    : QWidget(parent), drawing_(new Drawing(this)), buttons_(new QHBoxLayout) {
    auto* const column = new QVBoxLayout(this);
    sentence_->setAlignment(Qt::AlignCenter);
    sentence_->setWordWrap(true);
    sentence_->setTextFormat(Qt::PlainText);
    sentence_->setForegroundRole(QPalette::PlaceholderText);
    buttons_->addStretch();
    buttons_->addStretch();
    column->addStretch();
    column->addWidget(drawing_);
    column->addWidget(sentence_);
    column->addLayout(buttons_);
    column->addStretch();
    column->setSpacing(space::kNear);
}

void EmptyState::Add(QPushButton* button) {
    buttons_->insertWidget(buttons_->count() - 1, button);
    all_.push_back(button);
}

void EmptyState::Say(Glyph glyph, const QString& sentence, std::initializer_list<QPushButton*> helping) {
    drawing_->Show(glyph);
    sentence_->setText(sentence);
    MakeRoom();
    for (QPushButton* button : all_)
        button->setVisible(std::find(helping.begin(), helping.end(), button) != helping.end());
}

void EmptyState::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    MakeRoom();
}

// The splitter around asks nothing how high it gets in its width.
void EmptyState::MakeRoom() {
    setMinimumHeight(std::max(0, layout()->totalMinimumHeightForWidth(width())));
}

void EmptyState::StandFor(QWidget* content, bool nothing) {
    content->setVisible(!nothing);
    setVisible(nothing);
}

Glyph EmptyState::Drawn() const {
    return drawing_->Shown();
}

} // namespace kelvash::ui
