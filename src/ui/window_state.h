// Where the main window stood, how it was divided and how it showed its levels: Kelvash.ini in the
// application's folder.
#pragma once

#include "ui/level_delegate.h"

class QMainWindow;
class QSplitter;

namespace kelvash::ui {

struct WindowParts {
    QMainWindow* window;
    QSplitter* splitter;
};

// A file that is missing or says nonsense leaves the window as it is. Gives how the levels were shown.
LibraryView RestoreWindow(const WindowParts& parts);
void SaveWindow(const WindowParts& parts, LibraryView view);

} // namespace kelvash::ui
