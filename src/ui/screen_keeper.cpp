#include "ui/screen_keeper.h"

#include <QDialog>
#include <QEvent>
#include <QLayout>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace kelvash::ui {

namespace {

class ScreenKeeper final : public QObject {
  public:
    explicit ScreenKeeper(QDialog* form) : QObject(form), form_(form) { form->installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Show) Fit();
        return false;
    }

  private:
    // What a window's frame takes stays free too.
    QSize Room() const { return form_->screen()->availableSize() * 19 / 20; }

    void Fit() {
        const QSize room = Room();
        const QSize least = form_->layout()->totalMinimumSize().expandedTo(form_->minimumSize());
        if (!scrolls_ && (least.height() > room.height() || least.width() > room.width())) Scroll();
        form_->resize(form_->size().boundedTo(room));
    }

    // The form's layout moves into a page that scrolls.
    void Scroll() {
        scrolls_ = true;
        form_->setMinimumSize(0, 0);
        auto* const page = new QWidget;
        page->setLayout(form_->layout());
        auto* const area = new QScrollArea(form_);
        area->setWidget(page);
        area->setWidgetResizable(true);
        area->setFrameShape(QFrame::NoFrame);
        area->setObjectName(QStringLiteral("Scroll"));
        auto* const whole = new QVBoxLayout(form_);
        whole->setContentsMargins({});
        whole->addWidget(area);
        const int bar = area->verticalScrollBar()->sizeHint().width();
        form_->resize((page->sizeHint() + QSize(bar, bar)).boundedTo(Room()));
    }

    QDialog* form_;
    bool scrolls_ = false;
};

} // namespace

void KeepOnScreen(QDialog* form) {
    new ScreenKeeper(form);
}

} // namespace kelvash::ui
