#include "ui/window_state.h"

#include <QSettings>
#include <QSplitter>

#include "foundation/drives.h"
#include "ui/form_support.h"
#include "ui/fragments.h"

namespace kelvash::ui {

namespace {

QString SettingsFile() {
    const std::string path = AppFolder() + LoadFragment(fragment::kSettingsFileName);
    return QString::fromStdU16String(NativePath(path).u16string());
}

const auto kGeometry = QStringLiteral("window/geometry");
const auto kSplitter = QStringLiteral("window/splitter");

} // namespace

void RestoreWindow(QWidget* window, QSplitter* splitter) {
    const QSettings settings(SettingsFile(), QSettings::IniFormat);
    window->restoreGeometry(settings.value(kGeometry).toByteArray());
    splitter->restoreState(settings.value(kSplitter).toByteArray());
}

void SaveWindow(const QWidget* window, const QSplitter* splitter) {
    QSettings settings(SettingsFile(), QSettings::IniFormat);
    settings.setValue(kGeometry, window->saveGeometry());
    settings.setValue(kSplitter, splitter->saveState());
}

} // namespace kelvash::ui
