// SDL2 (bitmaps, joysticks, tones), loaded when it is first asked for: with the sound and display libraries
// behind it, linking it would add 6 ms to every start of a program.
#pragma once

#include <SDL.h>

#include <mutex>

namespace kelvash::platform {

// The functions in use, under SDL's own names without the prefix.
#define KELVASH_SDL_FUNCTIONS(USE) \
    USE(RWFromConstMem)            \
    USE(LoadBMP_RW)                \
    USE(ConvertSurfaceFormat)      \
    USE(FreeSurface)               \
    USE(SetHint)                   \
    USE(InitSubSystem)             \
    USE(QuitSubSystem)             \
    USE(NumJoysticks)              \
    USE(JoystickOpen)              \
    USE(JoystickClose)             \
    USE(JoystickGetAttached)       \
    USE(JoystickUpdate)            \
    USE(JoystickGetAxis)           \
    USE(JoystickNumButtons)        \
    USE(JoystickGetButton)         \
    USE(OpenAudioDevice)           \
    USE(PauseAudioDevice)          \
    USE(QueueAudio)                \
    USE(GetQueuedAudioSize)        \
    USE(CloseAudioDevice)

struct Sdl {
#define KELVASH_SDL_MEMBER(name) decltype(&SDL_##name) name;
    KELVASH_SDL_FUNCTIONS(KELVASH_SDL_MEMBER)
#undef KELVASH_SDL_MEMBER
};

// SDL's subsystems are begun and ended under this: tones have a thread of their own, joysticks the
// program's, and SDL counts the users of what both share without a lock.
inline std::mutex& SdlSubsystems() {
    static std::mutex mutex;
    return mutex;
}

// True once anybody in this process has loaded the library.
bool SdlIsLoaded();
// Null if the library isn't installed. It stays loaded.
const Sdl* LoadSdl();

} // namespace kelvash::platform
