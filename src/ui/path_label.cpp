#include "ui/path_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include "ui/form_support.h"
#include "ui/look.h"

namespace kelvash::ui {

namespace {

constexpr int kLeastLetters = 24;
constexpr int kMostLetters = 60;

} // namespace

ElidedLabel::ElidedLabel(QWidget* parent, Qt::TextElideMode left_out) : QLabel(parent), left_out_(left_out) {
    setTextFormat(Qt::PlainText);
}

void ElidedLabel::SetLine(const QString& line) {
    setText(line);
    setToolTip(ToolTipText(line));
}

PathLabel::PathLabel(QWidget* parent) : ElidedLabel(parent, Qt::ElideMiddle) {
    setFrameShape(QFrame::StyledPanel);
    setMargin(space::kTight);
}

void PathLabel::SetPath(const QString& path, const QString& when_empty) {
    setText(path.isEmpty() ? when_empty : path);
    setToolTip(ToolTipText(path));
}

QSize ElidedLabel::sizeHint() const {
    QSize size = QLabel::sizeHint();
    size.setWidth(
        qBound(minimumSizeHint().width(), size.width(), fontMetrics().averageCharWidth() * kMostLetters));
    return size;
}

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * kLeastLetters, QLabel::sizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawFrame(&painter);
    const QString shown = fontMetrics().elidedText(text(), left_out_, Room().width());
    style()->drawItemText(&painter, Room(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), shown,
                          foregroundRole());
}

QRect ElidedLabel::Room() const {
    return contentsRect().adjusted(margin(), margin(), -margin(), -margin());
}

bool ElidedLabel::event(QEvent* event) {
    const auto has_all = [this] { return fontMetrics().horizontalAdvance(text()) <= Room().width(); };
    if (event->type() != QEvent::ToolTip || !toolTip().isEmpty() || has_all()) return QLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), ToolTipText(text()), this);
    return true;
}

} // namespace kelvash::ui
