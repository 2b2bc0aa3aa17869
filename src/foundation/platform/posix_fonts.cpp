// The configuration of Fontconfig is some fifty files of XML. A process reads it once and keeps it, whoever
// asks first, and at whatever time: the library sees to threads itself.
#include <dlfcn.h>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

void ReadFontConfiguration() {
    void* const library = ::dlopen("libfontconfig.so.1", RTLD_LAZY | RTLD_LOCAL);
    if (library == nullptr) return;
    using Init = int (*)();
    // It is asked again by whoever needs a font, who also tells what is wrong with it.
    if (const auto init = reinterpret_cast<Init>(::dlsym(library, "FcInit"))) init();
}

} // namespace kelvash::platform
