// Light or dark, as the system has it.
#pragma once

#include <QDBusVariant>
#include <QObject>

namespace kelvash::ui {

// Follows the system's choice for as long as it lives. Desktops whose platform theme sets Qt's palette are
// left alone; elsewhere the answer comes from the desktop portal, or from the registry under Windows.
class Theme final : public QObject {
    Q_OBJECT

  public:
    Theme();

    static void SetDark(bool dark);
    static bool IsDark();

  private Q_SLOTS:
    void TakeChange(const QString& group, const QString& key, const QDBusVariant& value);

  private:
    void AskPortal();
};

} // namespace kelvash::ui
