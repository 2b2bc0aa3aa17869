// The desktop of Windows, as far as it can be asked without anybody before the screen.
#include "foundation/desktop.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "foundation/clipboard_picture.h"

namespace kelvash {
namespace {

// A window of this process; invisible to a user without a display, but a window to the system.
class OwnWindow {
  public:
    OwnWindow()
        : handle_(CreateWindowExW(0, L"STATIC", L"Kelvash \u00E8 test", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10,
                                  nullptr, nullptr, nullptr, nullptr)) {}
    ~OwnWindow() { DestroyWindow(handle_); }
    OwnWindow(const OwnWindow&) = delete;
    OwnWindow& operator=(const OwnWindow&) = delete;
    HWND Handle() const { return handle_; }

  private:
    HWND handle_;
};

TEST(WindowsDesktop, KeysAreNotHeldByThemselves) {
    EXPECT_FALSE(TheDesktop().KeyHeld(kKeyF9));
    EXPECT_FALSE(TheDesktop().KeyHeld(0));
    EXPECT_FALSE(TheDesktop().KeyHeld(-1));
    EXPECT_FALSE(TheDesktop().KeyHeld(0x7000));
}

TEST(WindowsDesktop, AWindowIsFoundByItsCaptionAndItsProcess) {
    const OwnWindow window;
    ASSERT_NE(window.Handle(), nullptr);
    const auto handle = reinterpret_cast<std::uintptr_t>(window.Handle());
    const DesktopWindow found = FindWindowByCaption("Kelvash è test", Caption::Whole);
    EXPECT_EQ(found.handle, handle);
    EXPECT_EQ(found.process_id, static_cast<std::int64_t>(GetCurrentProcessId()));
    const std::vector<DesktopWindow> own = ListThreadWindows(GetCurrentProcessId());
    ASSERT_EQ(own.size(), 1U);
    EXPECT_EQ(own[0].handle, handle);
    ShowWindow(window.Handle(), SW_HIDE);
    EXPECT_TRUE(ListThreadWindows(GetCurrentProcessId()).empty());
}

TEST(WindowsDesktop, TopMostIsAStyleOfTheWindow) {
    const OwnWindow window;
    const auto handle = reinterpret_cast<std::uintptr_t>(window.Handle());
    SetTopMost(handle);
    EXPECT_NE(GetWindowLongW(window.Handle(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    ClearTopMost(handle);
    EXPECT_EQ(GetWindowLongW(window.Handle(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    SetTopMost(0);
}

TEST(WindowsDesktop, TheClipboardIsEmptied) {
    if (OpenClipboard(nullptr) != 0) {
        ::EmptyClipboard();
        SetClipboardData(CF_BITMAP, CreateBitmap(2, 2, 1, 1, nullptr));
        CloseClipboard();
    }
    EXPECT_NE(IsClipboardFormatAvailable(CF_BITMAP), 0);
    kelvash::EmptyClipboard();
    EXPECT_EQ(IsClipboardFormatAvailable(CF_BITMAP), 0);
}

// Wine has no animation to switch on: only "off" can be seen in both.
TEST(WindowsDesktop, TheWindowAnimationIsSwitchedOffAndPutBack) {
    const bool old = TheDesktop().WindowAnimation();
    TheDesktop().SetWindowAnimation(false);
    EXPECT_FALSE(TheDesktop().WindowAnimation());
    TheDesktop().SetWindowAnimation(old);
    EXPECT_EQ(TheDesktop().WindowAnimation(), old);
}

TEST(WindowsDesktop, ThereIsNoJoystickBeyondTheLast) {
    JoystickState state;
    EXPECT_FALSE(TheDesktop().ReadJoystick(500, state));
    EXPECT_FALSE(TheDesktop().ReadJoystick(-1, state));
}

} // namespace
} // namespace kelvash
