#include "ui/look_marks.h"

#include <QPainter>
#include <QPolygonF>
#include <QStyleOption>
#include <algorithm>

#include "ui/look.h"

namespace kelvash::ui {

namespace {

constexpr double kCorner = 3;
constexpr double kHover = 0.2; // of the accent in the edge's colour

struct Mark {
    QRectF place;
    QColor ground, edge, sign;
};

// A square in the middle of the option's place; filled with the accent where the option holds.
Mark MarkOf(const QStyleOption& option, bool holds) {
    const QPalette& palette = option.palette;
    const bool enabled = (option.state & QStyle::State_Enabled) != 0;
    QColor edge = enabled ? ColourOf(Role::MutedText, palette) : palette.color(QPalette::Mid);
    QColor ground = palette.color(enabled ? QPalette::Base : QPalette::Window);
    if (holds) ground = edge = enabled ? ColourOf(Role::Accent, palette) : palette.color(QPalette::Mid);
    if (enabled && !holds && (option.state & QStyle::State_MouseOver) != 0)
        edge = Mixed(ColourOf(Role::Accent, palette), edge, kHover);
    const int side = std::min(option.rect.width(), option.rect.height());
    QRectF place(0, 0, side - 1, side - 1);
    place.moveCenter(QRectF(option.rect).center());
    return {place, ground, edge,
            enabled ? ColourOf(Role::OnAccent, palette) : palette.color(QPalette::Window)};
}

} // namespace

void DrawCheckMark(const QStyleOption& option, QPainter& painter) {
    const bool partly = (option.state & QStyle::State_NoChange) != 0;
    const bool checked = (option.state & QStyle::State_On) != 0;
    const Mark mark = MarkOf(option, partly || checked);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(mark.edge);
    painter.setBrush(mark.ground);
    painter.drawRoundedRect(mark.place, kCorner, kCorner);
    const auto at = [&mark](double x, double y) {
        return mark.place.topLeft() + QPointF(x * mark.place.width(), y * mark.place.height());
    };
    painter.setPen(QPen(mark.sign, mark.place.width() / 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (partly)
        painter.drawLine(at(0.28, 0.5), at(0.72, 0.5));
    else if (checked)
        painter.drawPolyline(QPolygonF{at(0.25, 0.52), at(0.43, 0.7), at(0.76, 0.32)});
    painter.restore();
}

void DrawChoiceMark(const QStyleOption& option, QPainter& painter) {
    const bool chosen = (option.state & QStyle::State_On) != 0;
    const Mark mark = MarkOf(option, chosen);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(mark.edge);
    painter.setBrush(mark.ground);
    painter.drawEllipse(mark.place);
    if (chosen) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(mark.sign);
        const double dot = mark.place.width() / 5;
        painter.drawEllipse(mark.place.center(), dot, dot);
    }
    painter.restore();
}

} // namespace kelvash::ui
