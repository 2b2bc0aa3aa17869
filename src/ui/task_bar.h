// A long job on the program's entry in the task bar, where the desktop shows that: posix/task_bar.cpp tells
// the launchers that listen on the session's bus, windows/task_bar.cpp the system's own.
#pragma once

#include <optional>

class QWidget;

namespace kelvash::ui {

// Shows a bar of so many percent on the entry of a window, which may not stand yet; nothing takes it away.
void ShowOnTaskBar(const QWidget* window, std::optional<int> percent);

} // namespace kelvash::ui
