#include "ui/icon_button.h"

#include <QHelpEvent>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QToolTip>

#include "ui/look.h"

namespace kelvash::ui {

QSize IconButton::sizeHint() const {
    const int side = fontMetrics().height() + space::kNear;
    return {side + space::kTight, side};
}

void IconButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text.clear();
    painter.drawControl(QStyle::CE_PushButton, option);
}

bool IconButton::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || !toolTip().isEmpty()) return QPushButton::event(event);
    QString caption = text();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), caption.remove(QLatin1Char('&')), this);
    return true;
}

} // namespace kelvash::ui
