// A desktop that a test plays: keys, windows and joystick are what the test says, and what was done to it is
// kept.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "foundation/desktop.h"

namespace kelvash::test {

class FakeDesktop final : public Desktop {
  public:
    FakeDesktop() : old_(SetDesktop(this)) {}
    ~FakeDesktop() override { SetDesktop(old_); }

    bool KeyHeld(int virtual_key) override { return held.count(virtual_key) != 0; }
    void PressKey(int virtual_key, int) override {
        pressed.push_back(virtual_key);
        if (when_done) when_done();
    }
    bool ReadJoystick(int id, JoystickState& state) override;
    std::vector<DesktopWindow> TopWindows() override { return windows; }
    std::vector<DesktopWindow> WindowsOf(std::int64_t process_id) override;
    DesktopReach Reach() override { return reach; }
    DesktopWindow FocusedWindow() override { return focused; }
    void Activate(std::uintptr_t window) override { activated.push_back(window); }
    std::string PictureOf(std::uintptr_t window) override { return pictures[window]; }
    bool PrintScreenCopies() override { return print_screen_copies; }
    void SetTopMost(std::uintptr_t window, bool on) override { top_most[window] = on; }
    void ShowCursor(bool show) override { cursor_shown = show; }
    ScreenSize Screen() override { return {1024, 768}; }
    void Beep(int hertz, int milliseconds) override {
        beeps.emplace_back(hertz, milliseconds);
        if (when_done) when_done();
    }
    bool WindowAnimation() override { return animation; }
    void SetWindowAnimation(bool on) override { animation = on; }

    std::set<int> held;
    std::vector<int> pressed;
    std::map<int, JoystickState> joysticks;
    std::vector<DesktopWindow> windows;
    DesktopReach reach = DesktopReach::NoDisplay;
    DesktopWindow focused;
    std::vector<std::uintptr_t> activated;
    std::map<std::uintptr_t, std::string> pictures; // bytes of bitmap files
    bool print_screen_copies = false;
    std::map<std::uintptr_t, bool> top_most;
    std::vector<std::pair<int, int>> beeps;
    std::function<void()> when_done; // behind each press and each beep
    bool cursor_shown = true;
    bool animation = true;

  private:
    Desktop* old_;
};

} // namespace kelvash::test
