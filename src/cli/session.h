// One run of the program: the folders and drives it works on, what was asked for, who is told.
#pragma once

#include <filesystem>

#include "cli/cli_user.h"
#include "cli/options.h"

namespace kelvash::cli {

struct Session {
    const Options& options;
    CliUser& user;
    std::filesystem::path home;
    bool home_taken = false;
};

// The application's folder that the options or the platform name.
std::filesystem::path HomeOf(const Options& options);

// Takes the application's folder and the message table in it, if there is one. A folder that is missing is
// made, or refused. False after a message.
enum class MissingHome { Make, Refuse };
[[nodiscard]] bool TakeHome(Session& session, MissingHome missing);

} // namespace kelvash::cli
