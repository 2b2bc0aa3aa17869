#include "foundation/platform/platform.h"
#include "foundation/platform/windows_common.h"

// Behind windows.h.
#include <mmsystem.h>

namespace kelvash::platform {

namespace {

constexpr int kCaptionLength = 1024;

HWND WindowOf(std::uintptr_t handle) {
    return reinterpret_cast<HWND>(handle);
}

DesktopWindow Described(HWND window) {
    wchar_t caption[kCaptionLength];
    const int length = GetWindowTextW(window, caption, kCaptionLength);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return {reinterpret_cast<std::uintptr_t>(window),
            Utf8FromWide({caption, static_cast<std::size_t>(length)}), process};
}

BOOL CALLBACK Collect(HWND window, LPARAM list) {
    reinterpret_cast<std::vector<DesktopWindow>*>(list)->push_back(Described(window));
    return TRUE;
}

class WindowsDesktop final : public Desktop {
  public:
    bool KeyHeld(int virtual_key) override {
        return virtual_key > 0 && virtual_key < 256 && (GetAsyncKeyState(virtual_key) & 0x8000) != 0;
    }
    void PressKey(int virtual_key, int scan_code) override {
        const auto key = static_cast<BYTE>(virtual_key);
        const auto scan = static_cast<BYTE>(scan_code);
        keybd_event(key, scan, 0, 0);
        keybd_event(key, scan, KEYEVENTF_KEYUP, 0);
    }
    bool ReadJoystick(int id, JoystickState& state) override;

    std::vector<DesktopWindow> TopWindows() override {
        std::vector<DesktopWindow> windows;
        EnumWindows(Collect, reinterpret_cast<LPARAM>(&windows));
        return windows;
    }
    std::vector<DesktopWindow> WindowsOf(std::int64_t process_id) override {
        std::vector<DesktopWindow> windows = TopWindows();
        std::erase_if(windows, [&](const DesktopWindow& window) {
            return window.process_id != process_id || IsWindowVisible(WindowOf(window.handle)) == FALSE;
        });
        return windows;
    }
    DesktopReach Reach() override { return DesktopReach::Full; }
    DesktopWindow FocusedWindow() override {
        const HWND window = GetForegroundWindow();
        return window == nullptr ? DesktopWindow() : Described(window);
    }
    void Activate(std::uintptr_t window) override {
        if (window != 0) SetForegroundWindow(WindowOf(window));
    }
    std::string PictureOf(std::uintptr_t) override { return {}; }
    bool PrintScreenCopies() override { return true; }
    void SetTopMost(std::uintptr_t window, bool top_most) override {
        if (window != 0)
            SetWindowPos(WindowOf(window), top_most ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                         SWP_NOMOVE | SWP_NOSIZE);
    }
    // The system counts the calls; this keeps the count at one.
    void ShowCursor(bool show) override {
        if (cursor_shown_ != show) ::ShowCursor(show ? TRUE : FALSE);
        cursor_shown_ = show;
    }
    ScreenSize Screen() override { return {GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}; }
    void Beep(int hertz, int milliseconds) override {
        ::Beep(static_cast<DWORD>(hertz), static_cast<DWORD>(milliseconds));
    }

    bool WindowAnimation() override {
        ANIMATIONINFO animation{sizeof(ANIMATIONINFO), 0};
        return SystemParametersInfoW(SPI_GETANIMATION, sizeof animation, &animation, 0) != 0 &&
               animation.iMinAnimate != 0;
    }
    void SetWindowAnimation(bool on) override {
        ANIMATIONINFO animation{sizeof(ANIMATIONINFO), on ? 1 : 0};
        SystemParametersInfoW(SPI_SETANIMATION, sizeof animation, &animation, 0);
    }

  private:
    bool cursor_shown_ = true;
};

bool WindowsDesktop::ReadJoystick(int id, JoystickState& state) {
    JOYINFOEX info{};
    info.dwSize = sizeof info;
    info.dwFlags = JOY_RETURNX | JOY_RETURNY | JOY_RETURNBUTTONS;
    if (id < 0 || joyGetPosEx(static_cast<UINT>(id), &info) != JOYERR_NOERROR) return false;
    state = {static_cast<int>(info.dwXpos), static_cast<int>(info.dwYpos), info.dwButtons};
    return true;
}

} // namespace

Desktop& OwnDesktop() {
    static WindowsDesktop desktop;
    return desktop;
}

} // namespace kelvash::platform
