// All commands of the program.
#pragma once

#include <vector>

#include "cli/command.h"

namespace kelvash::cli {

// Made anew by each call: what is typed goes into them.
std::vector<Command> MakeCommands();

} // namespace kelvash::cli
