#include "ui/x11_wish.h"

#include <QByteArray>

namespace kelvash::ui {

namespace {

constexpr const char* kChoice = "QT_QPA_PLATFORM";
constexpr const char* kWish = "xcb;wayland"; // the second where the first can't be had

} // namespace

void WishForX11() {
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") && !qEnvironmentVariableIsEmpty("DISPLAY") &&
        !qEnvironmentVariableIsSet(kChoice))
        qputenv(kChoice, kWish);
}

void ForgetWishForX11() {
    if (qgetenv(kChoice) == kWish) qunsetenv(kChoice);
}

} // namespace kelvash::ui
