#include <optional>

#include "foundation/platform/sdl.h"
#include "foundation/platform/windows_common.h"

namespace kelvash::platform {

namespace {

// Looked for beside the program, then where Windows looks for libraries.
constexpr const wchar_t* kLibrary = L"SDL2.dll";

template <class Function>
bool Find(HMODULE library, const char* name, Function& function) {
    // Through a pointer without a type: the two function types differ.
    void* const address = reinterpret_cast<void*>(GetProcAddress(library, name));
    function = reinterpret_cast<Function>(address);
    return function != nullptr;
}

std::optional<Sdl> Load() {
    const HMODULE library = LoadLibraryW(kLibrary);
    Sdl sdl{};
#define KELVASH_SDL_FOUND(name) &&Find(library, "SDL_" #name, sdl.name)
    if (library != nullptr KELVASH_SDL_FUNCTIONS(KELVASH_SDL_FOUND)) return sdl;
#undef KELVASH_SDL_FOUND
    return std::nullopt;
}

} // namespace

bool SdlIsLoaded() {
    return GetModuleHandleW(kLibrary) != nullptr;
}

const Sdl* LoadSdl() {
    static const std::optional<Sdl> sdl = Load();
    return sdl.has_value() ? &*sdl : nullptr;
}

} // namespace kelvash::platform
