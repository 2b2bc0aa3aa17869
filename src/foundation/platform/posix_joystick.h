// Joysticks through SDL, which is started with the first question.
#pragma once

#include <filesystem>
#include <map>

#include "foundation/desktop.h"

struct _SDL_Joystick;

namespace kelvash::platform {

struct Sdl;

// True if the kernel knows an input device with a joystick's or gamepad's buttons: what spares a program
// without one the loading of SDL. The folder is that of the input devices in sysfs.
bool JoystickPluggedIn(const std::filesystem::path& input_class = "/sys/class/input");

class Joysticks {
  public:
    Joysticks() = default;
    Joysticks(const Joysticks&) = delete;
    Joysticks& operator=(const Joysticks&) = delete;
    ~Joysticks();

    // False if there is no such joystick, counted from 0.
    bool Read(int id, JoystickState& state);

  private:
    bool Start();
    _SDL_Joystick* Opened(int id);

    enum class Started { NotYet, Yes, Failed };
    Started started_ = Started::NotYet;
    const Sdl* sdl_ = nullptr;
    std::map<int, _SDL_Joystick*> opened_;
};

} // namespace kelvash::platform
