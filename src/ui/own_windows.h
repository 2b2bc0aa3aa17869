// The desktop port of the forms: the platform's own, with the clipboard that only a window program has.
#pragma once

#include "foundation/desktop.h"

namespace kelvash::ui {

// Puts itself in use as TheDesktop() for as long as it lives; what was in use before does the rest.
class FormsDesktop final : public Desktop {
  public:
    FormsDesktop();
    ~FormsDesktop() override;

    bool ClipboardHasBitmap() override;
    void ClearClipboard() override;

    bool KeyHeld(int virtual_key) override { return own_.KeyHeld(virtual_key); }
    std::uint32_t KeysHeld(std::initializer_list<int> virtual_keys) override {
        return own_.KeysHeld(virtual_keys);
    }
    void PressKey(int virtual_key, int scan_code) override { own_.PressKey(virtual_key, scan_code); }
    bool ReadJoystick(int id, JoystickState& state) override { return own_.ReadJoystick(id, state); }
    std::vector<DesktopWindow> TopWindows() override { return own_.TopWindows(); }
    std::vector<DesktopWindow> WindowsOf(std::int64_t process_id) override {
        return own_.WindowsOf(process_id);
    }
    DesktopReach Reach() override { return own_.Reach(); }
    DesktopWindow FocusedWindow() override { return own_.FocusedWindow(); }
    void Activate(std::uintptr_t window) override { own_.Activate(window); }
    std::string PictureOf(std::uintptr_t window) override { return own_.PictureOf(window); }
    bool PrintScreenCopies() override { return own_.PrintScreenCopies(); }
    void SetTopMost(std::uintptr_t window, bool top_most) override { own_.SetTopMost(window, top_most); }
    void ShowCursor(bool show) override { own_.ShowCursor(show); }
    ScreenSize Screen() override { return own_.Screen(); }
    void Beep(int hertz, int milliseconds) override { own_.Beep(hertz, milliseconds); }
    bool WindowAnimation() override { return own_.WindowAnimation(); }
    void SetWindowAnimation(bool on) override { own_.SetWindowAnimation(on); }

  private:
    Desktop& own_;
};

} // namespace kelvash::ui
