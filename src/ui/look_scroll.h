// Scroll bars without edges and arrows: a handle on the ground of what it scrolls.
#pragma once

#include <QRect>
#include <QStyle>

class QPainter;
class QStyleOptionSlider;
class QWidget;

namespace kelvash::ui {

// Where a part of a bar lies; empty for the arrows, which there aren't.
QRect ScrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part);
void DrawScrollBar(const QStyleOptionSlider& bar, QPainter& painter, const QWidget* widget);

} // namespace kelvash::ui
