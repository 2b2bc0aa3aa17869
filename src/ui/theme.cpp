#include "ui/theme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPalette>
#include <QSettings>
#include <QStyle>
#include <QStyleFactory>

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

bool WindowsPrefersDark() {
    const QSettings settings(
        QStringLiteral(
            "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize"),
        QSettings::NativeFormat);
    return settings.value(QStringLiteral("AppsUseLightTheme"), 1).toInt() == 0;
}

QPalette DarkPalette() {
    const QColor window(0x3a, 0x3c, 0x40);
    const QColor base(0x28, 0x2a, 0x2d);
    const QColor text(0xdf, 0xe1, 0xe5);
    const QColor faint(0x90, 0x94, 0x9b);
    QPalette dark(QColor(0x53, 0x56, 0x5c), window);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                           QPalette::ToolTipText, QPalette::BrightText})
        dark.setColor(role, text);
    dark.setColor(QPalette::Base, base);
    dark.setColor(QPalette::AlternateBase, QColor(0x30, 0x32, 0x36));
    dark.setColor(QPalette::ToolTipBase, base);
    dark.setColor(QPalette::PlaceholderText, faint);
    dark.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xca));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::Link, QColor(0x6b, 0x9b, 0xfa));
    dark.setColor(QPalette::Dark, QColor(0x1c, 0x1d, 0x20));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, faint);
    return dark;
}

} // namespace

Theme::Theme() {
    // A desktop with a platform theme of its own has set the palette already.
    if (IsDark()) return;
    if (WindowsPrefersDark()) SetDark(true);
    // Without an address the bus library would try to start a bus, which takes its time.
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) AskPortal();
}

void Theme::AskPortal() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                SLOT(TakeChange(QString, QString, QDBusVariant)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    question << kGroup << kKey;
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [](QDBusPendingCallWatcher* answered) {
        const QDBusPendingReply<QVariant> reply = *answered;
        if (!reply.isError() && PrefersDark(reply.value())) SetDark(true);
        answered->deleteLater();
    });
}

void Theme::TakeChange(const QString& group, const QString& key, const QDBusVariant& value) {
    if (group == kGroup && key == kKey) SetDark(PrefersDark(value.variant()));
}

bool Theme::IsDark() {
    constexpr int kMiddle = 128;
    return QApplication::palette().color(QPalette::Window).lightness() < kMiddle;
}

void Theme::SetDark(bool dark) {
    // Native styles draw with colours of their own; this one takes the palette's.
    if (dark) QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(dark ? DarkPalette() : QApplication::style()->standardPalette());
}

} // namespace kelvash::ui
