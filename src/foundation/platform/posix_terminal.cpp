#include <unistd.h>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

bool OutputIsTerminal() {
    return ::isatty(STDOUT_FILENO) != 0;
}

} // namespace kelvash::platform
