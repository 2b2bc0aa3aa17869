#include <io.h>
#include <stdio.h>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

bool OutputIsTerminal() {
    return _isatty(_fileno(stdout)) != 0;
}

} // namespace kelvash::platform
