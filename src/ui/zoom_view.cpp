#include "ui/zoom_view.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

namespace kelvash::ui {

ZoomView::ZoomView(QWidget* parent) : QWidget(parent) {}

void ZoomView::ShowPicture(const QImage& picture) {
    picture_ = QPixmap::fromImage(picture);
    SetZoom(1);
}

void ZoomView::SetZoom(double zoom) {
    zoom_ = std::clamp(zoom, kSmallest, kLargest);
    resize(sizeHint());
    update();
}

double ZoomView::ZoomFor(const QSize& room) const {
    if (picture_.isNull()) return 1;
    return std::min({1.0, static_cast<double>(room.width()) / picture_.width(),
                     static_cast<double>(room.height()) / picture_.height()});
}

QSize ZoomView::sizeHint() const {
    return (QSizeF(picture_.size()) * zoom_).toSize().expandedTo({1, 1});
}

// Only what is seen: a large picture eight times as large would be more than memory has.
void ZoomView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, zoom_ < 2); // above that, pixels are wanted
    const QRectF shown(event->rect());
    painter.drawPixmap(shown, picture_,
                       {shown.x() / zoom_, shown.y() / zoom_, shown.width() / zoom_, shown.height() / zoom_});
}

} // namespace kelvash::ui
