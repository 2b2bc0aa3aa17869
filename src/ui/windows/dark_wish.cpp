#include "ui/dark_wish.h"

#include <QSettings>

namespace kelvash::ui {

void WatchDarkWish(QObject*, const std::function<void(bool)>& tell) {
    const QSettings settings(
        QStringLiteral(
            "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize"),
        QSettings::NativeFormat);
    if (settings.value(QStringLiteral("AppsUseLightTheme"), 1).toInt() == 0) tell(true);
}

} // namespace kelvash::ui
