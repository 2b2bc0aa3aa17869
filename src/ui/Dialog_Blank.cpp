#include "ui/Dialog_Blank.h"

#include <QMouseEvent>
#include <QScreen>

#include "ui/Dialog_Blank_messages.h"
#include "ui/form_support.h"
#include "ui/look.h"

namespace kelvash::ui {

Dialog_Blank::Dialog_Blank() : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint) {
    setObjectName(QStringLiteral("Dialog_Blank"));
    setAccessibleName(Caption(msg::kBlankSpoken));
    setAttribute(Qt::WA_QuitOnClose, false);
    setCursor(Qt::BlankCursor);
    SetBlack(this);
}

void Dialog_Blank::ImpostaValori(const QWidget& beside) {
    if (const QScreen* const screen = beside.screen()) setGeometry(screen->geometry());
}

void Dialog_Blank::mousePressEvent(QMouseEvent* event) {
    event->accept();
    close();
}

void Dialog_Blank::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (!event->spontaneous()) Q_EMIT Closed(); // a minimized one is still there
}

} // namespace kelvash::ui
