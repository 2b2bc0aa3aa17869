#include "ui/forms_desktop.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QWindow>

#include "foundation/clipboard_picture.h"

namespace kelvash::ui {

namespace {

// All of them belong to one client of the display.
std::uintptr_t AnyWindow() {
    for (const QWindow* window : QGuiApplication::topLevelWindows())
        if (window->handle() != nullptr) return static_cast<std::uintptr_t>(window->winId());
    return 0;
}

} // namespace

FormsDesktop::FormsDesktop() : own_(TheDesktop()) {
    SetDesktop(this);
    TakeOwnWindow(AnyWindow);
}

FormsDesktop::~FormsDesktop() {
    TakeOwnWindow(nullptr);
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
