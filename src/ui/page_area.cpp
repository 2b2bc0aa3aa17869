#include "ui/page_area.h"

#include <QEvent>
#include <QLayout>
#include <QScrollBar>
#include <algorithm>

namespace kelvash::ui {

namespace {

constexpr int kFewestLines = 10; // of text, to scroll in

} // namespace

PageArea::PageArea(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
}

void PageArea::SetPage(QWidget* page) {
    setWidget(page);
    Fit();
}

QSize PageArea::sizeHint() const {
    return widget() == nullptr ? QScrollArea::sizeHint() : widget()->sizeHint();
}

QSize PageArea::minimumSizeHint() const {
    const int page = widget() == nullptr ? 0 : widget()->minimumSizeHint().width();
    return {page + verticalScrollBar()->sizeHint().width(), fontMetrics().height() * kFewestLines};
}

bool PageArea::event(QEvent* event) {
    const bool handled = QScrollArea::event(event);
    if (event->type() == QEvent::LayoutRequest) Fit();
    return handled;
}

void PageArea::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    Fit();
}

// The toolkit's own way would scroll as soon as the page has less than it likes to have.
void PageArea::Fit() {
    if (widget() == nullptr) return;
    const QLayout* const layout = widget()->layout();
    const int least = layout->totalMinimumSize().width();
    const int width = std::max(viewport()->width(), least);
    const int height = layout->hasHeightForWidth() ? layout->totalMinimumHeightForWidth(width)
                                                   : layout->totalMinimumSize().height();
    widget()->resize(width, std::max(viewport()->height(), height));
    if (least == least_width_) return;
    least_width_ = least;
    updateGeometry();
}

} // namespace kelvash::ui
