#include "ui/own_windows.h"

#include <QGuiApplication>
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

OwnWindows::OwnWindows() {
    TakeOwnWindow(AnyWindow);
}

OwnWindows::~OwnWindows() {
    TakeOwnWindow(nullptr);
}

} // namespace kelvash::ui
