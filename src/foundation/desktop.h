// The desktop port: keys, joystick, windows, screen, beep. The clipboard is in clipboard_picture.h.
//
// Implementations: X11 with SDL2 on Linux, Win32 on Windows, a fake in tests. On a Wayland desktop it is the
// X11 server beside it that is seen, with the windows of those programs alone that go through it; Wine's do.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash {

// Virtual key codes as Windows numbers them.
inline constexpr int kKeyPrintScreen = 0x2C;
inline constexpr int kKeyF9 = 0x78;
inline constexpr int kKeyF11 = 0x7A;

struct DesktopWindow {
    std::uintptr_t handle = 0;
    std::string caption;
    std::int64_t process_id = 0;
    std::string program{}; // under Wine the program's file name; what else it says of itself, or nothing
};

// How much of the desktop can be seen: windows and keys; nothing, without a display; or nothing because it is
// a Wayland desktop without an X11 server.
enum class DesktopReach { Full, NoDisplay, OnlyWayland };

// Axes 0 to 65535 with the rest position near 32767; one bit a button.
struct JoystickState {
    int x = 0;
    int y = 0;
    std::uint32_t buttons = 0;
};

struct ScreenSize {
    int width = 0;
    int height = 0;
};

class Desktop {
  public:
    Desktop() = default;
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    virtual ~Desktop() = default;

    // True while the key is held down, whichever window has the focus.
    virtual bool KeyHeld(int virtual_key) = 0;
    // The same of several keys, 32 at most, at one instant: bit i is set while the i-th is held.
    virtual std::uint32_t KeysHeld(std::initializer_list<int> virtual_keys);
    // Presses and releases a key.
    virtual void PressKey(int virtual_key, int scan_code) = 0;
    // False if there is no such joystick.
    virtual bool ReadJoystick(int id, JoystickState& state) = 0;

    virtual std::vector<DesktopWindow> TopWindows() = 0;
    // The visible ones of one process.
    virtual std::vector<DesktopWindow> WindowsOf(std::int64_t process_id) = 0;
    virtual DesktopReach Reach() = 0;
    // The window that gets the keys; handle 0 if there is none, or it can't be told.
    virtual DesktopWindow FocusedWindow() = 0;
    // Brings a window to the top and gives it the keys.
    virtual void Activate(std::uintptr_t window) = 0;
    // What a window shows, as the bytes of a bitmap file of 24 bits; as much of it as is on the screen. Empty
    // if it can't be had, and where PrintScreenCopies.
    virtual std::string PictureOf(std::uintptr_t window) = 0;
    // True where the system itself puts a picture on the clipboard when Print Screen is pressed.
    virtual bool PrintScreenCopies() = 0;
    virtual void SetTopMost(std::uintptr_t window, bool top_most) = 0;
    virtual void ShowCursor(bool show) = 0;
    virtual ScreenSize Screen() = 0;
    virtual void Beep(int hertz, int milliseconds) = 0;

    // The system's window animation: what it is set to, and setting it. Off where there is none.
    virtual bool WindowAnimation() = 0;
    virtual void SetWindowAnimation(bool on) = 0;
};

// The port in use. Before SetDesktop it is the platform's own.
Desktop& TheDesktop();
// Puts another port in use and gives the old one; null puts the platform's back. The caller owns both.
Desktop* SetDesktop(Desktop* desktop);

void SendKey(int virtual_key, int scan_code);
// True if all keys that aren't 0, beginning with the first of them, are held now. False if all are 0.
bool IsKeyDown(std::initializer_list<int> virtual_keys);
void SetTopMost(std::uintptr_t window);
void ClearTopMost(std::uintptr_t window);
void HideCursor();
void ShowCursor();

enum class Caption { Whole, Start };
std::vector<DesktopWindow> ListTopWindows();
std::vector<DesktopWindow> ListThreadWindows(std::int64_t process_id);
// The first window whose caption is the text or, with Start, begins with it; handle 0 if there is none.
DesktopWindow FindWindowByCaption(std::string_view caption, Caption how);

// 1 for the old Windows family, 4 for the newer one, 5 or 6 by the major version; 0 where it can't be told.
// On other platforms the version that Wine shows programs counts: 6.
int WindowsVersion();

} // namespace kelvash
