#include "foundation/platform/posix_joystick.h"

#include <SDL.h>

#include <algorithm>

namespace kelvash::platform {

namespace {

constexpr int kMaskBits = 32;
constexpr int kAxisOffset = 32768; // SDL's axes run from -32768

} // namespace

Joysticks::~Joysticks() {
    if (started_ != Started::Yes) return;
    for (const auto& [id, stick] : opened_)
        SDL_JoystickClose(stick);
    SDL_QuitSubSystem(SDL_INIT_JOYSTICK);
}

bool Joysticks::Start() {
    if (started_ == Started::NotYet) {
        // SDL owns no window here and may take neither the signals nor the program's end for itself.
        SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
        SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
        started_ = SDL_InitSubSystem(SDL_INIT_JOYSTICK) == 0 ? Started::Yes : Started::Failed;
    }
    return started_ == Started::Yes;
}

_SDL_Joystick* Joysticks::Opened(int id) {
    _SDL_Joystick*& stick = opened_[id];
    if (stick != nullptr && SDL_JoystickGetAttached(stick) == SDL_FALSE) { // unplugged since
        SDL_JoystickClose(stick);
        stick = nullptr;
    }
    if (stick == nullptr && id >= 0 && id < SDL_NumJoysticks()) stick = SDL_JoystickOpen(id);
    return stick;
}

bool Joysticks::Read(int id, JoystickState& state) {
    if (!Start()) return false;
    SDL_JoystickUpdate();
    _SDL_Joystick* stick = Opened(id);
    if (stick == nullptr) return false;
    SDL_JoystickUpdate(); // one just opened has no values yet
    state.x = SDL_JoystickGetAxis(stick, 0) + kAxisOffset;
    state.y = SDL_JoystickGetAxis(stick, 1) + kAxisOffset;
    state.buttons = 0;
    for (int button = 0; button < std::min(SDL_JoystickNumButtons(stick), kMaskBits); ++button)
        if (SDL_JoystickGetButton(stick, button) != 0) state.buttons |= std::uint32_t{1} << button;
    return true;
}

} // namespace kelvash::platform
