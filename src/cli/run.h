// The whole run of kelvash-cli.
#pragma once

#include <string>
#include <vector>

namespace kelvash::cli {

// Runs one command line (without the program's name) and gives the exit status.
int Run(std::vector<std::string> words);

} // namespace kelvash::cli
