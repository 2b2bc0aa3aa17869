// Light or dark, as the system has it.
#pragma once

#include <QObject>

namespace kelvash::ui {

// Follows the system's choice for as long as it lives. Desktops whose platform theme sets Qt's palette are
// left alone; elsewhere the wish is that of dark_wish.h.
class Theme final : public QObject {
  public:
    Theme();

    static void SetDark(bool dark);
    static bool IsDark();
};

} // namespace kelvash::ui
