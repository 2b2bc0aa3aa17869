// Where the main window stood, how it was divided and how it showed its levels, and how large the dialogs are
// in which files are chosen: Kelvash.ini in the application's folder.
#pragma once

#include "ui/level_delegate.h"

class QFileDialog;
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

// The size that the last one had; the place is the desktop's.
void RestoreFileDialog(QFileDialog& window);
void SaveFileDialog(const QFileDialog& window);

} // namespace kelvash::ui
