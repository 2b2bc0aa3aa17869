// One run of the program: the folders and drives it works on, what was asked for, who is told.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "cli/cli_user.h"
#include "cli/options.h"

namespace kelvash::cli {

struct Session {
    const Options& options;
    CliUser& user;
    std::filesystem::path home;
    bool home_taken = false;
};

// The platform's path of a path that a person typed, before the application's folder and so its drives are
// known: native, or a DOS path on a drive that an option names or on Z:, the whole file system. Empty for any
// other drive.
std::filesystem::path NativeFromUser(const Options& options, std::string_view typed);

// Takes the drives of the options. Gives what is wrong with them; empty if nothing is.
std::string SetDrives(const Options& options);
// The application's folder that the options or the platform name.
std::filesystem::path HomeOf(const Options& options);

// Takes the application's folder and the message table in it, if there is one. A folder that is missing is
// made, or refused. False after a message.
enum class MissingHome { Make, Refuse };
[[nodiscard]] bool TakeHome(Session& session, MissingHome missing);

} // namespace kelvash::cli
