#include "foundation/platform/posix_joystick.h"

#include <algorithm>

#include "foundation/platform/sdl.h"

namespace kelvash::platform {

namespace {

constexpr int kMaskBits = 32;
constexpr int kAxisOffset = 32768; // SDL's axes run from -32768

} // namespace

Joysticks::~Joysticks() {
    if (started_ != Started::Yes) return;
    for (const auto& [id, stick] : opened_)
        sdl_->JoystickClose(stick);
    sdl_->QuitSubSystem(SDL_INIT_JOYSTICK);
}

bool Joysticks::Start() {
    if (started_ == Started::NotYet) {
        sdl_ = LoadSdl();
        started_ = Started::Failed;
        if (sdl_ == nullptr) return false;
        // SDL owns no window here and may take neither the signals nor the program's end for itself.
        sdl_->SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
        sdl_->SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
        if (sdl_->InitSubSystem(SDL_INIT_JOYSTICK) == 0) started_ = Started::Yes;
    }
    return started_ == Started::Yes;
}

_SDL_Joystick* Joysticks::Opened(int id) {
    _SDL_Joystick*& stick = opened_[id];
    if (stick != nullptr && sdl_->JoystickGetAttached(stick) == SDL_FALSE) { // unplugged since
        sdl_->JoystickClose(stick);
        stick = nullptr;
    }
    if (stick == nullptr && id >= 0 && id < sdl_->NumJoysticks()) stick = sdl_->JoystickOpen(id);
    return stick;
}

bool Joysticks::Read(int id, JoystickState& state) {
    if (!Start()) return false;
    sdl_->JoystickUpdate();
    _SDL_Joystick* stick = Opened(id);
    if (stick == nullptr) return false;
    sdl_->JoystickUpdate(); // one just opened has no values yet
    state.x = sdl_->JoystickGetAxis(stick, 0) + kAxisOffset;
    state.y = sdl_->JoystickGetAxis(stick, 1) + kAxisOffset;
    state.buttons = 0;
    for (int button = 0; button < std::min(sdl_->JoystickNumButtons(stick), kMaskBits); ++button)
        if (sdl_->JoystickGetButton(stick, button) != 0) state.buttons |= std::uint32_t{1} << button;
    return true;
}

} // namespace kelvash::platform
