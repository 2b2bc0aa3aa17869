#include "support/fake_desktop.h"

namespace kelvash::test {

bool FakeDesktop::ReadJoystick(int id, JoystickState& state) {
    const auto found = joysticks.find(id);
    if (found == joysticks.end()) return false;
    state = found->second;
    return true;
}

std::vector<DesktopWindow> FakeDesktop::WindowsOf(std::int64_t process_id) {
    std::vector<DesktopWindow> own;
    for (const DesktopWindow& window : windows)
        if (window.process_id == process_id) own.push_back(window);
    return own;
}

} // namespace kelvash::test
