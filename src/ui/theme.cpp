#include "ui/theme.h"

#include <QApplication>
#include <QPalette>

#include "ui/dark_wish.h"
#include "ui/look.h"

namespace kelvash::ui {

Theme::Theme() {
    if (DesktopHasItsLook()) return;
    TakeLook(false);
    WatchDarkWish(this, SetDark);
}

bool Theme::IsDark() {
    constexpr int kMiddle = 128;
    return QApplication::palette().color(QPalette::Window).lightness() < kMiddle;
}

void Theme::SetDark(bool dark) {
    TakeLook(dark);
}

} // namespace kelvash::ui
