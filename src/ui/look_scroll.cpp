#include "ui/look_scroll.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>

#include "ui/look.h"

namespace kelvash::ui {

namespace {

constexpr int kShortest = space::kWide; // handle that can still be taken hold of
constexpr int kEdge = 3;                // free ground beside the handle

// Share of the text's colour in the handle's; the first can be told from every ground of ours.
constexpr double kIdle = 0.5;
constexpr double kHover = 0.65;
constexpr double kHeld = 0.8;

bool IsFlat(const QStyleOptionSlider& bar) {
    return bar.orientation == Qt::Horizontal;
}

// A piece of the bar, counted from its beginning.
QRect Piece(const QStyleOptionSlider& bar, int from, int length) {
    const QRect& all = bar.rect;
    const QRect piece = IsFlat(bar) ? QRect(all.left() + from, all.top(), length, all.height())
                                    : QRect(all.left(), all.top() + from, all.width(), length);
    return IsFlat(bar) ? QStyle::visualRect(bar.direction, all, piece) : piece;
}

// That of the page, the list or the text that is scrolled.
QColor GroundOf(const QStyleOptionSlider& bar, const QWidget* widget) {
    for (const QWidget* above = widget; above != nullptr; above = above->parentWidget())
        if (const auto* const area = qobject_cast<const QAbstractScrollArea*>(above))
            return area->viewport()->palette().color(area->viewport()->backgroundRole());
    return bar.palette.color(QPalette::Window);
}

} // namespace

QRect ScrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part) {
    const int length = IsFlat(bar) ? bar.rect.width() : bar.rect.height();
    const qint64 range = qint64{bar.maximum} - bar.minimum;
    const qint64 whole = std::max<qint64>(1, range + bar.pageStep);
    const int handle = range <= 0 ? length
                                  : std::clamp(static_cast<int>(length * qint64{bar.pageStep} / whole), //
                                               std::min(kShortest, length), length);
    const int begin = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                      length - handle, bar.upsideDown);
    switch (part) {
        case QStyle::SC_ScrollBarGroove:
            return bar.rect;
        case QStyle::SC_ScrollBarSlider:
            return Piece(bar, begin, handle);
        case QStyle::SC_ScrollBarSubPage:
            return Piece(bar, 0, begin);
        case QStyle::SC_ScrollBarAddPage:
            return Piece(bar, begin + handle, length - handle - begin);
        default:
            return {};
    }
}

void DrawScrollBar(const QStyleOptionSlider& bar, QPainter& painter, const QWidget* widget) {
    const QColor ground = GroundOf(bar, widget);
    painter.fillRect(bar.rect, ground);
    if (bar.maximum <= bar.minimum || (bar.state & QStyle::State_Enabled) == 0) return;
    const bool on_handle = (bar.activeSubControls & QStyle::SC_ScrollBarSlider) != 0;
    const bool held = on_handle && (bar.state & QStyle::State_Sunken) != 0;
    const bool hover = on_handle && (bar.state & QStyle::State_MouseOver) != 0;
    const QRectF handle =
        ScrollBarPart(bar, QStyle::SC_ScrollBarSlider).marginsRemoved({kEdge, kEdge, kEdge, kEdge});
    const double round = std::min(handle.width(), handle.height()) / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Mixed(bar.palette.color(QPalette::WindowText), ground,
                           held    ? kHeld
                           : hover ? kHover
                                   : kIdle));
    painter.drawRoundedRect(handle, round, round);
    painter.restore();
}

} // namespace kelvash::ui
