#include "foundation/platform/platform.h"

namespace kelvash::platform {

// The system's own service keeps them.
void ReadFontConfiguration() {}

} // namespace kelvash::platform
