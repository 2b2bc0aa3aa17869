#include "ui/forms_desktop.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace kelvash::ui {

FormsDesktop::FormsDesktop() : own_(TheDesktop()) {
    SetDesktop(this);
}

FormsDesktop::~FormsDesktop() {
    SetDesktop(&own_);
}

bool FormsDesktop::ClipboardHasBitmap() {
    const QMimeData* const content = QGuiApplication::clipboard()->mimeData();
    return content != nullptr && content->hasImage();
}

void FormsDesktop::ClearClipboard() {
    QGuiApplication::clipboard()->clear();
}

} // namespace kelvash::ui
