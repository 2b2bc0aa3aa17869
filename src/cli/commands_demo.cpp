#include "cli/commands.h"

namespace kelvash::cli {

Result Demo(Session&) {
    return {};
}

} // namespace kelvash::cli
