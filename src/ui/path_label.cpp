#include "ui/path_label.h"

#include <QPainter>
#include <QStyle>

#include "ui/form_support.h"
#include "ui/look.h"

namespace kelvash::ui {

namespace {

constexpr int kLeastLetters = 24;
constexpr int kMostLetters = 60;

} // namespace

PathLabel::PathLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setFrameShape(QFrame::StyledPanel);
    setMargin(space::kTight);
}

void PathLabel::SetPath(const QString& path, const QString& when_empty) {
    setText(path.isEmpty() ? when_empty : path);
    setToolTip(ToolTipText(path));
}

QSize PathLabel::sizeHint() const {
    QSize size = QLabel::sizeHint();
    size.setWidth(
        qBound(minimumSizeHint().width(), size.width(), fontMetrics().averageCharWidth() * kMostLetters));
    return size;
}

QSize PathLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * kLeastLetters, QLabel::sizeHint().height()};
}

void PathLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawFrame(&painter);
    const QRect room = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, room.width());
    style()->drawItemText(&painter, room, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), shown,
                          foregroundRole());
}

} // namespace kelvash::ui
