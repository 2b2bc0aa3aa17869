#include "cli/registry.h"

namespace kelvash::cli {

// Each is defined in the file of its command.
#define KELVASH_COMMAND(name) Command name##Command();
#include "cli/commands.inc"
#undef KELVASH_COMMAND

std::vector<Command> MakeCommands() {
    return {
#define KELVASH_COMMAND(name) name##Command(),
#include "cli/commands.inc"
#undef KELVASH_COMMAND
    };
}

} // namespace kelvash::cli
