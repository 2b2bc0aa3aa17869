#include "foundation/platform/posix_joystick.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <mutex>
#include <string>
#include <vector>

#include "foundation/platform/sdl.h"

namespace kelvash::platform {

namespace {

constexpr int kMaskBits = 32;
constexpr int kAxisOffset = 32768; // SDL's axes run from -32768

// The key bits of a device: hexadecimal words of 64 bits, the highest first. Joysticks and gamepads have
// buttons from 0x120 to 0x13F, the upper half of the fifth word.
bool HasJoystickButtons(const std::filesystem::path& capabilities) {
    constexpr std::size_t kWord = 0x120 / 64;
    std::ifstream file(capabilities);
    std::vector<std::uint64_t> words;
    for (std::uint64_t word = 0; file >> std::hex >> word;)
        words.push_back(word);
    return words.size() > kWord && words[words.size() - 1 - kWord] >> 32 != 0;
}

} // namespace

bool JoystickPluggedIn(const std::filesystem::path& input_class) {
    std::error_code error;
    for (std::filesystem::directory_iterator at(input_class, error), end; !error && at != end;
         at.increment(error))
        if (HasJoystickButtons(at->path() / "device" / "capabilities" / "key")) return true;
    return false;
}

Joysticks::~Joysticks() {
    if (started_ != Started::Yes) return;
    for (const auto& [id, stick] : opened_)
        sdl_->JoystickClose(stick);
    const std::lock_guard subsystems(SdlSubsystems());
    sdl_->QuitSubSystem(SDL_INIT_JOYSTICK);
}

bool Joysticks::Start() {
    if (started_ == Started::NotYet && (SdlIsLoaded() || JoystickPluggedIn())) {
        sdl_ = LoadSdl();
        started_ = Started::Failed;
        if (sdl_ == nullptr) return false;
        const std::lock_guard subsystems(SdlSubsystems());
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
