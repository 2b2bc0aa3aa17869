#include "foundation/desktop.h"

#include <algorithm>
#include <utility>

#include "foundation/platform/platform.h"
#include "foundation/state.h"
#include "foundation/user.h"

namespace kelvash {

namespace {

struct DesktopPort {
    Desktop* InUse = nullptr;
};

Desktop*& CurrentDesktop() {
    return Lifelong<DesktopPort>::Get().InUse;
}

} // namespace

Desktop& TheDesktop() {
    return CurrentDesktop() != nullptr ? *CurrentDesktop() : platform::OwnDesktop();
}

Desktop* SetDesktop(Desktop* desktop) {
    return std::exchange(CurrentDesktop(), desktop);
}

std::uint32_t Desktop::KeysHeld(std::initializer_list<int> virtual_keys) {
    std::uint32_t held = 0, bit = 1;
    for (const int key : virtual_keys) {
        if (KeyHeld(key)) held |= bit;
        bit <<= 1;
    }
    return held;
}

void SendKey(int virtual_key, int scan_code) {
    TheDesktop().PressKey(virtual_key, scan_code);
    TheUser().PumpEvents();
}

bool IsKeyDown(std::initializer_list<int> virtual_keys) {
    bool any = false;
    for (const int key : virtual_keys) {
        if (key == 0) continue;
        if (!TheDesktop().KeyHeld(key)) return false;
        any = true;
    }
    return any;
}

void SetTopMost(std::uintptr_t window) {
    TheDesktop().SetTopMost(window, true);
}

void ClearTopMost(std::uintptr_t window) {
    TheDesktop().SetTopMost(window, false);
}

void HideCursor() {
    TheDesktop().ShowCursor(false);
}

void ShowCursor() {
    TheDesktop().ShowCursor(true);
}

std::vector<DesktopWindow> ListTopWindows() {
    return TheDesktop().TopWindows();
}

std::vector<DesktopWindow> ListThreadWindows(std::int64_t process_id) {
    return TheDesktop().WindowsOf(process_id);
}

DesktopWindow FindWindowByCaption(std::string_view caption, Caption how) {
    for (const DesktopWindow& window : ListTopWindows())
        if (how == Caption::Whole ? window.caption == caption : window.caption.starts_with(caption))
            return window;
    return {};
}

int WindowsVersion() {
    return platform::WindowsVersion();
}

} // namespace kelvash
