// The marks before options: squares that are checked, circles of which one is chosen.
#pragma once

class QPainter;
class QStyleOption;

namespace kelvash::ui {

void DrawCheckMark(const QStyleOption& option, QPainter& painter);
void DrawChoiceMark(const QStyleOption& option, QPainter& painter);

} // namespace kelvash::ui
