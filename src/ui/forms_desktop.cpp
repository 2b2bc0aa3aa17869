#include "ui/forms_desktop.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include "foundation/clipboard_picture.h"

namespace kelvash::ui {

FormsDesktop::FormsDesktop() : own_(TheDesktop()) {
    SetDesktop(this);
    TakeOwnClipboard([] { return QGuiApplication::clipboard()->ownsClipboard(); });
}

FormsDesktop::~FormsDesktop() {
    TakeOwnClipboard(nullptr);
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
