#include <dlfcn.h>

#include <optional>

#include "foundation/platform/sdl.h"

namespace kelvash::platform {

namespace {

template <class Function>
bool Find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

constexpr const char* kLibrary = "libSDL2-2.0.so.0";

std::optional<Sdl> Load() {
    void* const library = ::dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
    Sdl sdl{};
#define KELVASH_SDL_FOUND(name) &&Find(library, "SDL_" #name, sdl.name)
    if (library != nullptr KELVASH_SDL_FUNCTIONS(KELVASH_SDL_FOUND)) return sdl;
#undef KELVASH_SDL_FOUND
    return std::nullopt;
}

} // namespace

bool SdlIsLoaded() {
    void* const library = ::dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
    if (library != nullptr) ::dlclose(library);
    return library != nullptr;
}

const Sdl* LoadSdl() {
    static const std::optional<Sdl> sdl = Load();
    return sdl.has_value() ? &*sdl : nullptr;
}

} // namespace kelvash::platform
