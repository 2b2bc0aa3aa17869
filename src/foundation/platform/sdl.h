// SDL2, loaded when it is first asked for: with the sound and display libraries behind it, linking it would
// add 6 ms to every start of a program.
#pragma once

#include <SDL_rwops.h>
#include <SDL_surface.h>

namespace kelvash::platform {

// The functions in use, under SDL's own names without the prefix.
struct Sdl {
    decltype(&SDL_RWFromConstMem) RWFromConstMem;
    decltype(&SDL_LoadBMP_RW) LoadBMP_RW;
    decltype(&SDL_ConvertSurfaceFormat) ConvertSurfaceFormat;
    decltype(&SDL_FreeSurface) FreeSurface;
};

// Null if the library isn't installed. It stays loaded.
const Sdl* LoadSdl();

} // namespace kelvash::platform
