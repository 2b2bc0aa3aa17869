// Where the main window stood and how it was divided: Kelvash.ini in the application's folder.
#pragma once

class QSplitter;
class QWidget;

namespace kelvash::ui {

// A file that is missing or says nonsense leaves the window as it is.
void RestoreWindow(QWidget* window, QSplitter* splitter);
void SaveWindow(const QWidget* window, const QSplitter* splitter);

} // namespace kelvash::ui
