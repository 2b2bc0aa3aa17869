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
    ScreenKeeper(QDialog* form, QLayout* foot) : QObject(form), form_(form), foot_(foot) {
        form->installEventFilter(this);
    }

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

    // The form's layout moves into a page that scrolls. The page is the form's from the beginning: in a
    // window of its own the controls would lose their places in the order of the tabulator key.
    void Scroll() {
        scrolls_ = true;
        form_->setMinimumSize(0, 0);
        const QMargins edges = form_->layout()->contentsMargins();
        const bool parts = foot_ != nullptr && foot_->parent() == form_->layout() &&
                           foot_->minimumSize().width() + edges.left() + edges.right() <= Room().width();
        if (parts) form_->layout()->removeItem(foot_);
        auto* const page = new QWidget(form_);
        page->setLayout(form_->layout());
        auto* const area = new QScrollArea(form_);
        area->setWidget(page);
        area->setWidgetResizable(true);
        area->setFrameShape(QFrame::NoFrame);
        area->setFocusPolicy(Qt::NoFocus); // it follows the keyboard from control to control
        area->setObjectName(QStringLiteral("Scroll"));
        auto* const whole = new QVBoxLayout(form_);
        whole->setContentsMargins({});
        whole->setSpacing(0);
        whole->addWidget(area);
        const int bar = area->verticalScrollBar()->sizeHint().width();
        QSize wish = page->sizeHint() + QSize(bar, bar);
        if (parts) {
            whole->addLayout(foot_);
            foot_->setContentsMargins(edges);
            wish.rheight() += foot_->sizeHint().height();
        }
        form_->resize(wish.boundedTo(Room()));
    }

    QDialog* form_;
    QLayout* foot_;
    bool scrolls_ = false;
};

} // namespace

void KeepOnScreen(QDialog* form, QLayout* foot) {
    new ScreenKeeper(form, foot);
}

} // namespace kelvash::ui
