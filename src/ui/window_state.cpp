#include "ui/window_state.h"

#include <QFileDialog>
#include <QMainWindow>
#include <QScreen>
#include <QSettings>
#include <QSplitter>

#include "foundation/drives.h"
#include "ui/form_support.h"
#include "ui/fragments.h"

namespace kelvash::ui {

namespace {

QString SettingsFile() {
    const std::string path = AppFolder() + LoadFragment(fragment::kSettingsFileName);
    return NativeText(path);
}

const auto kGeometry = QStringLiteral("window/geometry");
const auto kSplitter = QStringLiteral("window/splitter");
const auto kTools = QStringLiteral("window/tools");
const auto kFiles = QStringLiteral("files/size");
const auto kTiles = QStringLiteral("library/tiles");

} // namespace

LibraryView RestoreWindow(const WindowParts& parts) {
    const QSettings settings(SettingsFile(), QSettings::IniFormat);
    parts.window->restoreGeometry(settings.value(kGeometry).toByteArray());
    parts.window->restoreState(settings.value(kTools).toByteArray());
    parts.splitter->restoreState(settings.value(kSplitter).toByteArray());
    return settings.value(kTiles).toBool() ? LibraryView::Tiles : LibraryView::List;
}

void SaveWindow(const WindowParts& parts, LibraryView view) {
    QSettings settings(SettingsFile(), QSettings::IniFormat);
    settings.setValue(kGeometry, parts.window->saveGeometry());
    settings.setValue(kTools, parts.window->saveState());
    settings.setValue(kSplitter, parts.splitter->saveState());
    settings.setValue(kTiles, view == LibraryView::Tiles);
}

void RestoreFileDialog(QFileDialog& window) {
    const QSize size = QSettings(SettingsFile(), QSettings::IniFormat).value(kFiles).toSize();
    if (size.isValid()) window.resize(size.boundedTo(window.screen()->availableSize()));
}

void SaveFileDialog(const QFileDialog& window) {
    QSettings(SettingsFile(), QSettings::IniFormat).setValue(kFiles, window.size());
}

} // namespace kelvash::ui
