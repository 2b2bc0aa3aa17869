// Which display server the windows ask for.
#include "ui/x11_wish.h"

#include <gtest/gtest.h>

#include <QByteArray>

namespace kelvash::ui {
namespace {

class X11Wish : public testing::Test {
  protected:
    X11Wish() {
        for (std::size_t i = 0; i < 3; ++i)
            former_[i] = qgetenv(kNames[i]);
        qunsetenv("QT_QPA_PLATFORM");
    }
    ~X11Wish() override {
        for (std::size_t i = 0; i < 3; ++i)
            former_[i].isEmpty() ? static_cast<void>(qunsetenv(kNames[i]))
                                 : static_cast<void>(qputenv(kNames[i], former_[i]));
    }
    static QByteArray Wish(const char* wayland, const char* x11) {
        qputenv("WAYLAND_DISPLAY", wayland);
        qputenv("DISPLAY", x11);
        WishForX11();
        return qgetenv("QT_QPA_PLATFORM");
    }

  private:
    static constexpr const char* kNames[3] = {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"};
    QByteArray former_[3];
};

TEST_F(X11Wish, IsForAWaylandDesktopWithAnX11Server) {
    EXPECT_EQ(Wish("", ":0"), "");
    EXPECT_EQ(Wish("wayland-0", ""), "");
    EXPECT_EQ(Wish("wayland-0", ":0"), "xcb;wayland");
    ForgetWishForX11();
    EXPECT_FALSE(qEnvironmentVariableIsSet("QT_QPA_PLATFORM"));
}

TEST_F(X11Wish, WhatTheUserHasChosenHolds) {
    qputenv("QT_QPA_PLATFORM", "wayland");
    EXPECT_EQ(Wish("wayland-0", ":0"), "wayland");
    ForgetWishForX11();
    EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), "wayland");
}

} // namespace
} // namespace kelvash::ui
