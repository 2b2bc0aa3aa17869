#include "ui/task_bar.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>

namespace kelvash::ui {

// The entry is known by the desktop file, so that the window itself isn't asked for.
void ShowOnTaskBar(const QWidget*, std::optional<int> percent) {
    // Without an address the bus library would try to start a bus, which takes its time.
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return;
    QDBusMessage update = QDBusMessage::createSignal(
        QStringLiteral("/com/canonical/unity/launcherentry/kelvash"),
        QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"));
    const QVariantMap bar{{QStringLiteral("progress"), percent.value_or(0) / 100.0},
                          {QStringLiteral("progress-visible"), percent.has_value()}};
    update << QStringLiteral("application://%1.desktop").arg(QGuiApplication::desktopFileName()) << bar;
    QDBusConnection::sessionBus().send(update); // nobody need listen
}

} // namespace kelvash::ui
