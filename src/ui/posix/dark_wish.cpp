#include "ui/dark_wish.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace kelvash::ui {

namespace {

const auto kService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const auto kGroup = QStringLiteral("org.freedesktop.appearance");
const auto kKey = QStringLiteral("color-scheme");
constexpr unsigned kPrefersDark = 1;

// The answer of Read is a variant within a variant.
bool PrefersDark(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt() == kPrefersDark;
}

// The settings of the desktop's portal.
class Portal : public QObject {
    Q_OBJECT

  public:
    Portal(QObject* parent, std::function<void(bool)> tell) : QObject(parent), tell_(std::move(tell)) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                    SLOT(TakeChange(QString, QString, QDBusVariant)));
        QDBusMessage question =
            QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
        question << kGroup << kKey;
        auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* answered) {
            const QDBusPendingReply<QVariant> reply = *answered;
            if (!reply.isError() && PrefersDark(reply.value())) tell_(true);
            answered->deleteLater();
        });
    }

  private Q_SLOTS:
    void TakeChange(const QString& group, const QString& key, const QDBusVariant& value) {
        if (group == kGroup && key == kKey) tell_(PrefersDark(value.variant()));
    }

  private:
    std::function<void(bool)> tell_;
};

} // namespace

void WatchDarkWish(QObject* context, const std::function<void(bool)>& tell) {
    // Without an address the bus library would try to start a bus, which takes its time.
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) new Portal(context, tell);
}

} // namespace kelvash::ui

#include "dark_wish.moc"
