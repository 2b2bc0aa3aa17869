#include <exception>
#include <iostream>

#include "cli/options.h"
#include "cli/run.h"

int main(int argc, char** argv) {
    try {
        return kelvash::cli::Run({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        // Memory that ran out, or a system call that fails where it never should.
        std::cerr << "kelvash-cli: " << error.what() << '\n';
        return kelvash::cli::kFailed;
    }
}
