// Whether the system wishes dark windows, from where it says so: posix/dark_wish.cpp, windows/dark_wish.cpp.
#pragma once

#include <QObject>
#include <functional>

namespace kelvash::ui {

// Tells a wish for dark as soon as it is known, and every change while `context` lives. Nothing is told on a
// system that has no wish.
void WatchDarkWish(QObject* context, const std::function<void(bool dark)>& tell);

} // namespace kelvash::ui
