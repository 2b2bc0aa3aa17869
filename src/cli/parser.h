// The words behind the program's name: the options of all commands, the command, and what it takes.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"

namespace kelvash::cli {

// Fills the options, and what the arguments of the command point to. Nothing if there is a command to run,
// which `chosen` is then; otherwise the exit status, after help on stdout or a complaint on stderr.
std::optional<int> ParseWords(std::vector<std::string> words, const std::vector<Command>& commands,
                              Options& options, const Command*& chosen);

} // namespace kelvash::cli
